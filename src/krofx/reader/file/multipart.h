// What is known of a multipart text before its parts are read.

#ifndef KROFX_READER_FILE_MULTIPART_H_
#define KROFX_READER_FILE_MULTIPART_H_

#include <cstddef>
#include <string_view>

namespace krofx::internal {

/// @return how many parts a multipart text has, by its boundary lines; 0 when its header says no
///         boundary.
std::size_t CountParts(std::string_view text);

}  // namespace krofx::internal

#endif  // KROFX_READER_FILE_MULTIPART_H_
