// Looking for objects of a class in trees, and what is around them.

#include "krofx/host/look.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <type_traits>
#include <vector>

#include "krofx/envelope/file_rq_rs.h"
#include "krofx/envelope/message_set.h"
#include "krofx/messages/banking/accounts.h"
#include "krofx/messages/banking/statements.h"
#include "support/failing_allocation.h"
#include "support/readings.h"

namespace krofx::testing {
namespace {

std::string Transaction(const std::string& id) {
  return "<STMTTRN><TRNTYPE>DEBIT<DTPOSTED>20260105<TRNAMT>-7<FITID>" + id + "</STMTTRN>";
}

Reading Three() {
  return Read(BankStatementFile(Transaction("a") + Transaction("b") + Transaction("c")));
}

TEST(Each, GivesAllObjectsOfAClassInTheOrderOfTheDocument) {
  const Reading reading = Three();
  Lines ids;
  for (const auto& tx : Each<KRBankStatementTx>(reading)) ids.push_back(Str(tx->GetFITId()));
  EXPECT_EQ(ids, (Lines{"a", "b", "c"}));
}

TEST(Each, ConvertsToAReferenceSoThatNothingIsCopied) {
  const Reading reading = Three();
  const auto* list = &*(*Each<KRBankTransactionList>(reading).begin());
  u16 index = 0;
  for (const KRBankStatementTx& tx : Each<KRBankStatementTx>(reading)) {
    EXPECT_EQ(&tx, list->GetStatementTx(index++));
  }
  EXPECT_EQ(index, 3);
}

TEST(Each, KeepsConstnessOfItsSource) {
  Reading reading = Three();
  const Reading& fixed = reading;
  static_assert(
      std::is_same_v<decltype(**Each<KRBankStatementTx>(reading).begin()), KRBankStatementTx&>);
  static_assert(
      std::is_same_v<decltype(**Each<KRBankStatementTx>(fixed).begin()), const KRBankStatementTx&>);
  for (const auto& tx : Each<KRBankStatementTx>(reading)) tx->SetName(KRString("Baker"));
  for (const auto& tx : Each<KRBankStatementTx>(*fixed.Response())) {
    EXPECT_EQ(Str(tx->GetName()), "Baker");
  }
}

TEST(Each, FindsObjectsOfDerivedClassesAndTheRootItself) {
  const Reading reading = Three();
  Lines tags;
  for (const auto& account : Each<KRAccount>(reading)) {
    EXPECT_NE(dynamic_cast<const KRBankAccount*>(&*account), nullptr);
    tags.push_back(Str(account->GetAccountID()));
  }
  EXPECT_EQ(tags.size(), 1u);
  int files = 0;
  for (const auto& file : Each<KRFileRs>(*reading.root)) {
    EXPECT_EQ(&*file, reading.root);
    ++files;
  }
  EXPECT_EQ(files, 1);
}

TEST(Each, GivesTheWayToTheRoot) {
  const Reading reading = Three();
  Lines paths;
  for (const auto& tx : Each<KRBankStatementTx>(reading)) {
    paths.push_back(Str(tx.Path()));
    ASSERT_NE(tx.Ancestor<KRBankStatementRs>(), nullptr);
    EXPECT_EQ(Str(tx.Ancestor<KRBankStatementRs>()->GetCurrencyDefault()), "USD");
    EXPECT_EQ(tx.Ancestor<KRFileRs>(), reading.root);
    EXPECT_EQ(tx.Parent(), tx.Ancestor<KRBankTransactionList>());
    EXPECT_EQ(tx.Ancestor<KRCCStatementRs>(), nullptr);
    // An object is not its own ancestor.
    EXPECT_EQ(tx.Ancestor<KRBankStatementTx>(), nullptr);
  }
  const std::string list = "OFX/BANKMSGSRSV1/STMTTRNRS/STMTRS/BANKTRANLIST/STMTTRN";
  EXPECT_EQ(paths, (Lines{list + "[1]", list + "[2]", list + "[3]"}));
}

TEST(Each, GoesThroughNothingInAnEmptyTree) {
  const KRDataObj* const none = nullptr;
  for (const auto& object : Each<KRDataObj>(none)) ADD_FAILURE() << &*object;
  const Reading reading = Read(std::string_view("no OFX"));
  for (const auto& object : Each<KRDataObj>(reading)) ADD_FAILURE() << &*object;
  for (const auto& object : Each<KRDataObj>(reading.Response())) ADD_FAILURE() << &*object;
}

TEST(Each, CanBeGoneThroughAgain) {
  const Reading reading = Three();
  auto range = Each<KRBankStatementTx>(reading);
  for (int round = 0; round < 2; ++round) {
    int count = 0;
    for (const auto& tx : range) count += tx->GetFITId().IsEmpty() == 0 ? 1 : 0;
    EXPECT_EQ(count, 3);
  }
}

TEST(Each, GoesThroughAllTextsOfAFileAndAllPartsOfAMultipartOne) {
  const std::string one = BankStatementFile(Transaction("a"));
  const Reading two = Read(one + "\n" + BankStatementFile(Transaction("b")));
  Lines ids;
  ForEach<KRBankStatementTx>(
      two, [&](const KRBankStatementTx& tx) { ids.push_back(Str(tx.GetFITId())); });
  EXPECT_EQ(ids, (Lines{"a", "b"}));
  const Reading parts = ReadFile(KROFX_EXAMPLES "/multipart.mime");
  int bodies = 0;
  ForEach<KRResponse>(parts, [&](const KRResponse&, const Trail& trail) {
    ++bodies;
    EXPECT_EQ(Str(trail.Path()), "OFX");
    EXPECT_NE(trail.Ancestor<KRFileRs>(), nullptr);
  });
  EXPECT_GT(bodies, 0);
}

TEST(Each, SeesTheSameObjectsAsAWalkByHand) {
  for (const auto& entry : std::filesystem::directory_iterator(KROFX_EXAMPLES)) {
    const Reading reading = ReadFile(entry.path().c_str());
    if (reading.root == nullptr) continue;
    std::vector<const KRDataObj*> byHand;
    const auto walk = [&byHand](const auto& self, const KRDataObj& object) -> void {
      byHand.push_back(&object);
      for (u16 index = 0; index < object.GetNumberOfChildren(); ++index) {
        if (const KRDataObj* const child = object.GetChild(index)) self(self, *child);
      }
    };
    walk(walk, *reading.root);
    std::vector<const KRDataObj*> each;
    ForEach<KRDataObj>(*reading.root, [&](const KRDataObj& object) { each.push_back(&object); });
    EXPECT_EQ(each, byHand) << entry.path();
  }
}

// Files in files, deeper than any text is.
TEST(Each, ReachesTheBottomOfADeepTreeOrSaysThatMemoryIsExhausted) {
  constexpr int kDepth = 60;
  KRFile root;
  KRFile* deepest = &root;
  for (int level = 0; level < kDepth; ++level) {
    auto* const file = new KRFile;
    ASSERT_EQ(deepest->AppendSubfile(file), 1);
    deepest = file;
  }
  int count = 0;
  ForEach<KRFile>(root, [&](const KRFile&) { ++count; });
  EXPECT_EQ(count, kDepth + 1);
  const FailingAllocation failing(1, true);
  count = 0;
  ForEach<KRFile>(root, [&](const KRFile&) { ++count; });
  EXPECT_LT(count, kDepth);
  EXPECT_TRUE(AlarmIsSet());
}

TEST(Each, TakesNoMemoryInATreeThatWasRead) {
  const Reading reading = Three();
  const FailingAllocation failing(1, true);
  int count = 0;
  ForEach<KRBankStatementTx>(reading, [&](const KRBankStatementTx&) { ++count; });
  EXPECT_EQ(count, 3);
  EXPECT_FALSE(AlarmIsSet());
}

// What was found refers to the tree alone, not to the search.
TEST(Found, KnowsItsPathWhenTheSearchHasMovedOnOrIsGone) {
  const Reading reading = Three();
  const auto first = *Each<KRBankStatementTx>(reading).begin();
  std::vector<Found<const KRBankStatementTx>> all;
  for (const auto& tx : Each<KRBankStatementTx>(reading)) all.push_back(tx);
  ASSERT_EQ(all.size(), 3u);
  const std::string list = "OFX/BANKMSGSRSV1/STMTTRNRS/STMTRS/BANKTRANLIST/STMTTRN";
  EXPECT_EQ(Str(first.Path()), list + "[1]");
  EXPECT_EQ(&*first, &*all[0]);
  EXPECT_EQ(Str(all[1].Path()), list + "[2]");
  EXPECT_EQ(Str(all[2].Path()), list + "[3]");
  ASSERT_NE(all[2].Ancestor<KRBankStatementRs>(), nullptr);
  EXPECT_EQ(all[2].Parent(), all[2].Ancestor<KRBankTransactionList>());
}

TEST(Found, HasThePathOfAnObjectInFilesInFiles) {
  KRFile root;
  KRFile* deepest = &root;
  for (int level = 0; level < 40; ++level) {
    auto* const file = new KRFile;
    ASSERT_EQ(deepest->AppendSubfile(file), 1);
    deepest = file;
  }
  std::size_t count = 0;
  for (const auto& file : Each<KRFile>(root)) {
    EXPECT_EQ(Str(file.Path()), "");
    EXPECT_EQ(file.Parent() == nullptr, count == 0);
    ++count;
  }
  EXPECT_EQ(count, 41u);
}

TEST(Found, NumbersObjectsOfEachTagInAMixedList) {
  KRMessageSetRs set;
  set.SetType(KRTag_BANKMSGSRSV1);
  const KRTagID kinds[] = {KRTag_STMTTRNRS,   KRTag_INTRATRNRS, KRTag_STMTTRNRS,
                           KRTag_STPCHKTRNRS, KRTag_INTRATRNRS, KRTag_STMTTRNRS};
  for (const KRTagID tag : kinds) {
    auto* const wrapper = new KRTransRs;
    wrapper->SetType(tag);
    ASSERT_EQ(set.AppendTrans(wrapper), 1);
  }
  Lines paths;
  for (const auto& wrapper : Each<KRTransRs>(set)) paths.push_back(Str(wrapper.Path()));
  const std::string start = "BANKMSGSRSV1/";
  EXPECT_EQ(paths, (Lines{start + "STMTTRNRS[1]", start + "INTRATRNRS[1]", start + "STMTTRNRS[2]",
                          start + "STPCHKTRNRS", start + "INTRATRNRS[2]", start + "STMTTRNRS[3]"}));
}

// Files in files of tags of their own, more than a walk has room for: their numbers take memory.
TEST(Found, SaysThatMemoryIsExhaustedForTheNumbersOfManyTags) {
  KRFile root;
  constexpr u32 kTags = 60;
  for (u32 each = 0; each < 2 * kTags; ++each) {
    auto* const file = new KRFile;
    file->SetType(static_cast<KRTagID>(1 + each % kTags));
    ASSERT_EQ(root.AppendSubfile(file), 1);
  }
  const auto count = [&root] {
    u32 found = 0;
    ForEach<KRFile>(root, [&](const KRFile&) { ++found; });
    return found;
  };
  EXPECT_EQ(count(), 2 * kTags + 1);
  const FailingAllocation failing(1, true);
  EXPECT_LT(count(), kTags);
  EXPECT_TRUE(AlarmIsSet());
}

// A list that counts how often its children are asked for.
class CountingList : public KRBankTransactionList {
 public:
  KRDataObj* GetChild(u16 index) const override {
    ++m_asked;
    return KRBankTransactionList::GetChild(index);
  }
  std::size_t Asked() const { return m_asked; }

