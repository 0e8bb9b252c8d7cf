// What is around a number: its sign wherever it is, the currency, blanks, quotes.
//
// Only what is known is taken out. A letter that is not known may be a factor, such as the K of
// "5K", or a sign, such as the S of "5,00 S": such a number is refused.

#include <algorithm>
#include <iterator>
#include <string_view>

#include "krofx/reader/numbers/numbers.h"
#include "krofx/reader/values/plain_characters.h"
#include "krofx/reader/values/separators.h"
#include "krofx/reader/values/value_survey.h"

namespace krofx::internal {

namespace {

// The codes of ISO 4217, in order.
constexpr std::string_view kCodes =
    "AEDAFNALLAMDANGAOAARSAUDAWGAZNBAMBBDBDTBGNBHDBIFBMDBNDBOBBRLBSDBTNBWPBYNBZDCADCDFCHFCLPCNYCOPC"
    "RC"
    "CUPCVECZKDJFDKKDOPDZDEGPERNETBEURFJDFKPGBPGELGHSGIPGMDGNFGTQGYDHKDHNLHRKHTGHUFIDRILSINRIQDIRRI"
    "SK"
    "JMDJODJPYKESKGSKHRKMFKPWKRWKWDKYDKZTLAKLBPLKRLRDLSLLYDMADMDLMGAMKDMMKMNTMOPMRUMURMVRMWKMXNMYRM"
    "ZN"
    "NADNGNNIONOKNPRNZDOMRPABPENPGKPHPPKRPLNPYGQARRONRSDRUBRWFSARSBDSCRSDGSEKSGDSHPSLESOSSRDSSPSTNS"
    "VC"
    "SYPSZLTHBTJSTMTTNDTOPTRYTTDTWDTZSUAHUGXUSDUYUUZSVESVNDVUVWSTXAFXCDXOFXPFYERZARZMWZWL";

// How people write currencies. Each is compared as a whole, with regard to case.
constexpr std::u32string_view kSigns[] = {
    U"$",    U"€",   U"£",   U"¥",   U"₹",   U"₽", U"₩",   U"₺",   U"₴",   U"₫",  U"₪",   U"฿",
    U"₱",    U"₦",   U"₡",   U"₲",   U"₵",   U"₸",   U"₾", U"₼", U"¤",   U"R$", U"A$",  U"AU$",
    U"C$",   U"CA$", U"NZ$", U"US$", U"HK$", U"S$",  U"NT$", U"MX$", U"AR$", U"Fr", U"Fr.", U"SFr",
    U"SFr.", U"fr",  U"fr.", U"kr",  U"kr.", U"Kr",  U"Kr.", U"Kč",  U"zł",  U"Ft", U"Rs",  U"Rs.",
    U"Bs",   U"Bs.", U"S/",  U"S/.", U"lei", U"лв",  U"лв.", U"руб", U"руб."};

bool IsCode(std::u32string_view word) {
  constexpr std::size_t kLength = 3;
  if (word.size() != kLength) return false;
  char code[kLength];
  for (std::size_t at = 0; at < kLength; ++at) {
    const char32_t letter = word[at] >= 'a' && word[at] <= 'z' ? word[at] - ('a' - 'A') : word[at];
    if (letter < 'A' || letter > 'Z') return false;
    code[at] = static_cast<char>(letter);
  }
  for (std::size_t at = 0; at < kCodes.size(); at += kLength) {
    if (kCodes.compare(at, kLength, {code, kLength}) == 0) return true;
  }
  return false;
}

bool IsCurrency(std::u32string_view word) {
  return IsCode(word) || std::find(std::begin(kSigns), std::end(kSigns), word) != std::end(kSigns);
}

bool IsDollar(std::u32string_view word) {
  return word == U"$" || word == U"US$" || word == U"USD" || word == U"usd";
}

// What is around a number, as far as it was understood.
struct Surroundings {
  int plus = 0;
  int minus = 0;
  int debit = 0;
  int credit = 0;
  int opened = 0;
  int closed = 0;
  int currencies = 0;
  int dollars = 0;  // Those of the currencies that make a payroll amount one of dollars.
  int percents = 0;
  int blanks = 0;
  int quotesBefore = 0;
  int quotesAfter = 0;
  bool signAfter = false;
  // It begins with the apostrophe by which a spreadsheet takes a number for a text.
  bool isMarkedAsText = false;

