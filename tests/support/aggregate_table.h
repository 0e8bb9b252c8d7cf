// Tests a class of aggregate against its table, given as text:
//
//   ExpectTable<KRPayee2>("PAYEE2", R"(
//     NAME     text32  required(V2+)
//     ADDR1    text32
//     COUNTRY  text3
//   )");
//
// One row a line, in wire order: tag, kind, then in any order the use and the versions.
//
//   kinds     textN (N is the limit), text (none), date, time, amount, posamount, payamount,
//             paydate, rate, boolean, u16, s16, s32, u32, language, word=KEYWORD, child, children,
//             repeated=TEXT,TEXT, words=KEYWORD,KEYWORD, listed (valid, but neither read nor
//             written)
//   use       required, or required(V2+) where that differs from the row's versions
//   versions  nothing for all; V1, V2+
//   lenient   a text that is not a value is skipped, and the parse continues; on a line by itself
//             it applies to the rows below, which log one warning for such a text
//   padN      the number is written with leading zeros to N digits
//   closed    the element is written with its end tag
//   other     a child that shares the slot of the child of an earlier row
//   asked     not in the required table, but reported as missing by a rule of the class; of several
//             rows under one rule, the first
//
// It tests the default tag, both tables, that the order of writing does not depend on the order of
// reading, the rows of each version, the limits of each kind, texts that are not values, each
// required tag when it is missing, children and the version that they get, deep copies, and running
// out of memory.

#ifndef KROFX_TESTS_SUPPORT_AGGREGATE_TABLE_H_
#define KROFX_TESTS_SUPPORT_AGGREGATE_TABLE_H_

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "krofx/core/tag_dictionary.h"
#include "krofx/model/data_object.h"
#include "support/failing_allocation.h"
#include "support/ofx_text.h"

namespace krofx::testing {

/// A row of a table under test.
struct TableRow {
  std::string tag;
  std::string kind;
  std::vector<std::string> values;  ///< Values that must be read, and written as `written` says.
  std::vector<std::string> written;
  std::string bad;  ///< A text that is not a value of the kind; empty when every text is one.
  std::size_t limit = 0;
  u16 versions = 0xffff;
  u16 required = 0;
  bool lenient = false;
  bool warnsOnce = false;
  bool closed = false;
  bool other = false;
  bool asked = false;

