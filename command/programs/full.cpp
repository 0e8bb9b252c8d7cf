// krofx-full: the whole command, with every subcommand. The program krofx starts it for all that it
// does not do itself.

#include "programs/program.h"

namespace {

using namespace krofx::command;

constexpr SubcommandEntry kCertificateSubcommands[] = {
    {"certid", "Print the IDs of certificates, to pin servers by", DeclareCertID}};

constexpr SubcommandEntry kInstitutionSubcommands[] = {
    {"fetch", "Ask an institution, and show what it answers", DeclareFetch},
    {"bank", "Your banks by name, for \"krofx fetch WHAT @NAME\"", DeclareBank},
    {"request", "Make a request to an institution", DeclareRequest},
    {"send", "Send a request to an institution, and write the reply", DeclareSend},
    {"get", "Fetch what an address holds", DeclareGet}};

constexpr SubcommandEntry kHelpSubcommands[] = {
    {"help", "Say more of a command, as \"krofx help print\"", DeclareHelp},
    {"completion", "Print the script that completes words in your shell", DeclareCompletion}};

// Asked by the scripts of completion, not by people.
constexpr SubcommandEntry kUnlistedSubcommands[] = {
    {"complete", "Print what may come next", DeclareComplete}};

constexpr SubcommandGroup kGroups[] = {{kTitleOfFiles, kFileSubcommands},
                                       {kTitleOfFiles, kCertificateSubcommands},
                                       {"Institutions", kInstitutionSubcommands},
                                       {"Help", kHelpSubcommands},
                                       {"", kUnlistedSubcommands}};

constexpr char kUsage[] = "Usage: krofx COMMAND [OPTIONS], krofx --help, krofx --version\n\n";

constexpr char kFooter[] =
    "\"krofx help COMMAND\" says more; \"man krofx\" says all, with examples.\n"
    "Exit codes: 0 done, 1 warnings, 2 not usable, 3 network, 4 refused,\n"
    "5 sign-on refused, 6 cancelled, 64 wrong use.";

ExitStatus Run(int argc, char** argv) {
  const CommandLine commandLine = MakeCommandLine();
  for (const SubcommandGroup& group : kGroups) {
    for (const SubcommandEntry& entry : group.entries) {
      AddSubcommand(commandLine, group.title, entry);
    }
  }
  const Subcommand command = commandLine.GetCommand();
  command.SetShortHelp(kUsage);
  command.SetFooter(kFooter);
  return commandLine.Run(argc, argv);
}

}  // namespace

int main(int argc, char** argv) { return RunProgram(Run, argc, argv); }
