// Where the texts of a file begin and end, and what each of them is.

#ifndef KROFX_READER_FILE_TEXT_BOUNDS_H_
#define KROFX_READER_FILE_TEXT_BOUNDS_H_

#include <cstddef>
#include <string_view>

#include "krofx/core/tag_dictionary.h"
#include "krofx/reader/reading.h"

namespace krofx::internal {

/// @return where the text that begins at `from` ends: after its end tag OFX, or, without one, where
///         the next text begins, or at the end.
std::size_t FindTextEnd(std::string_view bytes, std::size_t from);

/// As FindTextEnd, for a text that comes in parts, each of which ends after a '>'.
/// @param inBody false for the first part; it is kept for the next one.
/// @return npos when the text goes on after this part.
std::size_t FindTextEndInPart(std::string_view part, bool& inBody);

/// @return whether another OFX text begins at `from` or after it.
bool HasText(std::string_view bytes, std::size_t from, const TagDictionary& dictionary);

/// @return what a text is: a request or a response by the first tag that says so, or multipart by
///         its first line. A text that says nothing is taken for a response.
TextKind FindKind(std::string_view text);

/// As FindKind.
/// @param isNamed takes whether the text says what it is.
TextKind FindKind(std::string_view text, bool& isNamed);

}  // namespace krofx::internal

#endif  // KROFX_READER_FILE_TEXT_BOUNDS_H_
