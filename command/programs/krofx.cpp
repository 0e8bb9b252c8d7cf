// krofx: the program that users start. It does itself what needs only files, without the libraries
// of the network, which take longer to load than a small file takes to read. For everything else,
// the help among it, the whole command takes its place.

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>

#include "output/messages.h"
#include "programs/full_command.h"
#include "programs/program.h"

namespace {

using namespace krofx::command;

ExitStatus Run(int argc, char** argv) {
  const std::string_view first = argc > 1 ? argv[1] : "";
  if (argc == 2 && first == "--version") {
    return WriteStandardOutput(std::string(kVersionLine) + "\n");
  }
  const auto* const found =
      std::find_if(std::begin(kFileSubcommands), std::end(kFileSubcommands),
                   [first](const SubcommandEntry& entry) { return first == entry.name; });
  if (found == std::end(kFileSubcommands)) return BecomeFullCommand(argc, argv);
  const CommandLine commandLine = MakeCommandLine();
  AddSubcommand(commandLine, kTitleOfFiles, *found);
  return commandLine.Run(argc, argv);
}

}  // namespace

int main(int argc, char** argv) { return RunProgram(Run, argc, argv); }
