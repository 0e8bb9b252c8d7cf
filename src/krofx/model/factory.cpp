// The factory's operations that make no OFX aggregate, and the hook through which arrays and logs
// make their elements with it.

#include "krofx/model/factory.h"

#include "krofx/core/element_source.h"
#include "krofx/core/memory.h"
#include "krofx/core/parse_logger.h"
#include "krofx/core/string.h"
#include "krofx/model/data_object.h"
#include "krofx/model/factory_make.h"
#include "krofx/values/language.h"

using krofx::internal::Make;

namespace {

template <class T>
T* OrAlarm(T* made) {
  if (made == nullptr) KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
  return made;
}

// Elements come from whatever factory is in force when they are made.
template <class T, class Create>
T* ByFactory(Create create) {
  KRDataObjFactory* factory = KRDataObj::GetFactory();
  return factory == nullptr ? nullptr : create(*factory);
}

[[maybe_unused]] const bool elementsComeFromFactory = [] {
  krofx::internal::ElementSource& source = krofx::internal::Elements();
  source.newUShort = [] { return ByFactory<u16>([](auto& f) { return f.NewUShort(); }); };
  source.newString = [] { return ByFactory<KRString>([](auto& f) { return f.NewString(0); }); };
  source.newParseException = [] {
    return ByFactory<KRParseException>([](auto& f) { return f.NewParseException(); });
  };
  return true;
}();

}  // namespace

KRDataObjFactory::~KRDataObjFactory() = default;

u16 KRDataObjFactory::GetVersion() { return m_version; }

u16* KRDataObjFactory::NewUShort() { return OrAlarm(krofx::internal::NewCell<u16>()); }

KRString* KRDataObjFactory::NewString(u16 version) { return Make<KRString>(*this, version); }

KRDataObj* KRDataObjFactory::NewDataObj(u16 version) { return Make<KRDataObj>(*this, version); }

KRParseException* KRDataObjFactory::NewParseException() { return OrAlarm(new KRParseException); }

KRLanguage* KRDataObjFactory::NewLanguage() { return OrAlarm(new KRLanguage); }
