// Mail: the tables, the body and its limits, and whom a bank's letter is about.

#include "krofx/messages/banking/mail.h"

#include <gtest/gtest.h>

#include "krofx/messages/banking/accounts.h"

#include "support/aggregate_table.h"
#include "support/ofx_text.h"

namespace krofx::testing {
namespace {

constexpr char kMail[] = R"(
    USERID     text32          required
    DTCREATED  date            required
    FROM       text32          required
    TO         text32          required
    SUBJECT    text60          required
    MSGBODY    repeated=Hello  required  closed
    INCIMAGES  boolean         required
    USEHTML    boolean         required
)";

constexpr char kMailBase[] = R"(
    MAIL  child  required
)";

constexpr char kBankMailBase[] = R"(
    BANKACCTFROM  child  asked
    CCACCTFROM    child  other
    MAIL          child  required
)";

constexpr char kInvMailBase[] = R"(
    INVACCTFROM  child  required
    MAIL         child  required
)";

constexpr char kCheckMailRs[] = R"(
    BANKACCTFROM  child   required
    MAIL          child   required
    CHECKNUM      text12  required
    TRNAMT        amount
    DTUSER        date
    FEE           amount
)";

constexpr char kDepositMailRs[] = R"(
    BANKACCTFROM  child   required
    MAIL          child   required
    TRNAMT        amount  required
    DTUSER        date
    FEE           amount
)";

constexpr char kGetMimeRq[] = R"(
    URL   text255   required  V1
    URL2  text1024  required  V2+
)";

constexpr char kEMailMessageSetV1[] = R"(
    MSGSETCORE  child    required
    MAILSUP     boolean  required
    GETMIMESUP  boolean  required
)";

TEST(MailTables, Letter) { ExpectTable<KRMail>("MAIL", kMail); }

TEST(MailTables, GeneralMail) {
  ExpectTable<KRMailBase>("", kMailBase);
  ExpectTable<KRMailRq>("MAILRQ", kMailBase);
  ExpectTable<KRMailRs>("MAILRS", kMailBase);
}

TEST(MailTables, BankMail) {
  ExpectTable<KRBankMailBase>("", kBankMailBase);
  ExpectTable<KRBankMailRq>("BANKMAILRQ", kBankMailBase);
  ExpectTable<KRBankMailRs>("BANKMAILRS", kBankMailBase);
}

TEST(MailTables, InvestmentMail) {
  ExpectTable<KRInvMailBase>("", kInvMailBase);
  ExpectTable<KRInvestmentMailRq>("INVMAILRQ", kInvMailBase);
  ExpectTable<KRInvestmentMailRs>("INVMAILRS", kInvMailBase);
}

TEST(MailTables, Notices) {
  ExpectTable<KRCheckMailRs>("CHKMAILRS", kCheckMailRs);
  ExpectTable<KRDepositMailRs>("DEPMAILRS", kDepositMailRs);
}

TEST(MailTables, Parts) {
  ExpectTable<KRGetMimeRq>("GETMIMERQ", kGetMimeRq);
  ExpectTable<KRGetMimeRs>("GETMIMERS", kGetMimeRq);
}

TEST(MailTables, MessageSets) {
  ExpectTable<KREMailMessageSetV1>("EMAILMSGSETV1", kEMailMessageSetV1);
  ExpectTable<KREMailMessageSetV2>("EMAILMSGSETV2", kEMailMessageSetV1, 2);
}

u16 IsComplete(const std::string& accounts) {
  const Parsed<KRBankMailRq> letter(accounts + Aggregate("MAIL", ""));
  const u16 complete = letter->AllRequiredPresent();
  EXPECT_EQ(letter->GetFirstMissingRequiredTag(KRTag_None) == KRTag_None, complete == 1);
  return complete;
}

TEST(KRBankMail, IsAboutOneAccount) {
  const std::string bank = BankAccountText("BANKACCTFROM");
  const std::string card = Aggregate("CCACCTFROM", "<ACCTID>4400");
  EXPECT_EQ(IsComplete(bank), 1);
  EXPECT_EQ(IsComplete(card), 1);
  EXPECT_EQ(IsComplete(bank + card), 0);
  EXPECT_EQ(IsComplete(""), 0);
}

TEST(KRMail, IsIncompleteWithoutUseHTML) {
  const std::string text =
      "<USERID>ada<DTCREATED>20260105<FROM>Ada<TO>Bank<SUBJECT>Hello<MSGBODY>Hi</MSGBODY>"
      "<INCIMAGES>N";
  const Parsed<KRMail> mail(text);
  EXPECT_EQ(mail.Status(), KRParseStatus_Accepted);
  EXPECT_EQ(mail->AllRequiredPresent(), 0);
  EXPECT_EQ(mail->GetFirstMissingRequiredTag(KRTag_None), KRTag_USEHTML);
  EXPECT_EQ(Parsed<KRMail>(text + "<USEHTML>N")->AllRequiredPresent(), 1);
}

TEST(KRMail, ClosesItsBody) {
  auto mail = Make<KRMail>();
  EXPECT_EQ(mail->SetMsgBody("Dear bank"), 1);
  EXPECT_EQ(TextOf(*mail), "<MSGBODY>Dear bank\n</MSGBODY>\n");
}

u16 IsValidBody(std::size_t length, u32 limit) {
  // An assignment sets the limit anew.
  KREMailMsgBody body;
  body = KRString(Letters(length).c_str());
  if (limit == 10000) {
    body.SetSpecLength10000();
  } else {
    body.SetSpecLength2000();
  }
  return body.IsValid();
}

TEST(KRMail, ToleratesABodyALittleOverTheShortLimit) {
  EXPECT_EQ(IsValidBody(2000, 2000), 1);
  EXPECT_EQ(IsValidBody(2160, 2000), 1);
  EXPECT_EQ(IsValidBody(2161, 2000), 0);
  EXPECT_EQ(IsValidBody(10000, 10000), 1);
  EXPECT_EQ(IsValidBody(10001, 10000), 0);
}

TEST(KRMail, HoldsAnEmptyBodyForInvalid) { EXPECT_EQ(KREMailMsgBody().IsValid(), 0); }

TEST(KRCheckMailRs, StandsOutsideTheMailClasses) {
  KRDataObj* check = new KRCheckMailRs;
  EXPECT_EQ(dynamic_cast<KRMailBase*>(check), nullptr);
  delete check;
}

}  // namespace
}  // namespace krofx::testing
