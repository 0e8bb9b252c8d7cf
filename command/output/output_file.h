// Files that appear whole or not at all.

#ifndef KROFX_COMMAND_OUTPUT_OUTPUT_FILE_H_
#define KROFX_COMMAND_OUTPUT_OUTPUT_FILE_H_

#include <string>

#include "krofx/core/buffer.h"
#include "system/exit_status.h"

namespace krofx::command {

/// Who may read a file that is made.
enum class Privacy {
  kUsual,   ///< As the file that is replaced, or as the user's mask says.
  kPrivate  ///< The user alone: it holds a password.
};

/// What happens to a file that is there already.
enum class Existing {
  kReplaced,  ///< The new file takes its place.
  kKept       ///< It stays, and nothing is written.
};

/// Writes the buffer to `name`, or to standard output when that is empty or "-". A file is written
/// beside its place and then renamed, so that a reader sees the old or the new one whole, also when
/// a signal ends the command.
/// @return kExitClean, or kExitUnusable with a complaint.
ExitStatus WriteOutput(const KRBuffer& text, const std::string& name, Privacy privacy,
                       Existing existing = Existing::kReplaced);

/// Finds out whether WriteOutput can make a file at `name`, for what must not be lost when it
/// comes. What is there stays as it is.
/// @return kExitClean, also for standard output, or kExitUnusable with a complaint.
ExitStatus TryOutput(const std::string& name);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_OUTPUT_OUTPUT_FILE_H_
