// What is new, gone or changed among the transactions of two downloads.

#ifndef KROFX_COMMAND_SHOWING_COMPARISON_H_
#define KROFX_COMMAND_SHOWING_COMPARISON_H_

#include <map>
#include <string>
#include <vector>

#include "output/json.h"
#include "output/text_form.h"
#include "showing/document.h"

namespace krofx::command {

/// Compares the transactions of two sets of files, by account and identifier (FITID). One without
/// an identifier is compared by all that it says. What comes several times in one account counts
/// several times.
class Comparison {
 public:
  /// Which of the two sets.
  enum class Side { kOld, kNew };

  /// Takes the transactions of a document, which must live as long as this.
  void Add(Side side, const Document& document);

  /// @return whether there is no difference. Valid after the last Add, like all from here on.
  bool IsSame() const;
  /// @return a line for each difference: "+" for what is new, "-" for what is gone, "~" for what
  ///         changed, with the values before and after; and a line that counts them.
  std::string Text(const TextForm& form) const;
  /// @return the form that docs/json.md describes.
  std::string JsonText(const std::string& oldName, const std::string& newName) const;

 private:
  struct Transaction {
    const Section* section;
    const TableSpec* table;
    Row cells;
  };
  struct Pair {
    std::vector<Transaction> before;
    std::vector<Transaction> after;
  };
  struct Change {
    std::string_view key;
    std::string_view label;
    Cell before;
    Cell after;
  };

  static std::vector<Change> FindChanges(const Transaction& before, const Transaction& after);
  static std::string Describe(const Transaction& transaction, const TextForm& form);
  static Json JsonOf(const Transaction& transaction);
  template <class OnNew, class OnGone, class OnChanged>
  void ForEach(OnNew onNew, OnGone onGone, OnChanged onChanged) const;

  // Transactions by their account and identifier, in the order in which they came.
  std::map<std::string, std::size_t> m_places;
  std::vector<Pair> m_pairs;
};

}  // namespace krofx::command

#endif  // KROFX_COMMAND_SHOWING_COMPARISON_H_
