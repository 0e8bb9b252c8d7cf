// Accounts, balances and account information: their tables, the makers by tag, the account type of
// each version, and copies of accounts whose class is not known.

#include "krofx/messages/banking/accounts.h"

#include <gtest/gtest.h>

#include <memory>

#include "krofx/messages/signon/signon.h"
#include "krofx/model/factory.h"
#include "support/aggregate_table.h"
#include "support/ofx_text.h"

namespace krofx::testing {
namespace {

constexpr char kBankAccount[] = R"(
    BANKID     text9         required
    BRANCHID   text22
    ACCTID     text22        required
    ACCTTYPE   word=SAVINGS  required  V1
    ACCTTYPE2  word=CMA      required  V2+  lenient
    ACCTKEY    text22
)";

constexpr char kServiceStatus[] = R"(
    SVCSTATUS   word=ACTIVE    required  V1
    SVCSTATUS2  word=REJECTED  required  V2+
    REASON      text255        V2+
)";

constexpr char kTransferFlags[] = R"(
    SUPTXDL   boolean  required
    XFERSRC   boolean  required
    XFERDEST  boolean  required
)";

TEST(AccountTables, BankAccount) { ExpectTable<KRBankAccount>("BANKACCTFROM", kBankAccount); }

TEST(AccountTables, PaymentAccount) {
  ExpectTable<KRPaymentBankAcctTo>("BANKACCTTO",
                                   std::string(kBankAccount) + "EXTBANKACCTTO child V2+");
}

TEST(AccountTables, CardAccount) {
  ExpectTable<KRCCAccount>("CCACCTFROM", R"(
    ACCTID   text22  required
    ACCTKEY  text22
  )");
}

TEST(AccountTables, InvestmentAccount) {
  ExpectTable<KRInvAcctFrom>("INVACCTFROM", R"(
    BROKERID  text22  required
    ACCTID    text22  required
  )");
}

TEST(AccountTables, PlaceOfABank) {
  ExpectTable<KRExtBankAcctTo>("EXTBANKACCTTO", R"(
    BANKNAME        text32  V2+
    BANKBRANCH      text32  V2+
    BANKCITY        text32  V2+
    BANKPOSTALCODE  text11  V2+
    CHE.PTTACCTID   text9   V2+
  )");
}

TEST(AccountTables, Balance) {
  ExpectTable<KRBalance>("BAL", R"(
    NAME       text32       required
    DESC       text80       required
    BALTYPE    word=NUMBER  required
    VALUE      amount       required
    DTASOF     date
    CURRENCY   child
    LEDGERBAL  listed
    AVAILBAL   listed
    BAL        listed
  )");
}

TEST(AccountTables, BalanceList) { ExpectTable<KRBalList>("BALLIST", "BAL children required"); }

TEST(AccountTables, BalancesOfAStatement) {
  constexpr char kBankBalance[] = R"(
    BALAMT  amount  required
    DTASOF  date    required
  )";
  ExpectTable<KRBankBalance>("", kBankBalance);
  ExpectTable<KRLedgerBalance>("LEDGERBAL", kBankBalance);
  ExpectTable<KRAvailableBalance>("AVAILBAL", kBankBalance);
}

TEST(AccountTables, AccountInformation) {
  const std::string common = kServiceStatus;
  ExpectTable<KRAccountInfoBase>("", common);
  ExpectTable<KRBankAccountInfo>("BANKACCTINFO",
                                 "BANKACCTFROM child required" + (kTransferFlags + common));
  ExpectTable<KRCCAccountInfo>("CCACCTINFO",
                               "CCACCTFROM child required" + (kTransferFlags + common));
  ExpectTable<KRBillPayAccountInfo>("BPACCTINFO", "BANKACCTFROM child required" + common);
  ExpectTable<KRInvAcctInfo>("INVACCTINFO", R"(
    INVACCTFROM    child      required
    USPRODUCTTYPE  word=401K  required
    CHECKING       boolean    required
  )" + common + R"(
    INVACCTTYPE    word=CORPORATE
    OPTIONLEVEL    text40
  )");
  ExpectTable<KRAccountInfo>("ACCTINFO", R"(
    DESC          text80
    PHONE         text32
    BANKACCTINFO  children
    CCACCTINFO    children
    BPACCTINFO    children
    INVACCTINFO   children
  )");
}

