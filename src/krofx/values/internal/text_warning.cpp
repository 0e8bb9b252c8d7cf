// Warnings about the text of a value: makes strings from the parts and logs them.

#include "krofx/values/internal/text_warning.h"

#include "krofx/core/string.h"

namespace krofx::internal {

void WarnAboutText(KRParseWarning warning, const char* text, std::size_t length,
                   const char* operation) {
  KRString value;
  value.Assign(text,
               static_cast<u16>(length < KRString::kMaxLength ? length : KRString::kMaxLength));
  LogWarning(warning, value, KRString(operation), KRTag_None, nullptr);
}

}  // namespace krofx::internal
