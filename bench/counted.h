// What an instrument that counts instructions finds: see callgrind.py.

#ifndef KROFX_BENCH_COUNTED_H_
#define KROFX_BENCH_COUNTED_H_

#include "operations.h"

namespace bench {

/// Runs what is counted; a name of its own for the instrument to find.
/// @return what the operation gives.
bool RunCounted(const Operation& operation);

}  // namespace bench

#endif  // KROFX_BENCH_COUNTED_H_
