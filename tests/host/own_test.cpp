// Objects in the hands of std::unique_ptr: copies, what is given to a tree and taken out of one.

#include "krofx/host/own.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "krofx/envelope/file_rq_rs.h"
#include "krofx/host/look.h"
#include "krofx/host/subclass.h"
#include "krofx/messages/banking/accounts.h"
#include "krofx/messages/banking/statements.h"
#include "krofx/messages/banking/transfers.h"
#include "krofx/messages/investment/securities.h"
#include "krofx/payroll/employees.h"
#include "krofx/payroll/taxes.h"
#include "support/failing_allocation.h"
#include "support/readings.h"

namespace krofx::testing {
namespace {

// An account that counts how many of its kind there are.
class Counted : public KRBankAccount {
 public:
  Counted() { ++s_alive; }
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;
  ~Counted() override { --s_alive; }

  static int s_alive;
};
int Counted::s_alive = 0;

std::unique_ptr<Counted> NewCounted(u16 version, KRTagID tag) {
  auto account = std::make_unique<Counted>();
  account->SetMsgSetVersion(version);
  account->SetType(tag);
  return account;
}

TEST(New, MakesObjectsThroughTheFactory) {
  const std::unique_ptr<KRXferInfo> transfer = New<KRXferInfo>(2);
  ASSERT_NE(transfer, nullptr);
  EXPECT_EQ(transfer->GetMsgSetVersion(), 2);
  {
    const FailingAllocation failing(1);
    EXPECT_EQ(New<KRXferInfo>(1), nullptr);
    EXPECT_TRUE(AlarmIsSet());
  }
}

TEST(Clone, IsDeepAndFromConst) {
  const Reading reading = ReadFile(KROFX_EXAMPLES "/checking.ofx");
  const KRBankStatementRs& statement = **Each<KRBankStatementRs>(reading).begin();
  const std::unique_ptr<KRBankStatementRs> copy = Clone(statement);
  ASSERT_NE(copy, nullptr);
  EXPECT_EQ(TextOf(*copy), TextOf(statement));
  EXPECT_NE(copy->GetBankTranList(), statement.GetBankTranList());
}

TEST(Clone, CopiesEveryKindOfObjectInAFile) {
  for (const char* name : {"checking.ofx", "statement-v2.ofx", "brokerage.ofx", "payroll-batch.ofx",
                           "transfers-request.ofx", "stop-checks-response-v2.ofx"}) {
    const Reading reading = ReadFile((std::string(KROFX_EXAMPLES "/") + name).c_str());
    ASSERT_NE(reading.root, nullptr) << name;
    ForEach<KRDataObj>(*reading.root, [&](const KRDataObj& object) {
      // Envelopes have no copy that needs no knowledge of the class.
      if (dynamic_cast<const KRFile*>(&object) != nullptr ||
          dynamic_cast<const KRRequest*>(&object) != nullptr ||
          dynamic_cast<const KRResponse*>(&object) != nullptr ||
          dynamic_cast<const KRMessageSetRq*>(&object) != nullptr ||
          dynamic_cast<const KRMessageSetRs*>(&object) != nullptr) {
        return;
      }
      const std::unique_ptr<KRDataObj> copy = Clone(object);
      ASSERT_NE(copy, nullptr) << name;
      EXPECT_EQ(TextOf(*copy), TextOf(object));
    });
  }
}

TEST(Clone, CopiesWholeFilesAndMessageSets) {
  const Reading reading = ReadFile(KROFX_EXAMPLES "/checking.ofx");
  const std::unique_ptr<KRFileRs> file = Clone(*reading.Response());
  ASSERT_NE(file, nullptr);
  EXPECT_EQ(Written(file.get()), Written(reading.Response()));
  const std::unique_ptr<KRMessageSetRs> set = Clone(**Each<KRMessageSetRs>(reading).begin());
  ASSERT_NE(set, nullptr);
}

TEST(Clone, IsNoneOfAnObjectThatHoldsNothing) {
  KRSetFireAlarm(KRFireAlarm_None);
  EXPECT_EQ(Clone(KRDataObj()), nullptr);
  EXPECT_FALSE(AlarmIsSet());
}

TEST(Clone, IsAllOrNothingWhenMemoryIsExhausted) {
  const Reading reading = ReadFile(KROFX_EXAMPLES "/card.ofx");
  const KRBankTransactionList& list = **Each<KRBankTransactionList>(reading).begin();
  const std::string whole = TextOf(list);
  for (std::size_t nth = 1; nth < 100000; ++nth) {
    const FailingAllocation failing(nth);
    const std::unique_ptr<KRBankTransactionList> copy = Clone(list);
    const bool failed = AlarmIsSet();
    krofx::internal::AllocationFailure::FailAt(0);
    if (!failed) {
      ASSERT_NE(copy, nullptr);
      EXPECT_EQ(TextOf(*copy), whole);
      EXPECT_GT(nth, 5u);
      return;
    }
  }
  FAIL() << "never enough memory";
}

TEST(Give, HandsAChildOver) {
  {
    const auto transfer = Make<KRXferInfo>();
    EXPECT_TRUE(Give(*transfer, &KRXferInfo::SetBankAcctTo, NewCounted(1, KRTag_BANKACCTTO)));
    EXPECT_EQ(Counted::s_alive, 1);
    EXPECT_TRUE(Give(*transfer, &KRXferInfo::SetBankAcctTo, NewCounted(1, KRTag_BANKACCTTO)));
    EXPECT_EQ(Counted::s_alive, 1);
  }
  EXPECT_EQ(Counted::s_alive, 0);
}

// The setter refuses the tag and keeps the child.
TEST(Give, LeavesAChildWhereASetterKeepsItInSpiteOfItsAnswer) {
  {
    KRXferInfo transfer;  // Of no version yet: no tag is valid.
    EXPECT_FALSE(Give(transfer, &KRXferInfo::SetBankAcctTo, NewCounted(1, KRTag_BANKACCTTO)));
    EXPECT_EQ(Counted::s_alive, 1);
    EXPECT_NE(transfer.GetBankAcctTo(), nullptr);
  }
  EXPECT_EQ(Counted::s_alive, 0);
}

// A list keeps what it is given, also where nobody counts that far.
TEST(Give, LeavesAnElementWhereAListKeepsItAmongMoreThanCanBeCounted) {
  const auto list = Make<KRSecList>();
  EXPECT_TRUE(Give(*list, &KRSecList::SetDebtInfo, 65534, std::make_unique<KRDebtInfo>()));
  auto stock = std::make_unique<KRStockInfo>();
  stock->SetType(KRTag_None);
  const KRStockInfo* const given = stock.get();
  EXPECT_FALSE(Give(*list, &KRSecList::SetStockInfo, 0, std::move(stock)));
  EXPECT_EQ(list->GetStockInfo(0), given);
}

// The same among children that are no list.
TEST(Give, LeavesAnElementInAFullListBesideAnAccount) {
  const auto statements = Make<KRStatementEndRs>();
  EXPECT_TRUE(Give(*statements, &KRStatementEndRs::SetBankAcctFrom, New<KRBankAccount>(1)));
  EXPECT_TRUE(Give(*statements, &KRStatementEndRs::SetClosing, 65534, New<KRClosing>(1)));
  auto closing = New<KRClosing>(1);
  closing->SetType(KRTag_None);
  const KRClosing* const given = closing.get();
  EXPECT_FALSE(Give(*statements, &KRStatementEndRs::SetClosing, 65533, std::move(closing)));
  EXPECT_EQ(statements->GetClosing(65533), given);
}

// A host's class that counts more children than have a number, and refuses one that it may hold.
class Crowd : public KRDataObj {
 public:
  u16 GetNumberOfChildren() const override { return 65535; }
  u16 Refuse(KRDataObj* child) {
    m_child.reset(child);
    return 0;
  }

