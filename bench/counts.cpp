// Runs each operation once, for instruments that count what it takes:
//
//   krofx_counts                  all operations, for callgrind: see count.py
//   krofx_counts repeat N NAME    one operation N times, for perf
//   krofx_counts memory N         the peak of memory that a statement of N transactions takes to
//                                 parse, in bytes, and the size of its text

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>

#include "counted.h"
#include "operations.h"

namespace {

constexpr int kTransactions = 1000;

// The highest amount of memory that the process has had, in bytes.
unsigned long PeakMemory() {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.rfind("VmHWM:", 0) == 0) return 1024 * std::strtoul(line.c_str() + 6, nullptr, 10);
  }
  return 0;
}

int Repeat(int times, const char* name) {
  for (const bench::Operation& operation :
       bench::AllOperations(20 * kTransactions, KROFX_EXAMPLES_FOLDER)) {
    if (operation.name != name) continue;
    for (int i = 0; i < times; ++i) {
      operation.prepare();
      if (!bench::RunCounted(operation)) return 1;
    }
    return 0;
  }
  std::fprintf(stderr, "there is no operation %s\n", name);
  return 1;
}

int ShowMemory(int transactions) {
  const bench::Operation parse = bench::ParseBank(transactions);
  const unsigned long before = PeakMemory();
  if (!parse.run()) return 1;
  // The text is in memory twice before the parse: as it was made, and in its buffer.
  std::printf("%lu %zu\n", PeakMemory() - before + parse.bytes, parse.bytes);
  return 0;
}

int RunAll() {
  for (const bench::Operation& operation :
       bench::AllOperations(kTransactions, KROFX_EXAMPLES_FOLDER)) {
    // The first time fills what is kept for later ones.
    operation.prepare();
    operation.run();
    operation.prepare();
    if (!bench::RunCounted(operation)) {
      std::fprintf(stderr, "failed: %s\n", operation.name.c_str());
      return 1;
    }
    std::printf("%s\n", operation.name.c_str());
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 4 && std::strcmp(argv[1], "repeat") == 0) return Repeat(std::atoi(argv[2]), argv[3]);
  if (argc == 3 && std::strcmp(argv[1], "memory") == 0) return ShowMemory(std::atoi(argv[2]));
  return RunAll();
}
