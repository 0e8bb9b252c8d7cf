// How the programs end when something fails that no subcommand expects.

#include "programs/program.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <new>

#include "support/redirected_stream.h"
#include "support/temp_folder.h"

namespace krofx::command {
namespace {

TEST(Program, SaysInALineThatMemoryIsExhausted) {
  const TempFolder folder;
  const auto run = [&folder](ExitStatus (*function)(int, char**)) {
    const RedirectedStream errors(STDERR_FILENO, folder.Name("err"));
    return RunProgram(function, 0, nullptr);
  };
  EXPECT_EQ(run([](int, char**) -> ExitStatus { throw std::bad_alloc(); }), kExitUnusable);
  EXPECT_EQ(folder.Get("err"), "krofx: failed: std::bad_alloc\n");
  EXPECT_EQ(run([](int, char**) { return kExitRefused; }), kExitRefused);
  EXPECT_EQ(folder.Get("err"), "");
}

}  // namespace
}  // namespace krofx::command
