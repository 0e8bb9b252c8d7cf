// Files that appear whole or not at all.

#ifndef KROFX_COMMAND_OUTPUT_OUTPUT_FILE_H_
#define KROFX_COMMAND_OUTPUT_OUTPUT_FILE_H_

#include <string>

#include "exit_status.h"
#include "krofx/core/buffer.h"

namespace krofx::command {

/// Who may read a file that is made.
enum class Privacy {
  kUsual,   ///< As the file that is replaced, or as the user's mask says.
  kPrivate  ///< The user alone: it holds a password.
};

/// Writes the buffer to `name`, or to standard output when that is empty or "-". A file is written
/// beside its place and then renamed, so that a reader sees the old or the new one whole.
/// @return kExitClean, or kExitUnusable with a complaint.
ExitStatus WriteOutput(const KRBuffer& text, const std::string& name, Privacy privacy);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_OUTPUT_OUTPUT_FILE_H_
