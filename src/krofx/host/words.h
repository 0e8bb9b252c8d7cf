// Keywords and texts as views, and setters that take views.

#ifndef KROFX_HOST_WORDS_H_
#define KROFX_HOST_WORDS_H_

#include <chrono>
#include <cstddef>
#include <optional>
#include <string_view>
#include <type_traits>

#include "krofx/core/export.h"
#include "krofx/core/lifetime.h"
#include "krofx/core/string.h"
#include "krofx/host/dates.h"
#include "krofx/values/internal/keyword_table.h"
#include "krofx/values/keywords.h"

/// Strings have no order: `<` would compare their addresses. Compare krofx::ToText of both.
void operator<=>(const KRString&, const KRString&) = delete;
void operator<=>(const KRString&, const char*) = delete;

namespace krofx {

/// The keyword of a value, such as "DEBIT" of KRBankTxType_DEBIT.
/// @return the keyword, which is constant; empty for a number that is no value of the enumeration.
template <internal::KeywordEnum Enumeration>
constexpr std::string_view ToText(Enumeration value) {
  const auto index = static_cast<std::size_t>(value);
  constexpr const auto& kTexts = internal::KeywordData<Enumeration>::kTexts;
  return index < std::size(kTexts) ? kTexts[index] : std::string_view();
}

/// The value of a keyword, in letters of either case. Logs nothing.
/// @return nothing for a text that is no keyword of the enumeration.
template <internal::KeywordEnum Enumeration>
std::optional<Enumeration> ToKeyword(std::string_view text) {
  const s32 value = internal::FindKeyword(internal::KeywordTraits<Enumeration>::kTable, text);
  if (value < 0) return std::nullopt;
  return static_cast<Enumeration>(value);
}

/// @return the characters of a text, which stay the string's.
inline std::string_view ToText(const KRString& string KROFX_LIFETIME_BOUND) {
  return {static_cast<const char*>(string), string.GetStrLength()};
}

namespace internal {

/// A text on its way into a setter. It is overwritten when it is gone, since it may be a password.
class KROFX_API PassedText {
 public:
  explicit PassedText(std::string_view text);
  PassedText(const PassedText&) = delete;
  PassedText& operator=(const PassedText&) = delete;
  ~PassedText() { m_text.Clear('\0'); }

  /// @return whether the text is whole: it is not when memory is exhausted, and when no string can
  ///         hold it.
  bool IsWhole() const { return m_isWhole; }
  const KRString& Get() const { return m_text; }

 private:
  KRString m_text;
  bool m_isWhole;
};

}  // namespace internal

/// Sets an element from characters that need no terminator:
/// Set(account, &KRBankAccount::SetAccountID, id). It is the setter from a text, so amounts, dates
/// and keywords are read as in a file.
/// @return what the setter gives; 0, with nothing set, for a text of more than 65534 characters or
///         with a NUL in it, and, with the fire alarm raised, when memory is exhausted.
template <class Object>
u16 Set(Object& object, u16 (std::type_identity_t<Object>::*setter)(const KRString&),
        std::string_view text) {
  const internal::PassedText passed(text);
  return passed.IsWhole() ? (object.*setter)(passed.Get()) : u16{0};
}
/// Sets a date: Set(range, &KRIncTransaction::SetDtStart, 2026y / 1 / 31).
/// @return what the setter gives; 0, with nothing set, for a day that ToDateTime does not take.
template <class Object>
u16 Set(Object& object, u16 (std::type_identity_t<Object>::*setter)(const KRDateTime&),
        std::chrono::year_month_day day) {
  const KRDateTime date = ToDateTime(day);
  return date.IsValidDate() != 0 ? (object.*setter)(date) : u16{0};
}
/// Sets a date and time, in GMT.
/// @return as above.
template <class Object>
u16 Set(Object& object, u16 (std::type_identity_t<Object>::*setter)(const KRDateTime&),
        Instant instant) {
  const KRDateTime date = ToDateTime(instant);
  return date.IsValidDate() != 0 ? (object.*setter)(date) : u16{0};
}

}  // namespace krofx

#endif  // KROFX_HOST_WORDS_H_
