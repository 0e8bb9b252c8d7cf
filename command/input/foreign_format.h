// Files that are not OFX but come where OFX is expected.

#ifndef KROFX_COMMAND_INPUT_FOREIGN_FORMAT_H_
#define KROFX_COMMAND_INPUT_FOREIGN_FORMAT_H_

#include <string_view>

namespace krofx::command {

/// What a text is that cannot be OFX, by its first bytes, and what to do about it.
/// @return null when it may be OFX.
const char* DescribeForeignFormat(std::string_view text);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_INPUT_FOREIGN_FORMAT_H_
