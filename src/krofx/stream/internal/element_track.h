// What a stream keeps while a text is read: which aggregates are open and where they begin, which
// elements are wanted, and how a list lets go of one.
//
// Wanted elements that follow each other in a list are read some at a time, since leaving the loop
// after each one takes a quarter of the time of the reading. They never enter the list, and wait to
// be handed out.

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
#include "krofx/model/internal/missing_search.h"
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

  ~ElementTrack();

  /// Begins a tree.
  /// @param checkRequired whether to look for missing tags in wanted elements.
  void Begin(KRDataObj& root, bool checkRequired);
  /// From now on positions are counted from this offset in the text.
  void SetBase(std::size_t base) { m_base = base; }
  void OnOpened(KRDataObj& object, s32 position) override;
  void OnOpenedBeside(KRDataObj& object, s32 position) override;
  /// A wanted element waits for TakeAhead.
  AfterClosing OnClosed() override;
  /// To be called after a feed: puts an element that is not complete into its list.
  /// @return false when memory is exhausted.
  bool Settle();

  /// @return whether elements wait.
  bool HasAhead() const { return m_next != m_countAhead; }
  /// Makes the element that has waited longest the current one. There must be none.
  /// @return whether there is one.
  bool TakeAhead() {
    m_lacking = nullptr;
    if (!HasAhead()) return false;
    m_current = &m_ahead[m_next++];
    if (HasAhead()) return true;
    m_lacking = m_lackingAhead;
    m_next = m_countAhead = 0;
    return true;
  }

  /// @return the current element; null when there is none.
  KRDataObj* Element() const { return m_current == nullptr ? nullptr : m_current->object; }
  /// @return the part of the current element that lacks a required tag; null when none does.
  KRDataObj* Lacking() const { return m_lacking; }
  /// Finds the lines of the open aggregates and of the current element. Must be called before the
  /// part of the text that they begin in leaves memory.
  /// @param part a part of the text that has their start tags in it.
  /// @param base the offset of its first byte.
  void FindPlaces(LineCounter& lines, std::string_view part, std::size_t base);
  /// @return where the current element begins, after FindPlaces.
  const Place& PlaceOfElement() const { return m_current->start.place; }
  /// @return which of its tag the current element is in its list, from 1.
  std::size_t NumberOfElement() const { return m_current->start.number; }
  /// @return the aggregate around the current element that is `levels` further out; null beyond the
  ///         root.
  KRDataObj* Around(u16 levels) const;
  /// @return the account of the nearest aggregate around the current element that has one; null
  ///         without.
  const KRAccount* AccountOfElement() const;
  /// @return the path of the current element, or, without one, of the innermost open aggregate.
  KRString Path() const;
  /// Deletes the current element, if there is one.
  void Drop() {
    if (m_current == nullptr) return;
    if (m_current->isTaken) {
      delete m_current->object;
    } else {
      DropFromList();
    }
    m_current = nullptr;
  }

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
  // Where an aggregate begins.
  struct Start {
    Place place;
    bool isPlaced = true;  // Otherwise the place has an offset only.
    std::size_t number = 1;
  };
  struct Level {
    KRDataObj* object = nullptr;
    KRTagID tag = KRTag_None;
    Start start;
    Kind kind;  // Of the child that was closed last: most lists are of one kind.
    u8 countOfTags = 0;
    Count counts[kMostCounts];
  };

  // A wanted element that is complete.
  struct Complete {
    KRDataObj* object = nullptr;
    Start start;
    s16 depth = 0;
    bool isTaken = false;      // Out of its list, so that it belongs to the track.
    const Row* row = nullptr;  // Of its list.
  };
  // Further ones would take more memory than they save time.
  static constexpr u8 kMostAhead = 32;
  static constexpr std::size_t kMostTextAhead = std::size_t{64} * 1024;

  static std::size_t CountOne(Level& level, KRTagID tag);
  const Kind& KindOf(const Level& level, Level& parent);
  AfterClosing Keep(s16 depth, const Row* row, bool isTaken);
  void DropFromList();

  WantedClasses& m_wanted;
  Level m_levels[KRParser::kMaxDepth + 1];
  std::size_t m_base = 0;
  s16 m_open = 0;  // How many are open.
  Kind m_kinds[kKinds];
  // Those that wait: m_ahead[m_next] to m_ahead[m_countAhead - 1]. The current one is one that
  // waited before them, which stays until it is dropped.
  Complete m_ahead[kMostAhead];
  Complete* m_current = nullptr;
  u8 m_next = 0;
  u8 m_countAhead = 0;
  s16 m_depthBeside = 0;  // Of an open element that is not in its list; 0 without.
  bool m_checkRequired = false;
  MissingSearch m_missing;
  // What the last one that waits lacks, and the current one.
  KRDataObj* m_lackingAhead = nullptr;
  KRDataObj* m_lacking = nullptr;
};

}  // namespace krofx::internal

#endif  // KROFX_STREAM_INTERNAL_ELEMENT_TRACK_H_
