// Progress on standard error, for a person who waits.

#ifndef KROFX_COMMAND_INPUT_FILE_PROGRESS_H_
#define KROFX_COMMAND_INPUT_FILE_PROGRESS_H_

#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace krofx::command {

/// Shows which input is at work, once a second has passed, and how much time is left by the sizes
/// of the inputs, when standard error is a terminal. The line is gone when the object is.
class FileProgress {
 public:
  /// @param names the inputs, in the order in which they begin.
  explicit FileProgress(const std::vector<std::string>& names);
  ~FileProgress();
  FileProgress(const FileProgress&) = delete;
  FileProgress& operator=(const FileProgress&) = delete;

  /// Begins the next input.
  void Next(const std::string& name);

 private:
  void Show();

  const std::size_t m_total;
  double m_allBytes = 0;
  std::mutex m_mutex;
  std::condition_variable m_ended;
  std::size_t m_current = 0;
  double m_doneBytes = 0;     // Of the inputs before the current one.
  double m_currentBytes = 0;  // Of the current one.
  std::string m_name;
  bool m_done = false;
  std::thread m_thread;
};

}  // namespace krofx::command

#endif  // KROFX_COMMAND_INPUT_FILE_PROGRESS_H_
