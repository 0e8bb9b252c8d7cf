// krofx check: whether OFX files are in order, and what is not.

#include <memory>

#include "checking/report.h"
#include "checking/summary.h"
#include "command_line/command_line.h"
#include "input/file_progress.h"
#include "input/input_options.h"
#include "output/messages.h"
#include "subcommands/subcommands.h"
#include "system/ordered_work.h"

namespace krofx::command {

namespace {

struct Options {
  InputOptions input;
  bool json = false;
  bool details = false;
  bool quiet = false;
};

// What is said of a file.
struct Checked {
  ExitStatus verdict;
  std::string text;
};

Checked CheckFile(const std::string& name, const Options& options, bool isAlone) {
  const Report report(name, options.input.GetReader());
  Checked checked{report.verdict, ""};
  if (options.quiet) return checked;
  if (options.json) {
    checked.text = JsonOf(report).Text(Json::kFileIndent);
    return checked;
  }
  // Of many files those that are clean are only counted.
  if (isAlone || options.details || report.verdict != kExitClean) {
    checked.text = report.file.GetName() + ": " + SummaryOf(report) + "\n";
  }
  if (options.details) checked.text += DetailsOf(report);
  return checked;
}

ExitStatus CheckFiles(const std::vector<std::string>& names, const Options& options) {
  ExitStatus exitStatus = kExitClean;
  VerdictCounts counts;
  std::string text = options.json ? Json::HeadOf("krofx-check") : "";
  {
    FileProgress progress(names);
    const auto make = [&](std::size_t index) {
      progress.Next(names[index]);
      return CheckFile(names[index], options, names.size() == 1);
    };
    bool any = false;
    WorkInOrder<Checked>(names.size(), options.input.CountThreads(), make, [&](Checked checked) {
      exitStatus = Worse(exitStatus, checked.verdict);
      counts.Add(checked.verdict);
      if (options.json) text += any ? ",\n    " : "\n    ";
      any = true;
      text += checked.text;
    });
  }
  if (options.json) {
    text += Json::TailOf(!names.empty());
  } else if (names.size() > 1 && !options.quiet) {
    text += counts.Text() + "\n";
  }
  return options.quiet ? exitStatus : Worse(exitStatus, WriteStandardOutput(text));
}

ExitStatus Check(const Options& options) {
  std::vector<std::string> names;
  const ExitStatus found = FindInputs(options.input, "check", names);
  return found == kExitWrongUse ? found : Worse(found, CheckFiles(names, options));
}

}  // namespace

void DeclareCheck(const Subcommand& check) {
  const auto options = std::make_shared<Options>();
  AddInputOptions(check, options->input);
  const Option json = check.AddFlag("--json", options->json, "Print JSON, with all details");
  const Option details = check.AddFlag("--details", options->details,
                                       "List each warning, mending and missing tag with its place");
  check.AddFlag("--quiet", options->quiet, "Print nothing; the exit status says it")
      .Excludes(json)
      .Excludes(details);
  check.SetFooter(
      "Exit status: 0 clean, 1 warnings, mendings or something missing, 2 not usable, 64 wrong "
      "use.");
  check.OnRun(options, Check);
}

}  // namespace krofx::command
