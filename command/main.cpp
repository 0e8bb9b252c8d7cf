// The command krofx: reads, checks, rewrites, requests and exchanges OFX from a shell.

#include <cstdio>
#include <exception>
#include <span>

#include "command_line/command_line.h"
#include "krofx/version.h"
#include "subcommands/subcommands.h"
#include "system/core_file.h"

namespace {

using namespace krofx::command;

// The subcommands under the titles that the help lists them by.
constexpr AddSubcommand kOfFiles[] = {AddPrint,   AddSum,     AddCheck, AddDiff,
                                      AddRewrite, AddExtract, AddCertID};
constexpr AddSubcommand kOfInstitutions[] = {AddFetch, AddBank, AddRequest, AddSend, AddGet};
constexpr AddSubcommand kOfHelp[] = {AddHelp, AddCompletion};

constexpr struct {
  const char* title;
  std::span<const AddSubcommand> subcommands;
} kGroups[] = {{"Files (FILE may be a folder, or - for standard input)", kOfFiles},
               {"Institutions", kOfInstitutions},
               {"Help", kOfHelp}};

constexpr char kUsage[] = "Usage: krofx COMMAND [OPTIONS], krofx --help, krofx --version\n\n";

constexpr char kFooter[] =
    "\"krofx help COMMAND\" says more; \"man krofx\" says all, with examples.\n"
    "Exit codes: 0 done, 1 warnings, 2 not usable, 3 network, 4 refused,\n"
    "5 sign-on refused, 6 cancelled, 64 wrong use.";

ExitStatus Run(int argc, char** argv) {
  const CommandLine commandLine(
      "krofx", "krofx reads, checks, rewrites, requests and exchanges OFX 1.x files.",
      "krofx " KROFX_VERSION);
  const Subcommand& command = commandLine.GetCommand();
  for (const auto& group : kGroups) {
    for (const AddSubcommand add : group.subcommands) {
      const std::size_t before = command.ListSubcommands().size();
      add(command);
      command.ListSubcommands()[before].SetGroup(group.title);
    }
  }
  command.SetShortHelp(kUsage);
  command.SetFooter(kFooter);
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