 private:
  std::unique_ptr<KRDataObj> m_child;
};

TEST(Give, LeavesAChildWhereNobodyCanSeeThatItIsNotHeld) {
  {
    Crowd crowd;
    EXPECT_FALSE(Give(crowd, &Crowd::Refuse, NewCounted(1, KRTag_BANKACCTTO)));
    EXPECT_EQ(Counted::s_alive, 1);
  }
  EXPECT_EQ(Counted::s_alive, 0);
}

// The array refuses a child, which is the caller's.
class CountedTx : public KRBankStatementTx {
 public:
  CountedTx() { ++s_alive; }
  CountedTx(const CountedTx&) = delete;
  CountedTx& operator=(const CountedTx&) = delete;
  ~CountedTx() override { --s_alive; }
  static int s_alive;
};
int CountedTx::s_alive = 0;

std::unique_ptr<CountedTx> NewCountedTx() {
  auto tx = std::make_unique<CountedTx>();
  tx->SetMsgSetVersion(1);
  tx->SetType(KRTag_STMTTRN);
  return tx;
}

TEST(Give, DeletesAnElementThatAListDoesNotTake) {
  const auto list = Make<KRBankTransactionList>();
  EXPECT_TRUE(Give(*list, &KRBankTransactionList::AppendStatementTx, NewCountedTx()));
  EXPECT_TRUE(Give(*list, &KRBankTransactionList::SetStatementTx, 1, NewCountedTx()));
  EXPECT_EQ(CountedTx::s_alive, 2);
  EXPECT_FALSE(Give(*list, &KRBankTransactionList::SetStatementTx, 65535, NewCountedTx()));
  EXPECT_EQ(CountedTx::s_alive, 2);
  // A full list is looked through.
  EXPECT_TRUE(Give(*list, &KRBankTransactionList::SetStatementTx, 65534, NewCountedTx()));
  EXPECT_FALSE(Give(*list, &KRBankTransactionList::SetStatementTx, 65535, NewCountedTx()));
  EXPECT_EQ(CountedTx::s_alive, 3);
  list->DeleteAllStatementTx();
  EXPECT_EQ(CountedTx::s_alive, 0);
}

TEST(Give, NeverLeaksNorFreesTwiceWhicheverAllocationFails) {
  for (std::size_t nth = 1; nth < 20; ++nth) {
    const auto list = Make<KRBankTransactionList>();
    auto tx = NewCountedTx();
    {
      const FailingAllocation failing(nth);
      const bool given = Give(*list, &KRBankTransactionList::AppendStatementTx, std::move(tx));
      EXPECT_EQ(given, CountedTx::s_alive == 1);
    }
    list->DeleteAllStatementTx();
    EXPECT_EQ(CountedTx::s_alive, 0);
  }
}

TEST(Give, LeavesItToASetterThatCopiesWhatItIsGiven) {
  KREmployeeTaxSummary unversioned;
  EXPECT_FALSE(Give(unversioned, &KREmployeeTaxSummary::SetAddrInfo, New<KRAddrInfo>(1)));
  const auto summary = Make<KREmployeeTaxSummary>();
  EXPECT_TRUE(Give(*summary, &KREmployeeTaxSummary::SetAddrInfo, New<KRAddrInfo>(1)));
}

TEST(Give, TakesAPayload) {
  const auto wrapper = Make<KRTransRq>();
  wrapper->SetType(KRTag_INTRATRNRQ);
  auto payload = New<KRIntraRq>(1);
  payload->SetType(KRTag_INTRARQ);
  EXPECT_TRUE(Give(*wrapper, &KRTransRq::SetActualTrans, std::move(payload)));
  auto wrong = New<KRBankStatementRq>(1);
  wrong->SetType(KRTag_STMTRQ);
  EXPECT_FALSE(Give(*wrapper, &KRTransRq::SetActualTrans, std::move(wrong)));
}

TEST(Give, PassesNullOn) {
  const auto transfer = Make<KRXferInfo>();
  Give(*transfer, &KRXferInfo::SetBankAcctTo, NewCounted(1, KRTag_BANKACCTTO));
  Give(*transfer, &KRXferInfo::SetBankAcctTo, std::unique_ptr<KRBankAccount>());
  EXPECT_EQ(transfer->GetBankAcctTo(), nullptr);
  EXPECT_EQ(Counted::s_alive, 0);
}

TEST(Take, GetsAChildOutOfAnObject) {
  const auto transfer = Make<KRXferInfo>();
  Give(*transfer, &KRXferInfo::SetBankAcctTo, NewCounted(1, KRTag_BANKACCTTO));
  {
    const std::unique_ptr<KRBankAccount> account = Take(*transfer, &KRXferInfo::GetBankAcctTo);
    ASSERT_NE(account, nullptr);
    EXPECT_EQ(transfer->GetBankAcctTo(), nullptr);
    EXPECT_EQ(transfer->HasBankAcctTo(), 0);
    EXPECT_EQ(Take(*transfer, &KRXferInfo::GetBankAcctTo), nullptr);
    EXPECT_EQ(Counted::s_alive, 1);
  }
  EXPECT_EQ(Counted::s_alive, 0);
}

TEST(Take, GetsAChildOutOfAnObjectThatHasListsToo) {
  const auto taxes = Make<KREmployeeTaxInfo>();
  Give(*taxes, &KREmployeeTaxInfo::SetHealthCare, Make<KRHealthCare>());
  const std::unique_ptr<KRHealthCare> taken = Take(*taxes, &KREmployeeTaxInfo::GetHealthCare);
  ASSERT_NE(taken, nullptr);
  EXPECT_EQ(taxes->GetHealthCare(), nullptr);
  EXPECT_EQ(taxes->HasHealthCare(), 0);
  // What is in no slot of it is not taken.
  EXPECT_FALSE(internal::Release(*taxes, taken.get()));
  EXPECT_FALSE(internal::Release(*taxes, nullptr));
  KRDataObj withoutTable;
  EXPECT_FALSE(internal::Release(withoutTable, taken.get()));
}

TEST(Take, GetsAChildWhoseTagIsNotValid) {
  KRXferInfo transfer;  // Of no version yet: no tag is valid.
  Give(transfer, &KRXferInfo::SetBankAcctTo, NewCounted(1, KRTag_BANKACCTTO));
  EXPECT_NE(Take(transfer, &KRXferInfo::GetBankAcctTo), nullptr);
  EXPECT_EQ(transfer.GetBankAcctTo(), nullptr);
  EXPECT_EQ(Counted::s_alive, 0);
}

TEST(Take, LeavesWhatAShallowCopyBorrows) {
  const auto transfer = Make<KRXferInfo>();
  Give(*transfer, &KRXferInfo::SetBankAcctTo, NewCounted(1, KRTag_BANKACCTTO));
  KRXferInfo copy(*transfer);
  EXPECT_EQ(Take(copy, &KRXferInfo::GetBankAcctTo), nullptr);
  EXPECT_NE(transfer->GetBankAcctTo(), nullptr);
}

TEST(Take, GetsAnElementOutOfAList) {
  const auto list = Make<KRBankTransactionList>();
  Give(*list, &KRBankTransactionList::AppendStatementTx, NewCountedTx());
  const auto tx = Take(*list, &KRBankTransactionList::GetStatementTx,
                       &KRBankTransactionList::DisconnectStatementTx, 0);
  ASSERT_NE(tx, nullptr);
  EXPECT_EQ(list->GetNumStatementTx(), 0);
  EXPECT_EQ(Take(*list, &KRBankTransactionList::GetStatementTx,
                 &KRBankTransactionList::DisconnectStatementTx, 0),
            nullptr);
}

}  // namespace
}  // namespace krofx::testing
