// The functions that the object model defines in the library (krofx/core/internal/hooks.h), for
// test programs that are linked without it.

#include "krofx/core/internal/hooks.h"

#include "krofx/core/parse_logger.h"
#include "krofx/core/string.h"
#include "support/built_text.h"

namespace krofx::internal {

constinit Hooks hooks = {
    .newUShort = [] { return NewCell<u16>(); },
    .newString = [] { return new KRString; },
    .newParseException = [] { return new KRParseException; },
    .currentObjectOf = nullptr,
    .buildRoot =
        [](KRDataObj& root, KRBuilder& builder) {
          return reinterpret_cast<krofx::testing::WriteFunction&>(root)(builder);
        },
    .findIncomplete = [](KRDataObj&) -> KRDataObj* { return nullptr; },
};

}  // namespace krofx::internal
