// Every row of every table, in each version of messages that has it. What a row holds goes the
// whole way: it is stored, written, read by the strict parser, and written again.

#include <gtest/gtest.h>

#include <cstddef>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <typeinfo>
#include <vector>

#include "krofx/model/internal/aggregate.h"
#include "krofx/model/internal/embedded_child.h"
#include "row_values.h"
#include "row_walk.h"
#include "support/ofx_text.h"

namespace krofx::testing {
namespace {

using namespace krofx::internal;

// How much is walked, so that a row or a keyword that is lost is noticed. A row counts in each
// version that has it, and a value in each type of its object too.
constexpr std::size_t kValueRows = 2805;
constexpr std::size_t kStoredValues = 8314;
constexpr std::size_t kChildRows = 1135;
// Rows of texts with a limit, each of which counts once.
constexpr std::size_t kLimitedRows = 544;

// Rows whose tags are valid, and neither read nor written.
RowNames ListedRows() {
  RowNames rows = RowsOfClass("KRBalance", "AVAILBAL BAL LEDGERBAL");
  rows.merge(RowsOfClass("KRBankStatementTx", "STMTTRN"));
  rows.merge(RowsOfClass("KRPaymentInfo", "MEMO2 PAYEE2"));
  return rows;
}

// The rows of values that are not walked in all versions that their table has them for.
RowNames ValueRowsApart() {
  RowNames rows = ListedRows();
  rows.merge(RowsReadElsewhere());
  // No synchronisation of a request takes these.
  rows.merge(RowsOfClass("KRSyncRq", "NORV.SYNCERROR SYNCERROR"));
  // No synchronisation of the first version takes this one.
  rows.merge(RowsOfClass("KRSyncRs", "SYNCERROR"));
  // A payroll update has the rows of all synchronisations, and takes few of their tags.
  rows.merge(
      RowsOfClass("KRPayrollUpdateRs", "LOSTSYNC NORV.REFRESH NORV.SYNCERROR SYNCERROR TOKEN2"));
  return rows;
}

// The same, for rows of children.
RowNames ChildRowsApart() {
  return RowsOfClass("KRPayrollUpdateRs",
                     "ACCTTRNRS BANKACCTFROM BANKMAILTRNRS CCACCTFROM CHGUSERINFOTRNRS INTERTRNRS "
                     "INTRATRNRS INVACCTFROM INVMAILTRNRS MAILTRNRS MULTIINTERTRNRS PAYEETRNRS "
                     "PMTMAILTRNRS PMTTRNRS RECINTERTRNRS RECINTRATRNRS RECPMTTRNRS STPCHKTRNRS "
                     "WIRETRNRS");
}

// Reads what was written, and writes it again.
class ReadBack {
 public:
  ReadBack(const Subject& subject, const std::string& text) : m_parsed(text, subject.Make()) {
    EXPECT_EQ(m_parsed.Status(), KRParseStatus_Accepted);
    EXPECT_EQ(m_parsed.Warnings(), Lines());
    EXPECT_EQ(TextOf(*m_parsed), text);
  }
  KRDataObj& operator*() const { return *m_parsed; }
  KRDataObj* operator->() const { return m_parsed.Get(); }

