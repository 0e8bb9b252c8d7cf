// How the paths of the layouts make cells of elements.

#include "showing/row_maker.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace krofx::command {
namespace {

class RowMakerTest : public ::testing::Test {
 protected:
  Element& Add(Element& parent, std::string_view tag) {
    Element& element = m_arena.Make<Element>();
    element.tag = tag;
    element.id = IdOf(tag);
    element.isAggregate = true;
    parent.children.Append(element);
    return element;
  }
  Element& Add(Element& parent, std::string_view tag, std::string_view value,
               ValueKind kind = ValueKind::kText) {
    Element& element = Add(parent, tag);
    element.isAggregate = false;
    element.value = value;
    element.kind = kind;
    return element;
  }
  Element& New() { return m_arena.Make<Element>(); }

  // The sum of the lines of a row with these amounts.
  Cell SumOf(const std::vector<std::string_view>& amounts) {
    static constexpr FieldSpec kTotal[] = {{"N.TAXLINE,N.ADJLINE/N.AMT=", "total", ""}};
    Element& row = New();
    for (const std::string_view amount : amounts) {
      Add(Add(row, "N.TAXLINE"), "N.AMT", amount, ValueKind::kAmount);
    }
    return m_rows.Find(row, SourcesOf(kTotal).front());
  }

  TextArena m_arena;
  RowMaker m_rows{m_arena, false};
};

TEST_F(RowMakerTest, AddsUpAmountsOfOneKindOnly) {
  EXPECT_EQ(SumOf({"$10.00", "$2.50"}).text, "$12.50");
  EXPECT_EQ(SumOf({"5%", "1.5%"}).text, "6.5%");
  EXPECT_EQ(SumOf({"10", "-2.5"}).text, "7.5");
  EXPECT_FALSE(SumOf({"$10.00", "5%"}));
  EXPECT_FALSE(SumOf({"5%", "10"}));
  EXPECT_FALSE(SumOf({"$10.00", "10"}));
  EXPECT_FALSE(SumOf({}));
}

TEST_F(RowMakerTest, LeavesLinesWithoutAnAmountOutOfASum) {
  static constexpr FieldSpec kTotal[] = {{"N.TAXLINE,N.ADJLINE/N.AMT=", "sum", ""}};
  Element& row = New();
  Add(Add(row, "N.TAXLINE"), "N.AMT", "$10.00", ValueKind::kAmount);
  Add(row, "N.TAXLINE");
  Add(Add(row, "N.ADJLINE"), "N.AMT", "(blank)", ValueKind::kBlank);
  Add(Add(row, "N.DDLINE"), "N.AMT", "$99.00", ValueKind::kAmount);
  EXPECT_EQ(m_rows.Find(row, SourcesOf(kTotal).front()).text, "$10.00");
}

TEST_F(RowMakerTest, TakesTheFirstPathOfAColumnThatLeadsToAValue) {
  static constexpr FieldSpec kColumns[] = {{"NAME|PAYEE/NAME", "name", ""},
                                           {"PAYEE|MEMO", "memo", ""},
                                           {"*.", "first", ""},
                                           {"N.EMPDELID+", "deleted", ""}};
  static constexpr TableSpec kTable = {"", "rows", "", kColumns};
  Element& row = New();
  Add(Add(row, "PAYEE"), "NAME", "Of the payee");
  Add(row, "NAME", "Own");
  Add(row, "MEMO", "Said");
  Add(row, "N.EMPDELID", "17");
  Add(row, "N.EMPDELID");
  Add(row, "N.EMPDELID", "18");
  std::vector<Cell> cells;
  m_rows.AppendRow(cells, row, kTable);
  ASSERT_EQ(cells.size(), 4u);
  EXPECT_EQ(cells[0].text, "Own");
  EXPECT_EQ(cells[1].text, "Said");
  EXPECT_EQ(cells[2].text, "PAYEE");
  EXPECT_EQ(cells[3].text, "17, 18");
  // Each by itself gives the same.
  for (std::size_t column = 0; column < cells.size(); ++column) {
    EXPECT_EQ(m_rows.Find(row, SourcesOf(kColumns)[column]).text, cells[column].text);
  }
  EXPECT_EQ(m_rows.FindElement(row, SourcesOf(kColumns)[1])->value, "Said");
}

TEST_F(RowMakerTest, KnowsSecuritiesByTheirIdentity) {
  static constexpr FieldSpec kColumns[] = {{"SECID>SECNAME", "security", ""}};
  static constexpr TableSpec kTable = {"", "positions", "", kColumns};
  Element& list = New();
  // One without an identity describes nothing.
  Add(Add(Add(list, "STOCKINFO"), "SECINFO"), "SECNAME", "Unknown");
  Element& info = Add(Add(list, "STOCKINFO"), "SECINFO");
  Add(Add(info, "SECID"), "UNIQUEID", "1");
  Add(info, "SECNAME", "Known");
  m_rows.NoteSecurities(list);
  std::vector<Cell> cells;
  for (const char* const id : {"1", "2"}) {
    Element& row = New();
    Add(Add(row, "SECID"), "UNIQUEID", id);
    m_rows.AppendRow(cells, row, kTable);
  }
  ASSERT_EQ(cells.size(), 2u);
  EXPECT_EQ(cells[0].text, "Known");
  EXPECT_FALSE(cells[1]);
}

}  // namespace
}  // namespace krofx::command
