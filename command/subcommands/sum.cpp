// krofx sum: what came in and went out, by month, week, name, type, account or currency.

#include <memory>

#include "command_line/command_line.h"
#include "command_line/nearest_name.h"
#include "input/file_progress.h"
#include "input/input_options.h"
#include "output/messages.h"
#include "showing/document_output.h"
#include "showing/row_filter.h"
#include "showing/streamed_rows.h"
#include "showing/sums.h"
#include "subcommands/subcommands.h"
#include "system/ordered_work.h"

namespace krofx::command {

namespace {

constexpr char kName[] = "sum";

struct Options {
  InputOptions input;
  FilterOptions filter;
  std::string by = "month";
  bool json = false;
  bool csv = false;
  bool wide = false;
};

ExitStatus Refuse(const std::string& problem) {
  Complain(kName, problem);
  return kExitWrongUse;
}

// The result of a file, on the thread that read it.
struct Summed {
  Document document;
  Sums sums;
};

ExitStatus SumFiles(const Options& options, const std::vector<std::string>& names,
                    const RowFilter& filter, Sums& sums) {
  ExitStatus exitStatus = kExitClean;
  DuplicateFilter duplicates;
  FileProgress progress(names);
  // Duplicates can only be found in the order of the files.
  const bool inOrder = options.filter.unique;
  const auto make = [&](std::size_t index) {
    progress.Next(names[index]);
    ParsedFile file(names[index], options.input.GetReader(), Holding::kRows, IsRow);
    Summed summed{MakeDocument(file, false), Sums(sums.By())};
    filter.Apply(summed.document);
    if (!inOrder) {
      summed.sums.Add(summed.document);
      summed.document.sections.clear();
      summed.document.arena.reset();
    }
    return summed;
  };
  WorkInOrder<Summed>(names.size(), options.input.CountThreads(), make, [&](Summed summed) {
    exitStatus = Worse(exitStatus, ReportProblems(summed.document));
    if (inOrder) {
      duplicates.Apply(summed.document);
      sums.Add(summed.document);
    } else {
      sums.Add(summed.sums);
    }
    exitStatus = Worse(exitStatus, ReportChange(summed.document));
  });
  return exitStatus;
}

ExitStatus Sum(const Options& options) {
  const std::optional<SumBy> by = ParseSumBy(options.by);
  if (!by) {
    return Refuse("--by " + options.by + " is not known" + SuggestNearest(options.by, SumNames()) +
                  "; write month, week, name, type, account or currency");
  }
  std::string problem;
  const RowFilter filter(options.filter, problem);
  if (!problem.empty()) return Refuse(problem);
  std::vector<std::string> names;
  ExitStatus exitStatus = FindInputs(options.input, kName, names);
  if (exitStatus == kExitWrongUse) return exitStatus;
  Sums sums(*by);
  exitStatus = Worse(exitStatus, SumFiles(options, names, filter, sums));
  const std::string text = options.json  ? sums.Json()
                           : options.csv ? sums.Csv()
                                         : sums.Text(FormOfStandardOutput(options.wide));
  return Worse(exitStatus, WriteStandardOutput(text));
}

}  // namespace

void DeclareSum(const Subcommand& sum) {
  const auto options = std::make_shared<Options>();
  AddInputOptions(sum, options->input);
  sum.AddOption("--by", options->by,
                "What to add up by: month (the default), week, name, type, account or currency");
  const Option json =
      sum.AddFlag("--json", options->json, "Print JSON, with amounts as exact texts");
  sum.AddFlag("--csv", options->csv, "Print CSV").Excludes(json);
  sum.AddFlag("--wide", options->wide, "Show whole texts, whatever the terminal");
  AddFilterOptions(sum, options->filter);
  sum.SetFooter("Exit status: 0 printed, 2 something was not usable, 64 wrong use.");
  sum.OnRun(options, Sum);
}

}  // namespace krofx::command
