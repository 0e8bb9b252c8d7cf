// Progress on standard error, for work that takes a while in front of a person.

#ifndef KROFX_TOOLS_PROGRESS_H_
#define KROFX_TOOLS_PROGRESS_H_

#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <string>
#include <thread>

namespace krofx::command {

/// Shows which input is at work, once a second has passed, when standard error is a terminal. The
/// line is gone when the object is.
class Progress {
 public:
  explicit Progress(std::size_t total);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

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

#endif  // KROFX_TOOLS_PROGRESS_H_
