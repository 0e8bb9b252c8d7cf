// Text on its way to standard output.

#ifndef KROFX_COMMAND_OUTPUT_TEXT_OUTPUT_H_
#define KROFX_COMMAND_OUTPUT_TEXT_OUTPUT_H_

#include <cstddef>
#include <string>

#include "system/exit_status.h"

namespace krofx::command {

/// A text that is made piece by piece. It is held as a whole until somebody takes it, or written on
/// standard output as it comes.
class TextOutput {
 public:
  /// What becomes of the text.
  enum class Mode : unsigned char { kHeld, kWritten };

  explicit TextOutput(Mode mode) : m_mode(mode) {}

  /// The end of the text so far, to which more is appended.
  std::string text;

  /// To be called between two pieces, such as rows: writes what has come together, if it is much
  /// and is to be written.
  /// @return false when nothing more can be written, so that there is no use in going on.
  bool Offer() { return text.size() < kPiece || m_mode == Mode::kHeld || Write() == kExitClean; }
  /// Writes the rest of the text.
  /// @return kExitClean, or kExitUnusable after a complaint when something could not be written.
  ExitStatus Write();

 private:
  static constexpr std::size_t kPiece = 64 * 1024;

  Mode m_mode;
  ExitStatus m_status = kExitClean;
};

}  // namespace krofx::command

#endif  // KROFX_COMMAND_OUTPUT_TEXT_OUTPUT_H_
