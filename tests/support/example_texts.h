// The texts in the folder of examples.

#ifndef KROFX_TESTS_SUPPORT_EXAMPLE_TEXTS_H_
#define KROFX_TESTS_SUPPORT_EXAMPLE_TEXTS_H_

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <string_view>

/// The texts of the examples whose names have this ending, by their names.
inline std::map<std::string, std::string> ExampleTexts(std::string_view ending = ".ofx") {
  std::map<std::string, std::string> texts;
  for (const auto& entry : std::filesystem::directory_iterator(KROFX_EXAMPLES)) {
    if (entry.path().extension() != ending) continue;
    std::ifstream in(entry.path(), std::ios::binary);
    texts[entry.path().filename()].assign(std::istreambuf_iterator<char>(in), {});
  }
  return texts;
}

#endif  // KROFX_TESTS_SUPPORT_EXAMPLE_TEXTS_H_
