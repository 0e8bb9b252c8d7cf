// Words that are no keywords of OFX, or not in its letters.

#include "krofx/reader/values/words.h"

#include <algorithm>
#include <iterator>

#include "krofx/reader/values/plain_characters.h"
#include "krofx/values/internal/keyword_table.h"
#include "krofx/values/keywords.h"

namespace krofx::internal {

namespace {

// The longest keyword has fewer letters.
constexpr std::size_t kLongestKeyword = 40;

// A keyword without what divides its words.
class Joined {
 public:
  explicit Joined(std::string_view text) {
    if (text.size() > kLongestKeyword) return;
    for (const char c : text) {
      if (c != ' ' && c != '\t' && c != '-' && c != '_') m_letters[m_size++] = c;
    }
  }
  std::string_view Text() const { return {m_letters, m_size}; }

 private:
  char m_letters[kLongestKeyword];
  std::size_t m_size = 0;
};

// A code of three letters: its length is all that OFX lets one check.
bool MendCode(const DoubtfulValue& value, MendedValue& out) {
  constexpr std::size_t kLength = 3;
  if (IsWordForNothing(value.text)) return out.TakeAsAbsent(MendingKind::kWordAbsent);
  if (value.text.size() <= kLength) return false;
  const Joined joined(value.text);
  if (joined.Text().size() == kLength) return out.Take(MendingKind::kKeyword, joined.Text());
  return out.TakeAsAbsent(MendingKind::kKeywordRefused);
}

}  // namespace

bool MendBoolean(const DoubtfulValue& value, MendedValue& out) {
  constexpr std::string_view kYes[] = {"y", "yes", "true", "t", "1", "on"};
  constexpr std::string_view kNo[] = {"n", "no", "false", "f", "0", "off"};
  const auto isThis = [&value](std::string_view word) {
    return EqualsWithoutCase(value.text, word);
  };
  if (std::any_of(std::begin(kYes), std::end(kYes), isThis)) {
    return out.Take(MendingKind::kBoolean, "Y");
  }
  return std::any_of(std::begin(kNo), std::end(kNo), isThis) &&
         out.Take(MendingKind::kBoolean, "N");
}

bool MendTransactionType(const DoubtfulValue& value, MendedValue& out) {
  if (value.tag != KRTag_TRNTYPE) return false;
  const Joined joined(value.text);
  if (FindKeyword(KeywordTraits<KRBankTxType>::kTable, joined.Text()) >= 0) {
    return out.Take(MendingKind::kKeyword, joined.Text());
  }
  // A transaction of any other type is still a transaction.
  return out.Take(MendingKind::kTransactionType, "OTHER");
}

bool MendKeyword(const DoubtfulValue& value, MendedValue& out) {
  const Joined joined(value.text);
  return !joined.Text().empty() && joined.Text().size() < value.text.size() &&
         out.Take(MendingKind::kKeyword, joined.Text());
}

bool MendNoWord(const DoubtfulValue& value, MendedValue& out) {
  return (IsWordForNothing(value.text) || value.text == "-") &&
         out.TakeAsAbsent(MendingKind::kWordAbsent);
}

bool MendLanguage(const DoubtfulValue& value, MendedValue& out) { return MendCode(value, out); }

bool MendCurrency(const DoubtfulValue& value, MendedValue& out) {
  return (value.tag == KRTag_CURDEF || value.tag == KRTag_CURSYM) && MendCode(value, out);
}

}  // namespace krofx::internal
