// The factory's operations that make no OFX aggregate.

#include "krofx/model/factory.h"

#include "krofx/core/memory.h"
#include "krofx/core/parse_logger.h"
#include "krofx/core/string.h"
#include "krofx/model/data_object.h"
#include "krofx/model/internal/factory_make.h"
#include "krofx/values/language.h"

using krofx::internal::Make;
using krofx::internal::NewCell;

namespace {

template <class T>
T* OrAlarm(T* made) {
  if (made == nullptr) KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
  return made;
}

}  // namespace

// After the end of a host's factory the default one makes the objects.
KRDataObjFactory::~KRDataObjFactory() {
  KRDataObjFactory* current = this;
  KRDataObj::m_factoryObj.compare_exchange_strong(current, nullptr, std::memory_order_acq_rel);
}

u16 KRDataObjFactory::GetVersion() { return m_version; }

u16* KRDataObjFactory::NewUShort() { return OrAlarm(NewCell<u16>()); }

KRString* KRDataObjFactory::NewString(u16 version) { return Make<KRString>(*this, version); }

KRDataObj* KRDataObjFactory::NewDataObj(u16 version) { return Make<KRDataObj>(*this, version); }

KRParseException* KRDataObjFactory::NewParseException() { return OrAlarm(new KRParseException); }

KRLanguage* KRDataObjFactory::NewLanguage() { return OrAlarm(new KRLanguage); }
