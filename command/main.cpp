// The command krofx: reads, checks, rewrites, requests and exchanges OFX from a shell.

#include <cstdio>
#include <exception>

#include "command_line/command_line.h"
#include "krofx/version.h"
#include "subcommands/subcommands.h"
#include "system/core_file.h"

namespace {

using namespace krofx::command;

constexpr AddSubcommand kSubcommands[] = {AddPrint,   AddCheck,   AddSum,     AddDiff,
                                          AddRewrite, AddRequest, AddExtract, AddCertID,
                                          AddSend,    AddGet,     AddFetch,   AddBank};

constexpr char kFooter[] =
    "FILE may be a directory, whose .ofx, .qfx and .qbo files are taken, or - for standard input.\n"
    "Exit status: 0 clean, 1 warnings (check), 2 not usable, 64 wrong use.\n"
    "\"krofx COMMAND --help\" says more; \"man krofx\" says all.";

ExitStatus Run(int argc, char** argv) {
  const CommandLine commandLine(
      "krofx", "krofx reads, checks, rewrites, requests and exchanges OFX 1.x files.",
      "krofx " KROFX_VERSION);
  commandLine.GetCommand().SetFooter(kFooter);
  for (const AddSubcommand add : kSubcommands) add(commandLine.GetCommand());
  return commandLine.Run(argc, argv);
}

}  // namespace

int main(int argc, char** argv) {
  ForbidCoreFiles();
  try {
    return Run(argc, argv);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "krofx: failed: %s\n", error.what());
    return kExitUnusable;
  }
}
