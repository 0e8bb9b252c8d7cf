// The character macros of SGML in element text: "&lt;", "&gt;", "&amp;" and "&nbsp;".

#ifndef KROFX_PARSE_INTERNAL_SGML_MACROS_H_
#define KROFX_PARSE_INTERNAL_SGML_MACROS_H_

#include <string_view>

#include "krofx/core/string.h"

namespace krofx::internal {

/// Copies `in` into `out` with the macros replaced, in any case of letters. What is not a known
/// macro is copied as it is. `in` may be the text of `out`.
/// @return false when memory is exhausted.
bool ExpandMacros(std::string_view in, KRString& out);

}  // namespace krofx::internal

#endif  // KROFX_PARSE_INTERNAL_SGML_MACROS_H_
