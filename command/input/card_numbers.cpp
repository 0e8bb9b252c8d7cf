// Looks for the accounts that mendings name. When a mending does not lead to one of them with
// certainty, too many numbers are taken for those of cards rather than too few.

#include "input/card_numbers.h"

#include <algorithm>
#include <iterator>
#include <map>

#include "krofx/host/account_view.h"
#include "krofx/host/look.h"
#include "krofx/host/words.h"

namespace krofx::command {

namespace {

using krofx::MendingKind;

constexpr MendingKind kMoves[] = {
    MendingKind::kMissingEnd, MendingKind::kStrayEnd,   MendingKind::kJoined,
    MendingKind::kReplaced,   MendingKind::kOwnWrapper, MendingKind::kMissingStart,
    MendingKind::kMisplaced,  MendingKind::kTooDeep,    MendingKind::kIncomplete,
    MendingKind::kEarlyEnd,   MendingKind::kMoved};

// The accounts of some trees, by their paths in some form.
using Places = std::multimap<std::string, const KRAccount*>;

// A path without the numbers of aggregates that begin with a text.
std::string WithoutNumbers(std::string_view path, std::string_view number) {
  std::string text;
  while (!path.empty()) {
    const std::size_t begin = path.find(number);
    text.append(path.substr(0, begin));
    if (begin == std::string_view::npos) break;
    path.remove_prefix(std::min(path.find(']', begin), path.size() - 1) + 1);
  }
  return text;
}

// The first of its tag has a number only when there are others.
std::string WithoutFirst(std::string_view path) { return WithoutNumbers(path, "[1]"); }

// Every bank and broker has a number or a name; no card has one.
bool MayBeCard(const KRAccount& account) {
  return krofx::AccountView(&account).Institution().empty();
}

class Search {
 public:
  explicit Search(const std::vector<const KRFile*>& files) {
    for (const KRFile* const file : files) {
      for (const auto& found : krofx::Each<KRAccount>(*file)) {
        const KRString path = found.Path();
        m_places.emplace(WithoutFirst(krofx::ToText(path)), &*found);
        m_alike.emplace(WithoutAnyNumber(krofx::ToText(path)), &*found);
      }
    }
  }

  // What is left out of a tree takes a number from those after it, so that another account can be
  // at the path, or none.
  void Take(const std::string& card) {
    const auto at = m_places.equal_range(WithoutFirst(card));
    if (at.first != at.second) {
      const bool isCertain = std::all_of(
          at.first, at.second, [](const auto& place) { return MayBeCard(*place.second); });
      Add(at);
      if (!isCertain) TakeAllThatMayBe();
      return;
    }
    const auto alike = m_alike.equal_range(WithoutAnyNumber(card));
    Add(alike.first != alike.second ? alike : std::pair(m_alike.begin(), m_alike.end()));
  }
  void TakeAllThatMayBe() {
    if (m_hasAllThatMayBe) return;
    m_hasAllThatMayBe = true;
    for (const auto& [path, account] : m_places) {
      if (MayBeCard(*account)) m_numbers.Add(*account);
    }
  }
  CardNumbers GetNumbers() { return std::move(m_numbers); }

 private:
  void Add(const std::pair<Places::const_iterator, Places::const_iterator>& places) {
    for (auto place = places.first; place != places.second; ++place) {
      m_numbers.Add(*place->second);
    }
  }

  Places m_places;
  Places m_alike;
  CardNumbers m_numbers;
  bool m_hasAllThatMayBe = false;
};

}  // namespace

void CardNumbers::Add(const KRAccount& account) {
  const krofx::AccountView view(&account);
  for (const std::string_view number : {view.Number(), view.Key()}) {
    if (!number.empty()) m_numbers.emplace(number);
  }
}

std::string PathOfMendedCard(const krofx::Mending& mending) {
  if (mending.kind != krofx::MendingKind::kAccountKind ||
      krofx::ToText(mending.was) != "CCACCTFROM") {
    return "";
  }
  return std::string(krofx::ToText(mending.path)) + "/" + std::string(krofx::ToText(mending.taken));
}

bool MovesPlaces(const krofx::Mending& mending) {
  return std::find(std::begin(kMoves), std::end(kMoves), mending.kind) != std::end(kMoves);
}

std::string WithoutAnyNumber(std::string_view path) { return WithoutNumbers(path, "["); }

CardNumbers FindCardNumbers(const std::vector<const KRFile*>& files,
                            const std::vector<std::string>& cards, bool isCertain) {
  Search search(files);
  for (const std::string& card : cards) search.Take(card);
  if (!isCertain) search.TakeAllThatMayBe();
  return search.GetNumbers();
}

}  // namespace krofx::command
