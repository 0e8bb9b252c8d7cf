// Makes allocations inside libcrypto fail, each in turn.

#ifndef KROFX_TESTS_SUPPORT_FAILING_TOOLKIT_H_
#define KROFX_TESTS_SUPPORT_FAILING_TOOLKIT_H_

#include <gtest/gtest.h>
#include <openssl/crypto.h>

#include <cstddef>
#include <cstdlib>

namespace krofx::testing {

// Counts this thread's allocations down; the one that reaches 0 fails.
inline thread_local std::size_t toolkitUntilFailure = 0;

inline bool ToolkitMustFail() { return toolkitUntilFailure > 0 && --toolkitUntilFailure == 0; }

inline void* ToolkitTake(std::size_t size, const char*, int) {
  return ToolkitMustFail() ? nullptr : std::malloc(size);
}

inline void* ToolkitResize(void* block, std::size_t size, const char*, int) {
  if (size == 0) {
    std::free(block);
    return nullptr;
  }
  return ToolkitMustFail() ? nullptr : std::realloc(block, size);
}

inline void ToolkitReturn(void* block, const char*, int) { std::free(block); }

/// Whether libcrypto uses these functions. It accepts other functions only before its first
/// allocation, so a test is skipped when something has used it before.
inline const bool toolkitCanFail =
    CRYPTO_set_mem_functions(&ToolkitTake, &ToolkitResize, &ToolkitReturn) == 1;

/// Runs `step`, which says whether it succeeded, with each allocation of libcrypto failing in turn,
/// or each `every`-th, until there are no more of them. With all of them it must succeed.
/// @return how often it did not.
template <class Step>
int CountToolkitFailures(Step step, std::size_t every = 1) {
  int failures = 0;
  for (std::size_t nth = 1; nth < 10000; nth += every) {
    toolkitUntilFailure = nth;
    const bool succeeded = step();
    const bool reached = toolkitUntilFailure == 0;
    toolkitUntilFailure = 0;
    if (!reached) {
      EXPECT_TRUE(succeeded);
      return failures;
    }
    if (!succeeded) ++failures;
  }
  ADD_FAILURE() << "there is no end of allocations";
  return failures;
}

}  // namespace krofx::testing

#endif  // KROFX_TESTS_SUPPORT_FAILING_TOOLKIT_H_
