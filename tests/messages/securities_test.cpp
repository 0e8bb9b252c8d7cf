// Securities: their tables, what names one in a request, the list of a response as a child of its
// message set, and all securities of a list at once.

#include "krofx/messages/investment/securities.h"

#include <gtest/gtest.h>

#include "krofx/model/value_arrays.h"
#include "krofx/values/utility.h"
#include "messages/investment_texts.h"
#include "support/aggregate_table.h"

namespace krofx::testing {
namespace {

TEST(SecurityTables, SecID) {
  ExpectTable<KRSecID>("SECID", R"(
    UNIQUEID      text32  required
    UNIQUEIDTYPE  text10  required
  )");
}

TEST(SecurityTables, SecInfo) {
  ExpectTable<KRSecInfo>("SECINFO", R"(
    SECID      child    required
    SECNAME    text120  required
    TICKER     text32
    FIID       text32
    RATING     text10
    UNITPRICE  amount
    DTASOF     date
    CURRENCY   child
    MEMO       text255            V1
    MEMO2      text390            V2+
  )");
}

TEST(SecurityTables, DebtInfo) {
  ExpectTable<KRDebtInfo>("DEBTINFO", R"(
    SECINFO       child          required
    PARVALUE      amount         required
    DEBTTYPE      word=ZERO      required
    DEBTCLASS     word=OTHER
    COUPONRT      amount
    DTCOUPON      date
    COUPONFREQ    word=OTHER
    CALLPRICE     amount
    YIELDTOCALL   amount
    DTCALL        date
    CALLTYPE      word=MATURITY
    YIELDTOMAT    amount
    DTMAT         date
    ASSETCLASS    word=OTHER
    FIASSETCLASS  text32
  )");
}

TEST(SecurityTables, MFInfo) {
  ExpectTable<KRMFInfo>("MFINFO", R"(
    SECINFO         child       required
    MFTYPE          word=OTHER
    YIELD           amount
    DTYIELDASOF     date
    MFASSETCLASS    child
    FIMFASSETCLASS  child
  )");
}

TEST(SecurityTables, OptInfo) {
  ExpectTable<KROptInfo>("OPTINFO", R"(
    SECINFO       child       required
    OPTTYPE       word=OTHER  required
    STRIKEPRICE   amount      required
    DTEXPIRE      date        required
    SHPERCTRCT    s16         required
    SECID         child
    ASSETCLASS    word=OTHER
    FIASSETCLASS  text32
  )");
}

TEST(SecurityTables, OtherInfo) {
  ExpectTable<KROtherInfo>("OTHERINFO", R"(
    SECINFO       child       required
    TYPEDESC      text32
    ASSETCLASS    word=OTHER
    FIASSETCLASS  text32
  )");
}

TEST(SecurityTables, StockInfo) {
  ExpectTable<KRStockInfo>("STOCKINFO", R"(
    SECINFO       child       required
    STOCKTYPE     word=OTHER
    YIELD         amount
    DTYIELDASOF   date
    ASSETCLASS    word=OTHER
    FIASSETCLASS  text32
  )");
}

TEST(SecurityTables, MFAssetClass) {
  ExpectTable<KRMFAssetClass>("MFASSETCLASS", R"(
    PORTION  children  required
  )");
}

TEST(SecurityTables, Portion) {
  ExpectTable<KRPortion>("PORTION", R"(
    ASSETCLASS  word=OTHER  required
    PERCENT     amount      required
  )");
}

TEST(SecurityTables, FIMFAssetClass) {
  ExpectTable<KRFIMFAssetClass>("FIMFASSETCLASS", R"(
    FIPORTION  children  required
  )");
}

TEST(SecurityTables, FIPortion) {
  ExpectTable<KRFIPortion>("FIPORTION", R"(
    FIASSETCLASS  text32  required
    PERCENT       amount  required
  )");
}

TEST(SecurityTables, SecListRq) {
  ExpectTable<KRSecListRq>("SECLISTRQ", R"(
    SECRQ  children  required
  )");
}

TEST(SecurityTables, SecListRs) { ExpectTable<KRSecListRs>("SECLISTRS", ""); }

TEST(SecurityTables, SecList) {
  ExpectTable<KRSecList>("SECLIST", R"(
    DEBTINFO   children
    MFINFO     children
    OPTINFO    children
    OTHERINFO  children
    STOCKINFO  children
  )");
}

TEST(SecurityTables, SecListMsgSetV1) {
  ExpectTable<KRSecListMsgSetV1>("SECLISTMSGSETV1", R"(
    MSGSETCORE     child    required
    SECLISTRQDNLD  boolean  required
  )");
}

TEST(SecurityTables, SecListMsgSetV2) {
  ExpectTable<KRSecListMsgSetV2>("SECLISTMSGSETV2", R"(
    MSGSETCORE     child    required
    SECLISTRQDNLD  boolean  required
  )",
                                 2);
}

// Its three tags are optional, each by itself, so its table has no required rows.
TEST(SecurityTables, SecRq) {
  KRSecRq fresh;
  EXPECT_EQ(fresh.GetType(), KRTag_SECRQ);
  KRArrayOfTags tags;
  EXPECT_EQ(fresh.GetArrayOfValidTags(tags), 1);
  EXPECT_EQ(TableLines(tags), (Lines{"SECID 65535", "TICKER 65535", "FIID 65535"}));
  EXPECT_EQ(fresh.GetArrayOfRequiredTags(tags), 1);
  EXPECT_EQ(tags.count, 0);
  const std::string text = SecIdText() + "<TICKER>GRML<FIID>1042";
  auto parsed = std::make_unique<Parsed<KRSecRq>>("<FIID>1042<TICKER>GRML" + SecIdText());
  EXPECT_EQ(TextOf(**parsed), InLines(text));
  ASSERT_EQ((*parsed)->GetNumberOfChildren(), 1);
  KRSecRq copy;
  ASSERT_EQ(copy.DeepCopyFrom(parsed->Get()), 1);
  parsed.reset();
  EXPECT_EQ(TextOf(copy), InLines(text));
  EXPECT_EQ(Parsed<KRSecRq>("<TICKER>" + Letters(33)).Status(), KRParseStatus_Warnings);
}

TEST(KRSecRq, NamesASecurityInExactlyOneWay) {
  const std::string id = SecIdText();
  EXPECT_EQ(IsComplete<KRSecRq>("", 1), 0);
  EXPECT_EQ(IsComplete<KRSecRq>(id, 1), 1);
  EXPECT_EQ(IsComplete<KRSecRq>("<TICKER>GRML", 1), 1);
  EXPECT_EQ(IsComplete<KRSecRq>("<FIID>1042", 1), 1);
  EXPECT_EQ(IsComplete<KRSecRq>("<TICKER>GRML<FIID>1042", 1), 0);
  EXPECT_EQ(IsComplete<KRSecRq>(id + "<TICKER>GRML", 1), 0);
  EXPECT_EQ(IsComplete<KRSecRq>(id + "<TICKER>GRML<FIID>1042", 1), 0);
}

TEST(KRSecRq, NamesWhatIsMissingWhenTheRuleFails) {
  const auto missing = [](const std::string& content) {
    return Parsed<KRSecRq>(content)->GetFirstMissingRequiredTag(KRTag_None);
  };
  EXPECT_NE(missing(""), KRTag_None);
  EXPECT_NE(missing("<TICKER>GRML<FIID>1042"), KRTag_None);
  EXPECT_EQ(missing("<TICKER>GRML"), KRTag_None);
  EXPECT_EQ(missing(SecIdText()), KRTag_None);
}

TEST(KRSecListRq, IsIncompleteWithoutASecurity) {
  EXPECT_EQ(IsComplete<KRSecListRq>("", 1), 0);
  EXPECT_EQ(IsComplete<KRSecListRq>(Aggregate("SECRQ", SecIdText()), 1), 1);
}

TEST(KRSecListRs, IsCompleteWithNoTags) {
  EXPECT_EQ(IsComplete<KRSecListRs>("", 1), 1);
  KRArrayOfTags tags;
  KRSecListRs response;
  EXPECT_EQ(response.GetArrayOfValidTags(tags), 1);
  EXPECT_EQ(tags.count, 0);
}

TEST(KRSecList, IsCompleteWithNoEntries) { EXPECT_EQ(IsComplete<KRSecList>("", 1), 1); }

TEST(KRSecList, KeepsEachKindAndWritesKindByKind) {
  for (const u16 version : kVersions) {
    SCOPED_TRACE(version);
    ExpectEachCopied<KRSecList>(SecurityTexts(version), "", version);
    ExpectWrittenByKind<KRSecList>(SecurityTexts(version), "", version);
  }
}

TEST(KRMFInfo, IsCheckedThroughItsClassesOfAssets) {
  const std::string empty = SecInfoText(1) + Aggregate("MFASSETCLASS", "");
  EXPECT_EQ(IsComplete<KRMFInfo>(empty, 1), 1) << "its own tags are there";
  const Parsed<KRMFInfo> fund(empty, 1);
  EXPECT_EQ(FindIn<KRMFAssetClass>(fund.Get())->AllRequiredPresent(), 0);
  KRDataObj* failing = fund.Get();
  KRTagID missing = KRTag_None;
  EXPECT_EQ(KRUtility::AllRequiredPresent(&failing, &missing), 0);
  EXPECT_EQ(failing, FindIn<KRMFAssetClass>(fund.Get()));
  EXPECT_EQ(missing, KRTag_PORTION);
}

TEST(KRFIMFAssetClass, IsIncompleteWithoutAPortion) {
  EXPECT_EQ(IsComplete<KRFIMFAssetClass>("", 1), 0);
  EXPECT_EQ(IsComplete<KRFIMFAssetClass>(Aggregate("FIPORTION", ""), 1), 1);
}

TEST(KROptInfo, TellsTheUnderlyingSecurityApartFromItsOwn) {
  const Parsed<KROptInfo> option(SecurityTexts(1)[2].content, 1);
  ASSERT_NE(option->GetSecID(), nullptr);
  ASSERT_NE(option->GetSecInfo(), nullptr);
  EXPECT_STREQ(option->GetSecID()->GetUniqueID(), "500000007");
  EXPECT_STREQ(option->GetSecInfo()->GetSecID()->GetUniqueID(), "931142103");
}

TEST(KRSecListMsgSetV2, IsTheFirstVersionWithTheVersionSet) {
  KRSecListMsgSetV2 set;
  EXPECT_EQ(set.GetMsgSetVersion(), 2);
  EXPECT_NE(dynamic_cast<KRSecListMsgSetV1*>(static_cast<KRDataObj*>(&set)), nullptr);
}

// All securities at once.

class FillSecInfoList : public ::testing::Test {
 protected:
  std::unique_ptr<KRSecList> NewList() const {
    auto list = std::make_unique<KRSecList>();
    list->SetMsgSetVersion(1);
    KRSimpleParser parser;
    TextBuffer buffer(ReversedTextOf(SecurityTexts(1)));
    EXPECT_EQ(parser.Parse(buffer.Get(), list.get(), 0), KRParseStatus_Accepted);
    return list;
  }
  static void ExpectAll(KRDynamicArrayDataObj& securities) {
    const Entries texts = SecurityTexts(1);
    ASSERT_EQ(securities.Entries(), texts.size());
    for (u16 i = 0; i < securities.Entries(); ++i) {
      ASSERT_NE(securities.Get(i), nullptr);
      EXPECT_EQ(TextOf(*securities.Get(i)), InLines(texts[i].content));
    }
  }
};

TEST_F(FillSecInfoList, HasOneEntryForEachSecurityKindByKind) {
  const auto list = NewList();
  KRDynamicArrayDataObj securities(1, 1);
  EXPECT_EQ(list->FillSecInfoList(securities), 1);
  ExpectAll(securities);
  EXPECT_EQ(securities.Get(0), list->GetDebtInfo(0));
  EXPECT_EQ(securities.Get(4), list->GetStockInfo(0));
}

TEST_F(FillSecInfoList, LeavesTheSecuritiesToTheList) {
  const auto list = NewList();
  {
    KRDynamicArrayDataObj securities(1, 1);
    EXPECT_EQ(list->FillSecInfoList(securities), 1);
  }
  KRDynamicArrayDataObj cleared(1, 1);
  EXPECT_EQ(list->FillSecInfoList(cleared), 1);
  cleared.Clear();
  KRDynamicArrayDataObj deleted(1, 1);
  EXPECT_EQ(list->FillSecInfoList(deleted), 1);
  deleted.DeleteAll();
  EXPECT_EQ(deleted.Entries(), 0);
  KRDynamicArrayDataObj securities(1, 1);
  EXPECT_EQ(list->FillSecInfoList(securities), 1);
  ExpectAll(securities);
}

TEST_F(FillSecInfoList, LeavesNothingDanglingBehindTheList) {
  KRDynamicArrayDataObj securities(1, 1);
  auto list = NewList();
  EXPECT_EQ(list->FillSecInfoList(securities), 1);
  list.reset();
  for (u16 i = 0; i < securities.Entries(); ++i) EXPECT_EQ(securities.Get(i), nullptr);
}

TEST_F(FillSecInfoList, AddsToWhatAnArrayHolds) {
  auto list = NewList();
  KRDynamicArrayDataObj securities(1, 1);
  auto* own = new KRStockInfo;
  EXPECT_EQ(securities.Append(own), 1);
  EXPECT_EQ(list->FillSecInfoList(securities), 1);
  ASSERT_EQ(securities.Entries(), 6);
  EXPECT_EQ(securities.Get(0), own);
  EXPECT_EQ(securities.Get(5), list->GetStockInfo(0));
  list.reset();
  ASSERT_EQ(securities.Entries(), 1);
  EXPECT_EQ(securities.Get(0), own);
}

struct CountedStock : KRStockInfo {
  explicit CountedStock(int& alive) : m_alive(alive) { ++m_alive; }
  ~CountedStock() override { --m_alive; }
  int& m_alive;
};

TEST_F(FillSecInfoList, LeavesAClearedArrayToItself) {
  int alive = 0;
  auto list = NewList();
  {
    KRDynamicArrayDataObj securities(1, 1);
    EXPECT_EQ(list->FillSecInfoList(securities), 1);
    securities.Clear();
    EXPECT_EQ(securities.Append(new CountedStock(alive)), 1);
    EXPECT_EQ(securities.IsShared(), false);
    list->DeleteAllStockInfo();
    EXPECT_EQ(securities.Get(0)->GetType(), KRTag_STOCKINFO);
  }
  EXPECT_EQ(alive, 0);
  KRDynamicArrayDataObj later(1, 1);
  EXPECT_EQ(list->FillSecInfoList(later), 1);
  later.Clear();
  EXPECT_EQ(later.Append(new CountedStock(alive)), 1);
  list.reset();
  ASSERT_EQ(later.Entries(), 1);
  EXPECT_NE(later.Get(0), nullptr);
  later.DeleteAll();
  EXPECT_EQ(alive, 0);
}

TEST_F(FillSecInfoList, FillsAnArrayThatAnotherListFilledBeforeItWasCleared) {
  const auto list = NewList();
  const auto other = NewList();
  KRDynamicArrayDataObj securities(1, 1);
  EXPECT_EQ(other->FillSecInfoList(securities), 1);
  static_cast<KRDynamicArray&>(securities).Clear();
  EXPECT_EQ(list->FillSecInfoList(securities), 1);
  ExpectAll(securities);
  EXPECT_EQ(securities.Get(0), list->GetDebtInfo(0));
}

TEST_F(FillSecInfoList, GivesUpABorrowedEntryThatIsReplacedOrTakenOut) {
  int alive = 0;
  const auto list = NewList();
  KRDynamicArrayDataObj securities(1, 1);
  EXPECT_EQ(list->FillSecInfoList(securities), 1);
  EXPECT_EQ(securities.Set(0, new CountedStock(alive)), 1);
  EXPECT_EQ(securities.UnSet(1), 1);
  EXPECT_EQ(securities.Entries(), 4);
  EXPECT_EQ(&securities[1], list->GetOptInfo(0));
  securities.DeleteAll();
  EXPECT_EQ(alive, 0);
  KRDynamicArrayDataObj all(1, 1);
  EXPECT_EQ(list->FillSecInfoList(all), 1);
  ExpectAll(all);
}

TEST_F(FillSecInfoList, TiesCopiesOfAFilledArrayToTheListToo) {
  auto list = NewList();
  auto securities = std::make_unique<KRDynamicArrayDataObj>(1, 1);
  EXPECT_EQ(list->FillSecInfoList(*securities), 1);
  KRDynamicArrayDataObj copy(*securities);
  KRDynamicArrayDataObj assigned(1, 1);
  assigned = copy;
  securities.reset();
  ExpectAll(copy);
  ExpectAll(assigned);
  list.reset();
  for (u16 i = 0; i < 5; ++i) {
    EXPECT_EQ(copy.Get(i), nullptr);
    EXPECT_EQ(assigned.Get(i), nullptr);
  }
}

TEST_F(FillSecInfoList, RefusesAnArrayThatShowsAnotherList) {
  const auto list = NewList();
  const auto other = NewList();
  KRDynamicArrayDataObj securities(1, 1);
  EXPECT_EQ(list->FillSecInfoList(securities), 1);
  EXPECT_EQ(other->FillSecInfoList(securities), 0);
  ExpectAll(securities);
  securities.Clear();
  EXPECT_EQ(other->FillSecInfoList(securities), 1);
  ExpectAll(securities);
}

TEST_F(FillSecInfoList, AddsAllOrNothingAtTheLimitOfAnArray) {
  const auto list = NewList();
  KRDynamicArrayDataObj securities(1, 1);
  ASSERT_EQ(securities.AllocatedTo(65530), 1);
  EXPECT_EQ(list->FillSecInfoList(securities), 0);
  EXPECT_EQ(securities.Entries(), 65531);
  EXPECT_EQ(securities.UnSet(0), 1);
  EXPECT_EQ(list->FillSecInfoList(securities), 1);
  EXPECT_EQ(securities.Entries(), 65535);
  EXPECT_EQ(securities.Get(65534), list->GetStockInfo(0));
}

TEST_F(FillSecInfoList, ServesSeveralArrays) {
  const auto list = NewList();
  KRDynamicArrayDataObj first(1, 1);
  KRDynamicArrayDataObj second(1, 1);
  EXPECT_EQ(list->FillSecInfoList(first), 1);
  EXPECT_EQ(list->FillSecInfoList(second), 1);
  ExpectAll(first);
  ExpectAll(second);
  KRSecList copy(*list);
  KRDynamicArrayDataObj third(1, 1);
  EXPECT_EQ(copy.FillSecInfoList(third), 1);
  ExpectAll(third);
}

TEST_F(FillSecInfoList, AddsNothingFromAnEmptyList) {
  KRSecList list;
  KRDynamicArrayDataObj securities(1, 1);
  EXPECT_EQ(securities.Append(new KRStockInfo), 1);
  EXPECT_EQ(list.FillSecInfoList(securities), 1);
  EXPECT_EQ(securities.Entries(), 1);
}

TEST_F(FillSecInfoList, SaysWhenMemoryIsExhausted) {
  const auto list = NewList();
  KRDynamicArrayDataObj securities(1, 1);
  u16 filled = 1;
  {
    FailingAllocation failure(1);
    filled = list->FillSecInfoList(securities);
  }
  EXPECT_EQ(filled, 0);
  EXPECT_EQ(securities.Entries(), 0);
  KRSetFireAlarm(KRFireAlarm_None);
}

TEST(KRSecRq, SaysThatOneOfThreeTagsIsMeant) {
  KRSecRq request;
  request.SetMsgSetVersion(1);
  KRUnmetRule rule;
  EXPECT_EQ(KRUtility::GetUnmetRule(&request, 0, rule), 1);
  EXPECT_EQ(rule.present, 0);
  request.SetTicker(KRString("KRO"));
  EXPECT_EQ(KRUtility::GetUnmetRule(&request, 0, rule), 0);
  request.SetFIID(KRString("77"));
  EXPECT_EQ(request.AllRequiredPresent(), 0);
  ASSERT_EQ(KRUtility::GetUnmetRule(&request, 0, rule), 1);
  EXPECT_EQ(rule.demand, KRPresenceDemand_ExactlyOne);
  ASSERT_EQ(rule.count, 3);
  EXPECT_EQ(rule.tags[0], KRTag_TICKER);
  EXPECT_EQ(rule.tags[1], KRTag_SECID);
  EXPECT_EQ(rule.tags[2], KRTag_FIID);
  EXPECT_EQ(rule.present, 2);
  EXPECT_EQ(KRUtility::GetUnmetRule(&request, 1, rule), 0);
  EXPECT_EQ(KRUtility::GetUnmetRule(nullptr, 0, rule), 0);
}

}  // namespace
}  // namespace krofx::testing
