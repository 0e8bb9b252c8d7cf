// The table of the value menders, and the smallest of them.

#include "krofx/reader/value_mender.h"

#include <algorithm>
#include <cstddef>

namespace krofx::internal {

namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// "-11,76": one comma, and what follows cannot be a group of thousands.
bool MendDecimalComma(const DoubtfulValue& value, MendedValue& out) {
  const std::size_t comma = value.text.find(',');
  if (comma == std::string_view::npos ||
      value.text.find_first_of(",.", comma + 1) != std::string_view::npos ||
      value.text.find('.') != std::string_view::npos) {
    return false;
  }
  const std::string_view behind = value.text.substr(comma + 1);
  constexpr std::size_t kGroup = 3;
  if (behind.size() == kGroup || !std::all_of(behind.begin(), behind.end(), &IsDigit)) return false;
  constexpr std::size_t kMost = 64;
  if (value.text.size() > kMost) return false;
  char text[kMost];
  std::copy(value.text.begin(), value.text.end(), text);
  text[comma] = '.';
  return out.Take(MendingKind::kDecimalComma, {text, value.text.size()});
}

// A transaction of any other type is still a transaction.
bool MendTransactionType(const DoubtfulValue& value, MendedValue& out) {
  return value.tag == KRTag_TRNTYPE && out.Take(MendingKind::kTransactionType, "OTHER");
}

constexpr ValueMender kMenders[] = {
    {ValueForm::kDecimal, true, &MendDecimalComma},
    {ValueForm::kKeyword, false, &MendTransactionType},
};

}  // namespace

std::span<const ValueMender> ValueMenders() { return kMenders; }

}  // namespace krofx::internal
