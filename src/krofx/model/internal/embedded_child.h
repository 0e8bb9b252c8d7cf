// The rows of children that are members of their parent, not objects of their own.
//
// Such a child is written and copied by the table, as a value is. The parent's class reads it and
// gives it as a child: its HandleTagStart pushes the member.

#ifndef KROFX_MODEL_INTERNAL_EMBEDDED_CHILD_H_
#define KROFX_MODEL_INTERNAL_EMBEDDED_CHILD_H_

#include "krofx/build/builder.h"
#include "krofx/model/internal/aggregate.h"

namespace krofx::internal {

/// An aggregate of class `Child` that its parent holds by value.
template <class Child>
struct Embedded {
  /// An aggregate has no text.
  static StoreResult FromText(KRDataObj&, KRTagID, void*, const KRString&) {
    return StoreResult::kNoValue;
  }
  static KRBuildStatus Build(KRBuilder& builder, KRTagID tag, const void* member) {
    return static_cast<const Child*>(member)->BuildObject(&builder, tag);
  }
  static u16 Copy(void* to, const void* from) {
    Child* source = const_cast<Child*>(static_cast<const Child*>(from));
    return static_cast<Child*>(to)->DeepCopyFrom(source);
  }
  static constexpr ValueKind kKind = {&FromText, &Build, &Copy, ValueForm::kAggregate};
};
template <class Child>
inline constexpr const ValueKind& kEmbedded = Embedded<Child>::kKind;

}  // namespace krofx::internal

#endif  // KROFX_MODEL_INTERNAL_EMBEDDED_CHILD_H_
