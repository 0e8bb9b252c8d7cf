// Progress on standard error, for a person who waits.

#ifndef KROFX_COMMAND_OUTPUT_FILE_PROGRESS_H_
#define KROFX_COMMAND_OUTPUT_FILE_PROGRESS_H_

#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <string>
#include <thread>

namespace krofx::command {

/// Shows which input is at work, once a second has passed, when standard error is a terminal. The
/// line is gone when the object is.
class FileProgress {
 public:
  explicit FileProgress(std::size_t total);
  ~FileProgress();
  FileProgress(const FileProgress&) = delete;
  FileProgress& operator=(const FileProgress&) = delete;

  /// Begins the next input.
  void Next(const std::string& name);

 private:
  void Show();

  const std::size_t m_total;
  std::mutex m_mutex;
  std::condition_variable m_ended;
  std::size_t m_current = 0;
  std::string m_name;
  bool m_done = false;
  std::thread m_thread;
};

}  // namespace krofx::command

#endif  // KROFX_COMMAND_OUTPUT_FILE_PROGRESS_H_