// What each maker makes for each tag: the name of the class, empty for null.
std::string ClassOf(KRAccount* account, KRTagID tag) {
  const std::unique_ptr<KRAccount> owner(account);
  if (account == nullptr) return "";
  EXPECT_EQ(account->GetType(), tag);
  if (dynamic_cast<KRBankAccount*>(account) != nullptr) return "bank";
  if (dynamic_cast<KRCCAccount*>(account) != nullptr) return "card";
  return dynamic_cast<KRInvAcctFrom*>(account) != nullptr ? "investment" : "?";
}

TEST(KRAccount, MakesTheClassThatATagNames) {
  struct Case {
    KRTagID tag;
    const char* from;
    const char* to;
  };
  constexpr Case kCases[] = {
      {KRTag_BANKACCTFROM, "bank", ""},
      {KRTag_BANKACCTTO, "", "bank"},
      {KRTag_CCACCTFROM, "card", ""},
      {KRTag_CCACCTTO, "", "card"},
      {KRTag_INVACCTFROM, "investment", ""},
      {KRTag_INVACCTTO, "", "investment"},
      {KRTag_ACCTID, "", ""},
      {KRTag_None, "", ""},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.tag);
    const std::string either = std::string(c.from) + c.to;
    EXPECT_EQ(ClassOf(KRAccount::NewAcctFrom(c.tag), c.tag), c.from);
    EXPECT_EQ(ClassOf(KRAccount::NewAcctTo(c.tag), c.tag), c.to);
    EXPECT_EQ(ClassOf(KRAccount::NewAcct(c.tag), c.tag), either);
    // Bank and card accounts only.
    const auto known = [](const std::string& name) { return name == "investment" ? "" : name; };
    EXPECT_EQ(ClassOf(KRBankOrCCAccount::NewAcctFrom(c.tag), c.tag), known(c.from));
    EXPECT_EQ(ClassOf(KRBankOrCCAccount::NewAcctTo(c.tag), c.tag), known(c.to));
    EXPECT_EQ(ClassOf(KRBankOrCCAccount::NewAcct(c.tag), c.tag), known(either));
  }
}

TEST(KRAccount, InvestmentAccountServesItsToTag) {
  const std::unique_ptr<KRAccount> account(KRAccount::NewAcct(KRTag_INVACCTTO));
  ASSERT_NE(account, nullptr);
  EXPECT_NE(dynamic_cast<KRInvAcctFrom*>(account.get()), nullptr);
  EXPECT_EQ(account->GetType(), KRTag_INVACCTTO);
}

TEST(KRAccount, MakesNothingWithoutMemory) {
  KRDataObj::GetFactory();
  FailingAllocation failure(1, true);
  EXPECT_EQ(KRAccount::NewAcct(KRTag_BANKACCTTO), nullptr);
  KRSetFireAlarm(KRFireAlarm_None);
}

TEST(KRAccount, CopiesIntoAnAccountOfTheSameClass) {
  const Parsed<KRBankAccount> source("<BANKID>1<ACCTID>2<ACCTTYPE>SAVINGS");
  KRBankAccount* const held = Make<KRBankAccount>().release();
  KRAccount* target = held;
  EXPECT_EQ(KRAccount::DeepCopyTo(source.Get(), &target), 1);
  EXPECT_EQ(target, held);
  EXPECT_EQ(TextOf(*target), TextOf(*source));
  delete target;
}

TEST(KRAccount, CopyReplacesAnAccountOfAnotherClassAndMakesAMissingOne) {
  const Parsed<KRCCAccount> source("<ACCTID>2<ACCTKEY>k");
  for (KRAccount* target : {static_cast<KRAccount*>(Make<KRBankAccount>().release()),
                            static_cast<KRAccount*>(nullptr)}) {
    EXPECT_EQ(KRAccount::DeepCopyTo(source.Get(), &target), 1);
    ASSERT_NE(target, nullptr);
    EXPECT_NE(dynamic_cast<KRCCAccount*>(target), nullptr);
    EXPECT_EQ(TextOf(*target), TextOf(*source));
    delete target;
  }
}

TEST(KRAccount, CopyOfNothingIsNothing) {
  KRAccount* target = Make<KRBankAccount>().release();
  EXPECT_EQ(KRAccount::DeepCopyTo(nullptr, &target), 1);
  EXPECT_EQ(target, nullptr);
  EXPECT_EQ(KRAccount::DeepCopyTo(nullptr, nullptr), 0);
}