 private:
  const Parsed<KRDataObj> m_parsed;
};

// What a row holds in one object after another; it is found once.
const std::vector<RowContent>& ContentsIn(const Subject& subject, const TaggedRow& row) {
  static std::map<const Row*, std::vector<RowContent>> known;
  const auto found = known.find(&row.row);
  if (found != known.end()) return found->second;
  return known.emplace(&row.row, ContentsOf(row, *subject.Make())).first->second;
}

// Stores the values one after another.
// @return how they must be written.
std::string StoreAll(KRDataObj& object, const TaggedRow& row, const RowContent& content) {
  std::string written;
  for (const RowValue& value : content) {
    EXPECT_EQ(row.Store(object, value.text), KRParseStatus_Accepted)
        << row.Tag() << " " << value.text;
    EXPECT_EQ(object.ValidateTag(row.tag), 1) << row.Tag() << " " << value.text;
    written += row.Element(value.written);
  }
  return written;
}

TEST(EveryRow, WritesEachOfItsValuesAndReadsItBack) {
  Walk walk(RowsOf::kValues);
  std::size_t values = 0;
  ForEachSubject([&](const Subject& subject) {
    const std::vector<TaggedRow> rows = walk.Take(subject);
    // The first object has a value in every row, the second one in those with a second value.
    std::string expected;
    for (std::size_t which = 0; which == 0 || !expected.empty(); ++which) {
      const auto object = subject.Make();
      std::vector<KRTagID> held;
      expected.clear();
      for (const TaggedRow& row : rows) {
        const auto& contents = ContentsIn(subject, row);
        if (which >= contents.size()) continue;
        expected += StoreAll(*object, row, contents[which]);
        values += contents[which].size();
        held.push_back(row.tag);
      }
      EXPECT_EQ(TakeWarnings(), Lines());
      EXPECT_EQ(TextOf(*object), expected);
      const ReadBack again(subject, expected);
      for (const KRTagID tag : held) EXPECT_EQ(again->ValidateTag(tag), 1) << tag;
    }
  });
  EXPECT_EQ(walk.Missed(), ValueRowsApart());
  EXPECT_EQ(walk.Count(), kValueRows);
  EXPECT_EQ(values, kStoredValues);
}

TEST(EveryRow, HasAMemberOfItsOwn) {
  ForEachSubject([](const Subject& subject) {
    const AggregateTable& table = *subject.any.table;
    const auto object = subject.Make();
    std::set<const void*> members;
    for (u16 position = 0; position < table.valid.count + table.unlistedCount; ++position) {
      const Row& row = table.rows[position];
      // Several rows can fill a slot or an array.
      if (row.member == nullptr || row.shared || row.array != nullptr) continue;
      EXPECT_TRUE(members.insert(row.member(*object)).second) << row.element;
    }
  });
}

// Adds a child to what a row holds, as the object does itself when it reads one.
KRDataObj* AddChild(KRDataObj& object, const TaggedRow& row) {
  KRDataObj* child = nullptr;
  if (row.row.create == nullptr) {
    // A part of the object.
    EXPECT_EQ(row.row.value, &kEmbedded<KRAddrInfo>);
    child = static_cast<KRAddrInfo*>(row.row.member(object));
  } else if (MakeChild(object, row.row, row.tag, child) != KRParseStatus_Accepted) {
    return nullptr;
  }
  child->SetType(row.tag);
  child->SetMsgSetVersion(object.GetMsgSetVersion());
  EXPECT_EQ(object.SetTag(row.tag), 1);
  return child;
}

// The classes of the children that an object shows under a tag.
Lines ClassesUnder(const KRDataObj& object, KRTagID tag) {
  Lines classes;
  for (u16 i = 0; i < object.GetNumberOfChildren(); ++i) {
    const KRDataObj* const child = object.GetChild(i);
    if (child != nullptr && TypeOf(*child) == tag) classes.push_back(typeid(*child).name());
  }
  return classes;
}

// Gives every row of values its first one.
void Fill(KRDataObj& object) {
  const std::string name = ObjectAccess::TableOf(object)->className;
  const Subject subject{name, Classes().at(name), object.GetMsgSetVersion(), object.GetType()};
  for (const TaggedRow& row : Walk(RowsOf::kValues).Take(subject)) {
    StoreAll(object, row, ContentsIn(subject, row).at(0));
  }
}

TEST(EveryRow, WritesItsChildrenAndReadsThemBack) {
  Walk walk(RowsOf::kChildren);
  ForEachSubject([&](const Subject& subject) {
    for (const TaggedRow& row : walk.Take(subject)) {
      SCOPED_TRACE(row.Tag());
      const auto object = subject.Make();
      std::string expected;
      Lines classes;
      // A list has room for more than one.
      for (int i = 0; i < (row.row.array != nullptr ? 2 : 1); ++i) {
        KRDataObj* const child = AddChild(*object, row);
        ASSERT_NE(child, nullptr);
        Fill(*child);
        classes.push_back(typeid(*child).name());
        expected += "<" + row.Tag() + ">\n" + TextOf(*child) + "</" + row.Tag() + ">\n";
      }
      EXPECT_EQ(object->ValidateTag(row.tag), 1);
      EXPECT_EQ(TextOf(*object), expected);
      const ReadBack again(subject, expected);
      EXPECT_EQ(again->ValidateTag(row.tag), 1);
      // The status of several transfers is not shown among the children.
      if (subject.name == "KRMultiTransRs" && row.tag == KRTag_STATUS) continue;
      EXPECT_EQ(ClassesUnder(*again, row.tag), classes);
    }
  });
  EXPECT_EQ(walk.Missed(), ChildRowsApart());
  EXPECT_EQ(walk.Count(), kChildRows);
}

TEST(EveryRow, WarnsOfATextThatIsTooLongAndCutsItInALenientBuild) {
  Walk walk(RowsOf::kValues);
  std::set<const Row*> limited;
  ForEachSubject([&](const Subject& subject) {
    for (const TaggedRow& row : walk.Take(subject)) {
      const ValueKind& kind = *row.row.value;
      const bool isText = kind.form == ValueForm::kText && FiguresOf(kind).empty();
      if (!isText || HasNoLimit(kind) || !limited.insert(&row.row).second) continue;
      SCOPED_TRACE(row.Tag());
      const std::size_t limit = SpecLengthOf(row, *subject.Make());
      ASSERT_LE(limit, kLongestText);
      // The body of a letter may be a little longer.
      const bool isBody = &kind == &kText<KREMailMsgBody>;
      const std::size_t tolerance = isBody ? KREMailMsgBody::kTolerance : 0;
      const auto object = subject.Make();
      EXPECT_EQ(row.Store(*object, Letters(limit + tolerance + 1)), KRParseStatus_Accepted);
      const Lines warnings = TakeWarnings();
      ASSERT_EQ(warnings.size(), 1u);
      EXPECT_TRUE(warnings[0].starts_with("TOOLONG " + TagNumber(row.tag))) << warnings[0];
      EXPECT_EQ(Build(*object).status, KRBuildStatus_TooLong);
      EXPECT_EQ(Build(*object, KRBuildStringOpt_Lenient),
                (Built{KRBuildStatus_Done, row.Element(Letters(limit))}));
    }
  });
  EXPECT_EQ(limited.size(), kLimitedRows);
}

TEST(EveryRow, TakesNoTextWhereItIsOnlyListed) {
  RowNames listed;
  ForEachSubject([&](const Subject& subject) {
    const AggregateTable& table = *subject.any.table;
    for (u16 position = 0; position < table.valid.count; ++position) {
      const TaggedRow row{table.valid.table[position].tag, table.rows[position]};
      const auto object = subject.Make();
      if (row.row.member != nullptr || object->IsValidTag(row.tag) == 0) continue;
      listed.insert(NameOf(subject, row));
      EXPECT_EQ(row.Store(*object, "Y"), KRParseStatus_Invalid) << row.Tag();
      EXPECT_EQ(object->SetTag(row.tag), 1) << row.Tag();
      EXPECT_EQ(TextOf(*object), "") << row.Tag();
    }
  });
  EXPECT_EQ(listed, ListedRows());
}

TEST(EveryRow, TakesATextThatIsNotListedAndNeverWritesIt) {
  RowNames unlisted;
  ForEachSubject([&](const Subject& subject) {
    const AggregateTable& table = *subject.any.table;
    for (u8 i = 0; i < table.unlistedCount; ++i) {
      const TaggedRow row{table.unlistedTags[i], table.rows[table.valid.count + i]};
      const auto object = subject.Make();
      unlisted.insert(NameOf(subject, row));
      EXPECT_EQ(row.Store(*object, "Y"), KRParseStatus_Accepted) << row.Tag();
      EXPECT_EQ(object->ValidateTag(row.tag), 0) << row.Tag();
      EXPECT_EQ(TextOf(*object), "") << row.Tag();
    }
  });
  EXPECT_EQ(unlisted, (RowNames{"KRAddrInfo N.COUNTY", "KRBillPayMessageSetV1 HASRECEXTDPMT"}));
}

}  // namespace
}  // namespace krofx::testing
