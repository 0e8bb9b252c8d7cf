// Payroll amounts: their kinds, their text, and the effect of the kinds on comparisons and
// arithmetic.

#include "krofx/payroll/payroll_amount.h"

#include <algorithm>
#include <cstring>

namespace {

// The most characters that the text of an amount may have.
constexpr std::size_t kMostText = 30;

// The text of an amount that is being written, with room for KRPrecisionInteger::kTextSize
// characters.
class Rendering {
 public:
  Rendering(char* text, std::size_t length) : m_text(text), m_length(length) {}

  std::size_t Length() const { return m_length; }
  void Clear() { Close(0); }
  void Append(const char* text) {
    const std::size_t length = std::strlen(text);
    std::memcpy(m_text + m_length, text, length);
    Close(m_length + length);
  }
  void Insert(std::size_t position, char c) {
    std::memmove(m_text + position + 1, m_text + position, m_length - position);
    m_text[position] = c;
    Close(m_length + 1);
  }
  std::size_t Find(char c) const {
    return static_cast<std::size_t>(std::find(m_text, m_text + m_length, c) - m_text);
  }

 private:
  void Close(std::size_t length) {
    m_length = length;
    m_text[length] = '\0';
  }

  char* m_text;
  std::size_t m_length;
};

void RenderDollars(Rendering& text) {
  if (text.Length() >= kMostText) {
    text.Clear();
    return;
  }
  text.Insert(0, '$');
  // The base class writes no point without digits after it.
  const std::size_t point = text.Find('.');
  if (point == text.Length()) {
    if (text.Length() + 3 <= kMostText) text.Append(".00");
  } else if (point + 2 == text.Length() && text.Length() < kMostText) {
    text.Append("0");
  }
}

}  // namespace

namespace krofx::internal {

u16 IsBlankText(const char* text) noexcept {
  return text != nullptr &&
         (std::strcmp(text, kBlankText) == 0 || std::strcmp(text, "__OFX_EMPTY_STRING__") == 0);
}

}  // namespace krofx::internal

using krofx::internal::IsBlankText;
using krofx::internal::kBlankText;

KRPayrollAmount::KRPayrollAmount(KRPayrollAmountType type) noexcept
    : KRPrecisionInteger(0, type == KRPayrollAmountType_Dollar ? u16{2} : u16{0}),
      m_empty(type == KRPayrollAmountType_Empty),
      m_dollarKind(type == KRPayrollAmountType_Dollar) {}

KRPayrollAmount::KRPayrollAmount(const KRPrecisionInteger& number, u16 percent,
                                 u16 dollarKind) noexcept
    : KRPrecisionInteger(number),
      m_percent(percent != 0 && dollarKind == 0),
      m_dollarKind(dollarKind != 0) {}

KRPayrollAmount::KRPayrollAmount(s32 value, u16 decimals, u16 percent) noexcept
    : KRPrecisionInteger(value, decimals), m_percent(percent != 0) {}

KRPayrollAmount::KRPayrollAmount(const char* text) {
  KRPayrollAmount::ConvertStringToKRPrecisionInteger(text);
}

void KRPayrollAmount::SetPercent(u16 percent) {
  m_percent = percent != 0;
  if (m_percent != 0) m_dollarKind = 0;
}

void KRPayrollAmount::SetDollarKind(u16 dollarKind) {
  m_dollarKind = dollarKind != 0;
  if (m_dollarKind != 0) m_percent = 0;
}

u16 KRPayrollAmount::ConvertStringToKRPrecisionInteger(const char* text) {
  if (IsBlankText(text) != 0) {
    m_empty = 1;
    return 1;
  }
  m_empty = 0;
  m_percent = 0;
  m_dollarKind = text != nullptr && *text == '$';
  if (m_dollarKind != 0) ++text;
  std::size_t length = text == nullptr ? 0 : std::strlen(text);
  if (length != 0 && text[length - 1] == '%') {
    SetPercent(1);
    --length;
  }
  return Parse(text, length);
}

KRPayrollAmount::operator char*() {
  char* const text = TextBuffer();
  if (text == nullptr) return nullptr;
  if (m_empty != 0) {
    std::memcpy(text, kBlankText, sizeof kBlankText);
    return text;
  }
  Rendering rendering(text, WriteText(text));
  const std::size_t first = *text == '-';
  if (text[first] == '.' && rendering.Length() + 2 <= kMostText) rendering.Insert(first, '0');
  if (m_dollarKind != 0) {
    RenderDollars(rendering);
  } else if (m_percent != 0) {
    // No text of the base class has room for both a zero and the sign.
    if (rendering.Length() < kMostText) {
      rendering.Append("%");
    } else {
      rendering.Clear();
    }
  }
  return text;
}

