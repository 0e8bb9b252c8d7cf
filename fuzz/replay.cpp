// Runs kept inputs through their target, without libFuzzer: krofx_fuzz_replay TARGET FOLDER....
// What once went wrong stays right, and what the fuzzers found runs under each build's sanitizers.

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>

#include "target.h"

namespace {

const krofx::fuzz::Target* FindTarget(const char* name) {
  const krofx::fuzz::Target* target = krofx::fuzz::Target::First();
  while (target != nullptr && std::strcmp(target->Name(), name) != 0) target = target->Next();
  return target;
}

std::string ReadFile(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

}  // namespace

int main(int argc, char** argv) {
  const krofx::fuzz::Target* const target = argc >= 3 ? FindTarget(argv[1]) : nullptr;
  if (target == nullptr) {
    std::fprintf(stderr, "krofx_fuzz_replay TARGET FOLDER..., with one of the targets\n");
    for (const auto* one = krofx::fuzz::Target::First(); one != nullptr; one = one->Next()) {
      std::fprintf(stderr, "  %s\n", one->Name());
    }
    return 64;
  }
  bool anyEmpty = false;
  for (int folder = 2; folder < argc; ++folder) {
    std::size_t count = 0;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(argv[folder], error)) {
      const std::string bytes = ReadFile(entry.path());
      // The last line printed names the input that ended the process.
      std::printf("%s\n", entry.path().filename().c_str());
      std::fflush(stdout);
      target->Run(bytes);
      ++count;
    }
    std::printf("%s: %zu inputs\n", argv[folder], count);
    anyEmpty = anyEmpty || count == 0;
  }
  return anyEmpty ? 1 : 0;
}