  // A number has one sign at most, however it is written.
  bool MakeSense() const {
    return plus + minus + debit + credit + opened <= 1 && opened == closed && currencies <= 2 &&
           currencies * percents == 0 && percents <= 1 && quotesBefore <= 1 &&
           (quotesBefore == quotesAfter || isMarkedAsText);
  }
  bool IsNegative() const { return minus + debit + opened > 0; }
  bool HasMovedSign() const { return signAfter || debit + credit + opened > 0; }
};

bool IsQuote(char32_t c) { return c == '"' || c == '\''; }

bool IsMark(char32_t c) {
  return c == ' ' || c == '+' || c == '-' || c == '(' || c == ')' || IsQuote(c);
}

// What comes after a number in place of its sign. One letter counts as a capital only.
struct SignWord {
  std::string_view word;
  bool isDebit;
};
constexpr SignWord kSignWords[] = {{"D", true},  {"DR", true},  {"DB", true},     {"DEBIT", true},
                                   {"C", false}, {"CR", false}, {"CREDIT", false}};

const SignWord* FindSignWord(std::u32string_view word) {
  if (word.ends_with(U'.')) word.remove_suffix(1);
  const auto is = [word](const SignWord& sign) {
    return std::equal(word.begin(), word.end(), sign.word.begin(), sign.word.end(),
                      [&word](char32_t c, char capital) {
                        const auto letter = static_cast<char32_t>(capital);
                        return c == letter || (word.size() > 1 && c == letter + ('a' - 'A'));
                      });
  };
  const SignWord* const found = std::find_if(std::begin(kSignWords), std::end(kSignWords), is);
  return found == std::end(kSignWords) ? nullptr : found;
}

// Whether the values of an element are percentages, with or without the sign.
bool MayBePercentage(const DoubtfulValue& value) {
  constexpr KRTagID kTags[] = {KRTag_COUPONRT, KRTag_PERCENT,     KRTag_VALUE,
                               KRTag_YIELD,    KRTag_YIELDTOCALL, KRTag_YIELDTOMAT};
  return value.form == ValueForm::kPayrollAmount ||
         std::find(std::begin(kTags), std::end(kTags), value.tag) != std::end(kTags);
}

bool ReadWord(std::u32string_view word, bool after, const DoubtfulValue& value,
              Surroundings& found) {
  if (const SignWord* const sign = after ? FindSignWord(word) : nullptr) {
    ++(sign->isDebit ? found.debit : found.credit);
  } else if (IsCurrency(word)) {
    ++found.currencies;
    if (IsDollar(word)) ++found.dollars;
  } else if (after && word == U"%" && MayBePercentage(value)) {
    ++found.percents;
  } else {
    return false;
  }
  return true;
}

// @param after whether this is what follows the number.
bool ReadAround(std::u32string_view text, bool after, const DoubtfulValue& value,
                Surroundings& found) {
  for (std::size_t at = 0; at < text.size();) {
    const char32_t c = text[at];
    if (!IsMark(c)) {
      std::size_t end = at;
      while (end < text.size() && !IsMark(text[end])) ++end;
      if (!ReadWord(text.substr(at, end - at), after, value, found)) return false;
      at = end;
      continue;
    }
    ++at;
    if (c == '(' ? after : c == ')' && !after) return false;
    found.blanks += c == ' ' ? 1 : 0;
    found.plus += c == '+' ? 1 : 0;
    found.minus += c == '-' ? 1 : 0;
    found.opened += c == '(' ? 1 : 0;
    found.closed += c == ')' ? 1 : 0;
    (after ? found.quotesAfter : found.quotesBefore) += IsQuote(c) ? 1 : 0;
    found.signAfter = found.signAfter || (after && (c == '+' || c == '-'));
  }
  return true;
}

}  // namespace

bool MendDecoration(const DoubtfulValue& value, MendedValue& out) {
  const PlainCharacters text(value.text, value.survey.CharsetOfText());
  const NumberLayout layout = FindLayout(text);
  if (layout.shape == NumberShape::kNoDigits || layout.shape == NumberShape::kMalformed) {
    return false;
  }
  const std::u32string_view all(text.All().data(), text.size());
  Surroundings found;
  if (!ReadAround(all.substr(0, layout.begin), false, value, found) ||
      !ReadAround(all.substr(layout.end), true, value, found)) {
    return false;
  }
  found.isMarkedAsText = all.front() == U'\'' && found.quotesAfter == 0;
  if (!found.MakeSense()) {
    return false;
  }
  const bool hasKind = value.form == ValueForm::kPayrollAmount;
  if (hasKind && found.currencies != found.dollars) return false;
  char bytes[PlainCharacters::kMost + 3];
  std::size_t size = 0;
  if (hasKind && found.dollars > 0) bytes[size++] = '$';
  if (found.IsNegative()) bytes[size++] = '-';
  for (std::size_t at = layout.begin; at < layout.end; ++at) {
    if (!IsPlainDigit(text[at]) && text[at] != '.') return false;
    bytes[size++] = static_cast<char>(text[at]);
  }
  if (hasKind && found.percents > 0) bytes[size++] = '%';
  // A minus sign that was no '-' of ASCII is written in another way as well.
  const bool otherMinus = found.minus > 0 && value.text.find('-') == std::string_view::npos;
  const bool sign = found.HasMovedSign() || otherMinus;
  const bool decorated = found.currencies + found.percents + found.blanks + found.quotesBefore > 0;
  if (!sign && !decorated) return false;
  out.Take(sign ? MendingKind::kAmountSign : MendingKind::kAmountDecoration, {bytes, size});
  if (decorated) out.Say(MendingKind::kAmountDecoration);
  return true;
}

}  // namespace krofx::internal
