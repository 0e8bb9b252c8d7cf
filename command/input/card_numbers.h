// The numbers of cards that a file has in the places of other accounts.
//
// A reading takes <CCACCTFROM> in the statement of a bank as the account that belongs there, and
// says so. The tree alone does not tell that the number is that of a card.

#ifndef KROFX_COMMAND_INPUT_CARD_NUMBERS_H_
#define KROFX_COMMAND_INPUT_CARD_NUMBERS_H_

#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "krofx/krofx.h"

namespace krofx::command {

/// Numbers of cards, and their keys, as the texts of a tree have them.
class CardNumbers {
 public:
  /// Adds the number and the key of an account.
  void Add(const KRAccount& account);
  void Add(const CardNumbers& others) {
    m_numbers.insert(others.m_numbers.begin(), others.m_numbers.end());
  }
  bool Has(std::string_view number) const { return m_numbers.contains(number); }

 private:
  std::set<std::string, std::less<>> m_numbers;
};

/// @return the path of the account that a mending has made of a card; empty for other mendings.
std::string PathOfMendedCard(const krofx::Mending& mending);

/// @return whether a mending puts aggregates into other places or leaves them out, so that paths of
///         mendings may not be those of the tree.
bool MovesPlaces(const krofx::Mending& mending);

/// @return a path without the numbers that distinguish aggregates of one tag and parent.
std::string WithoutAnyNumber(std::string_view path);

/// Finds the numbers of cards in the trees of a text.
/// @param cards the paths of the accounts that were made of cards.
/// @param isCertain whether none is missing among them, and the paths are those of the trees.
CardNumbers FindCardNumbers(const std::vector<const KRFile*>& files,
                            const std::vector<std::string>& cards, bool isCertain);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_INPUT_CARD_NUMBERS_H_
