// krofx print: what OFX files tell, as text, JSON or CSV.

#include <CLI/CLI.hpp>
#include <memory>

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
};

ExitStatus Print(const Options& options) {
  std::vector<std::string> problems;
  const std::vector<std::string> names = FindInputs(options.files, problems);
  ExitStatus exitStatus = problems.empty() ? kExitClean : kExitUnusable;
  std::vector<Document> documents;
  {
    FileProgress progress(names.size());
    for (const std::string& name : names) {
      progress.Next(name);
      documents.push_back(MakeDocument(ParsedFile(name), options.form.showIdentifiers));
    }
  }
  for (const std::string& problem : problems) Complain("input", problem);
  return Worse(exitStatus, PrintDocuments(documents, options.form));
}

}  // namespace

void AddPrint(CLI::App& app, ExitStatus& exitStatus) {
  CLI::App* const print = app.add_subcommand(
      "print", "Show institutions, accounts, balances and transactions of OFX files");
  const auto options = std::make_shared<Options>();
  print->add_option("FILE", options->files, "OFX files, directories, or - for standard input")
      ->required();
  AddPrintOptions(*print, options->form);
  print->footer("Exit status: 0 printed, 2 something was not usable, 64 wrong use.");
  print->callback([options, &exitStatus] { exitStatus = Print(*options); });
}

}  // namespace krofx::command
