// What an aggregate must choose among its tags, and how the choice was missed.

#ifndef KROFX_READER_RECORDS_CHOICES_H_
#define KROFX_READER_RECORDS_CHOICES_H_

#include "krofx/core/list.h"
#include "krofx/core/string.h"
#include "krofx/core/tags.h"

class KRDataObj;

namespace krofx::internal {

/// A choice that an aggregate has missed, or tags that are needed beside others that it has.
struct MissedChoice {
  /// What to do, such as "one of <A> and <B> must be there, and none is". Empty when each of the
  /// tags is needed.
  KRString advice;
  List<KRTagID> tags;  ///< Among which the choice is, or which are needed.
};

/// Finds the choices that an aggregate has missed, in the order of its rules.
/// @return false when memory is exhausted.
bool FindMissedChoices(const KRDataObj& object, List<MissedChoice>& missed);

/// @return the tags as text, such as "<A>, <B> and <C>", with `last` before the last one.
KRString ListedTags(const List<KRTagID>& tags, const char* last);

}  // namespace krofx::internal

#endif  // KROFX_READER_RECORDS_CHOICES_H_
