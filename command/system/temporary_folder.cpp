// Makes the folder, and removes it with all that is in it.

#include "system/temporary_folder.h"

#include <cstdlib>
#include <filesystem>

namespace krofx::command {

TemporaryFolder::TemporaryFolder() {
  std::error_code error;
  std::string path = std::filesystem::temp_directory_path(error) / "krofx-XXXXXX";
  if (!error && ::mkdtemp(path.data()) != nullptr) m_path = path + "/";
}

TemporaryFolder::~TemporaryFolder() {
  if (m_path.empty()) return;
  std::error_code ignored;
  std::filesystem::remove_all(m_path, ignored);
}

}  // namespace krofx::command
