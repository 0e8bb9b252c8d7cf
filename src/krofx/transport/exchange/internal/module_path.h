// The file name and the folder of the program, or of a library that it loaded.

#ifndef KROFX_TRANSPORT_EXCHANGE_INTERNAL_MODULE_PATH_H_
#define KROFX_TRANSPORT_EXCHANGE_INTERNAL_MODULE_PATH_H_

#include "krofx/core/export.h"
#include "krofx/core/types.h"

class KRString;

namespace krofx::internal {

/// Bytes of the longest module name, its NUL included.
inline constexpr u32 kModuleNameSize = 1024;

/// Gets the file name of a module, cut to the size of `out`: of the program for null, else of the
/// library of a handle from dlopen. A handle that is not that of a loaded library gives an empty
/// name.
KROFX_API void ModuleFileName(void* module, char (&out)[kModuleNameSize]);

/// Gets the part of a file name up to and including its last slash or backslash; without one,
/// "c:\".
KROFX_API void FolderOfFileName(const char* name, KRString& folder);

}  // namespace krofx::internal

#endif  // KROFX_TRANSPORT_EXCHANGE_INTERNAL_MODULE_PATH_H_
