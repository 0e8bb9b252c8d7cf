// Shows the steps and counters of an exchange on one line of standard error.

#include "exchange/exchange_progress.h"

#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <utility>

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
  if (m_shown) std::fputs("\r\033[K", stderr);
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
  std::fprintf(stderr, "\r\033[Kkrofx: %s %s", what, m_where.c_str());
  if (waits) done = 0;
  if (done > 0) std::fprintf(stderr, ": %zu", done);
  if (done > 0 && all > 0) std::fprintf(stderr, " of %zu", all);
  if (done > 0) {
    const std::string left =
        DescribeTimeLeft(now - m_begin, static_cast<double>(done), static_cast<double>(all));
    std::fprintf(stderr, " bytes%s", left.c_str());
  }
  std::fflush(stderr);
}

}  // namespace krofx::command
