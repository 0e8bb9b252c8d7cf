// The search in a keyword table.

#include "krofx/values/internal/keyword_table.h"

#include <cstdio>

#include "krofx/core/parse_logger.h"
#include "krofx/core/string.h"

namespace krofx::internal {

namespace {

// Not toupper: the meaning of a keyword must not depend on the host's locale.
constexpr char ToUpper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

// Most words of a table differ in length, which is quick to compare.
inline bool Matches(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (a[i] != b[i] && ToUpper(a[i]) != ToUpper(b[i])) return false;
  }
  return true;
}

std::string_view View(const KRString& text) {
  return {static_cast<const char*>(text), text.GetStrLength()};
}

u16 WarnBadKeyword(const KRString& text) {
  LogWarning(KRPW_BADFORMAT, text, KRString(), KRTag_None, nullptr);
  return 0;
}

u16 WarnBadValue(u32 value) {
  char digits[12];
  std::snprintf(digits, sizeof digits, "%u", value);
  return WarnBadKeyword(digits);
}

}  // namespace

bool EqualsWithoutCase(std::string_view a, std::string_view b) noexcept { return Matches(a, b); }

s32 FindKeyword(const KeywordTable& table, std::string_view text) noexcept {
  for (s32 value = table.readFrom; value < table.count; ++value) {
    if (Matches(table.texts[value], text)) return value;
  }
  return -1;
}

u16 KeywordFromText(const KeywordTable& table, const KRString& text, u32& value) {
  const s32 found = FindKeyword(table, View(text));
  if (found < 0) return WarnBadKeyword(text);
  value = static_cast<u32>(found);
  return 1;
}

u16 KeywordToText(const KeywordTable& table, u32 value, KRString& out) {
  if (value >= table.count) return table.logsOutOfRange ? WarnBadValue(value) : u16{0};
  out = table.texts[value].data();
  return 1;
}

u16 KeywordConversion::EnumToString(u16 value, KRString& out, u16 low, u16 high,
                                    const char* const* const table) {
  if (table == nullptr || value < low || value > high || table[value] == nullptr) {
    return WarnBadValue(value);
  }
  out = table[value];
  return 1;
}

u16 KeywordConversion::StringToEnum(const KRString& text, u16& out, u16 low, u16 high,
                                    const char* const* const table) {
  if (table == nullptr) return WarnBadKeyword(text);
  for (u32 value = low; value <= high; ++value) {
    if (table[value] != nullptr && Matches(table[value], View(text))) {
      out = static_cast<u16>(value);
      return 1;
    }
  }
  return WarnBadKeyword(text);
}

}  // namespace krofx::internal
