// A folder for one test, removed with everything in it, and files in it.

#ifndef KROFX_TESTS_SUPPORT_TEMP_FOLDER_H_
#define KROFX_TESTS_SUPPORT_TEMP_FOLDER_H_

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

/// An empty folder.
class TempFolder {
 public:
  TempFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "krofx-test-XXXXXX").string();
    EXPECT_NE(mkdtemp(name.data()), nullptr) << name;
    m_folder = name;
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(m_folder, ignored);
  }

  /// Where the folder is.
  const std::filesystem::path& Path() const { return m_folder; }
  /// The full path of a file in the folder.
  std::string Name(const std::string& file) const { return (m_folder / file).string(); }
  /// Makes a file, or replaces its content, and returns its full path.
  std::string Put(const std::string& file, const std::string& content) const {
    std::ofstream(m_folder / file, std::ios::binary) << content;
    return Name(file);
  }
  /// The content of a file; empty when there is none.
  std::string Get(const std::string& file) const {
    std::ifstream stream(m_folder / file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
  }
  /// Whether there is a file of that name.
  bool Has(const std::string& file) const { return std::filesystem::exists(m_folder / file); }
  /// How many entries there are.
  std::size_t Entries() const {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(m_folder),
                                                  std::filesystem::directory_iterator()));
  }

 private:
  std::filesystem::path m_folder;
};

/// Makes a folder the working folder of the process for the length of a scope.
class WorkingFolder {
 public:
  explicit WorkingFolder(const std::filesystem::path& folder)
      : m_before(std::filesystem::current_path()) {
    std::filesystem::current_path(folder);
  }
  WorkingFolder(const WorkingFolder&) = delete;
  WorkingFolder& operator=(const WorkingFolder&) = delete;
  ~WorkingFolder() { std::filesystem::current_path(m_before); }

 private:
  std::filesystem::path m_before;
};

#endif  // KROFX_TESTS_SUPPORT_TEMP_FOLDER_H_
