// The functions of the object model that the layers below it call.

#include "krofx/core/internal/hooks.h"

#include "krofx/model/data_object.h"
#include "krofx/model/factory.h"
#include "krofx/model/parser.h"
#include "krofx/values/utility.h"

namespace {

// Elements come from the factory that is in force when they are made.
template <class T, class Create>
T* ByFactory(Create create) {
  KRDataObjFactory* factory = KRDataObj::GetFactory();
  return factory == nullptr ? nullptr : create(*factory);
}

u16* NewUShort() {
  return ByFactory<u16>([](KRDataObjFactory& factory) { return factory.NewUShort(); });
}

KRString* NewString() {
  return ByFactory<KRString>([](KRDataObjFactory& factory) { return factory.NewString(0); });
}

KRParseException* NewParseException() {
  return ByFactory<KRParseException>(
      [](KRDataObjFactory& factory) { return factory.NewParseException(); });
}

KRDataObj* CurrentObjectOf(KRParser& parser) { return parser.GetCurrentObj(); }

KRBuildStatus BuildRoot(KRDataObj& root, KRBuilder& builder) { return root.Build(&builder); }

KRDataObj* FindIncomplete(KRDataObj& root) {
  KRDataObj* object = &root;
  KRTagID missing = KRTag_None;
  return KRUtility::AllRequiredPresent(&object, &missing) != 0 ? nullptr : object;
}

}  // namespace

namespace krofx::internal {

constinit Hooks hooks = {
    .newUShort = &NewUShort,
    .newString = &NewString,
    .newParseException = &NewParseException,
    .currentObjectOf = &CurrentObjectOf,
    .buildRoot = &BuildRoot,
    .findIncomplete = &FindIncomplete,
};

}  // namespace krofx::internal
