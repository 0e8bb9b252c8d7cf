// krofx print: what OFX files hold, as text, JSON or CSV.

#include <memory>
#include <optional>

#include "command_line/command_line.h"
#include "input/file_progress.h"
#include "input/input_files.h"
#include "input/input_options.h"
#include "output/messages.h"
#include "showing/document_output.h"
#include "showing/row_filter.h"
#include "showing/streamed_rows.h"
#include "subcommands/subcommands.h"
#include "system/ordered_work.h"

namespace krofx::command {

namespace {

struct Options {
  InputOptions input;
  PrintOptions form;
  FilterOptions filter;
};

// The result of a file, on the thread that read it.
struct Shown {
  Document document;
  TextOutput text{TextOutput::Mode::kHeld};
  bool isRendered = false;
};

// Shows files in their order.
class Printing {
 public:
  Printing(const Options& options, const RowFilter& filter)
      : m_options(options), m_filter(filter), m_form(options.form) {}

  ExitStatus Run(const std::vector<std::string>& names) {
    m_isAlone = names.size() == 1;
    m_out.text = m_form.Head();
    {
      FileProgress progress(names);
      const auto make = [&](std::size_t index) {
        progress.Next(names[index]);
        return Make(names[index]);
      };
      WorkInOrder<Shown>(names.size(), m_options.input.CountThreads(), make,
                         [this](Shown shown) { Take(std::move(shown)); });
    }
    m_out.text += m_form.Tail(m_any);
    return Worse(m_exitStatus, m_out.Write());
  }

 private:
  // Duplicates can only be found in the order of the files; a text of so many rows is not held, and
  // none when no other file waits.
  bool RendersInOrder(const Document& document) const {
    constexpr std::size_t kMostRows = 100000;
    return m_isAlone || m_options.filter.unique ||
           (document.streamed != nullptr && document.streamed->Count() > kMostRows);
  }

  // Text has to know all rows before it writes the first one. Rows that take long to come a second
  // time, or do not come again, are held for that.
  bool IsVisitedTwice(const Document& document) const {
    constexpr std::size_t kMostHeldRows = 65535;
    if (m_options.form.json || m_options.form.ShowsRows()) return false;
    if (document.streamed == nullptr) return m_options.filter.unique;
    return document.streamed->Count() <= kMostHeldRows;
  }

  Shown Make(const std::string& name) const {
    ParsedFile file(name, m_options.input.GetReader(), Holding::kRows, IsRow);
    Shown shown{MakeDocument(file, m_options.form.showIdentifiers)};
    m_filter.Apply(shown.document);
    if (IsVisitedTwice(shown.document)) HoldRows(shown.document);
    if (!RendersInOrder(shown.document)) {
      m_form.Render(shown.document, shown.text);
      shown.isRendered = true;
      shown.document.sections.clear();
      shown.document.arena.reset();
    }
    return shown;
  }

  // Gives each document to the output before the next one comes.
  void Take(Shown shown) {
    m_exitStatus = Worse(m_exitStatus, ReportProblems(shown.document));
    if (m_any) m_out.text += m_form.Separator();
    m_any = true;
    if (shown.isRendered) {
      m_out.text += shown.text.text;
    } else {
      if (m_options.filter.unique) m_duplicates.Apply(shown.document);
      m_form.Render(shown.document, m_out);
    }
    m_exitStatus = Worse(m_exitStatus, ReportChange(shown.document));
    m_out.Write();
  }

  const Options& m_options;
  const RowFilter& m_filter;
  const DocumentForm m_form;
  DuplicateFilter m_duplicates;
  TextOutput m_out{TextOutput::Mode::kWritten};
  ExitStatus m_exitStatus = kExitClean;
  bool m_any = false;
  bool m_isAlone = false;
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

void DeclarePrint(const Subcommand& print) {
  const auto options = std::make_shared<Options>();
  AddInputOptions(print, options->input);
  AddPrintOptions(print, options->form);
  AddFilterOptions(print, options->filter);
  print.SetFooter("Exit status: 0 printed, 2 something was not usable, 64 wrong use.");
  print.OnRun(options, Print);
}

}  // namespace krofx::command
