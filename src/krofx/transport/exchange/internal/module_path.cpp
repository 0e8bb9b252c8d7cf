// Where the program, or a library that it loaded, stands in the file system.

#include "krofx/transport/exchange/internal/module_path.h"

#include <link.h>
#include <unistd.h>

#include <cstring>

#include "krofx/core/string.h"

namespace krofx::internal {

namespace {

// A handle is looked for in the list of what is loaded instead of being followed, so that a stale
// one does no harm.
char const* NameOfLibrary(void* handle) {
  for (link_map* loaded = _r_debug.r_map; loaded != nullptr; loaded = loaded->l_next) {
    if (loaded == handle) return loaded->l_name;
  }
  return nullptr;
}

bool IsProgram(void* module) { return module == nullptr || module == _r_debug.r_map; }

}  // namespace

void ModuleFileName(void* module, char (&out)[kModuleNameSize]) {
  out[0] = '\0';
  if (IsProgram(module)) {
    ssize_t const length = readlink("/proc/self/exe", out, sizeof out - 1);
    out[length > 0 ? length : 0] = '\0';
    return;
  }
  char const* const name = NameOfLibrary(module);
  if (name == nullptr) return;
  std::size_t const length = strnlen(name, sizeof out - 1);
  std::memcpy(out, name, length);
  out[length] = '\0';
}

void FolderOfFileName(char const* name, KRString& folder) {
  std::size_t length = std::strlen(name);
  while (length > 0 && name[length - 1] != '/' && name[length - 1] != '\\') --length;
  if (length == 0) {
    folder = "c:\\";
  } else {
    folder.Assign(name, static_cast<u16>(length));
  }
}

}  // namespace krofx::internal
