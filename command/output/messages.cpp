// Complaints, and text for standard output.

#include "output/messages.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "output/safe_text.h"

namespace krofx::command {

void Complain(std::string_view where, std::string_view what) {
  std::fprintf(stderr, "krofx: %s: %s\n", SafeLine(where).c_str(), SafeLine(what).c_str());
}

ExitStatus ComplainOfNoFile(const std::string& subcommand) {
  Complain(subcommand, "FILE is needed; see \"krofx " + subcommand + " --help\"");
  return kExitWrongUse;
}

ExitStatus WriteStandardOutput(std::string_view text) {
  const bool written = std::fwrite(text.data(), 1, text.size(), stdout) == text.size();
  if (std::fflush(stdout) == 0 && written) return kExitClean;
  Complain("standard output", std::strerror(errno));
  return kExitUnusable;
}

}  // namespace krofx::command
