// What is known of a multipart text without reading its parts.

#ifndef KROFX_READER_FILE_MULTIPART_H_
#define KROFX_READER_FILE_MULTIPART_H_

#include <string_view>

#include "krofx/envelope/file.h"

namespace krofx::internal {

/// Finds out whether the MIME parser has read a multipart text whole. It passes over some parts
/// without a warning, and the body of a part that is no OFX is not right when it ends after the
/// first 65535 characters of the text, since the parser counts them in 16 bits.
/// @param file what the parser has made of the text.
/// @return whether the file has every part, and all of each.
bool HasAllParts(std::string_view text, KRFile& file);

}  // namespace krofx::internal

#endif  // KROFX_READER_FILE_MULTIPART_H_
