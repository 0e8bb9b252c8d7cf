// krofx help: what a subcommand's --help prints.

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "command_line/command_line.h"
#include "command_line/nearest_name.h"
#include "output/messages.h"
#include "subcommands/subcommands.h"

namespace krofx::command {

namespace {

struct Options {
  explicit Options(const Subcommand& whole) : command(whole) {}
  Subcommand command;
  std::vector<std::string> names;
};

ExitStatus Help(const Options& options) {
  Subcommand at = options.command;
  for (const std::string& name : options.names) {
    const std::vector<Subcommand> below = at.ListSubcommands();
    const auto found = std::find_if(below.begin(), below.end(), [&name](const Subcommand& each) {
      return each.GetName() == name;
    });
    if (found == below.end()) {
      std::vector<std::string> known;
      known.reserve(below.size());
      for (const Subcommand& each : below) known.push_back(each.GetName());
      Complain("help", name + " is not a subcommand" + SuggestNearest(name, known));
      return kExitWrongUse;
    }
    at = *found;
  }
  return WriteStandardOutput(at.GetHelp());
}

}  // namespace

void DeclareHelp(const Subcommand& help) {
  const auto options = std::make_shared<Options>(help.GetParent());
  help.AddOption("COMMAND", options->names, "A command, such as print, or request transfer");
  help.OnRun(options, Help);
}

}  // namespace krofx::command
