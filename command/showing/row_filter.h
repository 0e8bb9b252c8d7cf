// Which transactions are shown or summed.

#ifndef KROFX_COMMAND_SHOWING_ROW_FILTER_H_
#define KROFX_COMMAND_SHOWING_ROW_FILTER_H_

#include <map>
#include <optional>
#include <string>
#include <unordered_map>

#include "output/exact_decimal.h"
#include "showing/document.h"
#include "showing/transaction_columns.h"
#include "system/exit_status.h"

namespace krofx::command {

class Subcommand;

/// The options of a command line that choose transactions.
struct FilterOptions {
  std::string from;
  std::string to;
  std::string account;
  std::string match;
  std::string type;
  std::string minimum;
  std::string maximum;
  bool unique = false;
};

/// Adds the options to a command line.
void AddFilterOptions(const Subcommand& app, FilterOptions& options);

/// Chooses sections by their account, and rows of transactions by all else. With a choice of rows
/// everything but transactions is left out of a document.
class RowFilter {
 public:
  /// Reads the options.
  /// @param problem takes what is wrong with them; empty when nothing is.
  RowFilter(const FilterOptions& options, std::string& problem);

  /// @return whether rows are chosen, not only accounts.
  bool ChoosesRows() const;
  /// Takes out of a document what is not chosen. Repeated rows stay: see DuplicateFilter. The
  /// filter must live as long as the document.
  void Apply(Document& document) const;

 private:
  std::string ReadDays(const FilterOptions& options);
  std::string ReadType(const std::string& type);
  bool IsChosen(Row row, const TransactionColumns& columns) const;

  std::string m_from;
  std::string m_to;
  std::string m_account;
  std::string m_match;
  std::string m_type;
  std::optional<ExactDecimal> m_minimum;
  std::optional<ExactDecimal> m_maximum;
  bool m_unique = false;
};

/// Drops the transactions that an earlier file or statement had already: those of the same account
/// and identifier. Those without an identifier stay. Documents must come in their order.
class DuplicateFilter {
 public:
  /// Takes out of a document what another document had before. The filter must live as long as the
  /// document, whose rows have to be visited before those of the next one.
  void Apply(Document& document);

 private:
  // With the number of the file that had it first.
  std::unordered_map<std::string, std::size_t> m_seen;
  std::size_t m_files = 0;
};

}  // namespace krofx::command

#endif  // KROFX_COMMAND_SHOWING_ROW_FILTER_H_
