// How OFX files are shown, whether they were read or fetched.

#ifndef KROFX_COMMAND_SHOWING_DOCUMENT_OUTPUT_H_
#define KROFX_COMMAND_SHOWING_DOCUMENT_OUTPUT_H_

#include <string>
#include <vector>

#include "exit_status.h"
#include "input/parsed_file.h"
#include "showing/document.h"

namespace krofx::command {

class Subcommand;

/// The form in which documents are shown.
struct PrintOptions {
  std::string subcommand;  ///< What messages call the subcommand.
  bool json = false;
  bool csv = false;
  bool jsonLines = false;
  bool showIdentifiers = false;
  std::string table;  ///< Empty for the transactions.

  /// Whether the rows of one table are shown, not documents.
  bool ShowsRows() const { return csv || jsonLines; }
  /// Whether it is only asked which tables there are.
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

/// All that a file holds, as it is shown.
Document MakeDocument(const ParsedFile& file, bool showIdentifiers);

/// Writes documents on standard output, and on standard error what that form cannot say.
/// @return kExitClean, or kExitUnusable when one of them was not usable or nothing could be
/// written.
ExitStatus PrintDocuments(const std::vector<Document>& documents, const PrintOptions& options);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_SHOWING_DOCUMENT_OUTPUT_H_