  bool IsChild() const { return kind == "child" || kind == "children"; }
  bool In(u16 version) const { return (versions & version) != 0; }
  /// The row's tag in the dictionary.
  KRTagID Id() const {
    KRTagID id = KRTag_None;
    const KRTagDictionaryEntry* entry = KRTagDictionary::TheKRTagDictionary()->GetTagID(
        tag.c_str(), static_cast<u16>(tag.size()), &id, KRCaseType_Exact);
    return entry == nullptr ? KRTag_None : entry->tagID;
  }
  /// The row in a text to read, or as it must be written.
  std::string Text(bool asWritten) const {
    std::string text;
    if (IsChild()) {
      for (int i = 0; i < (kind == "children" ? 2 : 1); ++i) text += Aggregate(tag, "");
    }
    for (const std::string& value : asWritten ? written : values) text += "<" + tag + ">" + value;
    if (closed && asWritten) text += "</" + tag + ">";
    return text;
  }
};

inline std::vector<std::string> SplitAt(const std::string& text, char separator) {
  std::vector<std::string> parts;
  std::istringstream stream(text);
  for (std::string part; std::getline(stream, part, separator);) parts.push_back(part);
  return parts;
}

inline u16 VersionMask(const std::string& word) {
  if (word == "V1") return 0x1;
  return word == "V2+" ? 0xfffe : 0xffff;
}

/// `length` characters that differ from their neighbours.
inline std::string Letters(std::size_t length) {
  std::string text(length, 'a');
  for (std::size_t i = 0; i < length; ++i) text[i] = static_cast<char>('a' + i % 26);
  return text;
}

inline void SetKind(TableRow& row, const std::string& kind) {
  struct Sample {
    const char* kind;
    const char* value;
    const char* bad;
  };
  static constexpr Sample kSamples[] = {
      {"text", "Some text", ""},
      {"payamount", "$1234.50", "12x"},
      {"paydate", "20260131", "soon"},
      {"date", "20260131235959.999[-5:EST]", "soon"},
      {"time", "173000[-5:EST]", "noon"},
      {"amount", "-1234567.89", "12x"},
      {"posamount", "1234567.89", "-1"},
      {"rate", "99.75", "101"},
      {"boolean", "Y", "y"},
      {"u16", "65535", "65536"},
      {"s16", "-32768", "32768"},
      {"s32", "-2147483647", "2147483648"},
      {"u32", "4294967295", "4294967296"},
      {"language", "FRA", ""},
      {"child", nullptr, ""},
      {"children", nullptr, ""},
      {"listed", nullptr, ""},
  };
  const std::size_t equals = kind.find('=');
  row.kind = kind.substr(0, equals);
  if (equals != std::string::npos) {
    row.values = SplitAt(kind.substr(equals + 1), ',');
    if (row.kind.starts_with("word")) row.bad = "NOSUCHWORD";
  } else if (row.kind.starts_with("text") && row.kind != "text") {
    row.limit = std::stoul(row.kind.substr(4));
    row.values = {Letters(row.limit)};
  } else {
    const auto* sample = std::find_if(std::begin(kSamples), std::end(kSamples),
                                      [&](const Sample& s) { return row.kind == s.kind; });
    ASSERT_NE(sample, std::end(kSamples)) << "no such kind: " << kind;
    if (sample->value != nullptr) row.values = {sample->value};
    row.bad = sample->bad;
  }
  row.written = row.values;
}

/// Reads the rows of a table from its text.
inline std::vector<TableRow> ReadTable(const std::string& text) {
  std::vector<TableRow> rows;
  bool allLenient = false;
  for (const std::string& line : SplitAt(text, '\n')) {
    std::istringstream words(line);
    TableRow row;
    std::string word;
    if (!(words >> row.tag >> word)) {
      allLenient = allLenient || row.tag == "lenient";
      continue;
    }
    row.lenient = row.warnsOnce = allLenient;
    SetKind(row, word);
    bool isRequired = false;
    while (words >> word) {
      if (word == "required") {
        isRequired = true;
      } else if (word.starts_with("required(")) {
        row.required = VersionMask(word.substr(9, word.size() - 10));
      } else if (word == "lenient") {
        row.lenient = true;
      } else if (word == "closed") {
        row.closed = true;
      } else if (word == "other") {
        row.other = true;
      } else if (word == "asked") {
        row.asked = true;
      } else if (word.starts_with("pad")) {
        row.values = {"7"};
        row.written = {std::string(std::stoul(word.substr(3)) - 1, '0') + "7"};
      } else {
        EXPECT_TRUE(word == "V1" || word == "V2" || word == "V2+") << line;
        row.versions = VersionMask(word);
      }
    }
    if (isRequired) row.required = row.versions;
    EXPECT_NE(row.Id(), KRTag_None) << row.tag;
    rows.push_back(std::move(row));
  }
  return rows;
}

/// A table of the class under test as lines "TAG mask".
inline Lines TableLines(const KRArrayOfTags& tags) {
  Lines lines;
  for (u16 i = 0; i < tags.count; ++i) {
    const char* text = KRTagDictionary::TheKRTagDictionary()->GetTagString(tags.table[i].tag);
    lines.push_back(std::string(text) + " " + std::to_string(tags.table[i].versions));
  }
  return lines;
}

/// How the class under test is made and copied.
struct ClassUnderTest {
  std::unique_ptr<KRDataObj> (*make)();
  u16 (*deepCopy)(KRDataObj& to, KRDataObj* from);
};

template <class T>
ClassUnderTest Class() {
  return {[]() -> std::unique_ptr<KRDataObj> { return std::make_unique<T>(); },
          [](KRDataObj& to, KRDataObj* from) {
            return static_cast<T&>(to).DeepCopyFrom(static_cast<T*>(from));
          }};
}

/// The tests of one class; see ExpectTable.
class TableCheck {
 public:
  TableCheck(ClassUnderTest classUnderTest, const std::string& defaultTag, const std::string& table,
             u16 ownVersion)
      : m_class(classUnderTest),
        m_defaultTag(defaultTag),
        m_rows(ReadTable(table)),
        m_ownVersion(ownVersion) {}