 private:
  mutable std::size_t m_asked = 0;
};

TEST(Found, KnowsItsPathWithoutGoingThroughItsListAgain) {
  constexpr std::size_t kCount = 2000;
  CountingList list;
  list.SetType(KRTag_BANKTRANLIST);
  for (std::size_t each = 0; each < kCount; ++each) {
    auto* const tx = new KRBankStatementTx;
    tx->SetType(KRTag_STMTTRN);
    ASSERT_EQ(list.AppendStatementTx(tx), 1);
  }
  std::size_t number = 0;
  for (const auto& tx : Each<KRBankStatementTx>(list)) {
    EXPECT_EQ(Str(tx.Path()), "BANKTRANLIST/STMTTRN[" + std::to_string(++number) + "]");
  }
  EXPECT_EQ(number, kCount);
  EXPECT_LE(list.Asked(), 2 * kCount);
}

// The trees of a temporary would be gone at once.
template <class Source>
concept CanBeGoneThrough = requires(Source&& source) {
  Each<KRBankStatementTx>(std::forward<Source>(source)).begin();
};
static_assert(CanBeGoneThrough<Reading&>);
static_assert(CanBeGoneThrough<const Reading&>);
static_assert(!CanBeGoneThrough<Reading>);

}  // namespace
}  // namespace krofx::testing
