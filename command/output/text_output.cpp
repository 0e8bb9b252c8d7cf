// Writes text in pieces, and complains once when that fails.

#include "output/text_output.h"

#include "output/messages.h"

namespace krofx::command {

ExitStatus TextOutput::Write() {
  if (m_status == kExitClean) m_status = WriteStandardOutput(text);
  text.clear();
  return m_status;
}

}  // namespace krofx::command