TEST(KRAccount, CopiesNothingOfAnotherClass) {
  const Parsed<KRCCAccount> source("<ACCTID>2");
  auto target = Make<KRBankAccount>();
  EXPECT_EQ(target->SetBankID(KRString("9")), 1);
  EXPECT_EQ(static_cast<KRAccount*>(target.get())->DeepCopyFrom(source.Get()), 0);
  EXPECT_EQ(TextOf(*target), "<BANKID>9\n");
}

TEST(KRBankAccount, KeepsTheAccountTypeOfItsVersionOnly) {
  auto account = Make<KRBankAccount>(1);
  EXPECT_EQ(account->SetAccountType(KRBankAccountType_CREDITLINE), 1);
  EXPECT_EQ(account->SetAccountType2(KRBankAccountType2_CMA), 0);
  EXPECT_EQ(TextOf(*account), "<ACCTTYPE>CREDITLINE\n");
  EXPECT_EQ(account->SetMsgSetVersion(2), 1);
  EXPECT_EQ(TextOf(*account), "");
  EXPECT_EQ(account->SetAccountType2(KRBankAccountType2_CMA), 1);
  EXPECT_EQ(TextOf(*account), "<ACCTTYPE2>CMA\n");
  EXPECT_EQ(account->GetAccountType(), KRBankAccountType_CREDITLINE);
  EXPECT_EQ(account->GetAccountType2(), KRBankAccountType2_CMA);
}

TEST(KRBankAccount, AccountTypeIsUnknownUntilThereIsOne) {
  EXPECT_EQ(KRBankAccount().GetAccountType(), KRBankAccountType_UNKNOWN);
  const Parsed<KRBankAccount> parsed("<ACCTTYPE>checking");
  EXPECT_EQ(parsed->GetAccountType(), KRBankAccountType_CHECKING);
}

TEST(KRBankAccount, UnreadableTypeOfTheSecondVersionLetsTheParseGoOn) {
  const Parsed<KRBankAccount> account("<BANKID>1<ACCTTYPE2>BARREL<ACCTID>2", 2);
  EXPECT_EQ(account.Status(), KRParseStatus_Warnings);
  EXPECT_EQ(TextOf(*account), "<BANKID>1\n<ACCTID>2\n");
  EXPECT_EQ(account->ValidateTag(KRTag_ACCTTYPE2), 0);
  ASSERT_EQ(account.Warnings().size(), 2u);
  EXPECT_EQ(account.Warnings()[0], "BADFORMAT \"BARREL\"");
  EXPECT_EQ(account.Warnings()[1], "BADFORMAT " + TagNumber(KRTag_ACCTTYPE2) + " \"BARREL\"");
}

TEST(KRBankAccount, UnreadableTypeOfTheFirstVersionStopsTheParse) {
  const Parsed<KRBankAccount> account("<BANKID>1<ACCTTYPE>BARREL<ACCTID>2", 1);
  EXPECT_EQ(account.Status(), KRParseStatus_Invalid);
  EXPECT_EQ(TextOf(*account), "<BANKID>1\n");
}

TEST(KRBankAccount, BuildWithATypeThatHasNoTextFails) {
  auto account = Make<KRBankAccount>(2);
  EXPECT_EQ(account->SetAccountType2(static_cast<KRBankAccountType2>(77)), 1);
  const Built built = Build(*account);
  EXPECT_EQ(built.status, KRBuildStatus_NoTextForm);
  EXPECT_EQ(built.failingObject, account.get());
  TakeWarnings();
}

TEST(KRPaymentBankAcctTo, WritesItsPlaceInTheSecondVersionOnly) {
  const Parsed<KRPaymentBankAcctTo> account(
      "<BANKID>1<ACCTID>2<ACCTTYPE2>CMA" + Aggregate("EXTBANKACCTTO", "<CHE.PTTACCTID>30"), 2);
  ASSERT_EQ(account.Status(), KRParseStatus_Accepted);
  EXPECT_EQ(TextOf(*account),
            InLines("<BANKID>1<ACCTID>2<ACCTTYPE2>CMA<EXTBANKACCTTO><CHE.PTTACCTID>30"
                    "</EXTBANKACCTTO>"));
  account->SetMsgSetVersion(1);
  EXPECT_EQ(TextOf(*account), InLines("<BANKID>1<ACCTID>2"));
  ASSERT_NE(account->GetExtBankAcctTo(), nullptr);
}

TEST(KRPaymentBankAcctTo, IsABankAccountThatPayeesHold) {
  KRPaymentBankAcctTo account;
  EXPECT_EQ(account.GetType(), KRTag_BANKACCTTO);
  EXPECT_NE(dynamic_cast<KRBankAccount*>(&account), nullptr);
}

