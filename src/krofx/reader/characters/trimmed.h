// A text without the white space around it.

#ifndef KROFX_READER_CHARACTERS_TRIMMED_H_
#define KROFX_READER_CHARACTERS_TRIMMED_H_

#include <string_view>

#include "krofx/core/internal/byte_search.h"

namespace krofx::internal {

/// @return the text without the white space at both ends.
inline std::string_view Trimmed(std::string_view text) {
  while (!text.empty() && IsWhite(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsWhite(text.back())) text.remove_suffix(1);
  return text;
}

}  // namespace krofx::internal

#endif  // KROFX_READER_CHARACTERS_TRIMMED_H_
