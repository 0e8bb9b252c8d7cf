// krofx completion: the scripts for shells; and krofx complete, which those scripts ask.

#include <memory>
#include <string>
#include <vector>

#include "command_line/command_line.h"
#include "completion/candidates.h"
#include "completion/scripts.h"
#include "output/messages.h"
#include "output/safe_text.h"
#include "subcommands/subcommands.h"

namespace krofx::command {

namespace {

struct ScriptOptions {
  std::string shell;
};

struct WordOptions {
  explicit WordOptions(const Subcommand& whole) : command(whole) {}
  Subcommand command;
  std::vector<std::string> words;
};

ExitStatus PrintScript(const ScriptOptions& options) {
  const std::string_view script = CompletionScript(options.shell);
  if (!script.empty()) return WriteStandardOutput(script);
  Complain("completion", "the shells are bash, zsh and fish");
  return kExitWrongUse;
}

ExitStatus PrintCandidates(const WordOptions& options) {
  std::string text;
  for (const std::string& each : FindCandidates(options.command, options.words)) {
    const std::size_t tab = each.find('\t');
    text += SafeLine(each.substr(0, tab));
    if (tab != std::string::npos) text += "\t" + SafeLine(each.substr(tab + 1));
    text += '\n';
  }
  return WriteStandardOutput(text);
}

}  // namespace

void DeclareCompletion(const Subcommand& completion) {
  const auto options = std::make_shared<ScriptOptions>();
  completion.AddOption("SHELL", options->shell, "bash, zsh or fish").Required();
  completion.SetFooter(
      "In bash: source <(krofx completion bash). In zsh: source <(krofx completion zsh), after "
      "compinit. In fish: krofx completion fish | source.\n"
      "An installed krofx has the scripts where the shells look for them.");
  completion.OnRun(options, PrintScript);
}

void DeclareComplete(const Subcommand& complete) {
  const auto words = std::make_shared<WordOptions>(complete.GetParent());
  complete.AddOption("WORD", words->words, "The words so far, after --");
  complete.OnRun(words, PrintCandidates);
}

}  // namespace krofx::command
