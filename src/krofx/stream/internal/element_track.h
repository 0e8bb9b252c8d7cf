// What a stream keeps while a text is read: which aggregates are open and where they begin, which
// elements are wanted, and how a list lets go of one.

#ifndef KROFX_STREAM_INTERNAL_ELEMENT_TRACK_H_
#define KROFX_STREAM_INTERNAL_ELEMENT_TRACK_H_

#include <cstddef>
#include <string_view>
#include <typeinfo>

#include "krofx/core/string.h"
#include "krofx/core/tags.h"
#include "krofx/core/types.h"
#include "krofx/messages/banking/accounts.h"
#include "krofx/model/data_object.h"
#include "krofx/model/internal/aggregate.h"
#include "krofx/model/parser.h"
#include "krofx/parse/internal/plain_feed.h"
#include "krofx/reader/mending.h"
#include "krofx/stream/internal/line_counter.h"
#include "krofx/stream/internal/list_elements.h"

namespace krofx::internal {

/// The open aggregates of one text.
class ElementTrack final : public FeedWatcher {
 public:
  explicit ElementTrack(WantedClasses& wanted) : m_wanted(wanted) {}
  ElementTrack(const ElementTrack&) = delete;
  ElementTrack& operator=(const ElementTrack&) = delete;

  /// Begins a tree.
  void Begin(KRDataObj& root);
  /// From now on positions are counted from this offset in the text.
  void SetBase(std::size_t base) { m_base = base; }
  void OnOpened(KRDataObj& object, s32 position) override;
  /// When it is a wanted element of a list, it becomes the current element.
  /// @return whether it did.
  bool OnClosed() override;

  /// @return the current element; null when there is none.
  KRDataObj* Element() const { return m_element; }
  /// Finds the lines of the open aggregates and of the current element. Must be called before the
  /// part of the text that they begin in leaves memory.
  /// @param part a part of the text that has their start tags in it.
  /// @param base the offset of its first byte.
  void FindPlaces(LineCounter& lines, std::string_view part, std::size_t base);
  /// @return where the current element begins, after FindPlaces.
  const Place& PlaceOfElement() const { return m_levels[m_depth].place; }
  /// @return which of its tag the current element is in its list, from 1.
  std::size_t NumberOfElement() const { return m_levels[m_depth].number; }
  /// @return the aggregate around the current element that is `levels` further out; null beyond the
  ///         root.
  KRDataObj* Around(u16 levels) const;
  /// @return the account of the nearest aggregate around the current element that has one; null
  ///         without.
  const KRAccount* AccountOfElement() const;
  /// @return the path of the current element, or, without one, of the innermost open aggregate.
  KRString Path() const;
  /// Takes the current element out of its list and deletes it.
  void Drop();

 private:
  // How many aggregates of one tag an open one has had.
  struct Count {
    KRTagID tag;
    std::size_t count;
  };
  static constexpr u8 kMostCounts = 96;
  // What is known of objects of one class under one tag in objects of one class.
  struct Kind {
    const std::type_info* element = nullptr;
    const std::type_info* parent = nullptr;
    KRTagID tag = KRTag_None;
    bool wanted = false;
    const Row* row = nullptr;  // Of the list in the parent's table that holds them.
  };
  static constexpr std::size_t kKinds = 64;
  struct Level {
    KRDataObj* object = nullptr;
    KRTagID tag = KRTag_None;
    bool isPlaced = true;  // Otherwise the place has an offset only.
    Place place;
    std::size_t number = 1;
    Kind kind;  // Of the child that was closed last: most lists are of one kind.
    u8 countOfTags = 0;
    Count counts[kMostCounts];
  };

  static std::size_t CountOne(Level& level, KRTagID tag);
  const Kind& KindOf(const Level& level, Level& parent);

  WantedClasses& m_wanted;
  Level m_levels[KRParser::kMaxDepth + 1];
  std::size_t m_base = 0;
  s16 m_open = 0;   // How many are open.
  s16 m_depth = 0;  // Of the current element.
  KRDataObj* m_element = nullptr;
  const Row* m_row = nullptr;  // Of the list that holds the current element.
  Kind m_kinds[kKinds];
};

}  // namespace krofx::internal

#endif  // KROFX_STREAM_INTERNAL_ELEMENT_TRACK_H_
