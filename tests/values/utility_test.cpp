// Helpers without an object tree: identifiers, response text, small numbers, byte order, macros.

#include "krofx/values/utility.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "krofx/core/buffer.h"
#include "krofx/values/internal/clock.h"

namespace {

// A clock that does not move by itself.
class StoppedClock : public krofx::internal::Clock {
 public:
  StoppedClock() { krofx::internal::Clock::Replace(this); }
  ~StoppedClock() override { krofx::internal::Clock::Replace(nullptr); }
  std::int64_t Now() override { return m_now; }
  s32 LocalZoneOffset() override { return 0; }

  std::int64_t m_now = 0;
};

// The generator's state is the process's, so every test begins at a second of its own, later than
// those of the tests before it, and sets sequence and node.
class TransactionID : public ::testing::Test {
 protected:
  TransactionID() {
    m_clock.m_now = s_start += 1000;
    Make();
    KRUtility::SetGUIDClockSequence(0x0123);
    KRUtility::SetGUIDNode(0xfedc, 0x89abcdef);
    m_clock.m_now += 10;
  }

  static std::string Make() {
    char text[38] = {};
    text[37] = '#';
    EXPECT_EQ(KRUtility::GenerateTransactionID(text), 1);
    EXPECT_EQ(text[36], '\0');
    EXPECT_EQ(text[37], '#');
    return text;
  }

  static u32 TimeLow(const std::string& id) {
    return static_cast<u32>(std::stoul(id.substr(0, 8), nullptr, 16));
  }

  StoppedClock m_clock;

