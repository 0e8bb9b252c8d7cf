// Where texts come from: files, buffers of hosts, and what a reading is moved to.

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>

#include "krofx/reader/reading.h"
#include "support/readings.h"
#include "support/temp_folder.h"

namespace krofx::testing {
namespace {

// A statement with two kinds of damage.
std::string Damaged() {
  return BankStatementFile(
      "<STMTTRN><TRNTYPE>DEBIT<DTPOSTED>20260105<TRNAMT>-2,50<FITID>1<ACME.X>y</STMTTRN>");
}

void ExpectSame(const Reading& reading, const Reading& expected) {
  EXPECT_EQ(reading.status, expected.status);
  EXPECT_EQ(MendingLines(reading), MendingLines(expected));
  EXPECT_EQ(Written(reading.root), Written(expected.root));
}

TEST(Sources, AreBuffersOfDerivedClassesUpToTheFirstNul) {
  const Reading whole = Read(Damaged());
  ASSERT_EQ(MendingNames(whole), (Lines{"decimal-comma", "private-tag"}));
  ServingBuffer buffer(Damaged());
  ExpectSame(Read(buffer), whole);
  ServingBuffer ended(Damaged() + std::string("\0<OFX>", 6));
  ExpectSame(Read(ended), whole);
  ServingBuffer empty("");
  ExpectSame(Read(empty), Read(std::string_view()));
}

TEST(Sources, AreFiles) {
  const TempFolder folder;
  ExpectSame(ReadFile(folder.Put("a.ofx", Damaged()).c_str()), Read(Damaged()));
  // More than is read at once.
  const std::string large = BankStatementFile(
      Repeat("<STMTTRN><TRNTYPE>DEBIT<DTPOSTED>20260105<TRNAMT>-2.50<FITID>1</STMTTRN>", 5000));
  ExpectSame(ReadFile(folder.Put("b.ofx", large).c_str()), Read(large));
}

TEST(Sources, ThatCannotBeReadAreExplained) {
  const TempFolder folder;
  const auto explain = [](const char* path) {
    const Reading reading = ReadFile(path);
    EXPECT_EQ(reading.status, KRParseStatus_Invalid);
    EXPECT_EQ(reading.root, nullptr);
    EXPECT_EQ(reading.Kind(), std::nullopt);
    EXPECT_TRUE(reading.texts.empty());
    return Str(reading.problem);
  };
  EXPECT_EQ(explain(nullptr), "no file is named");
  EXPECT_EQ(explain(folder.Name("none.ofx").c_str()),
            "it cannot be opened: No such file or directory");
  EXPECT_EQ(explain(folder.Path().c_str()), "it cannot be read: Is a directory");
}

TEST(Readings, MoveAndLeaveNothingBehind) {
  Reading first = Read(Damaged());
  KRFile* const root = first.root;
  ASSERT_NE(root, nullptr);
  Reading second = std::move(first);
  EXPECT_EQ(second.root, root);
  EXPECT_EQ(first.root, nullptr);  // NOLINT(bugprone-use-after-move)
  EXPECT_TRUE(first.texts.empty());
  Reading& same = second;
  second = std::move(same);
  EXPECT_EQ(second.root, root);
  ExpectSame(second, Read(Damaged()));
  second = Read(std::string_view("no ofx"));
  EXPECT_EQ(second.root, nullptr);
  EXPECT_TRUE(second.mendings.empty());
  EXPECT_EQ(second.status, KRParseStatus_Invalid);
}

TEST(Readings, GiveTheFirstTextOfEachKind) {
  const Reading none = Read(std::string_view("no ofx"));
  EXPECT_EQ(none.Response(), nullptr);
  EXPECT_EQ(none.Request(), nullptr);
  EXPECT_TRUE(none.Missing().empty());
  const Reading both = Read(RequestFile("BANKMSGSRQ", "") + Damaged() + Damaged());
  ASSERT_EQ(both.texts.size(), 3u);
  EXPECT_EQ(both.Request(), both.texts[0].root.get());
  EXPECT_EQ(both.Response(), both.texts[1].root.get());
  EXPECT_EQ(both.root, both.Request());
}

TEST(Readings, SayInWhichTextTagsAreMissing) {
  const Reading reading =
      Read(BankStatementFile("") + BankStatementFile("<STMTTRN><TRNTYPE>DEBIT<DTPOSTED>20260105"
                                                     "<FITID>1</STMTTRN>"));
  const List<MissingTag> missing = reading.Missing();
  ASSERT_EQ(missing.size(), 1u);
  EXPECT_EQ(missing[0].text, 1u);
  EXPECT_EQ(Str(missing[0].tagText), "TRNAMT");
}

}  // namespace
}  // namespace krofx::testing
