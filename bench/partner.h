// Work that runs at the same time as that of the caller.

#ifndef KROFX_BENCH_PARTNER_H_
#define KROFX_BENCH_PARTNER_H_

#include <sys/types.h>

#include <functional>
#include <thread>

namespace bench {

/// A second thread or process that waits, does its work when it is asked to, and waits again. A
/// process shares no memory with the caller, so what two processes cannot do at the same time, the
/// machine does not allow.
class Partner {
 public:
  enum class Kind { kThread, kProcess };

  /// Starts it.
  /// @param work the work; false when it failed.
  Partner(Kind kind, std::function<bool()> work);
  Partner(const Partner&) = delete;
  Partner& operator=(const Partner&) = delete;
  /// Ends it.
  ~Partner();

  /// Lets it do its work once.
  void Start();
  /// Waits until the work is done.
  /// @return what the work gave; false when it could not be done.
  bool Finish();

 private:
  // Does the work each time that it is asked to, until it is asked to stop.
  void Serve(const std::function<bool()>& work) const;

  // The end to read from and the end to write to: of requests, and of results.
  int m_requests[2] = {-1, -1};
  int m_results[2] = {-1, -1};
  std::thread m_thread;
  pid_t m_process = -1;
};

}  // namespace bench

#endif  // KROFX_BENCH_PARTNER_H_
