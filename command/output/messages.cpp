// Complaints, and text for standard output.

#include "output/messages.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "output/progress_line.h"
#include "output/safe_text.h"

namespace krofx::command {

namespace {

bool IsWritten(std::string_view text) {
  const WithoutProgressLine noProgress;
  const bool isTaken = std::fwrite(text.data(), 1, text.size(), stdout) == text.size();
  return std::fflush(stdout) == 0 && isTaken;
}

}  // namespace

void Complain(std::string_view where, std::string_view what) {
  const WithoutProgressLine noProgress;
  std::fprintf(stderr, "krofx: %s: %s\n", SafeLine(where).c_str(), SafeLine(what).c_str());
}

ExitStatus ComplainOfNoFile(const std::string& subcommand) {
  Complain(subcommand, "FILE is needed; see \"krofx " + subcommand + " --help\"");
  return kExitWrongUse;
}

ExitStatus WriteStandardOutput(std::string_view text) {
  if (IsWritten(text)) return kExitClean;
  Complain("standard output", std::strerror(errno));
  return kExitUnusable;
}

}  // namespace krofx::command
