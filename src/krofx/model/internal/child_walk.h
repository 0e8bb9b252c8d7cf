// A walk over the children of an object.

#ifndef KROFX_MODEL_INTERNAL_CHILD_WALK_H_
#define KROFX_MODEL_INTERNAL_CHILD_WALK_H_

#include "krofx/core/types.h"
#include "krofx/model/data_object.h"

namespace krofx::internal {

/// Calls `visit(child)` for the children in order, until it returns false.
template <class Visit>
void ForEachChild(const KRDataObj& object, Visit visit) {
  const u16 count = object.GetNumberOfChildren();
  for (u16 index = 0; index < count; ++index) {
    KRDataObj* child = object.GetChild(index);
    if (child != nullptr && !visit(*child)) return;
  }
}

}  // namespace krofx::internal

#endif  // KROFX_MODEL_INTERNAL_CHILD_WALK_H_