  void Run() const {
    ExpectFresh();
    ExpectTables();
    for (const u16 version : {u16{1}, u16{2}}) {
      SCOPED_TRACE("version " + std::to_string(version));
      ExpectRoundTrip(version);
      ExpectOthersInPlace(version);
      ExpectOtherVersionsRefused(version);
      ExpectLimits(version);
      ExpectBadValuesRefused(version);
      ExpectMissingNoticed(version);
    }
    ExpectMemoryFailures();
  }

 private:
  using ParsedObject = Parsed<KRDataObj>;

  std::unique_ptr<KRDataObj> MakeIn(u16 version) const {
    auto object = m_class.make();
    object->SetMsgSetVersion(version);
    return object;
  }

  std::string AllRows(u16 version, bool asWritten, bool backwards = false) const {
    std::string text;
    for (const TableRow& row : m_rows) {
      if (!row.In(version) || row.other) continue;
      const std::string rowText = row.Text(asWritten);
      text = backwards ? rowText + text : text + rowText;
    }
    return text;
  }

  void ExpectFresh() const {
    const auto object = m_class.make();
    KRDataObj& fresh = *object;
    const char* tag = KRTagDictionary::TheKRTagDictionary()->GetTagString(fresh.GetType());
    EXPECT_EQ(tag == nullptr ? "" : std::string(tag), m_defaultTag);
    EXPECT_EQ(fresh.GetMsgSetVersion(), m_ownVersion);
    EXPECT_EQ(fresh.AnyValidPresent(), 0);
    EXPECT_EQ(fresh.ProcessResponse(), 1);
    EXPECT_EQ(TextOf(*MakeIn(1)), "");
  }

  void ExpectTables() const {
    Lines valid;
    Lines required;
    for (const TableRow& row : m_rows) {
      valid.push_back(row.tag + " " + std::to_string(row.versions));
      if (row.required != 0) required.push_back(row.tag + " " + std::to_string(row.required));
    }
    const auto object = m_class.make();
    KRArrayOfTags tags;
    EXPECT_EQ(object->GetArrayOfValidTags(tags), 1);
    EXPECT_EQ(TableLines(tags), valid);
    EXPECT_EQ(object->GetArrayOfRequiredTags(tags), 1);
    EXPECT_EQ(TableLines(tags), required);
  }

  // Rows read in any order are written in the order of the table and copied completely.
  void ExpectRoundTrip(u16 version) const {
    const std::string written = InLines(AllRows(version, true));
    auto parsed = std::make_unique<ParsedObject>(AllRows(version, false, true), MakeIn(version));
    EXPECT_EQ(parsed->Warnings(), Lines());
    ASSERT_EQ(parsed->Status(), KRParseStatus_Accepted);
    EXPECT_EQ(TextOf(**parsed), written);
    ExpectChildren(**parsed, version);
    const auto copy = m_class.make();
    ASSERT_EQ(m_class.deepCopy(*copy, parsed->Get()), 1);
    parsed.reset();
    EXPECT_EQ(TextOf(*copy), written);
    EXPECT_EQ(m_class.deepCopy(*copy, nullptr), 0);
    EXPECT_EQ(TextOf(*copy), written);
  }

