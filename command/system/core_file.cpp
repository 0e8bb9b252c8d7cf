// Sets the limit of core files.

#include "system/core_file.h"

#include <sys/resource.h>

#include <algorithm>

namespace krofx::command {

void ForbidCoreFiles() {
  rlimit limit{};
  if (::getrlimit(RLIMIT_CORE, &limit) != 0) return;
  // One byte is too little for a file, and it is the one limit that Linux also respects where core
  // files are handed to a program.
  limit.rlim_max = std::min<rlim_t>(limit.rlim_max, 1);
  limit.rlim_cur = limit.rlim_max;
  ::setrlimit(RLIMIT_CORE, &limit);
}

}  // namespace krofx::command
