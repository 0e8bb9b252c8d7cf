// The function whose instructions are counted.

#include "counted.h"

namespace bench {

// It does something after the operation, or it would end in a jump there, and the instrument would
// not see it return.
[[gnu::noinline]] bool RunCounted(const Operation& operation) {
  static volatile int counted = 0;
  const bool done = operation.run();
  counted = counted + 1;
  return done;
}

}  // namespace bench