 private:
  static std::int64_t s_start;
};
// The low 32 bits of the time, taken as signed, grow for two days from here.
std::int64_t TransactionID::s_start = 946684800;

TEST_F(TransactionID, FollowsTheLayout) {
  const std::string id = Make();
  ASSERT_EQ(id.size(), 36u);
  for (std::size_t i = 0; i < id.size(); ++i) {
    if (i == 8 || i == 13 || i == 18 || i == 23) {
      EXPECT_EQ(id[i], '-') << i;
    } else {
      EXPECT_NE(std::string("0123456789ABCDEF").find(id[i]), std::string::npos) << id;
    }
  }
  EXPECT_EQ(id[14], '1');
  EXPECT_NE(std::string("89AB").find(id[19]), std::string::npos);
}

TEST_F(TransactionID, CountsTenThousandthsOfASecondSince1582) {
  m_clock.m_now = 1000000000;
  KRUtility::SetGUIDClockSequence(0);  // Whatever the clock did before, the sequence starts anew.
  Make();
  KRUtility::SetGUIDClockSequence(0x0123);
  m_clock.m_now = 1000000001;
  // (10004083200 + 2208988800 + 1000000001) * 10000 is 0x782C14A14F10.
  EXPECT_EQ(Make(), "14A14F10-782C-1000-8123-89ABCDEFFEDC");
}

TEST_F(TransactionID, CountsOnWithinOneSecond) {
  const u32 first = TimeLow(Make());
  EXPECT_EQ(TimeLow(Make()), first + 1);
  EXPECT_EQ(TimeLow(Make()), first + 2);
  ++m_clock.m_now;
  EXPECT_EQ(TimeLow(Make()), first + 10000);
  EXPECT_EQ(KRUtility::GetGUIDClockSequence(), 0x0123);
}

TEST_F(TransactionID, MovesTheSequenceWhenTheClockGoesBack) {
  Make();
  EXPECT_EQ(KRUtility::GetGUIDClockSequence(), 0x0123);
  --m_clock.m_now;
  EXPECT_EQ(Make().substr(19, 4), "8124");
  EXPECT_EQ(KRUtility::GetGUIDClockSequence(), 0x0124);
  ++m_clock.m_now;
  EXPECT_EQ(Make().substr(19, 4), "8124");
}

TEST_F(TransactionID, MovesTheSequenceInFourteenBits) {
  KRUtility::SetGUIDClockSequence(0x3fff);
  Make();
  --m_clock.m_now;
  EXPECT_EQ(Make().substr(19, 4), "8000");
  EXPECT_EQ(KRUtility::GetGUIDClockSequence(), 0);
}

TEST_F(TransactionID, StartsTheSequenceWhenThereIsNone) {
  KRUtility::SetGUIDClockSequence(0);
  const std::string id = Make();
  const u16 sequence = KRUtility::GetGUIDClockSequence();
  EXPECT_LE(sequence, 0x3fff);
  EXPECT_EQ(std::stoul(id.substr(19, 4), nullptr, 16), sequence | 0x8000u);
}

TEST_F(TransactionID, KeepsTheLayoutUnderASequenceOfMoreThanFourteenBits) {
  KRUtility::SetGUIDClockSequence(0xffff);
  EXPECT_EQ(KRUtility::GetGUIDClockSequence(), 0xffff);
  EXPECT_EQ(Make().substr(19, 4), "BFFF");
}

TEST_F(TransactionID, KeepsTheNodeThatAHostSets) {
  u16 node01 = 0;
  u32 node25 = 0;
  EXPECT_EQ(Make().substr(24), "89ABCDEFFEDC");
  KRUtility::GetGUIDNode(&node01, &node25);
  EXPECT_EQ(node01, 0xfedc);
  EXPECT_EQ(node25, 0x89abcdefu);
  KRUtility::SetGUIDNode(0x1, 0x2);
  EXPECT_EQ(Make().substr(24), "000000020001");
  KRUtility::GetGUIDNode(nullptr, nullptr);
}

TEST_F(TransactionID, StaysUniqueWhenTheCounterRunsThroughTheSecond) {
  std::set<std::string> seen;
  for (int i = 0; i < 10001; ++i) EXPECT_TRUE(seen.insert(Make()).second);
  ++m_clock.m_now;
  for (int i = 0; i < 10; ++i) EXPECT_TRUE(seen.insert(Make()).second);
}

TEST_F(TransactionID, StaysUniqueAcrossThreads) {
  std::vector<std::vector<std::string>> made(4);
  std::vector<std::thread> threads;
  for (auto& own : made) {
    threads.emplace_back([&own] {
      for (int i = 0; i < 500; ++i) own.push_back(Make());
    });
  }
  for (auto& thread : threads) thread.join();
  std::set<std::string> seen;
  for (const auto& own : made) seen.insert(own.begin(), own.end());
  EXPECT_EQ(seen.size(), 2000u);
}

TEST_F(TransactionID, LeavesTheHostsRandomSequenceAlone) {
  std::srand(1);
  const int expected = std::rand();
  std::srand(1);
  KRUtility::SetGUIDClockSequence(0);
  Make();
  EXPECT_EQ(std::rand(), expected);
}

TEST_F(TransactionID, RefusesANullTarget) {
  EXPECT_EQ(KRUtility::GenerateTransactionID(nullptr), 0);
}

// The result, and the value, or -1 when it was not changed.
std::pair<int, int> AscToUInt(const char* text, s16 exactDigits, s16 scaleDigits) {
  u16 value = 4711;
  const KRParseStatus status = KRUtility::AscToUInt(text, &value, exactDigits, scaleDigits);
  return {static_cast<int>(status), value == 4711 ? -1 : value};
}

TEST(AscToUInt, ReadsUpToFiveDigits) {
  using Result = std::pair<int, int>;
  EXPECT_EQ(AscToUInt("12", 2, 0), Result(0, 12));
  EXPECT_EQ(AscToUInt("1", 2, 0), Result(4, -1));
  EXPECT_EQ(AscToUInt("123", 2, 0), Result(4, -1));
  EXPECT_EQ(AscToUInt("5", 0, 3), Result(0, 500));
  EXPECT_EQ(AscToUInt("1234", 0, 3), Result(0, 1234));
  EXPECT_EQ(AscToUInt("12a", 0, 0), Result(4, -1));
  EXPECT_EQ(AscToUInt(" 1", 0, 0), Result(4, -1));
  EXPECT_EQ(AscToUInt("-1", 0, 0), Result(4, -1));
  EXPECT_EQ(AscToUInt("\xb2", 0, 0), Result(4, -1));
  EXPECT_EQ(AscToUInt("12345a", 0, 0), Result(0, 12345));
  EXPECT_EQ(AscToUInt("12345", 6, 0), Result(4, -1));
  EXPECT_EQ(AscToUInt("65535", 5, 0), Result(0, 65535));
  EXPECT_EQ(AscToUInt("65537", 5, 0), Result(0, 1));
  EXPECT_EQ(AscToUInt("", 0, 0), Result(0, 0));
  EXPECT_EQ(AscToUInt("007", -1, -1), Result(0, 7));
  EXPECT_EQ(AscToUInt(nullptr, 0, 0), Result(4, -1));
  EXPECT_EQ(KRUtility::AscToUInt("1", nullptr, 0, 0), KRParseStatus_Invalid);
}

TEST(Pack, PutsTheLeastSignificantByteFirst) {
  char block[6] = {9, 9, 9, 9, 9, 9};
  KRUtility::PackLong(block + 1, 0x01020304);
  EXPECT_EQ(std::string(block, 6), std::string("\x09\x04\x03\x02\x01\x09", 6));
  EXPECT_EQ(KRUtility::UnPackLong(block + 1), 0x01020304u);
  KRUtility::PackShort(block, 0xfe80);
  EXPECT_EQ(std::string(block, 3), std::string("\x80\xfe\x03", 3));
  EXPECT_EQ(KRUtility::UnPackShort(block), 0xfe80);
  KRUtility::PackByte(block, '\xff');
  EXPECT_EQ(KRUtility::UnPackByte(block), '\xff');
  KRUtility::PackLong(block, 0xfffefdfc);
  EXPECT_EQ(KRUtility::UnPackLong(block), 0xfffefdfcu);
}

TEST(Pack, PassesOverNull) {
  KRUtility::PackByte(nullptr, 1);
  KRUtility::PackShort(nullptr, 1);
  KRUtility::PackLong(nullptr, 1);
  EXPECT_EQ(KRUtility::UnPackByte(nullptr), 0);
  EXPECT_EQ(KRUtility::UnPackShort(nullptr), 0);
  EXPECT_EQ(KRUtility::UnPackLong(nullptr), 0u);
}

TEST(Macros, GoFromNameToCharacterAndBack) {
  EXPECT_EQ(KRUtility::GetMacroChar("nbsp"), ' ');
  EXPECT_EQ(KRUtility::GetMacroChar("gt"), '>');
  EXPECT_EQ(KRUtility::GetMacroChar("lt"), '<');
  EXPECT_EQ(KRUtility::GetMacroChar("amp"), '&');
  for (const char* none : {"AMP", "Gt", "", "am", "amp;", "quot"}) {
    EXPECT_EQ(KRUtility::GetMacroChar(none), 0) << none;
  }
  EXPECT_EQ(KRUtility::GetMacroChar(nullptr), 0);

  EXPECT_STREQ(KRUtility::GetMacroString('>'), "gt");
  EXPECT_STREQ(KRUtility::GetMacroString('<'), "lt");
  EXPECT_STREQ(KRUtility::GetMacroString('&'), "amp");
  EXPECT_EQ(KRUtility::GetMacroString(' '), nullptr);
  EXPECT_EQ(KRUtility::GetMacroString('a'), nullptr);
  EXPECT_EQ(KRUtility::GetMacroString('\0'), nullptr);
}

TEST(Macros, AreKnownToParsersWithoutRegardToCase) {
  EXPECT_EQ(krofx::internal::MacroCharWithoutCase("AMP"), '&');
  EXPECT_EQ(krofx::internal::MacroCharWithoutCase("nBsP"), ' ');
  EXPECT_EQ(krofx::internal::MacroCharWithoutCase("foo"), 0);
  EXPECT_EQ(krofx::internal::MacroCharWithoutCase(""), 0);
}

TEST(Macros, AreFoundInText) {
  char text[] = "A>B<C&D";
  EXPECT_EQ(KRUtility::ContainsMacro(text), text + 1);
  EXPECT_EQ(KRUtility::ContainsMacro(text + 2), text + 3);
  EXPECT_EQ(KRUtility::ContainsMacro(text + 4), text + 5);
  EXPECT_EQ(KRUtility::ContainsMacro(text + 6), nullptr);
  const char* constant = "no break";
  EXPECT_EQ(KRUtility::ContainsMacro(constant), nullptr);
  EXPECT_EQ(KRUtility::ContainsMacro(static_cast<char*>(nullptr)), nullptr);
  EXPECT_EQ(KRUtility::ContainsMacro(static_cast<const char*>(nullptr)), nullptr);
  EXPECT_EQ(KRUtility::ContainsMacro(nullptr), nullptr);
}

std::string Scrub(const std::string& text) {
  KRBuffer buffer(0, 0);
  buffer.WriteLarge(text.data(), static_cast<u32>(text.size()));
  buffer.SetBufferOffset(text.empty() ? 0 : 1);
  EXPECT_EQ(KRUtility::RemoveBadCharFromBuffer(&buffer), 1);
  EXPECT_EQ(buffer.GetBufferSize(), text.size());
  EXPECT_EQ(buffer.GetBufferOffset(), text.size());
  return std::string(buffer.GetBufferPtr(), buffer.GetBufferSize());
}

TEST(RemoveBadCharFromBuffer, BlanksWhatIsNeitherPrintableNorALineEnd) {
  EXPECT_EQ(Scrub(std::string("<A>\x01"
                              "b\tc\0d\x7f\xe9~ !\r\n",
                              16)),
            std::string("<A> b c d  ~ !\r\n"));
  EXPECT_EQ(Scrub(""), "");
  EXPECT_EQ(Scrub(std::string(100000, '\x01')), std::string(100000, ' '));
}

TEST(RemoveBadCharFromBuffer, NeedsNoMemoryAndABuffer) {
  KRBuffer buffer(0, 0);
  buffer += "a\tb";
  krofx::internal::AllocationFailure::FailAt(1, true);
  const u16 result = KRUtility::RemoveBadCharFromBuffer(&buffer);
  EXPECT_EQ(krofx::internal::AllocationFailure::Count(), 0u);
  krofx::internal::AllocationFailure::FailAt(0);
  EXPECT_EQ(result, 1);
  EXPECT_EQ(std::string(buffer.GetBufferPtr(), 3), "a b");
  EXPECT_EQ(KRUtility::RemoveBadCharFromBuffer(nullptr), 0);
  KRBuffer nothing(0, 0);
  EXPECT_EQ(KRUtility::RemoveBadCharFromBuffer(&nothing), 1);
}

TEST(RemoveBadCharFromBuffer, StopsWhereTheMemoryEnds) {
  KRBuffer buffer(4, 0);
  buffer += "ab";
  buffer.SetBufferSize(1000000);
  EXPECT_EQ(KRUtility::RemoveBadCharFromBuffer(&buffer), 1);
  EXPECT_EQ(buffer.GetBufferOffset(), 4u);
}

TEST(TagToString, NamesATagForLogLines) {
  EXPECT_STREQ(KRUtility::TagToString(KRTag_STMTTRN), "STMTTRN");
  EXPECT_STREQ(KRUtility::TagToString(KRTag_NORV_BID), "NORV.BID");
  EXPECT_STREQ(KRUtility::TagToString(KRTag_None), "TAG UNKNOWN");
  EXPECT_STREQ(KRUtility::TagToString(static_cast<KRTagID>(60000)), "TAG UNKNOWN");
}

}  // namespace