TEST(KRBalance, NeverHoldsTheBalanceTagsThatItLists) {
  for (const KRTagID tag : {KRTag_LEDGERBAL, KRTag_AVAILBAL, KRTag_BAL}) {
    auto balance = Make<KRBalance>();
    EXPECT_EQ(balance->IsValidTag(tag), 1);
    const char* name = KRTagDictionary::TheKRTagDictionary()->GetTagString(tag);
    const Parsed<KRBalance> element("<" + std::string(name) + ">5");
    EXPECT_EQ(element.Status(), KRParseStatus_Invalid);
    EXPECT_EQ(element->ValidateTag(tag), 0);
    const Parsed<KRBalance> aggregate(Aggregate(name, ""));
    EXPECT_EQ(aggregate.Status(), KRParseStatus_Invalid);
    EXPECT_EQ(aggregate->ValidateTag(tag), 0);
  }
}

TEST(KRBalance, ReadsItsValues) {
  const Parsed<KRBalance> balance(
      "<NAME>Points<DESC>Bonus points<BALTYPE>PERCENT<VALUE>12.5<DTASOF>20260131" +
      Aggregate("CURRENCY", "<CURRATE>1.1<CURSYM>EUR"));
  ASSERT_EQ(balance.Status(), KRParseStatus_Accepted);
  EXPECT_EQ(balance->AllRequiredPresent(), 1);
  EXPECT_EQ(balance->GetBalType(), KRBalType_PERCENT);
  EXPECT_EQ(balance->GetDtAsOf().GetDay(), 31);
  ASSERT_NE(balance->GetCurrency(), nullptr);
  EXPECT_EQ(Str(balance->GetCurrency()->GetCurrencySymbol()), "EUR");
}

TEST(KRBalList, EmptyListIsIncomplete) {
  EXPECT_EQ(Make<KRBalList>()->AllRequiredPresent(), 0);
  const Parsed<KRBalList> one(Aggregate("BAL", ""));
  EXPECT_EQ(one->AllRequiredPresent(), 1);
}

TEST(KRAccountInfo, HoldsServicesOfAllKindsInTheOrderOfTheText) {
  const Parsed<KRAccountInfo> info(Aggregate("INVACCTINFO", "") + Aggregate("BPACCTINFO", "") +
                                   Aggregate("BANKACCTINFO", "") + Aggregate("BPACCTINFO", ""));
  ASSERT_EQ(info.Status(), KRParseStatus_Accepted);
  ASSERT_EQ(info->GetNumAccountInfoBase(), 4);
  EXPECT_NE(dynamic_cast<KRInvAcctInfo*>(info->GetAccountInfoBase(0)), nullptr);
  EXPECT_NE(dynamic_cast<KRBillPayAccountInfo*>(info->GetAccountInfoBase(1)), nullptr);
  EXPECT_NE(dynamic_cast<KRBankAccountInfo*>(info->GetAccountInfoBase(2)), nullptr);
  EXPECT_EQ(TextOf(*info), InLines("<BANKACCTINFO></BANKACCTINFO><BPACCTINFO></BPACCTINFO>"
                                   "<BPACCTINFO></BPACCTINFO><INVACCTINFO></INVACCTINFO>"));
}

TEST(KRAccountInfo, TakesServicesFromTheHost) {
  auto info = Make<KRAccountInfo>();
  EXPECT_EQ(info->AppendAccountInfoBase(Make<KRCCAccountInfo>().release()), 1);
  EXPECT_EQ(info->ValidateTag(KRTag_CCACCTINFO), 1);
  EXPECT_EQ(info->GetNumberOfChildren(), 1);
  info->DeleteAllAccountInfoBase();
  EXPECT_EQ(info->GetNumAccountInfoBase(), 0);
}

// A host's account that writes what every account of a bank has, and nothing else.
TEST(KRBankOrCCAccount, WritesItsTagsInAHostsClass) {
  class OwnAccount : public KRBankOrCCAccount {};
  OwnAccount account;
  account.SetMsgSetVersion(1);
  EXPECT_EQ(account.SetAccountKey(KRString("key")), 1);
  EXPECT_EQ(account.SetAccountID(KRString("1029384756")), 1);
  EXPECT_EQ(TextOf(account), InLines("<ACCTID>1029384756<ACCTKEY>key"));
}

}  // namespace
}  // namespace krofx::testing
