// How OFX files are shown, whether they were read or fetched.

#ifndef KROFX_COMMAND_SHOWING_DOCUMENT_OUTPUT_H_
#define KROFX_COMMAND_SHOWING_DOCUMENT_OUTPUT_H_

#include <string>
#include <vector>

#include "input/parsed_file.h"
#include "output/text_form.h"
#include "output/text_output.h"
#include "showing/document.h"
#include "showing/layout.h"
#include "system/exit_status.h"

namespace krofx::command {

class Subcommand;

/// The form in which documents are shown.
struct PrintOptions {
  std::string subcommand;  ///< What messages call the subcommand.
  bool json = false;
  bool csv = false;
  bool jsonLines = false;
  bool wide = false;
  bool showIdentifiers = false;
  std::string table;  ///< Empty for the transactions.

  /// @return whether the rows of one table are shown, not documents.
  bool ShowsRows() const { return csv || jsonLines; }
  /// @return whether it is only asked which tables there are.
  bool AsksForTables() const { return table == "help"; }
  const std::string& GetTable() const;
};

/// Adds the options of the form to a command line.
void AddPrintOptions(const Subcommand& app, PrintOptions& options);

/// Finds out whether the options make sense: whether there is such a table as they name.
/// @return kExitClean, or kExitWrongUse after a complaint.
ExitStatus CheckPrintOptions(const PrintOptions& options);

/// Lists the tables that there are on standard output.
ExitStatus PrintTables();

/// Shows a file: the transactions of its bank and card statements leave its tree and go with the
/// document.
/// @return all that the file holds, as it is shown.
Document MakeDocument(ParsedFile& file, bool showIdentifiers);

/// Says on standard error what is wrong with a document.
/// @return kExitClean, or kExitUnusable when it was not usable.
ExitStatus ReportProblems(const Document& document);

/// Says on standard error when the rows that were read last do not fit those that were read first.
/// @return kExitClean, or kExitUnusable then.
ExitStatus ReportChange(const Document& document);

/// Reads the rows of a document that are not in memory into it.
void HoldRows(Document& document);

/// Documents as one output in the form that was asked for. What Render makes of each of them is to
/// come in order, after the head and before the tail.
class DocumentForm {
 public:
  explicit DocumentForm(const PrintOptions& options);

  std::string Head() const;
  /// Appends what a document adds to the output. May be called on several threads at once.
  void Render(const Document& document, TextOutput& out) const;
  /// @return what comes between two documents.
  std::string Separator() const;
  /// @param any whether there was a document.
  std::string Tail(bool any) const;

 private:
  const PrintOptions& m_options;
  const TextForm m_text;
  const std::vector<RowColumn> m_columns;
};

/// Writes a document on standard output, and on standard error what that form cannot say.
/// @return kExitClean, or kExitUnusable when it was not usable or nothing could be written.
ExitStatus PrintDocument(const Document& document, const PrintOptions& options);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_SHOWING_DOCUMENT_OUTPUT_H_
