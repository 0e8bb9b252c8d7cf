// The one line of standard error that shows how far long work is. It is on the same terminal as
// everything else that is written, so it goes away before that.

#ifndef KROFX_COMMAND_OUTPUT_PROGRESS_LINE_H_
#define KROFX_COMMAND_OUTPUT_PROGRESS_LINE_H_

#include <mutex>
#include <string>

namespace krofx::command {

/// Shows a text in the place of the one before it. To be called only when standard error is a
/// terminal. May be called on any thread.
void ShowProgressLine(const std::string& text);

/// Takes the line away, and keeps others from showing it as long as this object lives: whoever
/// writes on standard output or standard error makes one. Not more than one on a thread at a time.
class WithoutProgressLine {
 public:
  WithoutProgressLine();

 private:
  const std::lock_guard<std::mutex> m_lock;
};

}  // namespace krofx::command

#endif  // KROFX_COMMAND_OUTPUT_PROGRESS_LINE_H_
