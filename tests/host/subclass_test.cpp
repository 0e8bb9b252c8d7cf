// Classes of a host's own in the place of the library's.

#include "krofx/host/subclass.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>

#include "krofx/host/look.h"
#include "krofx/host/own.h"
#include "krofx/messages/banking/accounts.h"
#include "krofx/messages/banking/statements.h"
#include "krofx/model/value_arrays.h"
#include "krofx/values/keywords.h"
#include "support/factory_in_force.h"
#include "support/failing_allocation.h"
#include "support/readings.h"

namespace krofx::testing {
namespace {

class Booking : public KRBankStatementTx {
 public:
  // What was in when the end tag came.
  std::string atEnd;

  KRParseStatus HandleTagEnd(const KRTagDictionaryEntry* const entry) override {
    const KRParseStatus status = KRBankStatementTx::HandleTagEnd(entry);
    if (status == KRParseStatus_Accepted) atEnd = Str(GetFITId()) + Str(GetMemo());
    return status;
  }
  u16 ProcessResponse() override {
    ++s_processed;
    return KRBankStatementTx::ProcessResponse();
  }
  static int s_processed;
};
int Booking::s_processed = 0;

class OtherBooking : public KRBankStatementTx {};
class OwnAccount : public KRBankAccount {};

std::string Two() {
  return BankStatementFile(
      "<STMTTRN><TRNTYPE>DEBIT<DTPOSTED>20260105<TRNAMT>-1<FITID>a<MEMO>x</STMTTRN>"
      "<STMTTRN><TRNTYPE>DEBIT<DTPOSTED>20260105<TRNAMT>-2<FITID>b<MEMO>y</STMTTRN>");
}

template <class Class>
int Count(const Reading& reading) {
  int count = 0;
  ForEach<Class>(reading, [&count](const Class&) { ++count; });
  return count;
}

TEST(Subclass, IsInForceForItsScope) {
  {
    const Subclass<KRBankStatementTx, Booking> mine;
    EXPECT_TRUE(mine.IsInForce());
    const Reading reading = Read(Two());
    EXPECT_EQ(Count<Booking>(reading), 2);
    EXPECT_EQ((*Each<Booking>(reading).begin())->GetMsgSetVersion(), 1);
    EXPECT_NE(dynamic_cast<Booking*>(New<KRBankStatementTx>(2).get()), nullptr);
  }
  const Reading reading = Read(Two());
  EXPECT_EQ(Count<Booking>(reading), 0);
  EXPECT_EQ(Count<KRBankStatementTx>(reading), 2);
}

TEST(Subclass, SharesTheFactoryWithOthersWhicheverGoesFirst) {
  std::optional<Subclass<KRBankStatementTx, Booking>> first(std::in_place);
  std::optional<Subclass<KRBankAccount, OwnAccount>> second(std::in_place);
  std::optional<Subclass<KRBankStatementTx, OtherBooking>> third(std::in_place);
  EXPECT_EQ(Count<OtherBooking>(Read(Two())), 2);
  EXPECT_EQ(Count<OwnAccount>(Read(Two())), 1);
  third.reset();
  EXPECT_EQ(Count<Booking>(Read(Two())), 2);
  third.emplace();
  first.reset();
  EXPECT_EQ(Count<OtherBooking>(Read(Two())), 2);
  second.reset();
  EXPECT_EQ(Count<OwnAccount>(Read(Two())), 0);
  third.reset();
  EXPECT_EQ(Count<OtherBooking>(Read(Two())), 0);
}

// Makes what it makes of an institution's own version.
class HostFactory : public KRDataObjFactory {
 public:
  HostFactory() : KRDataObjFactory(2) {}
  KRBankAccount* NewBankAccount(u16 version) override {
    auto* const account = new OwnAccount;
    if (account != nullptr) account->SetMsgSetVersion(version != 0 ? version : GetVersion());
    return account;
  }
};

TEST(Subclass, LeavesAFactoryOfTheHostsInForceForAllElse) {
  HostFactory host;
  const InForce inForce(host);
  {
    const Subclass<KRBankStatementTx, Booking> mine;
    const Reading reading = Read(Two());
    EXPECT_EQ(Count<Booking>(reading), 2);
    EXPECT_EQ(Count<OwnAccount>(reading), 1);
    EXPECT_EQ(New<KRBankStatementTx>(0)->GetMsgSetVersion(), 2);
    KRDataObjFactory& both = *KRDataObj::GetFactory();
    EXPECT_EQ(both.GetVersion(), 2);
    const std::unique_ptr<KRDataObj> object(both.NewDataObj(0));
    const std::unique_ptr<KRMIMEHeader> header(both.NewMIMEHeader());
    EXPECT_TRUE(object != nullptr && header != nullptr);
    KRDynamicArrayLanguage languages(1, 1);
    EXPECT_EQ(languages.SetVal(0, KRLanguage()), 1);
    KRDynamicArrayUShort numbers(1, 1);
    EXPECT_EQ(numbers.SetVal(0, 7), 1);
  }
  EXPECT_EQ(KRDataObj::GetFactory(), &host);
}

TEST(Subclass, LeavesAFactoryThatTheHostSetsMeanwhile) {
  HostFactory host;
  {
    const Subclass<KRBankStatementTx, Booking> mine;
    KRDataObj::SetFactory(&host);
  }
  EXPECT_EQ(KRDataObj::GetFactory(), &host);
  KRDataObj::SetFactory(nullptr);
}

TEST(Subclass, IsNotInForceWithoutMemory) {
  const FailingAllocation failing(1);
  const Subclass<KRBankStatementTx, Booking> mine;
  EXPECT_FALSE(mine.IsInForce());
  EXPECT_TRUE(AlarmIsSet());
}

TEST(Subclass, GivesNullWhenItsObjectFindsNoMemory) {
  const Subclass<KRBankStatementTx, Booking> mine;
  const FailingAllocation failing(1);
  EXPECT_EQ(New<KRBankStatementTx>(1), nullptr);
  EXPECT_TRUE(AlarmIsSet());
}

TEST(Subclass, IsWhatCopiesAreOf) {
  const Subclass<KRBankStatementTx, Booking> mine;
  const Reading reading = Read(Two());
  const auto copy = Clone(**Each<KRBankTransactionList>(reading).begin());
  ASSERT_NE(copy, nullptr);
  EXPECT_NE(dynamic_cast<Booking*>(copy->GetStatementTx(0)), nullptr);
}

TEST(Subclass, HasAllElementsInAtTheEndTagOfAParse) {
  const Subclass<KRBankStatementTx, Booking> mine;
  const Parsed<KRFileRs> file(Two());
  Lines atEnd;
  for (const auto& booking : Each<Booking>(*file)) atEnd.push_back(booking->atEnd);
  EXPECT_EQ(atEnd, (Lines{"ax", "by"}));
}

TEST(Subclass, HasAllElementsInAfterAReadingAlsoADamagedOne) {
  const Subclass<KRBankStatementTx, Booking> mine;
  std::string text = Two();
  // An end tag is gone, and a comma makes the text be read a second time.
  text.erase(text.find("</STMTTRN>"), 10);
  text.replace(text.find("-2<"), 2, "-2,5");
  const Reading reading = Read(text);
  Lines memos;
  for (const auto& booking : Each<Booking>(reading)) memos.push_back(Str(booking->GetMemo()));
  EXPECT_EQ(memos, (Lines{"x", "y"}));
  Booking::s_processed = 0;
  reading.root->ProcessResponse();
  EXPECT_EQ(Booking::s_processed, 2);
}

}  // namespace
}  // namespace krofx::testing
