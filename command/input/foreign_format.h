// Files that are not OFX but come where OFX is expected.

#ifndef KROFX_COMMAND_INPUT_FOREIGN_FORMAT_H_
#define KROFX_COMMAND_INPUT_FOREIGN_FORMAT_H_

#include <string_view>

namespace krofx::command {

/// What a text is that could not be read, when it is not OFX by its first bytes, or is OFX that is
/// not read to the letter; and what to do about it.
/// @return null when it may be OFX that is damaged.
const char* DescribeForeignFormat(std::string_view text);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_INPUT_FOREIGN_FORMAT_H_
