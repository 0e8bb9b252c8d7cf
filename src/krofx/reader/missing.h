// What a tree lacks: every tag that must be there and is not, and every choice that is not made.

#ifndef KROFX_READER_MISSING_H_
#define KROFX_READER_MISSING_H_

#include <cstddef>

#include "krofx/core/export.h"
#include "krofx/core/list.h"
#include "krofx/core/string.h"
#include "krofx/core/tags.h"

class KRDataObj;

namespace krofx {

/// Something that must be there and is not, or a choice among several tags that is missed.
struct MissingTag {
  std::size_t text = 0;  ///< Which of the texts of a file, counted from 0.
  /// The aggregate that lacks it, such as "OFX/BANKMSGSRSV1/STMTTRNRS[2]/STMTRS": a number, from 1,
  /// distinguishes aggregates of one tag and parent. Empty for the file itself.
  KRString path;
  KRTagID tag = KRTag_None;  ///< The tag; KRTag_None when it is one among `choices`.
  KRString tagText;          ///< The tag as text; empty then.
  List<KRTagID> choices;     ///< The tags among which the choice is; may be empty if it is unknown.
  /// What to do, as an English sentence without a capital letter and a full stop, such as
  /// "<DTEND> is missing" or "one of <A> and <B> must be there, and none is".
  KRString sentence;
};

/// Finds all that is missing in a tree, in the order of the tree. `krofx::Read` has no opinion on
/// it: a text that lacks required tags can be read.
/// @param root any object: a file, a multipart file with its parts, or one aggregate.
/// @return all of it; with the fire alarm raised, what was found until memory was exhausted.
KROFX_API List<MissingTag> FindMissing(const KRDataObj& root);

}  // namespace krofx

#endif  // KROFX_READER_MISSING_H_
