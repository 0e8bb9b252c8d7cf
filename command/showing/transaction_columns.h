// What filters, sums and comparisons need of a row of transactions, of whatever kind of statement.

#ifndef KROFX_COMMAND_SHOWING_TRANSACTION_COLUMNS_H_
#define KROFX_COMMAND_SHOWING_TRANSACTION_COLUMNS_H_

#include <string_view>
#include <vector>

#include "showing/document.h"
#include "showing/layout.h"

namespace krofx::command {

/// The key of the tables that filters, sums and comparisons are about.
inline constexpr std::string_view kTransactions = "transactions";

/// The columns of a table of transactions.
class TransactionColumns {
 public:
  explicit TransactionColumns(const TableSpec& table);

  /// @return the day that it was posted or traded, as 2026-01-31; empty when the row has none.
  std::string_view DayOf(Row row) const;
  /// @return the amount, or the total of a trade.
  Cell AmountOf(Row row) const { return Get(row, m_amount); }
  /// @return the currency of the amount: that of the row, or else that of the statement.
  std::string_view CurrencyOf(Row row, const Section& section) const;
  /// @return its kind, such as DEBIT, or the tag of an investment transaction.
  std::string_view TypeOf(Row row) const { return Get(row, m_type).text; }
  /// @return what kind of it, such as BUY; empty for those of banks.
  std::string_view DetailOf(Row row) const { return Get(row, m_detail).text; }
  /// @return the name, or that of the security.
  std::string_view NameOf(Row row) const;
  /// @return the identifier that the institution gave (FITID).
  std::string_view IdOf(Row row) const { return Get(row, m_id).text; }
  /// @return whether a text that a person would look for is in the row.
  template <class Matches>
  bool HasText(Row row, Matches matches) const {
    for (const std::size_t index : m_texts) {
      if (row[index] && matches(row[index].text)) return true;
    }
    return false;
  }

 private:
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  static Cell Get(Row row, std::size_t index) { return index == kNone ? Cell() : row[index]; }

  std::size_t m_day = kNone;
  std::size_t m_amount = kNone;
  std::size_t m_currency = kNone;
  std::size_t m_type = kNone;
  std::size_t m_detail = kNone;
  std::size_t m_name = kNone;
  std::size_t m_security = kNone;
  std::size_t m_id = kNone;
  std::vector<std::size_t> m_texts;
};

/// @return all types of transactions that there are: keywords of TRNTYPE and tags of investment
///         transactions, each once, in the order of their names.
std::vector<std::string> TransactionTypes();

}  // namespace krofx::command

#endif  // KROFX_COMMAND_SHOWING_TRANSACTION_COLUMNS_H_
