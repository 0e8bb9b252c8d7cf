// krofx check: whether OFX files are in order, and what is not.

#include <memory>

#include "checking/report.h"
#include "command_line/command_line.h"
#include "input/input_files.h"
#include "output/file_progress.h"
#include "output/messages.h"
#include "subcommands/subcommands.h"

namespace krofx::command {

namespace {

struct Options {
  std::vector<std::string> files;
  bool json = false;
  bool strict = false;
};

ExitStatus Check(const Options& options) {
  std::vector<std::string> files = options.files;
  if (!DefaultToStandardInput(files)) return ComplainOfNoFile("check");
  std::vector<std::string> problems;
  const std::vector<std::string> names = FindInputs(files, problems);
  ExitStatus exitStatus = problems.empty() ? kExitClean : kExitUnusable;
  Json reports = Json::Array();
  std::string text;
  {
    FileProgress progress(names.size());
    for (const std::string& name : names) {
      progress.Next(name);
      const Report report(name, options.strict ? Reader::kStrict : Reader::kMending);
      exitStatus = Worse(exitStatus, report.verdict);
      if (options.json) {
        reports.Append(JsonOf(report));
      } else {
        text += TextOf(report);
      }
    }
  }
  for (const std::string& problem : problems) Complain("input", problem);
  if (options.json) text = Json::TextOf("krofx-check", std::move(reports));
  return Worse(exitStatus, WriteStandardOutput(text));
}

}  // namespace

void AddCheck(const Subcommand& parent) {
  const Subcommand check =
      parent.Add("check", "Say whether OFX files are in order, and what is not");
  const auto options = std::make_shared<Options>();
  check.AddOption("FILE", options->files, "OFX files, directories, or - for standard input");
  check.AddFlag("--json", options->json, "Print JSON");
  check.AddFlag("--strict", options->strict, "Mend nothing: take the text to the letter");
  check.SetFooter(
      "Exit status: 0 clean, 1 warnings, mendings or something missing, 2 not usable, 64 wrong "
      "use.");
  check.OnRun(options, Check);
}

}  // namespace krofx::command
