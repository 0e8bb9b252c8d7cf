// The options of printing, and the documents that they print.

#include "showing/document_output.h"
#include "command_line/command_line.h"

#include <iterator>

#include "checking/notes.h"
#include "input/mime_parts.h"
#include "output/messages.h"
#include "showing/layout.h"
#include "showing/renderers.h"
#include "showing/section_maker.h"

namespace krofx::command {

namespace {

// A section that lists the parts of a multipart text.
std::vector<Section> MakePartSections(KRFile& multipart) {
  Section section{"parts", "Parts", "", {}, {}};
  Table table{"parts", "Parts", {{"name", "Name"}, {"type", "Type"}, {"size", "Bytes"}}, {}};
  for (const Part& part : FindParts(multipart)) {
    std::optional<Cell> size;
    if (part.file->GetType() == KRTag_MIME) {
      size = Cell{ValueKind::kInteger, std::to_string(part.file->GetMIMEBody().GetStrLength())};
    }
    table.rows.push_back(
        {Cell{ValueKind::kText, part.name}, Cell{ValueKind::kText, part.type}, std::move(size)});
  }
  section.tables.push_back(std::move(table));
  return {std::move(section)};
}

std::string ListOfTables() {
  std::string list;
  for (const std::string_view key : TableKeys())
    list += (list.empty() ? "" : ", ") + std::string(key);
  return list;
}

ExitStatus Report(const Document& document) {
  if (!document.problem.empty()) {
    Complain(document.file, document.problem);
    return kExitUnusable;
  }
  if (!document.notes.empty()) {
    Complain(document.file, document.notes + "; \"krofx check\" lists them");
  }
  return kExitClean;
}

}  // namespace

void AddPrintOptions(const Subcommand& app, PrintOptions& options) {
  options.subcommand = app.GetPath();
  const Option json =
      app.AddFlag("--json", options.json, "Print JSON, with amounts as exact texts");
  const Option csv =
      app.AddFlag("--csv", options.csv, "Print the rows of one table as CSV").Excludes(json);
  app.AddOption("--table", options.table,
                "The table for --csv: transactions (the default), closings, ...")
      .Needs(csv);
  app.AddFlag(
      "--show-identifiers", options.showIdentifiers,
      "Show the numbers of people, cards and payroll accounts in full, not just their last four "
      "characters");
}

ExitStatus CheckPrintOptions(const PrintOptions& options) {
  if (IsTableKey(options.table)) return kExitClean;
  Complain(options.subcommand,
           "--table " + options.table + " is not a table; the tables are " + ListOfTables());
  return kExitWrongUse;
}

Document MakeDocument(const ParsedFile& file, bool showIdentifiers) {
  Document document{file.GetName(),
                    file.GetKind(),
                    file.GetStatus(),
                    file.GetMeaning(),
                    file.GetProblemWithAdvice(),
                    file.GetWarnings().size(),
                    file.CountNotes(),
                    ShownMendings(file),
                    {}};
  for (const OfxFile& ofx : file.GetOfxFiles()) {
    std::vector<Section> sections =
        MakeSections(ReadElements(*ofx.file, ofx.text), showIdentifiers);
    std::move(sections.begin(), sections.end(), std::back_inserter(document.sections));
  }
  for (const krofx::OfxText& text : file.GetTexts()) {
    if (text.kind != krofx::TextKind::kMultipart || text.root == nullptr) continue;
    std::vector<Section> parts = MakePartSections(*text.root);
    std::move(parts.begin(), parts.end(), std::back_inserter(document.sections));
  }
  return document;
}

ExitStatus PrintDocuments(const std::vector<Document>& documents, const PrintOptions& options) {
  ExitStatus exitStatus = kExitClean;
  for (const Document& document : documents) exitStatus = Worse(exitStatus, Report(document));
  const std::string text = options.json  ? RenderJson(documents)
                           : options.csv ? RenderCsv(documents, options.table)
                                         : RenderText(documents);
  return Worse(exitStatus, WriteStandardOutput(text));
}

}  // namespace krofx::command
