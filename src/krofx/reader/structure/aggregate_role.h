// What a tag is to an object: one of its elements, one of its aggregates, or none of its tags.
//
// The strict parser distinguishes elements from aggregates by what follows them. The objects know
// better, since their tables say what each tag is, and so an element without a text is no riddle.

#ifndef KROFX_READER_STRUCTURE_AGGREGATE_ROLE_H_
#define KROFX_READER_STRUCTURE_AGGREGATE_ROLE_H_

#include "krofx/core/tags.h"
#include "krofx/core/types.h"
#include "krofx/model/internal/aggregate.h"

namespace krofx::internal {

/// What a tag is to an object.
enum class Role : u8 {
  kNone,       ///< Not one of its tags, in its version.
  kElement,    ///< An element.
  kAggregate,  ///< An aggregate.
  kEither,     ///< One of its tags; its class, which is a host's own, does not say of which kind.
};

/// A tag's role, with the row of the object's table that says so; null when there is none.
struct TagRole {
  Role role = Role::kNone;
  const Row* row = nullptr;
};

/// @return the role of a tag in an object that is, or could be, open.
TagRole RoleOf(KRDataObj& object, KRTagID tag);

/// @return whether a tag is one of those around the statements and other answers: OFX itself,
///         message sets, wrappers and what they hold. A text with none of them is not OFX.
bool IsOfEnvelope(KRTagID tag);

/// @return whether the tag of `row` may be there any number of times: each one is a child of its
///         own.
inline bool IsRepeated(const Row* row) { return row != nullptr && row->array != nullptr; }

/// @return the child that an object holds under a tag that can be there once: null when there is
///         none, and for one that may be repeated.
KRDataObj* SingleChild(KRDataObj& object, KRTagID tag, const Row* row);

/// @return whether an object is a list: what comes in a second one belongs after what the first
///         has.
bool IsList(KRDataObj& object);

/// The tag of the aggregate of an object that is around `tag`, if there is exactly one that can
/// hold it, directly or in one aggregate more.
/// @return KRTag_None when there is none, or more than one.
KRTagID AggregateAround(KRDataObj& object, KRTagID tag);

/// Where a tag of the envelope belongs.
struct Home {
  KRTagID set = KRTag_None;      ///< The message set; KRTag_None when there is none.
  KRTagID wrapper = KRTag_None;  ///< The wrapper of a payload; else KRTag_None.
};

/// @param body the request or response that has the message sets.
/// @param version of the message set.
/// @return where a wrapper, a payload or another tag that message sets hold belongs.
Home HomeOf(KRDataObj& body, KRTagID tag, u16 version);

/// @return whether a tag is an account that a statement is of.
bool IsAccount(KRTagID tag);

/// The tag of an account that an object has in place of `tag`, which is an account of another kind:
/// CCACCTFROM in a card's statement for BANKACCTFROM.
/// @return KRTag_None when `tag` is no account, and when the object has none.
KRTagID AccountInPlaceOf(KRDataObj& object, KRTagID tag);

}  // namespace krofx::internal

#endif  // KROFX_READER_STRUCTURE_AGGREGATE_ROLE_H_
