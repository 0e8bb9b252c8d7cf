// Starts the shell with a pipe in place of its standard output or input.

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

constexpr char kNotKept[] =
    "the keyring did not take the password; it needs the command secret-tool and a desktop session";

// Lets the statuses of commands be waited for: they are lost when the one who started krofx had it
// ignore the end of children.
void KeepStatuses() { ::signal(SIGCHLD, SIG_DFL); }

// Starts the command with the pipe's end as a standard stream. The number of the error, or 0.
int Start(const std::string& command, int end, int stream, pid_t& child) {
  posix_spawn_file_actions_t actions;
  ::posix_spawn_file_actions_init(&actions);
  ::posix_spawn_file_actions_adddup2(&actions, end, stream);
  // Services start with these ignored, as krofx may have been, but commands of a shell count on
  // them.
  sigset_t usual;
  ::sigemptyset(&usual);
  for (const int signal : {SIGPIPE, SIGXFSZ}) ::sigaddset(&usual, signal);
  posix_spawnattr_t attributes;
  ::posix_spawnattr_init(&attributes);
  ::posix_spawnattr_setsigdefault(&attributes, &usual);
  ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);
  KeepStatuses();
  std::string shell = "sh";
  std::string option = "-c";
  std::string text = command;
  char* const arguments[] = {shell.data(), option.data(), text.data(), nullptr};
  const int error = ::posix_spawn(&child, "/bin/sh", &actions, &attributes, arguments, environ);
  ::posix_spawnattr_destroy(&attributes);
  ::posix_spawn_file_actions_destroy(&actions);
  return error;
}

// Waits for the command's end. Its status, as the shell has it.
int WaitFor(pid_t child) {
  int status = 0;
  while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : kFirstSignalStatus + WTERMSIG(status);
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

std::string StoreCommand(const std::string& bank) {
  return "secret-tool store --label=krofx" + KeyringPlace(bank);
}

}  // namespace

std::string ReadFromCommand(const std::string& command, Password& password) {
  int ends[2];
  if (::pipe2(ends, O_CLOEXEC) != 0) return std::strerror(errno);
  FileDescriptor reading(ends[0]);
  pid_t child = 0;
  {
    const FileDescriptor writing(ends[1]);
    const int error = Start(command, writing.Get(), STDOUT_FILENO, child);
    if (error != 0) return std::string("password-command cannot be run: ") + std::strerror(error);
  }
  std::string problem = password.ReadFrom(reading.Get());
  reading.Close();
  const int code = WaitFor(child);
  // A command that prints more lines ends by the signal of a closed pipe.
  const bool cut = code == kFirstSignalStatus + SIGPIPE;
  if (code == 0 || cut) return problem;
  // What a command that fails has printed is not a password.
  password.Wipe();
  if (code == kNotFound || code == kNotExecutable) return "password-command cannot be run";
  return "password-command ended with status " + std::to_string(code);
}

bool ReadFromKeyring(const std::string& bank, Password& password) {
  return ReadFromCommand("secret-tool lookup" + KeyringPlace(bank) + " 2>/dev/null", password)
      .empty();
}

std::string StoreInKeyring(const std::string& bank) {
  KeepStatuses();
  const int status = std::system(StoreCommand(bank).c_str());
  return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? "" : kNotKept;
}

std::string StoreInKeyring(const std::string& bank, const Password& password) {
  int ends[2];
  if (::pipe2(ends, O_CLOEXEC) != 0) return std::strerror(errno);
  const FileDescriptor reading(ends[0]);
  FileDescriptor writing(ends[1]);
  // It is shorter than what a pipe holds.
  if (!password.WriteTo(writing.Get())) return kNotKept;
  writing.Close();
  pid_t child = 0;
  if (Start(StoreCommand(bank), reading.Get(), STDIN_FILENO, child) != 0) return kNotKept;
  return WaitFor(child) == 0 ? "" : kNotKept;
}

}  // namespace krofx::command
