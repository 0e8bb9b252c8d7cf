// Replaces the character macros, in one pass over the text.

#include "krofx/parse/internal/sgml_macros.h"

#include <cstddef>

#include "krofx/core/internal/byte_search.h"
#include "krofx/core/types.h"
#include "krofx/values/utility.h"

namespace krofx::internal {

bool ExpandMacros(std::string_view in, KRString& out) {
  if (in.empty() || in.size() > KRString::kMaxLength ||
      FindOrNul(in.data(), in.data() + in.size(), '&') == in.data() + in.size()) {
    return out.Assign(in.data(), static_cast<u16>(in.size())) != 0;
  }
  char* write = out.LockBuffer(static_cast<u16>(in.size() + 1));
  if (write == nullptr) return false;

  // A name ends at the next ';', however far away. One search for it serves all '&' before it;
  // otherwise a text of nothing but '&' would take one search for each.
  std::size_t semicolon = 0;
  std::size_t read = 0;
  while (read < in.size()) {
    if (in[read] == '&') {
      if (semicolon <= read) semicolon = in.find(';', read);
      if (semicolon != std::string_view::npos) {
        const char character = MacroCharWithoutCase(in.substr(read + 1, semicolon - read - 1));
        if (character != '\0') {
          *write++ = character;
          read = semicolon + 1;
          continue;
        }
      }
    }
    *write++ = in[read++];
  }
  *write = '\0';
  out.UnlockBuffer();
  return true;
}

}  // namespace krofx::internal
