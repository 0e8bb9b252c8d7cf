// Writes beside the target and renames, so that a failure leaves the old file.

#include "output/output_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "output/messages.h"
#include "system/file_descriptor.h"
#include "system/interruption.h"

namespace krofx::command {

namespace {

bool WriteAll(int descriptor, const KRBuffer& text) {
  const char* at = text.GetBufferPtr();
  std::size_t left = text.GetBufferSize();
  while (left > 0) {
    const ssize_t written = ::write(descriptor, at, left);
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return false;
    at += written;
    left -= static_cast<std::size_t>(written);
  }
  return true;
}

mode_t ModeFor(const std::string& target, Privacy privacy) {
  if (privacy == Privacy::kPrivate) return S_IRUSR | S_IWUSR;
  struct stat status {};
  if (::stat(target.c_str(), &status) == 0) return status.st_mode & 07777;
  const mode_t mask = ::umask(0);
  ::umask(mask);
  return 0666 & ~mask;
}

// Where a name leads: a link stays, and what it names is replaced.
std::string TargetOf(const std::string& name) {
  std::error_code error;
  const std::filesystem::path target = std::filesystem::canonical(name, error);
  return error ? name : target.string();
}

// A name for a file that has none yet; an existing one is left alone, with errno set.
bool Rename(const std::string& from, const std::string& to, Existing existing) {
  if (existing == Existing::kReplaced) return std::rename(from.c_str(), to.c_str()) == 0;
  return ::link(from.c_str(), to.c_str()) == 0 && ::unlink(from.c_str()) == 0;
}

// For mkostemp, which completes it.
std::string NameAside(const std::string& target) { return target + ".XXXXXX"; }

bool IsStandardOutput(const std::string& name) { return name.empty() || name == "-"; }

// Whether there is something that no file takes the place of, which is complained of.
bool IsOccupied(const std::string& name, const std::string& target) {
  struct stat status {};
  if (::stat(target.c_str(), &status) != 0 || S_ISREG(status.st_mode)) return false;
  Complain(name, "it is not a plain file and is left alone; name another one");
  return true;
}

ExitStatus ComplainOfFailure(const std::string& name) {
  Complain(name, std::string("it cannot be written: ") + std::strerror(errno));
  return kExitUnusable;
}

bool WriteAside(const KRBuffer& text, const std::string& target, Privacy privacy,
                Existing existing) {
  // A signal takes effect when the file is whole in its place, or gone.
  const Interruption interruption;
  std::string aside = NameAside(target);
  FileDescriptor file(::mkostemp(aside.data(), O_CLOEXEC));
  if (!file) return false;
  if (WriteAll(file.Get(), text) && ::fchmod(file.Get(), ModeFor(target, privacy)) == 0 &&
      ::fsync(file.Get()) == 0 && file.Close() && Rename(aside, target, existing)) {
    return true;
  }
  const int reason = errno;
  ::unlink(aside.c_str());
  errno = reason;
  return false;
}

}  // namespace

ExitStatus WriteOutput(const KRBuffer& text, const std::string& name, Privacy privacy,
                       Existing existing) {
  if (IsStandardOutput(name)) {
    if (WriteAll(STDOUT_FILENO, text)) return kExitClean;
    Complain("standard output", std::strerror(errno));
    return kExitUnusable;
  }
  const std::string target = TargetOf(name);
  if (IsOccupied(name, target)) return kExitUnusable;
  return WriteAside(text, target, privacy, existing) ? kExitClean : ComplainOfFailure(name);
}

ExitStatus TryOutput(const std::string& name) {
  if (IsStandardOutput(name)) return kExitClean;
  const std::string target = TargetOf(name);
  if (IsOccupied(name, target)) return kExitUnusable;
  const Interruption interruption;
  std::string aside = NameAside(target);
  const FileDescriptor file(::mkostemp(aside.data(), O_CLOEXEC));
  if (!file) return ComplainOfFailure(name);
  ::unlink(aside.c_str());
  return kExitClean;
}

}  // namespace krofx::command
