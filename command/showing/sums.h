// Sums of transactions by month, name and so on.

#ifndef KROFX_COMMAND_SHOWING_SUMS_H_
#define KROFX_COMMAND_SHOWING_SUMS_H_

#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "output/text_form.h"
#include "showing/document.h"
#include "showing/flow.h"

namespace krofx::command {

/// What transactions are summed by.
enum class SumBy { kMonth, kWeek, kName, kType, kAccount, kCurrency };

/// @return the names of all of them, in their order.
std::span<const std::string_view> SumNames();
/// @return nothing for a name that is none.
std::optional<SumBy> ParseSumBy(std::string_view name);

/// Sums of the transactions of some documents. Amounts of different currencies are never added.
class Sums {
 public:
  explicit Sums(SumBy by) : m_by(by) {}

  SumBy By() const { return m_by; }
  /// Adds the transactions of a document.
  void Add(const Document& document);
  /// Adds sums by the same.
  void Add(const Sums& other);

  /// @return an aligned table, and the totals of each currency.
  std::string Text(const TextForm& form) const;
  /// Comma-separated values under a header line.
  std::string Csv() const;
  /// @return the form that docs/json.md describes.
  std::string Json() const;

 private:
  // What is summed by, and the currency.
  using Key = std::pair<std::string, std::string>;

  std::string_view Name() const { return SumNames()[static_cast<std::size_t>(m_by)]; }

  SumBy m_by;
  std::map<Key, Flow> m_flows;
};

/// @return the week of a day in the form of ISO 8601, such as 2026-W05; empty for a text that is no
///         day.
std::string WeekOf(std::string_view day);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_SHOWING_SUMS_H_
