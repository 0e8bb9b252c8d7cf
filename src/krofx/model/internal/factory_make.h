// The body that the factory's operations share.

#ifndef KROFX_MODEL_INTERNAL_FACTORY_MAKE_H_
#define KROFX_MODEL_INTERNAL_FACTORY_MAKE_H_

#include "krofx/core/thread.h"
#include "krofx/model/factory.h"
#include "krofx/model/internal/aggregate.h"

namespace krofx::internal {

/// Makes a data object and gives it `version`, or the factory's own for 0.
/// @return the object, which the caller owns; null, with the fire alarm raised, when memory is
///         exhausted.
template <class T>
T* Make(KRDataObjFactory& factory, u16 version) {
  T* object = new T;
  if (object == nullptr) {
    KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
    return nullptr;
  }
  const u16 given = version != 0 ? version : factory.GetVersion();
  if constexpr (TakesTagsByTable<T>) {
    // It has no children yet, so the version need not be passed down.
    ObjectAccess::SetVersion(*object, given);
  } else {
    object->SetMsgSetVersion(given);
  }
  return object;
}

}  // namespace krofx::internal

#endif  // KROFX_MODEL_INTERNAL_FACTORY_MAKE_H_
