// The names of local files inside `file:` URLs.

#ifndef KROFX_TRANSPORT_FILES_INTERNAL_FILE_URL_H_
#define KROFX_TRANSPORT_FILES_INTERNAL_FILE_URL_H_

#include <cstddef>

#include "krofx/core/export.h"
#include "krofx/core/types.h"

namespace krofx::internal {

/// @return whether the URL begins with "file:", whatever the case of its letters; a null URL does
///         not.
KROFX_API bool HasFileScheme(const char* url);

/// Writes the file name of a `file:` URL into `out`, which has room for `room` bytes, at least 1.
/// @return false, with `out` empty, when the URL is not such a URL or the name does not fit.
KROFX_API bool FileUrlToName(char* out, std::size_t room, const char* url);

/// Writes the `file:` URL of a name, or the name itself if it is already such a URL. `out` has room
/// for 8 bytes more than the name has characters, and does not overlap it.
KROFX_API void NameToFileUrl(char* out, const char* name);

}  // namespace krofx::internal

#endif  // KROFX_TRANSPORT_FILES_INTERNAL_FILE_URL_H_
