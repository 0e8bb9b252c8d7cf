// Reads the variables of the XDG base directories.

#include "banks/places.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

namespace krofx::command {

namespace {

// The folder that a variable names, or one in the user's home. A relative path counts as none, as
// the rules have it.
std::string FolderOf(const char* variable, const char* inHome) {
  const char* const named = std::getenv(variable);
  if (named != nullptr && *named == '/') return std::string(named) + "/krofx";
  const char* const home = std::getenv("HOME");
  if (home == nullptr || *home != '/') return "";
  return std::string(home) + inHome + "/krofx";
}

}  // namespace

std::string BanksFile() {
  const std::string folder = FolderOf("XDG_CONFIG_HOME", "/.config");
  return folder.empty() ? "" : folder + "/banks.toml";
}

std::string StateFolder() { return FolderOf("XDG_STATE_HOME", "/.local/state"); }

std::string DataFolder() { return FolderOf("XDG_DATA_HOME", "/.local/share"); }

std::string MakePrivateFolder(const std::string& path) {
  if (path.empty()) return "there is no home folder; set HOME";
  for (std::size_t end = 1; end != std::string::npos;) {
    end = path.find('/', end);
    const std::string part = path.substr(0, end);
    if (::mkdir(part.c_str(), S_IRWXU) != 0 && errno != EEXIST) {
      return part + ": the folder cannot be made: " + std::strerror(errno);
    }
    if (end != std::string::npos) ++end;
  }
  return "";
}

}  // namespace krofx::command
