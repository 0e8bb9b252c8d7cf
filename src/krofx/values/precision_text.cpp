// The text of exact decimals: parsing OFX numbers and writing them.

#include <cstring>

#include "krofx/core/parse_logger.h"
#include "krofx/core/thread.h"
#include "krofx/values/internal/decimal_text.h"
#include "krofx/values/internal/passed_commas.h"
#include "krofx/values/internal/text_warning.h"
#include "krofx/values/precision_integer.h"

using krofx::internal::LazyBlock;
using krofx::internal::NumbersWithoutDigits;
using krofx::internal::PassedCommas;
using krofx::internal::u128;
using krofx::internal::WarnAboutText;
using krofx::internal::WriteDecimal;

namespace {

/// The parts of a number's text, before any rule about the number is checked.
struct DecimalReading {
  u128 magnitude = 0;
  s16 sign = 1;
  u16 decimals = 0;
  /// The first error, or KRPW_UNKNOWNEXCEPTION for none.
  KRParseWarning error = KRPW_UNKNOWNEXCEPTION;
};

DecimalReading ReadDecimal(const char* text, std::size_t length) noexcept {
  constexpr unsigned kMostDigits = 28;
  // This many digits fit 64 bits, and nearly all numbers have no more.
  constexpr unsigned kWordDigits = 19;

  DecimalReading reading;
  std::uint64_t word = 0;
  unsigned digits = 0;
  bool pointSeen = false;
  bool malformed = false;

  for (std::size_t i = 0; i < length; ++i) {
    const char c = text[i];
    const unsigned digit = static_cast<unsigned char>(c) - unsigned{'0'};
    if (digit < 10) {
      if (digits < kWordDigits) {
        word = word * 10 + digit;
      } else {
        if (digits == kMostDigits && !malformed) {
          reading.error = KRPW_TOOLONG;
          break;
        }
        if (digits == kWordDigits) reading.magnitude = word;
        reading.magnitude = reading.magnitude * 10 + digit;
      }
      // Reading of a malformed text continues beyond the limit, and its magnitude may overflow.
      if (digits < kMostDigits) ++digits;
      continue;
    }
    switch (c) {
      case ',':
        ++PassedCommas();
        break;
      case '-':
        reading.sign = -1;
        malformed |= i != 0;
        break;
      case '+':
        malformed |= i != 0;
        break;
      case '.':
        if (pointSeen) {
          malformed = true;
        } else {
          pointSeen = true;
          const std::size_t places = length - i - 1;
          reading.decimals = static_cast<u16>(places < 65535 ? places : 65535);
        }
        break;
      default:
        malformed = true;
        break;
    }
  }
  if (digits <= kWordDigits) reading.magnitude = word;
  if (malformed) reading.error = KRPW_BADFORMAT;
  if (digits == 0) ++NumbersWithoutDigits();
  return reading;
}

}  // namespace

std::size_t& krofx::internal::PassedCommas() {
  static thread_local std::size_t count = 0;
  return count;
}

std::size_t& krofx::internal::NumbersWithoutDigits() {
  static thread_local std::size_t count = 0;
  return count;
}

KRPrecisionInteger::KRPrecisionInteger(const char* text) {
  KRPrecisionInteger::ConvertStringToKRPrecisionInteger(text);
}

KRPrecisionInteger& KRPrecisionInteger::operator=(const char* text) {
  ConvertStringToKRPrecisionInteger(text);
  return *this;
}

u16 KRPrecisionInteger::ConvertStringToKRPrecisionInteger(const char* text) {
  return Parse(text, text == nullptr ? 0 : std::strlen(text));
}

u16 KRPrecisionInteger::Parse(const char* text, std::size_t length) {
  const DecimalReading reading = ReadDecimal(text, length);
  m_low = static_cast<u32>(reading.magnitude);
  m_middle = static_cast<u32>(reading.magnitude >> 32);
  m_high = static_cast<u32>(reading.magnitude >> 64);
  m_sign = reading.sign;
  m_decimals = reading.decimals;

  KRParseWarning error = reading.error;
  if (error == KRPW_UNKNOWNEXCEPTION) {
    if (length != 0 && IsValid() != 0) return 1;
    error = KRPW_BADFORMAT;
  }
  WarnAboutText(error, text, length, "");
  return 0;
}

u16 KRPrecisionInteger::WriteText(char* out) const noexcept {
  char* const end = WriteDecimal(AsPlain(), out);
  *end = '\0';
  return static_cast<u16>(end - out);
}

KRPrecisionInteger::operator char*() {
  char* const text = TextBuffer();
  if (text != nullptr) WriteText(text);
  return text;
}

KRPrecisionInteger::operator char*() const {
  // Changes only the text, which is not part of the value.
  return const_cast<KRPrecisionInteger*>(this)->operator char*();
}

KRPercent::KRPercent(const char* text) { KRPercent::ConvertStringToKRPrecisionInteger(text); }

KRPosPrecisionInteger::KRPosPrecisionInteger(const char* text) {
  KRPosPrecisionInteger::ConvertStringToKRPrecisionInteger(text);
}

u16 KRCommaSepPrecisionInteger::ConvertStringToKRPrecisionInteger(const char* text) {
  if (text == nullptr) return Parse(nullptr, 0);

  // Every valid number fits here, unless it has many commas.
  char room[64];
  const std::size_t length = std::strlen(text);
  LazyBlock heap;
  char* const bare = length <= sizeof room ? room : static_cast<char*>(heap.Ensure(length));
  if (bare == nullptr) {
    KRPrecisionInteger::operator=(0);
    return 0;
  }
  std::size_t count = 0;
  for (std::size_t i = 0; i < length; ++i) {
    if (text[i] != ',') bare[count++] = text[i];
  }
  PassedCommas() += length - count;
  return Parse(bare, count);
}

KRCommaSepPrecisionInteger::operator char*() { return CurrentText(); }
