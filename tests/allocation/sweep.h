// Failed allocations, one after the other: something is done over and over, and each time another
// allocation fails, alone or with all after it.

#ifndef KROFX_TESTS_ALLOCATION_SWEEP_H_
#define KROFX_TESTS_ALLOCATION_SWEEP_H_

#include <cstddef>
#include <functional>
#include <string>

#include "krofx/core/memory.h"
#include "krofx/core/thread.h"

namespace krofx::testing {

/// Which allocation fails; none for 0.
struct Failure {
  std::size_t nth = 0;
  bool andAllLater = false;
};

/// From its making to its end, but for pauses, the allocation that a Failure names fails. The count
/// of allocations stays, for who asks for it afterwards.
class FailingScope {
 public:
  explicit FailingScope(const Failure& failure) : m_failure(failure) {
    KRSetFireAlarm(KRFireAlarm_None);
    s_count = 0;
    Resume();
  }
  ~FailingScope() {
    if (m_isFailing) Pause();
  }
  FailingScope(const FailingScope&) = delete;
  FailingScope& operator=(const FailingScope&) = delete;

  /// Until Resume no allocation fails, and none is counted.
  void Pause() {
    s_count += internal::AllocationFailure::Count();
    internal::AllocationFailure::FailAt(0);
    m_isFailing = false;
  }
  void Resume() {
    const bool isPast = m_failure.nth != 0 && m_failure.nth <= s_count;
    const std::size_t next = isPast ? (m_failure.andAllLater ? 1 : 0) : m_failure.nth - s_count;
    internal::AllocationFailure::FailAt(m_failure.nth == 0 ? 0 : next, m_failure.andAllLater);
    m_isFailing = true;
  }

  /// Allocations in the last scope of this thread.
  static std::size_t LastCount() { return s_count; }

 private:
  static inline thread_local std::size_t s_count = 0;
  Failure m_failure;
  bool m_isFailing = false;
};

/// What something came to. `failed` says that it reported a failure as it is promised to.
struct Outcome {
  bool failed = false;
  /// What a host gets to see: status, text, warnings.
  std::string shown;
};

/// Does one thing, with a failure in the part of it that is tried.
using Attempt = std::function<Outcome(const Failure&)>;

/// Tries an attempt with each allocation failing, or, when there are many, with a sample of them:
/// the first and the last ones, and some between. Each attempt must report its failure or come to
/// what it comes to without one, and the next attempt without a failure must be as the first.
///
/// The environment variable KROFX_SWEEP=whole has every allocation tried.
/// @return how many failures were tried.
std::size_t Sweep(const Attempt& attempt);

/// @return whether every allocation is tried.
bool SweepsWhole();

}  // namespace krofx::testing

#endif  // KROFX_TESTS_ALLOCATION_SWEEP_H_