u16 KRPayrollAmount::IsCompatible(const KRPayrollAmount& other) const {
  return m_empty == 0 && other.m_empty == 0 && m_percent == other.m_percent &&
         m_dollarKind == other.m_dollarKind;
}

u16 KRPayrollAmount::operator==(const KRPayrollAmount& other) const {
  return IsCompatible(other) != 0 && KRPrecisionInteger::operator==(other) != 0;
}

u16 KRPayrollAmount::operator!=(const KRPayrollAmount& other) const {
  return IsCompatible(other) == 0 || KRPrecisionInteger::operator!=(other) != 0;
}

u16 KRPayrollAmount::operator<(const KRPayrollAmount& other) const {
  return IsCompatible(other) != 0 && KRPrecisionInteger::operator<(other) != 0;
}

u16 KRPayrollAmount::operator<=(const KRPayrollAmount& other) const {
  return IsCompatible(other) != 0 && KRPrecisionInteger::operator<=(other) != 0;
}

u16 KRPayrollAmount::operator>(const KRPayrollAmount& other) const {
  return IsCompatible(other) != 0 && KRPrecisionInteger::operator>(other) != 0;
}

u16 KRPayrollAmount::operator>=(const KRPayrollAmount& other) const {
  return IsCompatible(other) != 0 && KRPrecisionInteger::operator>=(other) != 0;
}

KRPayrollAmount& KRPayrollAmount::operator+=(const KRPayrollAmount& other) {
  if (IsCompatible(other) != 0) KRPrecisionInteger::operator+=(other);
  return *this;
}

KRPayrollAmount& KRPayrollAmount::operator-=(const KRPayrollAmount& other) {
  if (IsCompatible(other) != 0) KRPrecisionInteger::operator-=(other);
  return *this;
}

KRPayrollAmount KRPayrollAmount::operator+(const KRPayrollAmount& other) const {
  KRPayrollAmount result(*this);
  result += other;
  return result;
}

KRPayrollAmount KRPayrollAmount::operator-(const KRPayrollAmount& other) const {
  KRPayrollAmount result(*this);
  result -= other;
  return result;
}

KRPayrollAmount KRPayrollAmount::operator*(const KRPayrollAmount& other) const {
  KRPrecisionInteger product = KRPrecisionInteger::operator*(other);
  if (other.m_percent != 0) product = product / KROneHundred;
  return KRPayrollAmount(product, m_percent, m_dollarKind);
}

KRPayrollAmount KRPayrollAmount::operator/(const KRPayrollAmount& other) const {
  KRPrecisionInteger quotient = KRPrecisionInteger::operator/(other);
  if (other.m_percent != 0) quotient = quotient * KROneHundred;
  return KRPayrollAmount(quotient, m_percent, m_dollarKind);
}

KRPayrollAmount KRPayrollAmount::absval() const {
  KRPayrollAmount result(*this);
  if (result.IsNegative() != 0) result.Negate();
  return result;
}

KRPayrollAmount KRPayrollAmount::AsAmount(const KRPrecisionInteger& number) {
  const auto* amount = dynamic_cast<const KRPayrollAmount*>(&number);
  return amount != nullptr ? *amount : KRPayrollAmount(number, 0, 0);
}

u16 KRPayrollAmount::operator==(const KRPrecisionInteger& other) const {
  return *this == AsAmount(other);
}

u16 KRPayrollAmount::operator!=(const KRPrecisionInteger& other) const {
  return *this != AsAmount(other);
}

u16 KRPayrollAmount::operator<(const KRPrecisionInteger& other) const {
  return *this < AsAmount(other);
}

u16 KRPayrollAmount::operator<=(const KRPrecisionInteger& other) const {
  return *this <= AsAmount(other);
}

u16 KRPayrollAmount::operator>(const KRPrecisionInteger& other) const {
  return *this > AsAmount(other);
}

u16 KRPayrollAmount::operator>=(const KRPrecisionInteger& other) const {
  return *this >= AsAmount(other);
}

KRPayrollAmount& KRPayrollAmount::operator+=(const KRPrecisionInteger& other) {
  return *this += AsAmount(other);
}

KRPayrollAmount& KRPayrollAmount::operator-=(const KRPrecisionInteger& other) {
  return *this -= AsAmount(other);
}

KRPrecisionInteger KRPayrollAmount::operator+(const KRPrecisionInteger& other) const {
  return *this + AsAmount(other);
}

KRPrecisionInteger KRPayrollAmount::operator-(const KRPrecisionInteger& other) const {
  return *this - AsAmount(other);
}

KRPrecisionInteger KRPayrollAmount::operator*(const KRPrecisionInteger& other) const {
  return *this * AsAmount(other);
}

KRPrecisionInteger KRPayrollAmount::operator/(const KRPrecisionInteger& other) const {
  return *this / AsAmount(other);
}
