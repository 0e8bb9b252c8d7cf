// Counts files on one line of standard error, once the work has taken a second.

#include "output/file_progress.h"

#include <unistd.h>

#include <chrono>
#include <cstdio>

#include "input/input_files.h"
#include "output/safe_text.h"

namespace krofx::command {

FileProgress::FileProgress(std::size_t total) : m_total(total) {
  if (::isatty(STDERR_FILENO) != 0) m_thread = std::thread([this] { Show(); });
}

FileProgress::~FileProgress() {
  {
    const std::lock_guard lock(m_mutex);
    m_done = true;
  }
  m_ended.notify_all();
  if (m_thread.joinable()) m_thread.join();
}

void FileProgress::Next(const std::string& name) {
  const std::lock_guard lock(m_mutex);
  ++m_current;
  m_name = name;
}

void FileProgress::Show() {
  const auto begin = std::chrono::steady_clock::now();
  std::unique_lock lock(m_mutex);
  bool shown = false;
  while (!m_ended.wait_for(lock, std::chrono::seconds(1), [this] { return m_done; })) {
    const auto elapsed =
        std::chrono::duration_cast<std::chrono::seconds>(std::chrono::steady_clock::now() - begin);
    std::fprintf(stderr, "\r\033[Kkrofx: %zu of %zu, %lld s: %s", m_current, m_total,
                 static_cast<long long>(elapsed.count()),
                 Shortened(DisplayName(m_name), 50).c_str());
    shown = true;
  }
  if (shown) std::fputs("\r\033[K", stderr);
}

}  // namespace krofx::command
