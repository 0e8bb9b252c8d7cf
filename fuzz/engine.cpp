// What libFuzzer calls: the one target that is linked with this.

#include <cstddef>
#include <cstdint>

#include "target.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  krofx::fuzz::Target::First()->Run({reinterpret_cast<const char*>(data), size});
  return 0;
}
