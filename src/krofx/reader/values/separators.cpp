// The layout of a number: its runs of digits, and the signs between them.

#include "krofx/reader/values/separators.h"

namespace krofx::internal {

namespace {

// As many digits as make thousands, and more runs than any number of 28 digits has.
constexpr std::size_t kThousand = 3;
constexpr std::size_t kMostRuns = 32;

bool IsDecimalSign(char32_t c) { return c == '.' || c == ','; }
bool IsSeparator(char32_t c) { return IsDecimalSign(c) || c == '\'' || c == ' '; }

// The runs of digits of a number, and the signs between them: signs[i] is after lengths[i].
struct Runs {
  std::size_t lengths[kMostRuns] = {};
  char32_t signs[kMostRuns] = {};
  std::size_t count = 1;
  bool firstIsZero = false;

  // Whether signs from one to the one before another are all the same.
  bool SameSigns(std::size_t to) const {
    for (std::size_t index = 1; index < to; ++index) {
      if (signs[index] != signs[0]) return false;
    }
    return true;
  }
  // Whether the first runs can be divided thousands: 1,234,567, or as in India 12,34,567.
  bool AreThousands(std::size_t runs) const {
    constexpr std::size_t kHundred = 2;
    if (lengths[0] == 0 || lengths[0] > kThousand || lengths[runs - 1] != kThousand) return false;
    const std::size_t inner = runs > 2 ? lengths[1] : kThousand;
    if (inner != kThousand && (inner != kHundred || lengths[0] > kHundred)) return false;
    for (std::size_t index = 1; index + 1 < runs; ++index) {
      if (lengths[index] != inner) return false;
    }
    return true;
  }
};

// Blanks beside a decimal sign divide nothing.
bool IsBlankBesideSign(const PlainCharacters& text, std::size_t at) {
  return text[at] == ' ' && (IsDecimalSign(text[at - 1]) || IsDecimalSign(text[at + 1]));
}

bool ReadRuns(const PlainCharacters& text, const NumberLayout& layout, Runs& runs) {
  for (std::size_t at = layout.begin; at < layout.end; ++at) {
    if (IsPlainDigit(text[at])) {
      ++runs.lengths[runs.count - 1];
      continue;
    }
    if (!IsSeparator(text[at])) return false;
    if (at > layout.begin && at + 1 < layout.end && IsBlankBesideSign(text, at)) continue;
    if (runs.count == kMostRuns) return false;
    runs.signs[runs.count++ - 1] = text[at];
  }
  for (std::size_t index = 1; index + 1 < runs.count; ++index) {
    if (runs.lengths[index] == 0) return false;
  }
  return true;
}

// Several signs: the last may be the decimal sign, and those before it divide thousands.
NumberShape ReadSeveral(const Runs& runs, NumberLayout& layout) {
  const std::size_t signs = runs.count - 1;
  const char32_t last = runs.signs[signs - 1];
  if (runs.SameSigns(signs)) {
    layout.group = last;
    return runs.AreThousands(runs.count) ? NumberShape::kClear : NumberShape::kMalformed;
  }
  if (!IsDecimalSign(last) || !runs.SameSigns(signs - 1) || runs.signs[0] == last) {
    return NumberShape::kMalformed;
  }
  layout.decimal = last;
  layout.group = runs.signs[0];
  return runs.AreThousands(signs) ? NumberShape::kClear : NumberShape::kMalformed;
}

NumberShape ReadOne(const Runs& runs, NumberLayout& layout) {
  const char32_t sign = runs.signs[0];
  if (!IsDecimalSign(sign)) {
    layout.group = sign;
    return runs.AreThousands(2) ? NumberShape::kClear : NumberShape::kMalformed;
  }
  layout.decimal = sign;
  const bool maybeThousands = runs.AreThousands(2) && !runs.firstIsZero;
  return maybeThousands ? NumberShape::kAmbiguous : NumberShape::kClear;
}

bool HasCommaOutside(const PlainCharacters& text, const NumberLayout& layout) {
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] == ',' && (at < layout.begin || at >= layout.end)) return true;
  }
  return false;
}

}  // namespace

NumberLayout FindLayout(const PlainCharacters& text) {
  NumberLayout layout;
  std::size_t first = 0;
  while (first < text.size() && !IsPlainDigit(text[first])) ++first;
  if (first == text.size()) return layout;
  layout.end = text.size();
  while (!IsPlainDigit(text[layout.end - 1])) --layout.end;
  layout.begin = first > 0 && IsDecimalSign(text[first - 1]) ? first - 1 : first;
  if (layout.end < text.size() && IsDecimalSign(text[layout.end])) ++layout.end;

  layout.shape = NumberShape::kMalformed;
  Runs runs;
  runs.firstIsZero = text[first] == '0';
  // "5,-" is five without cents, and not less than nothing.
  const bool dashForCents =
      layout.end < text.size() && IsDecimalSign(text[layout.end - 1]) && text[layout.end] == '-';
  if (dashForCents || HasCommaOutside(text, layout) || !ReadRuns(text, layout, runs)) return layout;
  layout.shape = runs.count == 1   ? NumberShape::kClear
                 : runs.count == 2 ? ReadOne(runs, layout)
                                   : ReadSeveral(runs, layout);
  return layout;
}

}  // namespace krofx::internal
