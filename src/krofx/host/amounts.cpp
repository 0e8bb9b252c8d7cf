// Works on the digits of the exact text; nothing passes through floating point.

#include "krofx/host/amounts.h"

#include <algorithm>
#include <charconv>
#include <cstring>

namespace krofx {

namespace {

// The digits of a number: a sign, what is in front of the point, what is after it.
struct Digits {
  explicit Digits(const KRPrecisionInteger& amount) {
    std::string_view text(m_text, amount.WriteText(m_text));
    negative = text.starts_with('-');
    if (negative) text.remove_prefix(1);
    const std::size_t point = std::min(text.find('.'), text.size());
    whole = text.substr(0, point);
    fraction = text.substr(std::min(point + 1, text.size()));
  }

  bool negative;
  std::string_view whole;     // Empty below 1.
  std::string_view fraction;  // Without zeros at the end.

 private:
  char m_text[KRPrecisionInteger::kTextSize];
};

// Puts texts one after the other into a room that suffices for them.
class Writer {
 public:
  void Add(std::string_view text) {
    std::memcpy(m_text + m_length, text.data(), text.size());
    m_length += text.size();
  }
  void AddZeros(std::size_t count) {
    std::memset(m_text + m_length, '0', count);
    m_length += count;
  }
  std::string_view Text() const { return {m_text, m_length}; }

 private:
  // A sign, 29 digits, a point and 29 places.
  char m_text[ValueText::kSize];
  std::size_t m_length = 0;
};

}  // namespace

ValueText ToText(const KRPrecisionInteger& amount, unsigned places) {
  if (amount.KRPrecisionInteger::IsValid() == 0) return ValueText();
  const Digits digits(amount);
  const auto wanted = std::min<std::size_t>(places, KRPrecisionInteger::kMaxDecimals);
  Writer writer;
  if (digits.negative) writer.Add("-");
  writer.Add(digits.whole.empty() ? std::string_view("0") : digits.whole);
  if (wanted > 0 || !digits.fraction.empty()) writer.Add(".");
  writer.Add(digits.fraction);
  if (wanted > digits.fraction.size()) writer.AddZeros(wanted - digits.fraction.size());
  return ValueText(writer.Text());
}

std::optional<std::int64_t> ToMinor(const KRPrecisionInteger& amount, unsigned places) {
  if (amount.KRPrecisionInteger::IsValid() == 0) return std::nullopt;
  const Digits digits(amount);
  if (digits.fraction.size() > places) return std::nullopt;
  const std::size_t zeros = places - digits.fraction.size();
  // Zero is zero in every unit; any other number with more zeros than that fits no 64 bits.
  const bool isZero = digits.fraction.empty() && digits.whole == "0";
  if (isZero) return 0;
  if (zeros > KRPrecisionInteger::kMaxDecimals) return std::nullopt;
  Writer writer;
  if (digits.negative) writer.Add("-");
  writer.Add(digits.whole);
  writer.Add(digits.fraction);
  writer.AddZeros(zeros);
  const std::string_view text = writer.Text();
  std::int64_t units = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), units);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return units;
}

std::optional<KRPrecisionInteger> ToAmount(std::string_view text) {
  constexpr std::size_t kMostDigits = 28;
  std::string_view digits = text;
  if (digits.starts_with('-') || digits.starts_with('+')) digits.remove_prefix(1);
  const auto isDigit = [](char character) { return character >= '0' && character <= '9'; };
  const auto count = std::count_if(digits.begin(), digits.end(), isDigit);
  const auto points = std::count(digits.begin(), digits.end(), '.');
  const bool isNumber = count > 0 && count <= static_cast<std::ptrdiff_t>(kMostDigits) &&
                        points <= 1 && count + points == static_cast<std::ptrdiff_t>(digits.size());
  if (!isNumber) return std::nullopt;
  KRPrecisionInteger amount;
  if (amount.Parse(text.data(), text.size()) == 0) return std::nullopt;
  return amount;
}

}  // namespace krofx
