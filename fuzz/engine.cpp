// What libFuzzer calls: the one target that is linked with this.

#include <cstddef>
#include <cstdint>

#include "target.h"

// Where each block was taken is not kept: that takes a tenth of the time. To find the place of a
// leak, run its input with ASAN_OPTIONS=malloc_context_size=30.
extern "C" const char* __asan_default_options() { return "malloc_context_size=0"; }

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  krofx::fuzz::Target::First()->Run({reinterpret_cast<const char*>(data), size});
  return 0;
}
