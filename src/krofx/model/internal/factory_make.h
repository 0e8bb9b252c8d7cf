// The one body of the factory's operations.

#ifndef KROFX_MODEL_INTERNAL_FACTORY_MAKE_H_
#define KROFX_MODEL_INTERNAL_FACTORY_MAKE_H_

#include "krofx/core/thread.h"
#include "krofx/model/factory.h"

namespace krofx::internal {

/// Makes a data object and gives it `version`, or the factory's own for 0; null, with the fire
/// alarm raised, when memory is exhausted.
template <class T>
T* Make(KRDataObjFactory& factory, u16 version) {
  T* object = new T;
  if (object == nullptr) {
    KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
    return nullptr;
  }
  object->SetMsgSetVersion(version != 0 ? version : factory.GetVersion());
  return object;
}

}  // namespace krofx::internal

#endif  // KROFX_MODEL_INTERNAL_FACTORY_MAKE_H_
