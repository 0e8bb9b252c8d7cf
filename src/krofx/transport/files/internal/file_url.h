// The names of local files inside `file:` URLs.

#ifndef KROFX_TRANSPORT_FILES_INTERNAL_FILE_URL_H_
#define KROFX_TRANSPORT_FILES_INTERNAL_FILE_URL_H_

#include <cstddef>

#include "krofx/core/export.h"
#include "krofx/core/types.h"

namespace krofx::internal {

/// Whether the URL begins with "file:", in letters of any case; a null URL does not.
KROFX_API bool HasFileScheme(const char* url);

/// Writes the name that a `file:` URL names into `out`, which has room for `room` bytes, at
/// least 1. False when the URL is no such URL or the name has no room; `out` is empty then.
KROFX_API bool FileUrlToName(char* out, std::size_t room, const char* url);

/// Writes the `file:` URL of a name, or the name itself if it is such a URL already. `out` has room
/// for 8 bytes more than the name has characters, and does not overlap it.
KROFX_API void NameToFileUrl(char* out, const char* name);

}  // namespace krofx::internal

#endif  // KROFX_TRANSPORT_FILES_INTERNAL_FILE_URL_H_
