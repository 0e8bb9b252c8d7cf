// The tags of secrets and of numbers of people, cards and accounts, and how each is shown.

#include "output/masking.h"

#include <algorithm>
#include <cctype>
#include <iterator>

#include "krofx/core/internal/passwords.h"
#include "krofx/core/parse_logger.h"
#include "krofx/core/tag_dictionary.h"
#include "output/characters.h"

namespace krofx::command {

namespace {

// Identifiers of people. New ones go here and nowhere else.
constexpr std::string_view kPersonalTags[] = {"N.SSN", "TAXID", "N.BILLPAYACCT"};
constexpr std::string_view kAccountTags[] = {"ACCTID", "ACCTKEY"};
constexpr std::string_view kCardAggregates[] = {"CCACCTFROM", "CCACCTTO"};
constexpr std::string_view kOtherAccounts[] = {"BANKACCTFROM", "BANKACCTTO", "INVACCTFROM",
                                               "INVACCTTO"};

// What the names of the tags of passwords have in common, also when damage took a character.
constexpr std::string_view kPasswordWords[] = {"USERPAS", "TIMEPASS", "TEMPPASS", "PASS>"};

constexpr std::size_t kShownCharacters = 4;

template <std::size_t kCount>
bool IsOneOf(const std::string_view (&tags)[kCount], std::string_view tag) {
  return std::find(std::begin(tags), std::end(tags), tag) != std::end(tags);
}

template <std::size_t kCount>
bool EndsWithOneOf(const std::string_view (&tags)[kCount], std::string_view text) {
  return std::any_of(std::begin(tags), std::end(tags),
                     [text](std::string_view tag) { return text.ends_with(tag); });
}

std::size_t FindWithoutCase(std::string_view text, std::string_view word) {
  const auto* const found =
      std::search(text.begin(), text.end(), word.begin(), word.end(), [](char left, char right) {
        return std::toupper(static_cast<unsigned char>(left)) == right;
      });
  return found == text.end() ? text.size() : static_cast<std::size_t>(found - text.begin());
}

// A star for each character.
std::string Stars(std::string_view text) {
  const auto isContinuation = [](char byte) { return IsContinuation(byte); };
  const auto others = std::count_if(text.begin(), text.end(), isContinuation);
  return std::string(text.size() - static_cast<std::size_t>(others), '*');
}

std::string UpTo(std::string_view text, std::size_t end) {
  return end == text.size() ? std::string(text)
                            : std::string(text.substr(0, end)).append(kNotShown);
}

bool IsTagOfOfx(std::string_view tag) {
  KRTagID id = KRTag_None;
  return KRTagDictionary::TheKRTagDictionary()->GetTagID(tag.data(), static_cast<u16>(tag.size()),
                                                         &id, KRCaseType_IgnoreCase) != nullptr;
}

}  // namespace

bool IsPassword(KRTagID tag) { return krofx::internal::IsSecret(tag); }

bool HoldsPasswords(KRTagID aggregate) { return krofx::internal::HoldsPasswords(aggregate); }

Disclosure DisclosureOf(std::string_view tag, std::string_view aggregate, bool inPayroll) {
  if (IsOneOf(kPersonalTags, tag)) return Disclosure::kPersonal;
  // A currency has three letters. When its tag has run into those of the account after it, it is
  // the number of the card.
  if (tag == "CURDEF" && aggregate.starts_with("CCSTMT")) return Disclosure::kCard;
  if (!IsOneOf(kAccountTags, tag)) return Disclosure::kAll;
  if (inPayroll) return Disclosure::kPersonal;
  return IsOneOf(kCardAggregates, aggregate) ? Disclosure::kCard : Disclosure::kAll;
}

Disclosure DisclosureOfNote(std::string_view tag, std::string_view aggregate, bool inPayroll) {
  const Disclosure ofElement = DisclosureOf(tag, aggregate, inPayroll);
  const bool isAmongCard = IsOneOf(kCardAggregates, aggregate) || IsOneOf(kCardAggregates, tag);
  // A number that has lost the aggregate around it may be that of a card, also when the tags of
  // both have become one.
  const bool isLost = EndsWithOneOf(kAccountTags, tag) && !IsOneOf(kOtherAccounts, aggregate);
  return ofElement == Disclosure::kAll && (isAmongCard || isLost) ? Disclosure::kCard : ofElement;
}

bool IsAccount(std::string_view aggregate) {
  return aggregate.ends_with("ACCTFROM") || aggregate.ends_with("ACCTTO");
}

std::string TagWithoutNumber(std::string_view tag, std::string_view aggregate) {
  const bool mayHaveNumber = IsOneOf(kCardAggregates, aggregate) && !IsTagOfOfx(tag);
  return mayHaveNumber ? UpTo(tag, std::min(tag.find_first_of("0123456789"), tag.size()))
                       : std::string(tag);
}

std::string Masked(std::string_view value, Disclosure disclosure) {
  if (disclosure == Disclosure::kAll) return std::string(value);
  // A cut in a character would leave bytes that are no text.
  std::size_t hidden = value.size();
  std::size_t shown = 0;
  while (hidden > 0 && shown < kShownCharacters) {
    if (!IsContinuation(value[--hidden])) ++shown;
  }
  if (hidden == 0 && disclosure == Disclosure::kPersonal) return Stars(value);
  return Stars(value.substr(0, hidden)) + std::string(value.substr(hidden));
}

bool MayNamePassword(std::string_view text) {
  // A tag has brackets, and all the words have these three letters.
  const auto isLetter = [&text](std::size_t index, char small) {
    return index < text.size() && (text[index] | 0x20) == small;
  };
  for (std::size_t index = 0; index < text.size(); ++index) {
    if (text[index] == '<' || text[index] == '>') return true;
    if (isLetter(index, 'p') && isLetter(index + 1, 'a') && isLetter(index + 2, 's')) return true;
  }
  return false;
}

std::string WithoutPassword(std::string_view text) {
  std::size_t end = std::min(krofx::internal::FindPasswordTag(text), text.size());
  for (const std::string_view word : kPasswordWords) {
    end = std::min(end, FindWithoutCase(text, word));
  }
  return UpTo(text, end);
}

std::string FirstLineWithoutTags(std::string_view text) {
  return UpTo(text, std::min(text.find_first_of("<>\r\n"), text.size()));
}

}  // namespace krofx::command
