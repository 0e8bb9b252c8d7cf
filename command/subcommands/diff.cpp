// krofx diff: which transactions are new, gone or changed from one download to another.

#include <memory>

#include "command_line/command_line.h"
#include "input/input_options.h"
#include "output/messages.h"
#include "output/safe_text.h"
#include "showing/comparison.h"
#include "showing/document_output.h"
#include "showing/streamed_rows.h"
#include "subcommands/subcommands.h"
#include "system/ordered_work.h"

namespace krofx::command {

namespace {

constexpr char kName[] = "diff";

struct Options {
  std::string oldFile;
  std::string newFile;
  bool json = false;
  bool strict = false;
};

ExitStatus Read(const Options& options, const std::string& file, std::vector<Document>& documents) {
  InputOptions input;
  input.files = {file};
  input.strict = options.strict;
  std::vector<std::string> names;
  ExitStatus exitStatus = FindInputs(input, kName, names);
  const auto make = [&](std::size_t index) {
    ParsedFile parsed(names[index], input.GetReader(), Holding::kRows, IsRow);
    Document document = MakeDocument(parsed, false);
    HoldRows(document);
    return document;
  };
  WorkInOrder<Document>(names.size(), input.CountThreads(), make, [&](Document document) {
    exitStatus = Worse(exitStatus, Worse(ReportProblems(document), ReportChange(document)));
    documents.push_back(std::move(document));
  });
  return exitStatus;
}

ExitStatus Diff(const Options& options) {
  std::vector<Document> before;
  std::vector<Document> after;
  const ExitStatus readable =
      Worse(Read(options, options.oldFile, before), Read(options, options.newFile, after));
  // What could not be read would count as gone or new.
  if (readable != kExitClean) return kExitUnusable;
  Comparison comparison;
  for (const Document& document : before) comparison.Add(Comparison::Side::kOld, document);
  for (const Document& document : after) comparison.Add(Comparison::Side::kNew, document);
  const std::string text =
      options.json ? comparison.JsonText(SafeLine(options.oldFile), SafeLine(options.newFile))
                   : comparison.Text(FormOfStandardOutput(true));
  return Worse(WriteStandardOutput(text), comparison.IsSame() ? kExitClean : kExitWarnings);
}

}  // namespace

void DeclareDiff(const Subcommand& diff) {
  const auto options = std::make_shared<Options>();
  diff.AddOption("OLD", options->oldFile, "The earlier OFX file, directory, or -").Required();
  diff.AddOption("NEW", options->newFile, "The later one").Required();
  diff.AddFlag("--json", options->json, "Print JSON");
  diff.AddFlag("--strict", options->strict, "Mend nothing: take the text to the letter");
  diff.SetFooter(
      "Transactions are compared by account and identifier (FITID).\n"
      "Exit status: 0 no difference, 1 differences, 2 something was not usable, 64 wrong use.");
  diff.OnRun(options, Diff);
}

}  // namespace krofx::command