  void ExpectChildren(KRDataObj& object, u16 version) const {
    std::map<KRTagID, int> expected;
    for (const TableRow& row : m_rows) {
      if (row.IsChild() && row.In(version) && !row.other)
        expected[row.Id()] += row.kind == "child" ? 1 : 2;
    }
    std::map<KRTagID, int> found;
    object.SetMsgSetVersion(static_cast<u16>(version | 4));
    for (u16 i = 0; i < object.GetNumberOfChildren(); ++i) {
      KRDataObj* child = object.GetChild(i);
      if (child == nullptr) continue;
      ++found[child->GetType()];
      EXPECT_EQ(child->GetMsgSetVersion(), version | 4);
    }
    EXPECT_EQ(found, expected);
    EXPECT_EQ(object.GetChild(object.GetNumberOfChildren()), nullptr);
    object.SetMsgSetVersion(version);
  }

  // A child that shares its slot with others is read and written by itself, and replaces the
  // previous one with a warning.
  void ExpectOthersInPlace(u16 version) const {
    std::string before;
    for (const TableRow& row : m_rows) {
      if (!row.IsChild() || !row.In(version)) continue;
      const std::string first = std::exchange(before, row.Text(false));
      if (!row.other) continue;
      SCOPED_TRACE(row.tag);
      const ParsedObject alone(row.Text(false), MakeIn(version));
      EXPECT_EQ(alone.Status(), KRParseStatus_Accepted);
      EXPECT_EQ(TextOf(*alone), InLines(row.Text(true)));
      const ParsedObject second(first + row.Text(false), MakeIn(version));
      EXPECT_EQ(second.Status(), KRParseStatus_Warnings);
      EXPECT_EQ(second.Warnings(), Lines{"EXTRAAGG " + TagNumber(row.Id())});
      EXPECT_EQ(TextOf(*second), InLines(row.Text(true)));
    }
  }

  // A tag of another version, or one that is only listed, is skipped with a warning.
  void ExpectOtherVersionsRefused(u16 version) const {
    for (const TableRow& row : m_rows) {
      if (row.In(version) || row.Text(false).empty()) continue;
      SCOPED_TRACE(row.tag);
      const ParsedObject parsed(row.Text(false), MakeIn(version));
      EXPECT_EQ(parsed.Status(), KRParseStatus_Warnings);
      for (const std::string& warning : parsed.Warnings()) {
        EXPECT_TRUE(warning.starts_with(row.IsChild() ? "INVALIDAGG" : "INVALIDELEM")) << warning;
      }
      EXPECT_EQ(parsed->ValidateTag(row.Id()), 0);
      EXPECT_EQ(parsed->SetTag(row.Id()), HasRowInVersion(row, version));
      EXPECT_EQ(TextOf(*MakeIn(version)), "");
    }
  }

  u16 HasRowInVersion(const TableRow& row, u16 version) const {
    return std::any_of(m_rows.begin(), m_rows.end(), [&](const TableRow& other) {
      return other.tag == row.tag && other.In(version);
    });
  }

  // A text over the limit is kept whole, with a warning.
  void ExpectLimits(u16 version) const {
    for (const TableRow& row : m_rows) {
      if (row.limit == 0 || !row.In(version)) continue;
      SCOPED_TRACE(row.tag);
      const std::string text = Letters(row.limit + 1);
      const ParsedObject parsed("<" + row.tag + ">" + text, MakeIn(version));
      EXPECT_EQ(parsed.Status(), KRParseStatus_Warnings);
      ASSERT_EQ(parsed.Warnings().size(), 1u);
      EXPECT_TRUE(parsed.Warnings()[0].starts_with("TOOLONG " + TagNumber(row.Id())))
          << parsed.Warnings()[0];
      const Built strict = Build(*parsed);
      EXPECT_EQ(strict.status, KRBuildStatus_TooLong);
      EXPECT_EQ(strict.failingObject, parsed.Get());
      EXPECT_EQ(Build(*parsed, KRBuildStringOpt_Lenient),
                (Built{KRBuildStatus_Done, "<" + row.tag + ">" + Letters(row.limit) + "\n"}));
    }
  }

