// The tags of passwords, and their traces in damaged texts.
//
// When damage takes a character of such a tag, the password after it becomes the text of a tag that
// nobody knows, or a part of the text before it. Whoever quotes texts asks here whether a password
// may be in one. Whether a whole tag is that of a password, IsSecret of core/parse_logger.h says.

#ifndef KROFX_CORE_INTERNAL_PASSWORDS_H_
#define KROFX_CORE_INTERNAL_PASSWORDS_H_

#include <cstddef>
#include <string_view>

#include "krofx/core/export.h"
#include "krofx/core/tags.h"

namespace krofx::internal {

/// @return whether passwords are direct elements of an aggregate.
KROFX_API bool HoldsPasswords(KRTagID aggregate) noexcept;

/// Looks for a tag of a password in a text, whole or damaged: what begins with '<' or ends with '>'
/// and has at most two characters more, less or other than the tag. A slash may be in front of the
/// name, and the case of letters does not count.
/// @return where it begins: everything from there on may be a password. npos for none.
KROFX_API std::size_t FindPasswordTag(std::string_view text) noexcept;

/// @param name of a tag, as it was written.
/// @return whether it ends with the name of a tag of a password, whole or damaged, as when the end
///         of the tag before that one is gone: what comes after it is a password then.
KROFX_API bool EndsWithPasswordTag(std::string_view name) noexcept;

/// @param name of a tag, as it was written.
/// @return how many characters from its beginning are the name of a tag of a password, whole or
///         damaged; 0 when they are not. More characters than these may be a password, in a text
///         in which the tag has no end.
KROFX_API std::size_t LengthOfPasswordTag(std::string_view name) noexcept;

}  // namespace krofx::internal

#endif  // KROFX_CORE_INTERNAL_PASSWORDS_H_
