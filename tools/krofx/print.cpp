// krofx print: what OFX files tell, as text, JSON or CSV.

#include <CLI/CLI.hpp>
#include <memory>

#include "families.h"
#include "input.h"
#include "parsed_file.h"
#include "parts.h"
#include "progress.h"
#include "render.h"

namespace krofx::command {

namespace {

struct Options {
  std::vector<std::string> files;
  bool json = false;
  bool csv = false;
  bool showIdentifiers = false;
  std::string table = "transactions";
};

Document MakeDocument(const std::string& name, bool showIdentifiers) {
  const ParsedFile file(name);
  Document document{file.GetName(),
                    file.GetKind(),
                    file.GetStatus(),
                    file.GetMeaning(),
                    file.GetProblem(),
                    file.GetWarnings().size(),
                    {}};
  for (KRFile* ofx : file.GetOfxFiles()) {
    std::vector<Section> sections = MakeSections(ReadElements(*ofx), showIdentifiers);
    std::move(sections.begin(), sections.end(), std::back_inserter(document.sections));
  }
  if (file.GetKind() == "multipart") {
    std::vector<Section> parts = MakePartSections(*file.GetRoot());
    std::move(parts.begin(), parts.end(), std::back_inserter(document.sections));
  }
  return document;
}

// What the output itself cannot say goes to standard error.
ExitStatus Report(const Document& document) {
  if (!document.problem.empty()) {
    Complain(document.file, document.problem);
    return kExitUnusable;
  }
  if (document.warnings > 0) {
    Complain(document.file, std::to_string(document.warnings) +
                                (document.warnings == 1 ? " warning" : " warnings") +
                                "; \"krofx check\" lists them");
  }
  return kExitClean;
}

ExitStatus Print(const Options& options) {
  std::vector<std::string> problems;
  const std::vector<std::string> names = FindInputs(options.files, problems);
  ExitStatus exitStatus = problems.empty() ? kExitClean : kExitUnusable;
  std::vector<Document> documents;
  {
    Progress progress(names.size());
    for (const std::string& name : names) {
      progress.Next(name);
      documents.push_back(MakeDocument(name, options.showIdentifiers));
    }
  }
  for (const std::string& problem : problems) Complain("input", problem);
  for (const Document& document : documents) exitStatus = Worse(exitStatus, Report(document));
  const std::string text = options.json  ? RenderJson(documents)
                           : options.csv ? RenderCsv(documents, options.table)
                                         : RenderText(documents);
  return Worse(exitStatus, WriteStandardOutput(text));
}

}  // namespace

void AddPrint(CLI::App& app, ExitStatus& exitStatus) {
  CLI::App* const print = app.add_subcommand(
      "print", "Show institutions, accounts, balances and transactions of OFX files");
  const auto options = std::make_shared<Options>();
  print->add_option("FILE", options->files, "OFX files, directories, or - for standard input")
      ->required();
  CLI::Option* const json =
      print->add_flag("--json", options->json, "Print JSON, with amounts as exact texts");
  CLI::Option* const csv =
      print->add_flag("--csv", options->csv, "Print the rows of one table as CSV")->excludes(json);
  print
      ->add_option("--table", options->table,
                   "The table for --csv: transactions (the default), closings, ...")
      ->needs(csv);
  print->add_flag("--show-identifiers", options->showIdentifiers,
                  "Show personal identifiers in full, not just their last four characters");
  print->footer("Exit status: 0 printed, 2 something was not usable, 64 wrong use.");
  print->callback([options, &exitStatus] { exitStatus = Print(*options); });
}

}  // namespace krofx::command
