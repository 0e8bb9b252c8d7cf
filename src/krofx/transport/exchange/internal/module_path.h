// Where the program, or a library that it loaded, stands in the file system.

#ifndef KROFX_TRANSPORT_EXCHANGE_INTERNAL_MODULE_PATH_H_
#define KROFX_TRANSPORT_EXCHANGE_INTERNAL_MODULE_PATH_H_

#include "krofx/core/export.h"
#include "krofx/core/types.h"

class KRString;

namespace krofx::internal {

/// Bytes of the longest module name that is looked at, its NUL included.
inline constexpr u32 kModuleNameSize = 1024;

/// Gives the file name of a module, cut to what `out` holds: of the program for null, else of the
/// library of a handle that dlopen gave. A handle of no loaded library gives an empty name.
KROFX_API void ModuleFileName(void* module, char (&out)[kModuleNameSize]);

/// Gives everything of a file name through its last slash or backslash; without one, "c:\".
KROFX_API void FolderOfFileName(const char* name, KRString& folder);

}  // namespace krofx::internal

#endif  // KROFX_TRANSPORT_EXCHANGE_INTERNAL_MODULE_PATH_H_
