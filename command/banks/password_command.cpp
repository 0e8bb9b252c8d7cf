// Starts the shell with a pipe in place of its standard output.

#include "banks/password_command.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>

#include "banks/password.h"
#include "system/file_descriptor.h"

namespace krofx::command {

namespace {

// The commands of a shell that cannot be run, by their statuses.
constexpr int kNotExecutable = 126;
constexpr int kNotFound = 127;
// With the number of a signal, the status of a command that it ended.
constexpr int kFirstSignalStatus = 128;

// Starts the command with its output in the pipe's end. The number of the error, or 0.
int Start(const std::string& command, int output, pid_t& child) {
  posix_spawn_file_actions_t actions;
  ::posix_spawn_file_actions_init(&actions);
  ::posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
  std::string shell = "sh";
  std::string option = "-c";
  std::string text = command;
  char* const arguments[] = {shell.data(), option.data(), text.data(), nullptr};
  const int error = ::posix_spawn(&child, "/bin/sh", &actions, nullptr, arguments, environ);
  ::posix_spawn_file_actions_destroy(&actions);
  return error;
}

// What follows a verb of secret-tool to name a bank's password, safe from the shell.
std::string KeyringPlace(const std::string& bank) {
  std::string quoted;
  for (const char character : bank) {
    if (character == '\'') {
      quoted += "'\\''";
    } else {
      quoted += character;
    }
  }
  return " application krofx bank '" + quoted + "'";
}

}  // namespace

std::string ReadFromCommand(const std::string& command, Password& password) {
  int ends[2];
  if (::pipe2(ends, O_CLOEXEC) != 0) return std::strerror(errno);
  FileDescriptor reading(ends[0]);
  pid_t child = 0;
  {
    const FileDescriptor writing(ends[1]);
    const int error = Start(command, writing.Get(), child);
    if (error != 0) return std::string("password-command cannot be run: ") + std::strerror(error);
  }
  std::string problem = password.ReadFrom(reading.Get());
  reading.Close();
  int status = 0;
  while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  const int code = WIFEXITED(status) ? WEXITSTATUS(status) : kFirstSignalStatus + WTERMSIG(status);
  // A command that prints more lines ends by the signal of a closed pipe.
  const bool cut = code == kFirstSignalStatus + SIGPIPE;
  if (code == 0 || (cut && problem.empty())) return problem;
  if (code == kNotFound || code == kNotExecutable) return "password-command cannot be run";
  return "password-command ended with status " + std::to_string(code);
}

bool ReadFromKeyring(const std::string& bank, Password& password) {
  return ReadFromCommand("secret-tool lookup" + KeyringPlace(bank) + " 2>/dev/null", password)
      .empty();
}

std::string StoreInKeyring(const std::string& bank) {
  const std::string command = "secret-tool store --label=krofx" + KeyringPlace(bank);
  const int status = std::system(command.c_str());
  if (WIFEXITED(status) && WEXITSTATUS(status) == 0) return {};
  return "the keyring did not take the password; it needs the command secret-tool and a desktop "
         "session";
}

}  // namespace krofx::command
