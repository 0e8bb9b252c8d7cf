// Makes the folder, and removes it with all that is in it.

#include "system/temporary_folder.h"

#include <cstdlib>
#include <filesystem>

namespace krofx::command {

TemporaryFolder::TemporaryFolder() {
  const char* const named = std::getenv("TMPDIR");
  std::string path = named == nullptr || *named == '\0' ? "/tmp" : named;
  path += "/krofx-XXXXXX";
  if (::mkdtemp(path.data()) != nullptr) m_path = path + "/";
}

TemporaryFolder::~TemporaryFolder() {
  if (m_path.empty()) return;
  std::error_code ignored;
  std::filesystem::remove_all(m_path, ignored);
}

}  // namespace krofx::command
