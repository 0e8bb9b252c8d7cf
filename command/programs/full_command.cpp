// Finds the whole command from where this program is, and executes it.

#include "programs/full_command.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include "output/messages.h"

namespace krofx::command {

namespace {

namespace fs = std::filesystem;

constexpr char kName[] = "krofx-full";

// From the folder of this program to those that have the whole command: in an installation, which
// can be moved as a whole, and where both were built.
constexpr const char* kFolders[] = {KROFX_FULL_FOLDER, "."};

ExitStatus Refuse(const std::string& program, const char* reason) {
  Complain(program, std::string("this part of krofx, which all but work on files needs, cannot be "
                                "started: ") +
                        reason);
  return kExitUnusable;
}

}  // namespace

ExitStatus BecomeFullCommand(int argc, char** argv) {
  // Neither PATH nor the current folder says what runs: others may write there.
  std::error_code error;
  const fs::path self = fs::read_symlink("/proc/self/exe", error);
  if (error) return Refuse(kName, "/proc does not say where krofx is");
  std::string name = "krofx";
  std::vector<char*> arguments = {name.data()};
  // A process can be started without even its name.
  if (argc > 1) arguments.insert(arguments.end(), argv + 1, argv + argc);
  arguments.push_back(nullptr);

  std::string program;
  int reason = 0;
  for (const char* const folder : kFolders) {
    const std::string each = (self.parent_path() / folder / kName).lexically_normal();
    ::execv(each.c_str(), arguments.data());
    if (!program.empty()) continue;
    program = each;
    reason = errno;
  }
  return Refuse(program, std::strerror(reason));
}

}  // namespace krofx::command
