// krofx print: what OFX files hold, as text, JSON or CSV.

#include <memory>

#include "command_line/command_line.h"
#include "input/input_files.h"
#include "output/file_progress.h"
#include "output/messages.h"
#include "showing/document_output.h"
#include "subcommands/subcommands.h"

namespace krofx::command {

namespace {

struct Options {
  std::vector<std::string> files;
  PrintOptions form;
  bool strict = false;
};

ExitStatus Print(const Options& options) {
  if (options.form.AsksForTables()) return PrintTables();
  const ExitStatus checked = CheckPrintOptions(options.form);
  if (checked != kExitClean) return checked;
  std::vector<std::string> files = options.files;
  if (!DefaultToStandardInput(files)) return ComplainOfNoFile(options.form.subcommand);
  std::vector<std::string> problems;
  const std::vector<std::string> names = FindInputs(files, problems);
  ExitStatus exitStatus = problems.empty() ? kExitClean : kExitUnusable;
  const Reader reader = options.strict ? Reader::kStrict : Reader::kMending;
  std::vector<Document> documents;
  {
    FileProgress progress(names.size());
    for (const std::string& name : names) {
      progress.Next(name);
      documents.push_back(MakeDocument(ParsedFile(name, reader), options.form.showIdentifiers));
    }
  }
  for (const std::string& problem : problems) Complain("input", problem);
  return Worse(exitStatus, PrintDocuments(documents, options.form));
}

}  // namespace

void AddPrint(const Subcommand& parent) {
  const Subcommand print =
      parent.Add("print", "Show institutions, accounts, balances and transactions of OFX files");
  const auto options = std::make_shared<Options>();
  print.AddOption("FILE", options->files, "OFX files, directories, or - for standard input");
  AddPrintOptions(print, options->form);
  print.AddFlag("--strict", options->strict, "Mend nothing: take the text to the letter");
  print.SetFooter("Exit status: 0 printed, 2 something was not usable, 64 wrong use.");
  print.OnRun(options, Print);
}

}  // namespace krofx::command
