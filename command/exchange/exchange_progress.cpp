// Shows the steps and counters of an exchange on one line of standard error.

#include "exchange/exchange_progress.h"

#include <unistd.h>

#include <cstdint>
#include <utility>

#include "output/progress_line.h"
#include "output/safe_text.h"
#include "output/time_left.h"

namespace krofx::command {

namespace {

// Often enough for the eye.
constexpr auto kPause = std::chrono::milliseconds(100);

}  // namespace

ExchangeProgress* ExchangeProgress::s_current = nullptr;

ExchangeProgress::ExchangeProgress(KRNetAccess& access, std::string where)
    : m_access(access), m_where(Shortened(SafeLine(where), 50)) {
  if (::isatty(STDERR_FILENO) == 0) return;
  s_current = this;
  m_access.SetSessionCallback(Take);
}

ExchangeProgress::~ExchangeProgress() {
  if (s_current != this) return;
  m_access.SetSessionCallback(nullptr);
  s_current = nullptr;
  const WithoutProgressLine noProgress;
}

void ExchangeProgress::Take(KROpCode code, void* a, void* b) {
  if (s_current == nullptr) return;
  // The counters of a transport are numbers in the place of pointers.
  s_current->Show(code, reinterpret_cast<std::uintptr_t>(a), reinterpret_cast<std::uintptr_t>(b));
}

void ExchangeProgress::Show(KROpCode code, std::size_t done, std::size_t all) {
  const auto now = std::chrono::steady_clock::now();
  // All is sent, and the answer has not begun.
  const bool waits = code == KROpCode_Sending && all > 0 && done >= all;
  if (m_shown && code == m_code && waits == m_waits && now - m_when < kPause) return;
  if (!m_shown || code != m_code) m_begin = now;
  m_code = code;
  m_waits = waits;
  m_when = now;
  m_shown = true;
  const char* const what = waits                        ? "waiting for"
                           : code == KROpCode_Sending   ? "sending to"
                           : code == KROpCode_Receiving ? "receiving from"
                                                        : "connecting to";
  if (waits) done = 0;
  std::string line = std::string("krofx: ") + what + " " + m_where;
  if (done > 0) {
    line += ": " + std::to_string(done);
    if (all > 0) line += " of " + std::to_string(all);
    line += " bytes" +
            DescribeTimeLeft(now - m_begin, static_cast<double>(done), static_cast<double>(all));
  }
  ShowProgressLine(line);
}

}  // namespace krofx::command
