// The dictionary of tags, with the standard table and with small tables that test each way of
// lookup.

#include "krofx/core/tag_dictionary.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include "krofx/core/memory.h"
#include "krofx/core/thread.h"

namespace krofx::internal {

// Gives access to the private state of a dictionary.
struct TagDictionaryInspector {
  static u32 Mode(const TagDictionary& d) { return d.m_lookupMode; }
  static u16 LowestTagID(const TagDictionary& d) { return d.m_lowestTagID; }
  static u16 AreTagIDsContiguous(const TagDictionary& d) { return d.AreTagIDsContiguous(); }
  static const KRMapTagStringToID* LookupByText(const TagDictionary& d) { return d.m_lookupByText; }
  static const KRMapTagIDToIndex* LookupByID(const TagDictionary& d) { return d.m_lookupByID; }
};

}  // namespace krofx::internal

namespace {

using krofx::internal::AllocationFailure;
using Inspector = krofx::internal::TagDictionaryInspector;

constexpr u32 kDirectIndex = 0;
constexpr u32 kBinarySearch = 1;
constexpr u32 kLinearScan = 2;

KRTagID Id(u32 id) { return static_cast<KRTagID>(id); }

struct Found {
  const KRTagDictionaryEntry* entry;
  KRTagID id;
};

Found Find(const TagDictionary& dictionary, const std::string& text,
           KRCaseType type = KRCaseType_Exact) {
  Found found{nullptr, Id(99999)};
  found.entry = dictionary.GetTagID(text.data(), static_cast<u16>(text.size()), &found.id, type);
  return found;
}

std::string LowerCase(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

// Puts the process back as it was, whatever a test does to the alarm and to allocation.
class TagDictionaryTest : public testing::Test {
 protected:
  ~TagDictionaryTest() override {
    AllocationFailure::FailAt(0);
    KRSetFireAlarm(KRFireAlarm_None);
  }
};

class StandardDictionary : public TagDictionaryTest {
 protected:
  TagDictionary m_dictionary{GetKRTagDictionary(), NumberOfKRDictionaryEntry()};
};

TEST_F(StandardDictionary, IndexesIdsDirectlyFromOne) {
  EXPECT_EQ(Inspector::AreTagIDsContiguous(m_dictionary), 1);
  EXPECT_EQ(Inspector::Mode(m_dictionary), kDirectIndex);
  EXPECT_EQ(Inspector::LowestTagID(m_dictionary), 1);
}

TEST_F(StandardDictionary, FindsEveryTagExactlyAndInSmallLetters) {
  for (u16 i = 0; i < NumberOfKRDictionaryEntry(); ++i) {
    const KRTagDictionaryEntry& row = GetKRTagDictionary()[i];
    const Found exact = Find(m_dictionary, row.text);
    EXPECT_EQ(exact.entry, &row) << row.text;
    EXPECT_EQ(exact.id, row.tagID) << row.text;
    EXPECT_EQ(Find(m_dictionary, row.text, KRCaseType_IgnoreCase).entry, &row) << row.text;
    EXPECT_EQ(Find(m_dictionary, LowerCase(row.text), KRCaseType_IgnoreCase).entry, &row)
        << row.text;
    EXPECT_EQ(m_dictionary.GetTagString(row.tagID), row.text);
    EXPECT_EQ(m_dictionary.FindDictionaryEntry(row.tagID), &row);
  }
}

TEST_F(StandardDictionary, FindsTrnuidByItsRuleOfCase) {
  const Found exact = Find(m_dictionary, "TRNUID");
  EXPECT_EQ(exact.id, 127U);
  const Found lowerExact = Find(m_dictionary, "trnuid");
  EXPECT_EQ(lowerExact.entry, nullptr);
  EXPECT_EQ(lowerExact.id, KRTag_None);
  const Found lower = Find(m_dictionary, "trnuid", KRCaseType_IgnoreCase);
  EXPECT_EQ(lower.entry, exact.entry);
  EXPECT_EQ(lower.id, 127U);
  EXPECT_EQ(Find(m_dictionary, "TrnUid", KRCaseType_IgnoreCase).entry, exact.entry);
}

TEST_F(StandardDictionary, FindsNothingForAnEmptyText) {
  for (KRCaseType type : {KRCaseType_Exact, KRCaseType_IgnoreCase}) {
    const Found found = Find(m_dictionary, "", type);
    EXPECT_EQ(found.entry, nullptr);
    EXPECT_EQ(found.id, KRTag_None);
  }
}

TEST_F(StandardDictionary, FindsNoPrefixAndNoLongerText) {
  for (KRCaseType type : {KRCaseType_Exact, KRCaseType_IgnoreCase}) {
    EXPECT_EQ(Find(m_dictionary, "TRNUI", type).entry, nullptr);
    EXPECT_EQ(Find(m_dictionary, "TRNUIDS", type).entry, nullptr);
    EXPECT_EQ(Find(m_dictionary, "TRNUID ", type).entry, nullptr);
  }
}

TEST_F(StandardDictionary, FindsNothingForStrangers) {
  for (u16 i = 0; i < NumberOfKRDictionaryEntry(); ++i) {
    std::string text = GetKRTagDictionary()[i].text;
    text[text.size() / 2] = '_';
    EXPECT_EQ(Find(m_dictionary, text).entry, nullptr) << text;
    EXPECT_EQ(Find(m_dictionary, text, KRCaseType_IgnoreCase).entry, nullptr) << text;
  }
}

TEST_F(StandardDictionary, FindsNothingForATextWithANulInside) {
  EXPECT_EQ(Find(m_dictionary, std::string("TRN\0ID", 6)).entry, nullptr);
  EXPECT_EQ(Find(m_dictionary, std::string("TRN\0ID", 6), KRCaseType_IgnoreCase).entry, nullptr);
  EXPECT_EQ(Find(m_dictionary, std::string("TRNUID\0", 7)).entry, nullptr);
}

TEST_F(StandardDictionary, ReadsNoByteBehindTheLength) {
  const char* buffer = "<BANKMSGSRSV1><STMTTRN>";
  for (KRCaseType type : {KRCaseType_Exact, KRCaseType_IgnoreCase}) {
    KRTagID id = KRTag_None;
    ASSERT_NE(m_dictionary.GetTagID(buffer + 15, 7, &id, type), nullptr);
    EXPECT_EQ(id, KRTag_STMTTRN);
  }
  // Heap blocks of the exact size: the address sanitizer detects a read past their end.
  for (u16 i = 0; i < NumberOfKRDictionaryEntry(); ++i) {
    const char* text = GetKRTagDictionary()[i].text;
    const std::vector<char> exact(text, text + std::strlen(text));
    for (KRCaseType type : {KRCaseType_Exact, KRCaseType_IgnoreCase}) {
      EXPECT_NE(m_dictionary.GetTagID(exact.data(), static_cast<u16>(exact.size()), nullptr, type),
                nullptr);
    }
  }
}

TEST_F(StandardDictionary, FindsNothingForANullText) {
  KRTagID id = KRTag_VER;
  EXPECT_EQ(m_dictionary.GetTagID(nullptr, 3, &id, KRCaseType_Exact), nullptr);
  EXPECT_EQ(id, KRTag_None);
  EXPECT_EQ(m_dictionary.GetTagID(nullptr, 0, nullptr, KRCaseType_IgnoreCase), nullptr);
}

TEST_F(StandardDictionary, HasNoTextForAnIdThatIsNoTag) {
  for (u32 id : {0U, 1188U, 65535U, 65536U, 65537U, 0xffffffffU}) {
    EXPECT_EQ(m_dictionary.GetTagString(Id(id)), nullptr) << id;
    EXPECT_EQ(m_dictionary.FindDictionaryEntry(Id(id)), nullptr) << id;
  }
}

TEST_F(StandardDictionary, RemembersTheCaseTypeOfTheLatestLookup) {
  Find(m_dictionary, "OFX", KRCaseType_IgnoreCase);
  EXPECT_EQ(TagDictionary::m_compareType.load(), KRCaseType_IgnoreCase);
  Find(m_dictionary, "no tag", KRCaseType_Exact);
  EXPECT_EQ(TagDictionary::m_compareType.load(), KRCaseType_Exact);
  Find(m_dictionary, "OFX", KRCaseType_IgnoreCase);
  TagDictionary fresh(GetKRTagDictionary(), 3);
  EXPECT_EQ(TagDictionary::m_compareType.load(), KRCaseType_Exact);
}

TEST_F(StandardDictionary, OrdersItsLookupByLengthAndThenByBytes) {
  const KRMapTagStringToID* rows = Inspector::LookupByText(m_dictionary);
  for (u16 i = 0; i < NumberOfKRDictionaryEntry(); ++i) {
    EXPECT_EQ(rows[i].length, std::strlen(rows[i].entry->text));
    if (i == 0) continue;
    EXPECT_LE(rows[i - 1].length, rows[i].length);
    if (rows[i - 1].length == rows[i].length) {
      EXPECT_LT(std::strcmp(rows[i - 1].entry->text, rows[i].entry->text), 0);
    }
  }
}

TEST_F(StandardDictionary, LeadsFromIdsToTheLookupByText) {
  const KRMapTagIDToIndex* ids = Inspector::LookupByID(m_dictionary);
  const KRMapTagStringToID* rows = Inspector::LookupByText(m_dictionary);
  for (u16 i = 0; i < NumberOfKRDictionaryEntry(); ++i) {
    EXPECT_EQ(ids[i].tagID, i + 1U);
    EXPECT_EQ(rows[ids[i].position].entry->tagID, ids[i].tagID);
  }
}

TEST_F(StandardDictionary, KeepsTheRuleOfCaseOfEachThread) {
  std::atomic<u32> wrong{0};
  const auto lookUp = [&](KRCaseType type, bool expectFound) {
    for (int i = 0; i < 20000; ++i) {
      if ((m_dictionary.GetTagID("trnuid", 6, nullptr, type) != nullptr) != expectFound) ++wrong;
    }
  };
  std::thread exact(lookUp, KRCaseType_Exact, false);
  std::thread caseless(lookUp, KRCaseType_IgnoreCase, true);
  exact.join();
  caseless.join();
  EXPECT_EQ(wrong.load(), 0U);
}

// --- Other tables --------------------------------------------------------------------------------

TEST_F(TagDictionaryTest, SearchesIdsWithAHole) {
  const KRTagDictionaryEntry table[] = {{Id(5), "B"}, {Id(6), "AA"}, {Id(9), "A"}};
  TagDictionary dictionary(table, 3);
  EXPECT_EQ(Inspector::AreTagIDsContiguous(dictionary), 0);
  EXPECT_EQ(Inspector::Mode(dictionary), kBinarySearch);
  EXPECT_STREQ(dictionary.GetTagString(Id(5)), "B");
  EXPECT_STREQ(dictionary.GetTagString(Id(6)), "AA");
  EXPECT_STREQ(dictionary.GetTagString(Id(9)), "A");
  for (u32 id : {0U, 4U, 7U, 8U, 10U}) EXPECT_EQ(dictionary.GetTagString(Id(id)), nullptr) << id;
  EXPECT_EQ(Find(dictionary, "A").id, 9U);
  EXPECT_EQ(Find(dictionary, "B").id, 5U);
  EXPECT_EQ(Find(dictionary, "AA").id, 6U);
}

TEST_F(TagDictionaryTest, TakesTheTextByPlaceWhenAHoleMeetsADisorderedTable) {
  const KRTagDictionaryEntry table[] = {{Id(9), "NINE"}, {Id(1), "ONE"}, {Id(2), "TWO"}};
  TagDictionary dictionary(table, 3);
  ASSERT_EQ(Inspector::Mode(dictionary), kBinarySearch);
  EXPECT_STREQ(dictionary.GetTagString(Id(1)), "NINE");
  EXPECT_STREQ(dictionary.GetTagString(Id(2)), "ONE");
  EXPECT_STREQ(dictionary.GetTagString(Id(9)), "TWO");
  EXPECT_STREQ(dictionary.FindDictionaryEntry(Id(9))->text, "NINE");
}

TEST_F(TagDictionaryTest, IndexesContiguousIdsOfADisorderedTable) {
  const KRTagDictionaryEntry table[] = {{Id(12), "X"}, {Id(10), "YYY"}, {Id(11), "ZZ"}};
  TagDictionary dictionary(table, 3);
  EXPECT_EQ(Inspector::Mode(dictionary), kDirectIndex);
  EXPECT_EQ(Inspector::LowestTagID(dictionary), 10);
  EXPECT_STREQ(dictionary.GetTagString(Id(10)), "YYY");
  EXPECT_STREQ(dictionary.GetTagString(Id(11)), "ZZ");
  EXPECT_STREQ(dictionary.GetTagString(Id(12)), "X");
  EXPECT_EQ(dictionary.GetTagString(Id(9)), nullptr);
  EXPECT_EQ(dictionary.GetTagString(Id(13)), nullptr);
  EXPECT_STREQ(dictionary.FindDictionaryEntry(Id(12))->text, "X");
}

TEST_F(TagDictionaryTest, OrdersIdsByTheirLowSixteenBits) {
  const KRTagDictionaryEntry table[] = {{Id(0x20001), "FIRST"}, {Id(0x10005), "SECOND"}};
  TagDictionary dictionary(table, 2);
  EXPECT_EQ(Inspector::LookupByID(dictionary)[0].tagID, 0x20001U);
  ASSERT_EQ(Inspector::Mode(dictionary), kBinarySearch);
  EXPECT_STREQ(dictionary.GetTagString(Id(0x20001)), "FIRST");
  EXPECT_STREQ(dictionary.GetTagString(Id(1)), "FIRST");
  EXPECT_STREQ(dictionary.GetTagString(Id(5)), "SECOND");
}

TEST_F(TagDictionaryTest, TakesARepeatedIdForAHole) {
  const KRTagDictionaryEntry table[] = {{Id(1), "A"}, {Id(1), "B"}, {Id(2), "C"}};
  EXPECT_EQ(Inspector::Mode(TagDictionary(table, 3)), kBinarySearch);
}

TEST_F(TagDictionaryTest, CountsOneRowAsContiguous) {
  const KRTagDictionaryEntry table[] = {{Id(700), "ONLY"}};
  TagDictionary dictionary(table, 1);
  EXPECT_EQ(Inspector::AreTagIDsContiguous(dictionary), 1);
  EXPECT_STREQ(dictionary.GetTagString(Id(700)), "ONLY");
  EXPECT_EQ(dictionary.GetTagString(Id(699)), nullptr);
  EXPECT_EQ(Find(dictionary, "ONLY").id, 700U);
}

TEST_F(TagDictionaryTest, FindsNothingInAnEmptyTable) {
  TagDictionary empty(nullptr, 0);
  TagDictionary missing(nullptr, 5);
  for (TagDictionary* dictionary : {&empty, &missing}) {
    EXPECT_EQ(Inspector::AreTagIDsContiguous(*dictionary), 1);
    EXPECT_EQ(Find(*dictionary, "OFX").entry, nullptr);
    EXPECT_EQ(Find(*dictionary, "", KRCaseType_IgnoreCase).entry, nullptr);
    EXPECT_EQ(dictionary->GetTagString(Id(0)), nullptr);
    EXPECT_EQ(dictionary->FindDictionaryEntry(Id(1)), nullptr);
  }
  EXPECT_EQ(KRGetFireAlarm(), KRFireAlarm_None);
}

TEST_F(TagDictionaryTest, FindsTextsOfEveryShape) {
  // Texts that differ in one character only, at each place, and that end in one long common part.
  std::vector<std::string> texts;
  for (std::size_t length = 1; length <= 24; ++length) {
    for (std::size_t place = 0; place < length; ++place) {
      std::string text(length, 'A');
      text[place] = 'B';
      texts.push_back(text);
    }
  }
  std::vector<KRTagDictionaryEntry> table;
  for (const std::string& text : texts) {
    table.push_back({Id(static_cast<u32>(table.size() + 1)), text.c_str()});
  }
  TagDictionary dictionary(table.data(), static_cast<u16>(table.size()));
  for (const KRTagDictionaryEntry& row : table) {
    EXPECT_EQ(Find(dictionary, row.text).entry, &row);
    EXPECT_EQ(Find(dictionary, LowerCase(row.text), KRCaseType_IgnoreCase).entry, &row);
    EXPECT_EQ(Find(dictionary, LowerCase(row.text)).entry, nullptr);
  }
}

TEST_F(TagDictionaryTest, FindsNoTextInATableOfMoreRowsThanAnIndexCanName) {
  const std::vector<KRTagDictionaryEntry> table(32768, {Id(1), "A"});
  TagDictionary dictionary(table.data(), 32768);
  EXPECT_EQ(Find(dictionary, "A").entry, nullptr);
  EXPECT_EQ(Find(dictionary, "A", KRCaseType_IgnoreCase).entry, nullptr);
  TagDictionary largest(table.data(), 32767);
  EXPECT_NE(Find(largest, "A").entry, nullptr);
  EXPECT_NE(Find(largest, "A", KRCaseType_IgnoreCase).entry, nullptr);
}

// --- Exhausted memory ----------------------------------------------------------------------------

TEST_F(TagDictionaryTest, FindsNothingByTextAndRaisesTheAlarmWithoutItsFirstLookup) {
  AllocationFailure::FailAt(1);
  TagDictionary dictionary(GetKRTagDictionary(), NumberOfKRDictionaryEntry());
  EXPECT_EQ(AllocationFailure::Count(), 1U);
  EXPECT_EQ(KRGetFireAlarm(), KRFireAlarm_MemoryExhausted);
  EXPECT_EQ(Find(dictionary, "OFX").entry, nullptr);
  EXPECT_EQ(Find(dictionary, "OFX", KRCaseType_IgnoreCase).entry, nullptr);
  EXPECT_EQ(Find(dictionary, "OFX").id, KRTag_None);
}

TEST_F(TagDictionaryTest, ScansForIdsWithoutItsSecondLookup) {
  AllocationFailure::FailAt(2);
  TagDictionary dictionary(GetKRTagDictionary(), NumberOfKRDictionaryEntry());
  EXPECT_EQ(KRGetFireAlarm(), KRFireAlarm_None);
  EXPECT_EQ(Inspector::Mode(dictionary), kLinearScan);
  EXPECT_EQ(Find(dictionary, "TRNUID").id, 127U);
  EXPECT_STREQ(dictionary.GetTagString(KRTag_TRNUID), "TRNUID");
  EXPECT_STREQ(dictionary.GetTagString(KRTag_NORV_BID), "NORV.BID");
  EXPECT_EQ(dictionary.GetTagString(KRTag_None), nullptr);
  EXPECT_EQ(dictionary.GetTagString(Id(1188)), nullptr);
}

// --- Comparison functions ------------------------------------------------------------------------

TEST_F(TagDictionaryTest, ComparesTextsByLengthThenBytes) {
  TagDictionary::m_compareType = KRCaseType_Exact;
  EXPECT_LT(TagDictionary::sCompare({"Z", 1}, {"AA", 2}), 0);
  EXPECT_GT(TagDictionary::sCompare({"AAA", 3}, {"ZZ", 2}), 0);
  EXPECT_LT(TagDictionary::sCompare({"AB", 2}, {"AC", 2}), 0);
  EXPECT_GT(TagDictionary::sCompare({"AD", 2}, {"AC", 2}), 0);
  EXPECT_EQ(TagDictionary::sCompare({"ACxxx", 2}, {"ACyyy", 2}), 0);
  EXPECT_EQ(TagDictionary::sCompare({"", 0}, {"", 0}), 0);
}

TEST_F(TagDictionaryTest, ComparesTextsByTheStaticCaseType) {
  TagDictionary::m_compareType = KRCaseType_Exact;
  EXPECT_NE(TagDictionary::sCompare({"ofx", 3}, {"OFX", 3}), 0);
  TagDictionary::m_compareType = KRCaseType_IgnoreCase;
  EXPECT_EQ(TagDictionary::sCompare({"ofx", 3}, {"OFX", 3}), 0);
  EXPECT_LT(TagDictionary::sCompare({"ofw", 3}, {"OFX", 3}), 0);
  EXPECT_GT(TagDictionary::sCompare({"OFY", 3}, {"ofx", 3}), 0);
  EXPECT_LT(TagDictionary::sCompare({"zz", 2}, {"AAA", 3}), 0);
}

TEST_F(TagDictionaryTest, ComparesRowsOfBothLookups) {
  const KRTagDictionaryEntry small{Id(3), "OFX"};
  const KRTagDictionaryEntry lower{Id(4), "ofx"};
  const KRMapTagStringToID left{&small, 3};
  const KRMapTagStringToID right{&lower, 3};
  TagDictionary::m_compareType = KRCaseType_Exact;
  EXPECT_LT(TagDictionary::sCompareTag(&left, &right), 0);
  EXPECT_GT(TagDictionary::sCompareTag(&right, &left), 0);
  TagDictionary::m_compareType = KRCaseType_IgnoreCase;
  EXPECT_EQ(TagDictionary::sCompareTag(&left, &right), 0);

  const KRMapTagIDToIndex one{7, Id(0x30001)};
  const KRMapTagIDToIndex two{0, Id(2)};
  EXPECT_LT(TagDictionary::sCompareTagID(&one, &two), 0);
  EXPECT_GT(TagDictionary::sCompareTagID(&two, &one), 0);
  EXPECT_EQ(TagDictionary::sCompareTagID(&one, &one), 0);
}

// --- Binary search -------------------------------------------------------------------------------

class Numbers final : public KRBinarySearch {
 public:
  Numbers(u16 count, int key) : m_count(count), m_key(key) {}
  int Compare(u16 index) override {
    ++m_compared;
    return m_key - index;
  }
  u16 GetNumberOfItems() override { return m_count; }
  int Compared() const { return m_compared; }

 private:
  u16 m_count;
  int m_key;
  int m_compared = 0;
};

TEST(KRBinarySearch, ComparesNothingWithoutItems) {
  Numbers none(0, 0);
  EXPECT_EQ(none.Search(), -1);
  EXPECT_EQ(none.Compared(), 0);
}

TEST(KRBinarySearch, FindsEachItemAndNothingBeside) {
  for (u16 count : {u16{1}, u16{2}, u16{7}, u16{8}, u16{100}}) {
    for (int key = 0; key < count; ++key) EXPECT_EQ(Numbers(count, key).Search(), key);
    EXPECT_EQ(Numbers(count, -1).Search(), -1);
    EXPECT_EQ(Numbers(count, count).Search(), -1);
  }
}

TEST(KRBinarySearch, BeginsAtTheLowerMiddle) {
  Numbers four(4, 1);
  EXPECT_EQ(four.Search(), 1);
  EXPECT_EQ(four.Compared(), 1);
}

TEST(KRBinarySearch, ReachesTheLastIndexOfFifteenBits) {
  EXPECT_EQ(Numbers(32767, 32766).Search(), 32766);
  Numbers tooMany(32768, 5);
  EXPECT_EQ(tooMany.Search(), -1);
  EXPECT_EQ(tooMany.Compared(), 0);
}

// --- The one dictionary --------------------------------------------------------------------------

TEST_F(TagDictionaryTest, IsMadeOnceAndAgainAfterItWasDestroyed) {
  KRTagDictionary* first = KRTagDictionary::TheKRTagDictionary();
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(KRTagDictionary::TheKRTagDictionary(), first);
  EXPECT_EQ(KRTagDictionary::ms_theKRTagDictionary.load(), first);
  EXPECT_EQ(first->Destroy(), 0);
  EXPECT_EQ(KRTagDictionary::ms_theKRTagDictionary.load(), nullptr);
  EXPECT_EQ(KRTagDictionary::Destroy(), 0);
  KRTagDictionary* second = KRTagDictionary::TheKRTagDictionary();
  ASSERT_NE(second, nullptr);
  EXPECT_EQ(Find(*second, "OFX").id, 69U);
  EXPECT_STREQ(second->GetTagString(KRTag_VER), "VER");
}

TEST_F(TagDictionaryTest, IsTriedAgainAfterMemoryRanOut) {
  KRTagDictionary::Destroy();
  for (std::size_t nth : {1U, 2U}) {
    KRSetFireAlarm(KRFireAlarm_None);
    AllocationFailure::FailAt(nth);
    EXPECT_EQ(KRTagDictionary::TheKRTagDictionary(), nullptr) << nth;
    AllocationFailure::FailAt(0);
    EXPECT_EQ(KRGetFireAlarm(), KRFireAlarm_MemoryExhausted) << nth;
  }
  ASSERT_NE(KRTagDictionary::TheKRTagDictionary(), nullptr);
  EXPECT_EQ(Find(*KRTagDictionary::TheKRTagDictionary(), "OFX").id, 69U);
}

TEST_F(TagDictionaryTest, IsTheSameForAllThreads) {
  KRTagDictionary::Destroy();
  KRTagDictionary* seen[4] = {};
  std::vector<std::thread> threads;
  for (KRTagDictionary*& place : seen) {
    threads.emplace_back([&place] { place = KRTagDictionary::TheKRTagDictionary(); });
  }
  for (std::thread& thread : threads) thread.join();
  for (KRTagDictionary* dictionary : seen) EXPECT_EQ(dictionary, seen[0]);
  EXPECT_NE(seen[0], nullptr);
}

}  // namespace
