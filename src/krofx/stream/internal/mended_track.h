// What a mending stream keeps while a text is read: the open aggregates, and the wanted elements
// that are complete and were taken out of their lists.
//
// An element is complete when nothing can be put into it any longer. An end tag may come too early,
// so that is known only when the next aggregate begins; by then others may have been closed too. So
// elements wait here until the host has asked for them, each with what was around it.

#ifndef KROFX_STREAM_INTERNAL_MENDED_TRACK_H_
#define KROFX_STREAM_INTERNAL_MENDED_TRACK_H_

#include <cstddef>
#include <typeinfo>

#include "krofx/core/list.h"
#include "krofx/core/string.h"
#include "krofx/model/parser.h"
#include "krofx/reader/structure/tree_watcher.h"
#include "krofx/stream/internal/list_elements.h"
#include "krofx/stream/internal/text_window.h"

namespace krofx::internal {

/// The aggregates of one text.
class MendedTrack final : public TreeWatcher {
 public:
  /// Hears of the elements that are handed out, before they are taken out of their lists.
  class Checker {
   public:
    virtual void OnElement(s16 depth, KRDataObj& element) = 0;

   protected:
    ~Checker() = default;
  };

  MendedTrack(WantedClasses& wanted, TextWindow& window, Checker& checker)
      : m_wanted(wanted), m_window(window), m_checker(checker) {}
  MendedTrack(const MendedTrack&) = delete;
  MendedTrack& operator=(const MendedTrack&) = delete;
  ~MendedTrack();

  /// Begins a tree.
  void Begin(KRDataObj& root) { m_levels[0].object = &root; }
  void OnOpened(s16 depth, KRDataObj& object, u32 number, u32 position) override;
  void OnComplete(s16 depth, KRDataObj& object) override;
  void OnDeleted(KRDataObj& object) override;
  const KRDataObj* TakenBefore(s16 depth, const void* list) override;
  /// @return whether memory was exhausted.
  bool HasFailed() const { return m_failed; }
  /// Memory is exhausted, or the text cannot be read.
  void SetFailed() { m_failed = true; }

  /// Goes on to the next element that is complete; the one before it is deleted.
  /// @return false when there is none for now.
  bool Next();
  /// Deletes the elements that were not handed out.
  void Clear();

  /// @return the current element; null when there is none.
  KRDataObj* Element() const { return m_current < m_given.size() ? Current().object : nullptr; }
  const Place& PlaceOfElement() const { return Current().place; }
  std::size_t NumberOfElement() const { return Current().frames[Current().depth].number; }
  /// @return the aggregate around the current element that is `levels` further out; null beyond the
  ///         root, and for one that is gone.
  KRDataObj* Around(u16 levels) const;
  /// @return the account of the nearest aggregate around the current element that has one; null
  ///         without.
  const KRAccount* AccountOfElement() const;
  /// @return the path of the current element.
  KRString Path() const;
  /// @return the path of what is, or was last, at a depth.
  KRString PathTo(s16 depth) const;
  /// @return where it begins.
  const Place& PlaceOf(s16 depth) const { return m_levels[depth].place; }

 private:
  // What is known of objects of one class under one tag in an open aggregate.
  struct Kind {
    const std::type_info* element = nullptr;
    KRTagID tag = KRTag_None;
    bool wanted = false;
    const Row* row = nullptr;
  };
  struct Frame {
    KRDataObj* object;
    KRTagID tag;
    u32 number;  // 0 for what is no element of a list.
  };
  struct Given {
    KRDataObj* object;
    const void* list;  // That it was taken out of; null when its list has it still.
    s16 depth;
    s16 around;  // How many frames, from the root on, are still there.
    Place place;
    Frame frames[KRParser::kMaxDepth + 1];
  };
  struct Level {
    KRDataObj* object = nullptr;
    u32 number = 1;
    Place place;
    Kind kind;  // Of the child that was complete last.
    // The element that was taken last out of each list in it that may be entered again while it is
    // open.
    List<Given> taken;
  };

  const Given& Current() const { return m_given[m_current]; }
  const Kind& KindOf(s16 depth);
  Frame FrameAt(s16 depth) const;
  void DropCurrent();
  static s16 KeeperOf(const Given& given);
  static void DeleteTaken(Level& level);
  void DropWrapperBefore(KRDataObj& parent, const KRDataObj& element);

  WantedClasses& m_wanted;
  TextWindow& m_window;
  Checker& m_checker;
  Level m_levels[KRParser::kMaxDepth + 1];
  List<Given> m_given;
  std::size_t m_current = 0;
  bool m_begun = false;  // The first of those that are given is the current one.
  bool m_failed = false;
};

}  // namespace krofx::internal

#endif  // KROFX_STREAM_INTERNAL_MENDED_TRACK_H_
