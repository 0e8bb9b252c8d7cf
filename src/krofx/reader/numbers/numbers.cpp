// Commas, points and other signs between the digits of a number, and numbers that are none.

#include "krofx/reader/numbers/numbers.h"

#include <algorithm>
#include <cstring>

#include "krofx/reader/values/plain_characters.h"
#include "krofx/reader/values/separators.h"
#include "krofx/reader/values/value_survey.h"

namespace krofx::internal {

namespace {

bool HasComma(std::string_view text) { return text.find(',') != std::string_view::npos; }

// Objects read a text of signs only as zero.
bool IsOfSignsOnly(const PlainCharacters& text, ValueForm form) {
  return std::all_of(text.All().begin(), text.All().end(), [form](char32_t c) {
    const bool isKind = form == ValueForm::kPayrollAmount && (c == '$' || c == '%');
    return isKind || c == '+' || c == '-' || c == '.' || c == ',' || c == ' ';
  });
}

// Whether the sign in question of an ambiguous number divides thousands.
enum class Verdict : u8 { kDecimal, kThousands, kUndecided };

Verdict Judge(const DoubtfulValue& value, char32_t sign) {
  switch (value.survey.DecimalSignOf(value.tag)) {
    case DecimalSign::kPoint:
      return sign == '.' ? Verdict::kDecimal : Verdict::kThousands;
    case DecimalSign::kComma:
      return sign == ',' ? Verdict::kDecimal : Verdict::kThousands;
    default:
      // OFX itself has the point.
      return sign == '.' ? Verdict::kDecimal : Verdict::kUndecided;
  }
}

// Writes the text again with the digits of its number and a point.
bool TakeRewritten(const DoubtfulValue& value, const PlainCharacters& text,
                   const NumberLayout& layout, bool ambiguous, MendedValue& out) {
  char bytes[PlainCharacters::kMost];
  const std::size_t begin = text.PlaceOf(layout.begin);
  const std::size_t end = text.PlaceOf(layout.end);
  std::memcpy(bytes, value.text.data(), begin);
  std::size_t size = begin;
  for (std::size_t at = layout.begin; at < layout.end; ++at) {
    if (IsPlainDigit(text[at])) {
      bytes[size++] = static_cast<char>(text[at]);
    } else if (layout.decimal != 0 && text[at] == layout.decimal) {
      bytes[size++] = '.';
    }
  }
  std::memcpy(bytes + size, value.text.data() + end, value.text.size() - end);
  size += value.text.size() - end;
  const MendingKind kind = ambiguous               ? MendingKind::kAmbiguousSeparator
                           : layout.decimal == ',' ? MendingKind::kDecimalComma
                           : layout.group != 0     ? MendingKind::kThousands
                                                   : MendingKind::kAmountDecoration;
  out.Take(kind, {bytes, size});
  if (layout.decimal == ',') out.Say(MendingKind::kDecimalComma);
  if (layout.group != 0) out.Say(MendingKind::kThousands);
  return true;
}

// Whether the objects read the digits as they are meant.
bool IsPlain(const PlainCharacters& text, const NumberLayout& layout) {
  for (std::size_t at = layout.begin; at < layout.end; ++at) {
    if (!IsPlainDigit(text[at]) && text[at] != '.') return false;
  }
  return layout.decimal != ',' && layout.group == 0;
}

bool MendBetweenDigits(const DoubtfulValue& value, bool integer, MendedValue& out) {
  const PlainCharacters text(value.text, value.survey.CharsetOfText());
  if (text.IsTooLong()) {
    return HasComma(value.text) && out.TakeAsAbsent(MendingKind::kNumberRefused);
  }
  NumberLayout layout = FindLayout(text);
  if (layout.shape == NumberShape::kNoDigits) {
    return IsOfSignsOnly(text, value.form) && out.TakeAsAbsent(MendingKind::kAmountAbsent);
  }
  if (layout.shape == NumberShape::kMalformed) {
    // The objects refuse it by themselves unless they pass over a comma.
    return HasComma(value.text) && out.TakeAsAbsent(MendingKind::kNumberRefused);
  }
  if (layout.shape == NumberShape::kClear) {
    return !IsPlain(text, layout) && TakeRewritten(value, text, layout, false, out);
  }
  const bool zeros =
      text[layout.end - 1] == '0' && text[layout.end - 2] == '0' && text[layout.end - 3] == '0';
  const bool onlyThousands = integer && !zeros;
  const Verdict verdict = onlyThousands ? Verdict::kThousands : Judge(value, layout.decimal);
  if (verdict == Verdict::kUndecided) return out.TakeAsAbsent(MendingKind::kAmountUndecided);
  if (verdict == Verdict::kDecimal && layout.decimal == '.') return false;
  if (verdict == Verdict::kThousands) std::swap(layout.decimal, layout.group);
  return TakeRewritten(value, text, layout, !onlyThousands, out);
}

}  // namespace

bool MendSeparators(const DoubtfulValue& value, MendedValue& out) {
  return MendBetweenDigits(value, false, out);
}

bool MendSeparatorsOfInteger(const DoubtfulValue& value, MendedValue& out) {
  return MendBetweenDigits(value, true, out);
}

bool MendNoNumber(const DoubtfulValue& value, MendedValue& out) {
  return IsWordForNothing(value.text) && out.TakeAsAbsent(MendingKind::kAmountAbsent);
}

bool MendZeros(const DoubtfulValue& value, MendedValue& out) {
  const PlainCharacters plain(value.text, value.survey.CharsetOfText());
  const NumberLayout layout = FindLayout(plain);
  const bool number = layout.shape == NumberShape::kClear && IsPlain(plain, layout) &&
                      layout.end == plain.size() && layout.begin <= 1;
  if (!number || (layout.begin == 1 && plain[0] != '-' && plain[0] != '+')) return false;
  std::string_view digits = value.text.substr(plain.PlaceOf(layout.begin));
  if (digits.find('.') != std::string_view::npos) {
    while (digits.back() == '0') digits.remove_suffix(1);
    if (digits.back() == '.') digits.remove_suffix(1);
  }
  while (digits.size() > 1 && digits.front() == '0' && digits[1] != '.') digits.remove_prefix(1);
  char bytes[PlainCharacters::kMost + 1];
  std::size_t size = 0;
  if (plain[0] == '-') bytes[size++] = '-';
  if (digits.empty()) digits = "0";
  std::memcpy(bytes + size, digits.data(), digits.size());
  size += digits.size();
  return size < value.text.size() && out.Take(MendingKind::kNumberZeros, {bytes, size});
}

}  // namespace krofx::internal
