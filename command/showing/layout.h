// How each payload is printed: tables that say which element is shown under which name.
//
// The layouts of one domain are one file in layouts/ and one line in layout.cpp. The paths
// in it name tags below the payload, "LEDGERBAL/BALAMT"; alternatives are separated by "|", and the
// first that is present counts. "SECID>TICKER" leads on, from the identity of a security to what
// the security list of the file says of it. "NORV.SVC+" takes all elements of the tag, "A,B/AMT="
// the sum of the element over the aggregates A and B, and "*." the tag of the first aggregate
// below. Payloads without a layout are printed by their tags.

#ifndef KROFX_COMMAND_SHOWING_LAYOUT_H_
#define KROFX_COMMAND_SHOWING_LAYOUT_H_

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace krofx::command {

/// An element: where it is, its key in JSON and CSV, its label in text.
struct FieldSpec {
  std::string_view path;
  std::string_view key;
  std::string_view label;
  bool detail = false;  ///< Left out of the text; a column is there with --wide.
  bool minor = false;   ///< A column that is left out first where there is not room for all.
};

/// Aggregates that repeat, one row each. A row's columns are below the aggregate; the path of the
/// aggregates may name several tags for the last step, whose order is kept.
struct TableSpec {
  std::string_view path;
  std::string_view key;
  std::string_view title;
  std::span<const FieldSpec> columns;
  /// The keys of the columns that the text adds up below the table, separated by blanks.
  std::string_view totals = {};
};

/// A payload, a synchronisation, or a part of either.
struct Layout {
  std::string_view tag;
  std::string_view kind;
  std::string_view title;
  std::string_view subject;  ///< Paths separated by blanks: together they name the account.
  std::span<const FieldSpec> fields;
  std::span<const TableSpec> tables;
  /// Paths, separated by blanks, of aggregates that become sections of their own after this one,
  /// each by the layout of its tag. What is empty in such a section is left out.
  std::string_view parts = {};
};

/// @return all layouts.
std::span<const Layout> Layouts();

/// The table that lists the parts of a multipart text, which has no layout.
extern const TableSpec kPartsTable;
/// @return the keys of all tables, each once, in the order of their names.
const std::vector<std::string_view>& TableKeys();
/// @return whether some file can have a table of this key.
bool IsTableKey(std::string_view key);
/// @return the titles of the layouts that have a table of this key, separated by commas.
std::string OwnersOf(std::string_view tableKey);

/// A column of the rows of all tables that share a key.
struct RowColumn {
  std::string_view key;
  /// The field of the section that the column repeats in each row; empty for a column of the table.
  std::string_view field;
};

/// @return what the rows of all tables of one key have, whatever files they are of: the columns of
///         each of these tables, then the account that the row is of.
std::vector<RowColumn> RowColumnsOf(std::string_view tableKey);

namespace layouts {
extern const std::span<const Layout> kSignOn;
extern const std::span<const Layout> kProfile;
extern const std::span<const Layout> kStatements;
extern const std::span<const Layout> kInvestment;
extern const std::span<const Layout> kBillPay;
extern const std::span<const Layout> kBranding;
extern const std::span<const Layout> kPayroll;
extern const std::span<const Layout> kAccountLists;
extern const std::span<const Layout> kTransfers;
extern const std::span<const Layout> kStopChecks;
extern const std::span<const Layout> kMail;
}  // namespace layouts

}  // namespace krofx::command

#endif  // KROFX_COMMAND_SHOWING_LAYOUT_H_
