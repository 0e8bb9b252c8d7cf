// krofx print: what OFX files hold, as text, JSON or CSV.

#include <memory>
#include <optional>

#include "command_line/command_line.h"
#include "input/input_files.h"
#include "input/input_options.h"
#include "output/file_progress.h"
#include "output/messages.h"
#include "showing/document_output.h"
#include "showing/row_filter.h"
#include "subcommands/subcommands.h"
#include "system/ordered_work.h"

namespace krofx::command {

namespace {

struct Options {
  InputOptions input;
  PrintOptions form;
  FilterOptions filter;
};

// What became of a file on the thread that read it.
struct Shown {
  Document document;
  std::string text;
};

// Shows files in their order.
class Printing {
 public:
  Printing(const Options& options, const RowFilter& filter)
      : m_options(options), m_filter(filter), m_form(options.form) {}

  ExitStatus Run(const std::vector<std::string>& names) {
    Write(m_form.Head());
    {
      FileProgress progress(names.size());
      const auto make = [&](std::size_t index) {
        progress.Next(names[index]);
        return Make(names[index]);
      };
      WorkInOrder<Shown>(names.size(), m_options.input.CountThreads(), make,
                         [this](Shown shown) { Take(std::move(shown)); });
    }
    Write(m_form.Tail(m_any));
    return m_exitStatus;
  }

 private:
  // Duplicates can only be found in the order of the files.
  bool RendersInOrder() const { return m_options.filter.unique; }

  Shown Make(const std::string& name) const {
    Shown shown{
        MakeDocument(ParsedFile(name, m_options.input.GetReader()), m_options.form.showIdentifiers),
        ""};
    m_filter.Apply(shown.document);
    if (!RendersInOrder()) {
      shown.text = Render(shown.document);
      shown.document.sections.clear();
      shown.document.arena.reset();
    }
    return shown;
  }

  std::string Render(const Document& document) const {
    TextOutput out(TextOutput::Mode::kHeld);
    m_form.Render(document, out);
    return std::move(out.text);
  }

  void Take(Shown shown) {
    m_exitStatus = Worse(m_exitStatus, ReportProblems(shown.document));
    if (RendersInOrder()) {
      m_duplicates.Apply(shown.document);
      shown.text = Render(shown.document);
    }
    if (m_any) shown.text.insert(0, m_form.Separator());
    m_any = true;
    Write(shown.text);
  }

  // One complaint is enough when nothing more can be written.
  void Write(const std::string& text) {
    if (!m_canWrite) return;
    const ExitStatus written = WriteStandardOutput(text);
    m_canWrite = written == kExitClean;
    m_exitStatus = Worse(m_exitStatus, written);
  }

  const Options& m_options;
  const RowFilter& m_filter;
  const DocumentForm m_form;
  DuplicateFilter m_duplicates;
  ExitStatus m_exitStatus = kExitClean;
  bool m_any = false;
  bool m_canWrite = true;
};

ExitStatus Print(const Options& options) {
  if (options.form.AsksForTables()) return PrintTables();
  const ExitStatus checked = CheckPrintOptions(options.form);
  if (checked != kExitClean) return checked;
  std::string problem;
  const RowFilter filter(options.filter, problem);
  if (problem.empty() && filter.ChoosesRows() && options.form.ShowsRows() &&
      options.form.GetTable() != kTransactions) {
    problem = "only transactions can be chosen, and --table names " + options.form.GetTable();
  }
  if (!problem.empty()) {
    Complain(options.form.subcommand, problem);
    return kExitWrongUse;
  }
  std::vector<std::string> names;
  const ExitStatus found = FindInputs(options.input, options.form.subcommand, names);
  if (found == kExitWrongUse) return found;
  return Worse(found, Printing(options, filter).Run(names));
}

}  // namespace

void AddPrint(const Subcommand& parent) {
  const Subcommand print =
      parent.Add("print", "Show institutions, accounts, balances and transactions of OFX files");
  const auto options = std::make_shared<Options>();
  AddInputOptions(print, options->input);
  AddPrintOptions(print, options->form);
  AddFilterOptions(print, options->filter);
  print.SetFooter("Exit status: 0 printed, 2 something was not usable, 64 wrong use.");
  print.OnRun(options, Print);
}

}  // namespace krofx::command
