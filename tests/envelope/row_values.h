// Values for each row of a table, by its kind: the keywords of its list, the bounds of its numbers,
// a text as long as it may be and one with characters that are escaped.

#ifndef KROFX_TESTS_ENVELOPE_ROW_VALUES_H_
#define KROFX_TESTS_ENVELOPE_ROW_VALUES_H_

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <initializer_list>
#include <iterator>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "krofx/model/value_kinds.h"
#include "krofx/payroll/internal/payroll_kinds.h"
#include "krofx/values/keyword_conversions.h"
#include "support/aggregate_table.h"
#include "support/ofx_text.h"

namespace krofx::testing {

/// What is stored in a row, and what is then written.
struct RowValue {
  std::string text;
  std::string written;
};
/// What one object holds in a row: one value, or several if the row is repeated.
using RowContent = std::vector<RowValue>;

/// The greatest spec length of a row. A text that may be longer may have any length.
inline constexpr std::size_t kLongestText = 10000;

/// A row of a table, with its tag.
struct TaggedRow {
  KRTagID tag;
  const krofx::internal::Row& row;

  std::string Tag() const { return KRTagDictionary::TheKRTagDictionary()->GetTagString(tag); }
  /// Stores a text as a parser does.
  KRParseStatus Store(KRDataObj& object, const std::string& text) const {
    const KRTagDictionaryEntry entry{tag, ""};
    return object.HandleTagElement(&entry, KRString(text.c_str()));
  }
  /// The text of a value as a builder writes it. Only the body of a letter has an end tag.
  std::string Element(const std::string& value) const {
    const std::string end = tag == KRTag_MSGBODY ? "</" + Tag() + ">\n" : "";
    return "<" + Tag() + ">" + value + "\n" + end;
  }
};

inline bool IsRepeated(const krofx::internal::ValueKind& kind) {
  const auto isOneOf = []<class... Arrays>(const krofx::internal::ValueKind& asked) {
    return ((&asked == &krofx::internal::kRepeated<Arrays>) || ...);
  };
  return isOneOf.
  operator()<KRDynamicArrayString, KRDynamicArrayString3, KRDynamicArrayString9,
             KRDynamicArrayString16, KRDynamicArrayString32, KRDynamicArrayString64,
             KRDynamicArrayString255, KRDynamicArrayString1024, KRDynamicArrayLanguage,
             KRDynamicArrayBankAccountType, KRDynamicArrayBankAccountType2, KRDynamicArrayDayOfWeek,
             KRDynamicArrayNorvService, KRDynamicArrayNorvService2>(kind);
}

/// Whether a kind of texts has no limit.
inline bool HasNoLimit(const krofx::internal::ValueKind& kind) {
  using namespace krofx::internal;
  return &kind == &kText<KRString> || &kind == &kRepeated<KRDynamicArrayString>;
}

/// Values that are written as they are read.
inline std::vector<RowValue> Same(std::initializer_list<std::string_view> texts) {
  std::vector<RowValue> values;
  for (const std::string_view text : texts)
    values.push_back({std::string(text), std::string(text)});
  return values;
}

/// Values of the kinds that are neither texts nor keywords; none for those.
inline std::vector<RowValue> FiguresOf(const krofx::internal::ValueKind& kind) {
  using namespace krofx::internal;
  static const std::map<const ValueKind*, std::vector<RowValue>> figures = {
      {&kBoolean, Same({"Y", "N"})},
      {&kUShort, Same({"0", "65535"})},
      {&kPaddedUShort<4>, {{"7", "0007"}, {"65535", "65535"}}},
      {&kSShort, Same({"-32768", "32767"})},
      {&kULong, Same({"0", "4294967295"})},
      {&kSLong, Same({"-2147483647", "2147483647"})},
      {&kDateTime, Same({"20260131", "20260131235959.999[-5:EST]"})},
      {&kTime, Same({"120000", "173000[-5:EST]"})},
      {&kLanguage, Same({"ENG", "FRA"})},
      {&kRepeated<KRDynamicArrayLanguage>, Same({"ENG", "FRA"})},
      {&kNumber<KRPrecisionInteger, &KRBuilder::AddTagKRAmount>, Same({"-1234567.89", ".5", "0"})},
      {&kNumber<KRPrecisionInteger, &KRBuilder::AddTagKRUnitPrice>,
       Same({"-1234567.89", ".5", "0"})},
      {&kNumber<KRPosPrecisionInteger, &KRBuilder::AddTagKRAmount>, Same({"1234567.89", "0"})},
      {&kNumber<KRPercent, &KRBuilder::AddTagKRRate>, Same({"99.75", "0"})},
      {&kPayrollAmount, Same({"$1234.50", "12.5%"})},
      {&kPayrollDateTime, Same({"20260131"})},
  };
  const auto found = figures.find(&kind);
  return found == figures.end() ? std::vector<RowValue>() : found->second;
}

/// The keywords of a kind whose members hold them as plain numbers; null for any other kind.
inline const krofx::internal::KeywordTable* NumberedKeywords(
    const krofx::internal::ValueKind& kind) {
  using namespace krofx::internal;
  static const std::map<const ValueKind*, const KeywordTable*> tables = {
      {&kKeywordIndex<KRPwType>, &KeywordTraits<KRPwType>::kTable},
      {&kKeywordIndex<KRNorvDateModel>, &KeywordTraits<KRNorvDateModel>::kTable},
      {&kRepeated<KRDynamicArrayBankAccountType>, &KeywordTraits<KRBankAccountType>::kTable},
      {&kRepeated<KRDynamicArrayBankAccountType2>, &KeywordTraits<KRBankAccountType2>::kTable},
      {&kRepeated<KRDynamicArrayDayOfWeek>, &KeywordTraits<KRDayOfWeek>::kTable},
      {&kRepeated<KRDynamicArrayNorvService>, &KeywordTraits<KRNorvService>::kTable},
      {&kRepeated<KRDynamicArrayNorvService2>, &KeywordTraits<KRNorvService2>::kTable},
  };
  const auto found = tables.find(&kind);
  return found == tables.end() ? nullptr : found->second;
}

/// All keywords of a kind.
inline std::vector<RowValue> KeywordsOf(const krofx::internal::ValueKind& kind) {
  std::vector<RowValue> keywords;
  if (const auto* table = NumberedKeywords(kind)) {
    for (u16 i = 0; i < table->count; ++i) keywords.push_back(Same({table->texts[i]})[0]);
    return keywords;
  }
  // Any other member is an enumeration, whose values the kind writes up to the last one.
  alignas(u32) unsigned char member[sizeof(u32)];
  char text[64];
  for (u32 value = 0; kind.writeCommon != nullptr; ++value) {
    std::memcpy(member, &value, sizeof value);
    const char* const end = kind.writeCommon(member, text, std::end(text));
    if (end == nullptr) break;
    keywords.push_back(Same({std::string_view(text, static_cast<std::size_t>(end - text))})[0]);
  }
  return keywords;
}

/// @param object an empty object.
/// @return how many characters of a text a builder writes that cuts what is too long; more than
///         kLongestText for a text without a limit.
inline std::size_t SpecLengthOf(const TaggedRow& row, KRDataObj& object) {
  row.Store(object, Letters(kLongestText + 1));
  TakeWarnings();
  const std::string text = Build(object, KRBuildStringOpt_Lenient).text;
  return text.find('\n') - row.Element("").find('\n');
}

/// A text as long as it may be, and one with characters that are escaped.
inline std::vector<RowValue> TextsOf(std::size_t specLength) {
  // A text without a limit need not be long.
  const std::string longest = Letters(specLength > kLongestText ? 300 : specLength);
  const std::string special = std::string("<&>&lt;").substr(0, specLength);
  std::string escaped;
  for (const char c : special) {
    escaped += c == '<' ? "&lt;" : c == '>' ? "&gt;" : c == '&' ? "&amp;" : std::string(1, c);
  }
  return {{longest, longest}, {special, escaped}};
}

/// What objects hold in a row, one after another. Empty, and a failure of the test, for a kind that
/// is not known here.
/// @param object an empty object.
inline std::vector<RowContent> ContentsOf(const TaggedRow& row, KRDataObj& object) {
  using krofx::internal::ValueForm;
  const krofx::internal::ValueKind& kind = *row.row.value;
  std::vector<RowValue> values = FiguresOf(kind);
  if (values.empty() && kind.form == ValueForm::kKeyword) values = KeywordsOf(kind);
  if (values.empty() && kind.form == ValueForm::kText) values = TextsOf(SpecLengthOf(row, object));
  EXPECT_FALSE(values.empty()) << "no values for the kind of " << row.Tag();
  if (IsRepeated(kind)) return {values};
  std::vector<RowContent> contents;
  for (const RowValue& value : values) contents.push_back({value});
  return contents;
}

}  // namespace krofx::testing

#endif  // KROFX_TESTS_ENVELOPE_ROW_VALUES_H_
