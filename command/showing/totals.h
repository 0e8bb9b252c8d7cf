// The line below a table: how many rows it has, and what they come to.

#ifndef KROFX_COMMAND_SHOWING_TOTALS_H_
#define KROFX_COMMAND_SHOWING_TOTALS_H_

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "output/text_form.h"
#include "showing/document.h"
#include "showing/flow.h"
#include "showing/transaction_columns.h"

namespace krofx::command {

/// Adds up the rows of a table.
class Totals {
 public:
  /// @param section what the table is in, which must live as long as this.
  Totals(const Section& section, const TableSpec& table);

  /// Adds a row.
  void Add(Row row);

  /// @return how many rows were added.
  std::size_t CountRows() const { return m_count; }
  /// @return the lines below a table with rows, one for each currency: "61 transactions   in
  ///         9258.49   out -5279.17   net 3979.32". With several currencies each line ends in its
  ///         own.
  std::string Text(const TextForm& form) const;

 private:
  // A column that is added up, with its label.
  struct Summed {
    std::size_t column;
    std::string label;
  };

  std::string LineOf(const std::vector<Flow>& sums, const TextForm& form) const;

  const Section& m_section;
  const TableSpec& m_table;
  const TransactionColumns m_columns;
  std::vector<Summed> m_summed;
  std::size_t m_count = 0;
  // The sums of the rows of each currency, one for each column.
  std::map<std::string, std::vector<Flow>, std::less<>> m_byCurrency;
};

}  // namespace krofx::command

#endif  // KROFX_COMMAND_SHOWING_TOTALS_H_
