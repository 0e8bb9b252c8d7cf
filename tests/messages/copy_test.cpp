// Shallow and deep copies of aggregates: what is shared, what is independent, and that either can
// be destroyed safely.

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "krofx/messages/banking/statements.h"
#include "krofx/messages/profile/profile.h"
#include "krofx/messages/signon/signon.h"
#include "krofx/model/factory.h"
#include "support/failing_allocation.h"
#include "support/ofx_text.h"

namespace {

using namespace krofx::testing;

constexpr const char* kList =
    "<DTSTART>20260101<DTEND>20260131"
    "<STMTTRN><TRNTYPE>CHECK<DTPOSTED>20260104<TRNAMT>-1.00<FITID>1"
    "<CURRENCY><CURRATE>1.0<CURSYM>USD</CURRENCY></STMTTRN>"
    "<STMTTRN><TRNTYPE>ATM<DTPOSTED>20260105<TRNAMT>-2.00<FITID>2</STMTTRN>";

std::unique_ptr<KRBankTransactionList> MakeList() {
  const Parsed<KRBankTransactionList> list(kList);
  EXPECT_EQ(list.Status(), KRParseStatus_Accepted);
  auto copy = std::make_unique<KRBankTransactionList>();
  EXPECT_EQ(copy->DeepCopyFrom(list.Get()), 1);
  return copy;
}

TEST(ShallowCopy, SharesChildrenAndIsDestroyedSafely) {
  auto source = MakeList();
  const std::string text = TextOf(*source);
  {
    const KRBankTransactionList copy(*source);
    EXPECT_EQ(copy.GetStatementTx(0), source->GetStatementTx(0));
    EXPECT_EQ(TextOf(copy), text);
    KRBankTransactionList assigned;
    assigned.AppendStatementTx(new KRBankStatementTx);
    assigned = *source;
    EXPECT_EQ(TextOf(assigned), text);
  }
  EXPECT_EQ(TextOf(*source), text);
  KRBankStatementTx transaction(*source->GetStatementTx(0));
  EXPECT_EQ(transaction.GetCurrency(), source->GetStatementTx(0)->GetCurrency());
}

TEST(ShallowCopy, OutlivesItsSourceWithTheElementsOfItsArrays) {
  auto source = MakeList();
  const std::string text = TextOf(*source);
  const KRBankTransactionList copy(*source);
  source.reset();
  EXPECT_EQ(copy.GetNumStatementTx(), 2);
  EXPECT_EQ(TextOf(copy), text);
}

TEST(DeepCopy, IsIndependentOfItsSource) {
  auto source = MakeList();
  const std::string text = TextOf(*source);
  KRBankTransactionList copy;
  EXPECT_EQ(copy.DeepCopyFrom(source.get()), 1);
  EXPECT_EQ(TextOf(copy), text);
  EXPECT_NE(copy.GetStatementTx(0), source->GetStatementTx(0));
  EXPECT_NE(copy.GetStatementTx(0)->GetCurrency(), source->GetStatementTx(0)->GetCurrency());
  source.reset();
  EXPECT_EQ(TextOf(copy), text);
}

TEST(DeepCopy, IsIndependentEvenIntoAShallowCopyOfItsSource) {
  auto source = MakeList();
  const std::string text = TextOf(*source);
  KRBankTransactionList copy(*source);
  EXPECT_EQ(copy.DeepCopyFrom(source.get()), 1);
  EXPECT_NE(copy.GetStatementTx(0), source->GetStatementTx(0));
  copy.DeleteAllStatementTx();
  EXPECT_EQ(TextOf(*source), text);

  KRBankStatementTx transaction(*source->GetStatementTx(0));
  EXPECT_EQ(transaction.DeepCopyFrom(source->GetStatementTx(0)), 1);
  EXPECT_NE(transaction.GetCurrency(), source->GetStatementTx(0)->GetCurrency());
}

TEST(DeepCopy, LeavesAloneWhatItsTargetOnlyBorrowed) {
  auto source = MakeList();
  const std::string text = TextOf(*source);
  KRBankTransactionList copy(*source);
  KRBankTransactionList empty;
  EXPECT_EQ(copy.DeepCopyFrom(&empty), 1);
  EXPECT_EQ(copy.GetNumStatementTx(), 0);
  EXPECT_EQ(TextOf(*source), text);
}

TEST(DeepCopy, ReusesItsOwnElementsAndDropsTheRest) {
  auto source = MakeList();
  KRBankTransactionList copy;
  for (int i = 0; i < 3; ++i) copy.AppendStatementTx(Make<KRBankStatementTx>().release());
  KRBankStatementTx* first = copy.GetStatementTx(0);
  EXPECT_EQ(copy.DeepCopyFrom(source.get()), 1);
  EXPECT_EQ(copy.GetNumStatementTx(), 2);
  EXPECT_EQ(copy.GetStatementTx(0), first);
  EXPECT_EQ(TextOf(copy), TextOf(*source));
}

TEST(DeepCopy, LeavesGapsWhereItsSourceHasThem) {
  auto source = Make<KRBankTransactionList>();
  auto* third = Make<KRBankStatementTx>().release();
  EXPECT_EQ(source->SetStatementTx(2, third), 1);
  third->SetFITId("3");
  auto target = MakeList();
  EXPECT_EQ(target->DeepCopyFrom(source.get()), 1);
  EXPECT_EQ(target->GetNumStatementTx(), 3);
  EXPECT_EQ(target->GetStatementTx(0), nullptr);
  EXPECT_EQ(target->GetStatementTx(1), nullptr);
  ASSERT_NE(target->GetStatementTx(2), nullptr);
  EXPECT_EQ(TextOf(*target->GetStatementTx(2)), TextOf(*third));
  // And the other way round.
  EXPECT_EQ(target->DeepCopyFrom(MakeList().get()), 1);
  EXPECT_EQ(TextOf(*target), TextOf(*MakeList()));
}

TEST(DeepCopy, ReplacesElementsOfAnotherClass) {
  const Parsed<KRMessageSetList> source("<BANKMSGSET></BANKMSGSET>");
  const Parsed<KRMessageSetList> target("<SIGNUPMSGSET></SIGNUPMSGSET>");
  EXPECT_EQ(target->DeepCopyFrom(source.Get()), 1);
  EXPECT_EQ(TextOf(*target), "<BANKMSGSET>\n</BANKMSGSET>\n");
  EXPECT_EQ(TextOf(*source), TextOf(*target));
}

TEST(DeepCopy, RefusesNullAndForeignSources) {
  auto list = MakeList();
  const std::string text = TextOf(*list);
  EXPECT_EQ(list->DeepCopyFrom(nullptr), 0);
  EXPECT_EQ(list->DeepCopyFrom(list.get()), 1);
  KRBankStatementTx transaction;
  KRStatementEndRq other;
  EXPECT_EQ(transaction.DeepCopyFrom(&other), 0);
  EXPECT_EQ(TextOf(*list), text);
}

TEST(DeepCopy, TakesItsChildrenFromTheFactoryInForce) {
  class Poor : public KRDataObjFactory {
   public:
    KRBankStatementTx* NewBankStatementTx(u16) override { return nullptr; }
  };
  auto source = MakeList();
  Poor factory;
  KRDataObj::SetFactory(&factory);
  KRBankTransactionList copy;
  EXPECT_EQ(copy.DeepCopyFrom(source.get()), 0);
  EXPECT_TRUE(AlarmIsSet());
  KRDataObj::SetFactory(nullptr);
  KRSetFireAlarm(KRFireAlarm_None);
}

TEST(DeepCopy, EndsWithoutHarmWhereverMemoryRunsOut) {
  auto source = MakeList();
  bool finished = false;
  for (std::size_t nth = 1; !finished; ++nth) {
    KRBankTransactionList copy;
    u16 copied = 0;
    {
      const FailingAllocation failing(nth);
      copied = copy.DeepCopyFrom(source.get());
      finished = krofx::internal::AllocationFailure::Count() < nth;
    }
    EXPECT_TRUE(finished || copied == 0 || AlarmIsSet() || TextOf(copy) == TextOf(*source)) << nth;
    KRSetFireAlarm(KRFireAlarm_None);
  }
}

}  // namespace
