// A folder for files that no one else may see and that are gone at the end.

#ifndef KROFX_COMMAND_SYSTEM_TEMPORARY_FOLDER_H_
#define KROFX_COMMAND_SYSTEM_TEMPORARY_FOLDER_H_

#include <string>

namespace krofx::command {

/// A new folder below ${TMPDIR:-/tmp}, for the user's eyes only, removed with all that is in it.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  /// @return the path with a slash at its end; empty when the folder could not be made.
  const std::string& GetPath() const { return m_path; }

 private:
  std::string m_path;
};

}  // namespace krofx::command

#endif  // KROFX_COMMAND_SYSTEM_TEMPORARY_FOLDER_H_
