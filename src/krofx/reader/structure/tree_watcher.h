// What a tree reader says to those who take a tree apart while it grows, and asks of those who give
// it the text in parts.

#ifndef KROFX_READER_STRUCTURE_TREE_WATCHER_H_
#define KROFX_READER_STRUCTURE_TREE_WATCHER_H_

#include "krofx/core/types.h"
#include "krofx/reader/values/value_survey.h"

class KRDataObj;

namespace krofx::internal {

/// Hears which aggregates begin, and which are complete. The operations must not use the reader.
class TreeWatcher {
 public:
  /// An aggregate was opened as the one at a depth.
  /// @param number which of its tag it is in what it is in, from 1.
  /// @param position where the tag begins that opened it.
  virtual void OnOpened(s16 depth, KRDataObj& object, u32 number, u32 position) = 0;
  /// An aggregate is complete: it was closed, and nothing can be put into it any longer. Those
  /// inside it were complete before it. It may be taken out of what it is in.
  virtual void OnComplete(s16 depth, KRDataObj& object) = 0;
  /// An aggregate that was opened is deleted.
  virtual void OnDeleted(KRDataObj& object) = 0;
  /// @return the element that was in front of the one at a depth, and was taken out; null when none
  ///         was.
  /// @param list the array that they are of.
  virtual const KRDataObj* TakenBefore(s16 depth, const void* list) = 0;

 protected:
  ~TreeWatcher() = default;
};

/// Gives a tree reader more of a text.
class TextSupply : public WholeText {
 public:
  /// Puts more text after that which is there. Places in it stay as they are, and views of it stay
  /// good until the reader has taken another part.
  /// @return false, with the text as it was, when there is no more, or no room.
  virtual bool Extend() = 0;
  /// @return whether the text goes on after what is there.
  virtual bool IsPart() const = 0;

 protected:
  ~TextSupply() = default;
};

}  // namespace krofx::internal

#endif  // KROFX_READER_STRUCTURE_TREE_WATCHER_H_
