// The options of printing, and the documents that they print.

#include "showing/document_output.h"

#include <algorithm>
#include <iterator>

#include "checking/notes.h"
#include "command_line/command_line.h"
#include "command_line/nearest_name.h"
#include "input/mime_parts.h"
#include "output/messages.h"
#include "showing/held_transactions.h"
#include "showing/layout.h"
#include "showing/renderers.h"
#include "showing/section_maker.h"
#include "showing/streamed_rows.h"

namespace krofx::command {

namespace {

// A section that lists the parts of a multipart text.
Section MakePartSection(KRFile& multipart, TextArena& arena) {
  Table table{&kPartsTable};
  for (const Part& part : FindParts(multipart)) {
    Cell size;
    if (part.file->GetType() == KRTag_MIME) {
      const std::string bytes = std::to_string(part.file->GetMIMEBody().GetStrLength());
      size = {ValueKind::kInteger, arena.Copy(bytes)};
    }
    table.cells.insert(table.cells.end(), {Cell(ValueKind::kText, arena.Copy(part.name)),
                                           Cell(ValueKind::kText, arena.Copy(part.type)), size});
  }
  Section section{kPartsTable.key, kPartsTable.title};
  section.tables.push_back(std::move(table));
  return section;
}

std::unique_ptr<RowWriter> MakeRowWriter(const PrintOptions& options,
                                         const std::vector<RowColumn>& columns) {
  if (options.csv) return std::make_unique<CsvWriter>(columns);
  return std::make_unique<JsonLinesWriter>(columns);
}

}  // namespace

void AddPrintOptions(const Subcommand& app, PrintOptions& options) {
  options.subcommand = app.GetPath();
  const Option json =
      app.AddFlag("--json", options.json, "Print JSON, with amounts as exact texts");
  const Option csv =
      app.AddFlag("--csv", options.csv, "Print the rows of one table as CSV").Excludes(json);
  app.AddFlag("--json-lines", options.jsonLines,
              "Print the rows of one table as JSON, one object on a line")
      .Excludes(json)
      .Excludes(csv);
  app.AddOption("--table", options.table,
                "The table for --csv and --json-lines: transactions (the default), closings, ...; "
                "help lists them");
  app.AddFlag("--wide", options.wide, "Show all columns and whole texts, whatever the terminal");
  app.AddFlag(
      "--show-identifiers", options.showIdentifiers,
      "Show the numbers of people, cards and payroll accounts in full, not just their last four "
      "characters");
}

const std::string& PrintOptions::GetTable() const {
  static const std::string usual = "transactions";
  return table.empty() ? usual : table;
}

ExitStatus CheckPrintOptions(const PrintOptions& options) {
  if (!IsTableKey(options.GetTable())) {
    std::string list;
    for (const std::string_view key : TableKeys()) {
      list.append(list.empty() ? "" : ", ").append(key);
    }
    Complain(options.subcommand, "--table " + options.table + " is not a table" +
                                     SuggestNearest(options.table, TableKeys()) +
                                     "; the tables are " + list);
    return kExitWrongUse;
  }
  if (!options.table.empty() && !options.ShowsRows()) {
    Complain(options.subcommand, "--table needs --csv or --json-lines");
    return kExitWrongUse;
  }
  return kExitClean;
}

ExitStatus PrintTables() {
  std::size_t width = 0;
  for (const std::string_view key : TableKeys()) width = std::max(width, key.size());
  std::string text;
  for (const std::string_view key : TableKeys()) {
    text.append(key).append(width + 2 - key.size(), ' ').append(OwnersOf(key)).append("\n");
  }
  return WriteStandardOutput(text);
}

Document MakeDocument(ParsedFile& file, bool showIdentifiers) {
  Document document{file.GetName(),
                    file.GetKind(),
                    file.GetStatus(),
                    file.GetMeaning(),
                    file.GetProblemWithAdvice(),
                    file.GetWarnings().size(),
                    file.CountNotes(),
                    ShownMendings(file),
                    {},
                    std::make_shared<TextArena>(),
                    nullptr};
  TextArena& arena = *document.arena;
  if (file.GetStream() != nullptr) {
    document.streamed =
        std::make_shared<StreamedRows>(file.GetStream(), showIdentifiers, file.MayHaveMovedCards());
  }
  for (const OfxFile& ofx : file.GetOfxFiles()) {
    HeldTransactions held(*ofx.file, *ofx.text, showIdentifiers, file.MayHaveMovedCards());
    const Element& elements = ReadElements(*ofx.file, arena, ofx.text, file.MayHaveMovedCards());
    held.FindLists(elements);
    if (document.streamed != nullptr) document.streamed->FindLists(*ofx.file, elements);
    std::vector<Section> sections =
        MakeSections(elements, arena, showIdentifiers, held, document.streamed.get());
    std::move(sections.begin(), sections.end(), std::back_inserter(document.sections));
  }
  for (const krofx::OfxText& text : file.GetTexts()) {
    if (text.kind != krofx::TextKind::kMultipart || text.root == nullptr) continue;
    document.sections.push_back(MakePartSection(*text.root, arena));
  }
  return document;
}

ExitStatus ReportProblems(const Document& document) {
  if (!document.problem.empty()) {
    Complain(document.file, document.problem);
    return kExitUnusable;
  }
  if (!document.notes.empty()) {
    Complain(document.file, document.notes + "; \"krofx check\" lists them");
  }
  return kExitClean;
}

ExitStatus ReportChange(const Document& document) {
  if (document.streamed == nullptr || document.streamed->IsWhole()) return kExitClean;
  Complain(document.file, "it was changed while it was read");
  return kExitUnusable;
}

void HoldRows(Document& document) {
  for (Section& section : document.sections) {
    for (Table& table : section.tables) {
      if (table.source == nullptr) continue;
      table.ForEachRow([&](Row row) {
        for (Cell cell : row) {
          cell.text = document.arena->Copy(cell.text);
          table.cells.push_back(cell);
        }
      });
      table.source = nullptr;
    }
  }
}

DocumentForm::DocumentForm(const PrintOptions& options)
    : m_options(options),
      m_text(FormOfStandardOutput(options.wide)),
      m_columns(options.ShowsRows() ? RowColumnsOf(options.GetTable()) : std::vector<RowColumn>()) {
}

std::string DocumentForm::Head() const {
  if (m_options.json) return JsonHead();
  return m_options.ShowsRows() ? MakeRowWriter(m_options, m_columns)->Head() : "";
}

void DocumentForm::Render(const Document& document, TextOutput& out) const {
  if (m_options.json) {
    AppendJson(out, document);
  } else if (m_options.ShowsRows()) {
    AppendRows(out, document, m_options.GetTable(), *MakeRowWriter(m_options, m_columns));
  } else {
    AppendText(out, document, m_text);
  }
}

std::string DocumentForm::Separator() const {
  if (m_options.json) return ",";
  return m_options.ShowsRows() ? "" : "\n";
}

std::string DocumentForm::Tail(bool any) const { return m_options.json ? JsonTail(any) : ""; }

ExitStatus PrintDocument(const Document& document, const PrintOptions& options) {
  const ExitStatus exitStatus = ReportProblems(document);
  const DocumentForm form(options);
  TextOutput out(TextOutput::Mode::kWritten);
  out.text = form.Head();
  form.Render(document, out);
  out.text += form.Tail(true);
  return Worse(exitStatus, out.Write());
}

}  // namespace krofx::command
