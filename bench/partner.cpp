// Hands work to a thread or a process through pipes, so that both wait and wake in the same way.

#include "partner.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <utility>

namespace bench {

namespace {

// What it is asked. A pipe's end cannot say that the work is over: processes that were made later
// have the pipe too.
constexpr char kWork = 1;
constexpr char kStop = 2;

void Ask(int pipe, char request) {
  if (write(pipe, &request, 1) != 1) std::abort();
}

}  // namespace

Partner::Partner(Kind kind, std::function<bool()> work) {
  if (pipe(m_requests) != 0 || pipe(m_results) != 0) std::abort();
  if (kind == Kind::kThread) {
    m_thread = std::thread([this, work = std::move(work)] { Serve(work); });
    return;
  }
  m_process = fork();
  if (m_process == 0) {
    // Otherwise the process would not see that a caller ended without asking it to stop.
    close(m_requests[1]);
    Serve(work);
    _exit(0);
  }
}

Partner::~Partner() {
  Ask(m_requests[1], kStop);
  if (m_thread.joinable()) m_thread.join();
  if (m_process > 0) waitpid(m_process, nullptr, 0);
  for (const int end : {m_requests[0], m_requests[1], m_results[0], m_results[1]}) close(end);
}

void Partner::Start() { Ask(m_requests[1], kWork); }

bool Partner::Finish() {
  char isDone = 0;
  return read(m_results[0], &isDone, 1) == 1 && isDone != 0;
}

void Partner::Serve(const std::function<bool()>& work) const {
  char message = 0;
  while (read(m_requests[0], &message, 1) == 1 && message == kWork) {
    message = work() ? 1 : 0;
    if (write(m_results[1], &message, 1) != 1) return;
  }
}

}  // namespace bench