  // A text that is not a value stops the parse at the object, and the tag stays absent.
  void ExpectBadValuesRefused(u16 version) const {
    for (const TableRow& row : m_rows) {
      if (row.bad.empty() || !row.In(version)) continue;
      SCOPED_TRACE(row.tag);
      const ParsedObject parsed("<" + row.tag + ">" + row.bad, MakeIn(version));
      EXPECT_EQ(parsed.Status(), row.lenient ? KRParseStatus_Warnings : KRParseStatus_Invalid);
      EXPECT_EQ(parsed.ObjectWithError(), parsed.Get());
      const std::string warning = "BADFORMAT " + TagNumber(row.Id()) + " \"" + row.bad + "\"";
      EXPECT_EQ(std::count(parsed.Warnings().begin(), parsed.Warnings().end(), warning), 1)
          << warning;
      if (row.warnsOnce) {
        EXPECT_EQ(parsed.Warnings().size(), 1u);
      }
      EXPECT_EQ(parsed->ValidateTag(row.Id()), 0);
      EXPECT_EQ(TextOf(*parsed), "");
    }
  }

  // The required rows, and after them those that rules require.
  std::vector<TableRow> NeededIn(u16 version) const {
    std::vector<TableRow> needed;
    for (const bool asked : {false, true}) {
      for (const TableRow& row : m_rows) {
        if (asked ? row.asked && row.In(version) : (row.required & version) != 0) {
          needed.push_back(row);
        }
      }
    }
    return needed;
  }

  // Each required tag is reported when it is missing, in the order of the table.
  void ExpectMissingNoticed(u16 version) const {
    auto object = MakeIn(version);
    KRTagID missing = KRTag_None;
    const std::vector<TableRow> needed = NeededIn(version);
    for (const TableRow& row : needed) {
      SCOPED_TRACE(row.tag);
      EXPECT_EQ(object->AllRequiredPresent(), 0);
      missing = object->GetFirstMissingRequiredTag(missing);
      EXPECT_EQ(missing, row.Id());
    }
    if (missing != KRTag_None) {
      EXPECT_EQ(object->GetFirstMissingRequiredTag(missing), KRTag_None);
    }
    for (const TableRow& row : needed) {
      SCOPED_TRACE(row.tag);
      EXPECT_EQ(object->GetFirstMissingRequiredTag(KRTag_None), row.Id());
      object->SetTag(row.Id());
    }
    EXPECT_EQ(object->GetFirstMissingRequiredTag(KRTag_None), KRTag_None);
  }

  // Whichever allocation fails, the parse reports it, and nothing is lost or read twice.
  void ExpectMemoryFailures() const {
    const std::string text = AllRows(2, false);
    for (std::size_t nth = 1; nth < 5000; ++nth) {
      auto root = MakeIn(2);
      TextBuffer buffer(text);
      KRSimpleParser parser;
      KRParseStatus status;
      {
        FailingAllocation failure(nth);
        status = parser.Parse(buffer.Get(), root.get(), 0);
      }
      KRSetFireAlarm(KRFireAlarm_None);
      if (status == KRParseStatus_Accepted) return;
      ASSERT_EQ(status, KRParseStatus_Fatal) << "allocation " << nth;
    }
    FAIL() << "allocations never stopped failing";
  }

  ClassUnderTest m_class;
  std::string m_defaultTag;
  std::vector<TableRow> m_rows;
  u16 m_ownVersion;
};

/// Tests class `T` against its table; see the head of this file.
/// @param defaultTag the tag that the constructor gives; empty for none.
/// @param ownVersion the version that the constructor sets.
template <class T>
void ExpectTable(const std::string& defaultTag, const std::string& table, u16 ownVersion = 0) {
  SCOPED_TRACE(defaultTag);
  KRParseLogger::TheKRParseLogger()->DeleteAll();
  TableCheck(Class<T>(), defaultTag, table, ownVersion).Run();
  KRParseLogger::TheKRParseLogger()->DeleteAll();
}

}  // namespace krofx::testing

#endif  // KROFX_TESTS_SUPPORT_AGGREGATE_TABLE_H_
