// Counts files on one line of standard error, once the work has taken a second.

#include "input/file_progress.h"

#include <sys/stat.h>
#include <unistd.h>

#include <chrono>

#include "input/input_files.h"
#include "output/progress_line.h"
#include "output/safe_text.h"
#include "output/time_left.h"

namespace krofx::command {

namespace {

// The bytes of a file; 0 for what has no size, such as a pipe.
double SizeOf(const std::string& name) {
  struct stat status {};
  return ::stat(name.c_str(), &status) == 0 ? static_cast<double>(status.st_size) : 0;
}

}  // namespace

FileProgress::FileProgress(const std::vector<std::string>& names) : m_total(names.size()) {
  if (::isatty(STDERR_FILENO) == 0) return;
  for (const std::string& name : names) m_allBytes += SizeOf(name);
  m_thread = std::thread([this] { Show(); });
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
  if (!m_thread.joinable()) return;
  m_doneBytes += m_currentBytes;
  m_currentBytes = SizeOf(name);
}

void FileProgress::Show() {
  const auto begin = std::chrono::steady_clock::now();
  std::unique_lock lock(m_mutex);
  while (!m_ended.wait_for(lock, std::chrono::seconds(1), [this] { return m_done; })) {
    const auto elapsed =
        std::chrono::duration_cast<std::chrono::seconds>(std::chrono::steady_clock::now() - begin);
    const std::string line = "krofx: " + std::to_string(m_current) + " of " +
                             std::to_string(m_total) + ", " + std::to_string(elapsed.count()) +
                             " s" + DescribeTimeLeft(elapsed, m_doneBytes, m_allBytes) + ": " +
                             Shortened(DisplayName(m_name), 30);
    // Who writes may wait long for the terminal, and nobody is to wait for that here.
    lock.unlock();
    ShowProgressLine(line);
    lock.lock();
  }
  const WithoutProgressLine noProgress;
}

}  // namespace krofx::command
