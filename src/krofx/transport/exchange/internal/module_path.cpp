// The file name and the folder of the program, or of a library that it loaded.

#include "krofx/transport/exchange/internal/module_path.h"

#include <link.h>
#include <unistd.h>

#include <cstring>

#include "krofx/core/string.h"

namespace krofx::internal {

namespace {

struct Wanted {
  void* handle;
  char (&name)[kModuleNameSize];
};

// A handle is searched for in the list of loaded libraries and not dereferenced, so that a stale
// one does no harm.
int CopyNameOf(dl_phdr_info*, std::size_t, void* argument) {
  const Wanted& wanted = *static_cast<Wanted*>(argument);
  const link_map* loaded = _r_debug.r_map;
  while (loaded != nullptr && loaded != wanted.handle) loaded = loaded->l_next;
  if (loaded != nullptr) {
    const std::size_t length = strnlen(loaded->l_name, sizeof wanted.name - 1);
    std::memcpy(wanted.name, loaded->l_name, length);
    wanted.name[length] = '\0';
  }
  // The one call was only needed for its lock: ends the iteration.
  return 1;
}

bool IsProgram(void* module) { return module == nullptr || module == _r_debug.r_map; }

}  // namespace

void ModuleFileName(void* module, char (&out)[kModuleNameSize]) {
  out[0] = '\0';
  if (IsProgram(module)) {
    const ssize_t length = readlink("/proc/self/exe", out, sizeof out - 1);
    out[length > 0 ? length : 0] = '\0';
    return;
  }
  // dl_iterate_phdr holds the loader's lock during the calls, so that no other thread unloads a
  // library.
  Wanted wanted{module, out};
  dl_iterate_phdr(&CopyNameOf, &wanted);
}

void FolderOfFileName(const char* name, KRString& folder) {
  std::size_t length = std::strlen(name);
  while (length > 0 && name[length - 1] != '/' && name[length - 1] != '\\') --length;
  if (length == 0) {
    folder = "c:\\";
  } else {
    folder.Assign(name, static_cast<u16>(length));
  }
}

}  // namespace krofx::internal
