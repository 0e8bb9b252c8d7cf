// Investment statements and security lists in whole files.

#include <gtest/gtest.h>

#include "krofx/envelope/file_rq_rs.h"
#include "krofx/envelope/message_set.h"
#include "krofx/messages/banking/accounts.h"
#include "krofx/messages/banking/statements.h"
#include "krofx/messages/investment/orders.h"
#include "krofx/messages/investment/securities.h"
#include "krofx/messages/investment/statement.h"
#include "krofx/messages/investment/transactions.h"
#include "krofx/model/value_arrays.h"
#include "krofx/values/utility.h"
#include "messages/investment_texts.h"
#include "support/ofx_text.h"

namespace krofx::testing {
namespace {

TEST(InvestmentStatement, GoesThroughAFileWithEverythingInIt) {
  for (const u16 version : kVersions) {
    SCOPED_TRACE(version);
    const std::string statement =
        "<DTASOF>20260131<CURDEF>USD" + InvAcctText() +
        Aggregate("INVTRANLIST",
                  "<DTSTART>20260101<DTEND>20260131" + TextOf(TransactionTexts(version))) +
        Aggregate("INVPOSLIST", TextOf(PositionTexts(version))) +
        Aggregate("INVBAL", "<AVAILCASH>1.5<MARGINBALANCE>-20<SHORTBALANCE>0") +
        Aggregate("INVOOLIST", TextOf(OrderTexts(version))) + "<MKTGINFO>Hello";
    const std::string body =
        SignOnResponseSet(version) +
        Aggregate("INVSTMTMSGSRS" + VersionSuffix(version),
                  ResponseWrapper("INVSTMTTRNRS", Aggregate("INVSTMTRS", statement)));
    const Parsed<KRFileRs> parsed(File(body, version), 1, 1);
    EXPECT_EQ(parsed.Warnings(), Lines());
    EXPECT_EQ(parsed.Status(), KRParseStatus_Accepted);
    KRDataObj* root = parsed.Get();
    EXPECT_EQ(KRUtility::AllRequiredPresent(&root, nullptr), 1);
    const std::string text = TextOf(*parsed);
    EXPECT_EQ(text.substr(text.find("<OFX>")), InLines(Aggregate("OFX", body)));
    KRFileRs copy;
    ASSERT_EQ(copy.DeepCopyFrom(parsed.Get()), 1);
    EXPECT_EQ(TextOf(copy), text);
  }
}

TEST(InvestmentStatement, AsksThroughAFile) {
  for (const u16 version : kVersions) {
    SCOPED_TRACE(version);
    const std::string body =
        SignOnRequestSet(version) +
        Aggregate("INVSTMTMSGSRQ" + VersionSuffix(version),
                  RequestWrapper("INVSTMTTRNRQ", Aggregate("INVSTMTRQ", StatementRequestText()))) +
        Aggregate("SECLISTMSGSRQ" + VersionSuffix(version),
                  RequestWrapper("SECLISTTRNRQ",
                                 Aggregate("SECLISTRQ", Aggregate("SECRQ", SecIdText()))));
    const Parsed<KRFileRq> parsed(File(body, version), 1, 1);
    EXPECT_EQ(parsed.Warnings(), Lines());
    const std::string text = TextOf(*parsed);
    const std::string sets = InLines(body.substr(SignOnRequestSet(version).size()));
    EXPECT_EQ(text.substr(text.find("<INVSTMTMSGSRQ")), sets + "</OFX>\n");
  }
}

// The list in its message set.

std::string ListText(u16 version) { return Aggregate("SECLIST", TextOf(SecurityTexts(version))); }

std::unique_ptr<KRMessageSetRs> NewSet(KRTagID tag) {
  auto set = std::make_unique<KRMessageSetRs>();
  set->SetType(tag);
  return set;
}

TEST(SecurityListSet, IsCompleteWithAListAlone) {
  const auto set = NewSet(KRTag_SECLISTMSGSRSV1);
  EXPECT_EQ(set->AllRequiredPresent(), 0);
  EXPECT_EQ(set->SetSecList(new KRSecList), 1);
  EXPECT_EQ(set->AllRequiredPresent(), 1);
  ASSERT_EQ(set->GetNumberOfChildren(), 2);
  EXPECT_EQ(set->GetChild(0), nullptr);
  EXPECT_EQ(set->GetChild(1), set->GetSecList());
  EXPECT_EQ(set->GetChild(2), nullptr);
}

TEST(SecurityListSet, OwnsOneListAtATime) {
  const auto set = NewSet(KRTag_SECLISTMSGSRSV2);
  EXPECT_EQ(set->GetSecList(), nullptr);
  EXPECT_EQ(set->SetSecList(new KRSecList), 1);
  auto* second = new KRSecList;
  EXPECT_EQ(set->SetSecList(second), 1);
  EXPECT_EQ(set->GetSecList(), second);
}

TEST(SecurityListSet, WritesTheWrapperBeforeTheListWhateverCameFirst) {
  for (const u16 version : kVersions) {
    SCOPED_TRACE(version);
    const std::string wrapper = ResponseWrapper("SECLISTTRNRS", Aggregate("SECLISTRS", ""));
    const std::string list = ListText(version);
    const Parsed<KRFileRs> parsed(ResponseFile("SECLISTMSGSRS", list + wrapper, version));
    EXPECT_EQ(parsed.Status(), KRParseStatus_Accepted);
    EXPECT_EQ(parsed.Warnings(), Lines());
    auto* set = FindIn<KRSecList>(parsed.Get());
    ASSERT_NE(set, nullptr);
    EXPECT_EQ(set->GetMsgSetVersion(), version);
    const Parsed<KRFileRs> inOrder(ResponseFile("SECLISTMSGSRS", wrapper + list, version));
    const std::string text = TextOf(*parsed);
    EXPECT_EQ(text, TextOf(*inOrder));
    EXPECT_NE(text.find("</SECLISTTRNRS>\n<SECLIST>\n<DEBTINFO>"), std::string::npos) << text;
    EXPECT_NE(text.find("</SECLIST>\n</SECLISTMSGSRSV"), std::string::npos) << text;
  }
}

TEST(SecurityListSet, KeepsTheSecondListOfATextAndWarns) {
  const std::string first = Aggregate("SECLIST", SecurityTexts(1)[0].Text());
  const std::string second = Aggregate("SECLIST", SecurityTexts(1)[4].Text());
  const Parsed<KRFileRs> parsed(ResponseFile("SECLISTMSGSRS", first + second));
  EXPECT_EQ(parsed.Status(), KRParseStatus_Warnings);
  ASSERT_EQ(parsed.Warnings().size(), 1u);
  EXPECT_TRUE(parsed.Warnings()[0].starts_with("EXTRAAGG")) << parsed.Warnings()[0];
  auto* list = FindIn<KRSecList>(parsed.Get());
  ASSERT_NE(list, nullptr);
  EXPECT_EQ(list->GetNumDebtInfo(), 0);
  EXPECT_EQ(list->GetNumStockInfo(), 1);
}

TEST(SecurityListSet, HoldsItsListAloneAmongTheSets) {
  const auto set = NewSet(KRTag_BANKMSGSRSV1);
  EXPECT_EQ(set->SetSecList(new KRSecList), 0);
  EXPECT_EQ(TextOf(*set), "");
  const Parsed<KRFileRs> parsed(ResponseFile("BANKMSGSRS", ListText(1)));
  EXPECT_EQ(parsed.Status(), KRParseStatus_Warnings);
  EXPECT_EQ(FindIn<KRSecList>(parsed.Get()), nullptr);
}

TEST(SecurityListSet, IsCopiedWithItsList) {
  auto set = NewSet(KRTag_SECLISTMSGSRSV1);
  auto* list = new KRSecList;
  list->SetMsgSetVersion(1);
  KRSimpleParser parser;
  TextBuffer buffer(TextOf(SecurityTexts(1)));
  ASSERT_EQ(parser.Parse(buffer.Get(), list, 0), KRParseStatus_Accepted);
  ASSERT_EQ(set->SetSecList(list), 1);
  const std::string expected = TextOf(*set);
  KRMessageSetRs copy;
  EXPECT_EQ(copy.DeepCopyFrom(nullptr), 0);
  ASSERT_EQ(copy.DeepCopyFrom(set.get()), 1);
  EXPECT_NE(copy.GetSecList(), list);
  set.reset();
  EXPECT_EQ(TextOf(copy), expected);
  EXPECT_EQ(copy.DeepCopyFrom(&copy), 1);
  EXPECT_EQ(TextOf(copy), expected);
}

}  // namespace
}  // namespace krofx::testing
