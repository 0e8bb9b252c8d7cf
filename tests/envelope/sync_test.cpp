// Synchronisation wrappers: their elements, account and transactions, and what makes each complete.

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "envelope/routing_lists.h"
#include "krofx/envelope/envelope.h"
#include "krofx/envelope/file_rq_rs.h"
#include "krofx/messages/banking/accounts.h"
#include "krofx/values/utility.h"
#include "support/ofx_text.h"

namespace {

using namespace krofx::testing;

template <class Sync>
std::unique_ptr<Sync> MakeSync(std::string_view type, u16 version = 2) {
  auto sync = Make<Sync>(version);
  sync->SetType(Id(type));
  return sync;
}

// Marks tags as present without values: completeness depends only on presence.
template <class Sync>
u16 CompleteWith(std::string_view type, std::string_view tags, u16 version = 2) {
  auto sync = MakeSync<Sync>(type, version);
  for (const std::string& tag : Words(tags)) EXPECT_EQ(sync->SetTag(Id(tag)), 1) << type << tag;
  return sync->AllRequiredPresent();
}

// What a synchronisation needs besides its token: alternatives that are complete and alternatives
// that are not.
struct Needs {
  std::string_view types;
  std::vector<std::string> enough;
  std::vector<std::string> tooLittle;
};

const std::vector<std::string> kNeither = {"", "BANKACCTFROM CCACCTFROM"};

TEST(KRSyncRq, AsksForWhatItsTypeNeeds) {
  const Needs kNeeds[] = {
      {"BANKMAILSYNCRQ",
       {"BANKACCTFROM INCIMAGES USEHTML", "CCACCTFROM INCIMAGES USEHTML"},
       {"", "INCIMAGES USEHTML", "BANKACCTFROM CCACCTFROM INCIMAGES USEHTML",
        "BANKACCTFROM INCIMAGES", "BANKACCTFROM USEHTML"}},
      {"INVMAILSYNCRQ",
       {"INVACCTFROM INCIMAGES USEHTML"},
       {"", "INCIMAGES USEHTML", "INVACCTFROM INCIMAGES", "INVACCTFROM USEHTML"}},
      {"MAILSYNCRQ PMTMAILSYNCRQ", {"INCIMAGES USEHTML"}, {"", "INCIMAGES", "USEHTML"}},
      {"INTRASYNCRQ RECINTERSYNCRQ RECINTRASYNCRQ", {"BANKACCTFROM", "CCACCTFROM"}, kNeither},
      {"PMTSYNCRQ RECPMTSYNCRQ STPCHKSYNCRQ WIRESYNCRQ", {"BANKACCTFROM"}, {""}},
      {"INTERSYNCRQ PAYEESYNCRQ ACCTSYNCRQ CHGUSERINFOSYNCRQ", {""}, {}},
  };
  std::size_t types = 1;  // the payroll's, below
  for (const Needs& needs : kNeeds) {
    for (const std::string& type : Words(needs.types)) {
      ++types;
      for (const std::string& tags : needs.enough) {
        EXPECT_EQ(CompleteWith<KRSyncRq>(type, "REJECTIFMISSING TOKEN2 " + tags), 1)
            << type << ": " << tags;
      }
      for (const std::string& tags : needs.tooLittle) {
        EXPECT_EQ(CompleteWith<KRSyncRq>(type, "REJECTIFMISSING TOKEN2 " + tags), 0)
            << type << ": " << tags;
      }
    }
  }
  EXPECT_EQ(types, std::size(kRequestSyncs));
  EXPECT_EQ(CompleteWith<KRSyncRq>("N.PAYROLLUPDATERQ", "REJECTIFMISSING TOKEN"), 1);
  EXPECT_EQ(CompleteWith<KRSyncRq>("INTERSYNCRQ", "REJECTIFMISSING TOKEN", 1), 1);
}

TEST(KRSyncRq, AsksForExactlyOneWayOfSynchronising) {
  const std::pair<const char*, u16> cases[] = {
      {"TOKEN", 1},
      {"TOKEN2", 1},
      {"TOKENONLY", 1},
      {"REFRESH", 1},
      {"", 0},
      {"TOKEN TOKEN2", 0},
      {"TOKEN TOKENONLY", 0},
      {"TOKEN REFRESH", 0},
      {"TOKENONLY REFRESH", 0},
      {"TOKEN TOKEN2 REFRESH", 1},
      {"TOKEN2 TOKENONLY REFRESH", 0},
  };
  for (const auto& [tags, complete] : cases) {
    // With a mask of both versions, both tokens are valid.
    const std::string all = std::string("REJECTIFMISSING ") + tags;
    EXPECT_EQ(CompleteWith<KRSyncRq>("ACCTSYNCRQ", all, 0xffff), complete) << tags;
    EXPECT_EQ(CompleteWith<KRSyncRq>("ACCTSYNCRQ", tags, 0xffff), 0) << tags;
  }
}

TEST(KRSyncRq, CountsATokenOnlyOfNo) {
  auto sync = MakeSync<KRSyncRq>("ACCTSYNCRQ");
  sync->SetTokenOnly(u16{0});
  sync->SetRejectIfMissing(KRString("N"));
  EXPECT_EQ(sync->AllRequiredPresent(), 1);
  sync->SetToken2(KRString("17"));
  EXPECT_EQ(sync->AllRequiredPresent(), 0);
}

TEST(KRSyncRq, AsksForImagesAndHtmlOfMail) {
  EXPECT_EQ(CompleteWith<KRSyncRq>("MAILSYNCRQ", "REJECTIFMISSING REFRESH"), 0);
  EXPECT_EQ(CompleteWith<KRSyncRq>("MAILSYNCRQ", "REJECTIFMISSING REFRESH INCIMAGES USEHTML"), 1);
}

TEST(KRSyncRs, AsksForWhatItsTypeNeeds) {
  const Needs kNeeds[] = {
      {"BANKMAILSYNCRS INTERSYNCRS INTRASYNCRS RECINTERSYNCRS RECINTRASYNCRS",
       {"BANKACCTFROM", "CCACCTFROM"},
       kNeither},
      {"INVMAILSYNCRS", {"INVACCTFROM"}, {""}},
      {"PMTSYNCRS RECPMTSYNCRS STPCHKSYNCRS WIRESYNCRS", {"BANKACCTFROM"}, {""}},
      {"ACCTSYNCRS CHGUSERINFOSYNCRS MAILSYNCRS PAYEESYNCRS PMTMAILSYNCRS", {""}, {}},
  };
  std::size_t types = 1;
  for (const Needs& needs : kNeeds) {
    for (const std::string& type : Words(needs.types)) {
      ++types;
      for (const std::string& tags : needs.enough) {
        EXPECT_EQ(CompleteWith<KRSyncRs>(type, "TOKEN2 " + tags), 1) << type << ": " << tags;
        EXPECT_EQ(CompleteWith<KRSyncRs>(type, tags), 0) << type << ": " << tags;
      }
      for (const std::string& tags : needs.tooLittle) {
        EXPECT_EQ(CompleteWith<KRSyncRs>(type, "TOKEN2 " + tags), 0) << type << ": " << tags;
      }
    }
  }
  EXPECT_EQ(types, std::size(kResponseSyncs));
  EXPECT_EQ(CompleteWith<KRSyncRs>("MAILSYNCRS", "TOKEN", 1), 1);
}

TEST(KRSyncRs, AsksForTheNextNumbersOfThePayroll) {
  const std::string all = "TOKEN N.PAYCHKNEXTID N.PAYROLLTXNEXTID N.EMPNEXTID N.PITEMNEXTID";
  EXPECT_EQ(CompleteWith<KRSyncRs>("N.PAYROLLUPDATERS", all), 1);
  for (const std::string& absent : Words(all)) {
    std::string rest;
    for (const std::string& tag : Words(all)) {
      if (tag != absent) rest += tag + " ";
    }
    EXPECT_EQ(CompleteWith<KRSyncRs>("N.PAYROLLUPDATERS", rest), 0) << absent;
  }
}

TEST(KRSyncRq, WritesInTheWireOrder) {
  auto sync = MakeSync<KRSyncRq>("BANKMAILSYNCRQ");
  sync->SetUseHTML(u16{1});
  sync->SetIncImages(KRString("N"));
  sync->SetNorvRefresh(u16{1});
  sync->SetRejectIfMissing(u16{0});
  sync->SetRefresh(u16{1});
  sync->SetTokenOnly(u16{0});
  sync->SetToken2(KRString("abc"));
  sync->SetAccount(Make<KRCCAccount>(2).release());
  auto* transaction = Make<KRTransRq>(2).release();
  transaction->SetType(KRTag_BANKMAILTRNRQ);
  sync->AppendTrans(transaction);
  EXPECT_EQ(TextOf(*sync),
            InLines("<TOKEN2>abc<TOKENONLY>N<REFRESH>Y<REJECTIFMISSING>N<NORV.REFRESH>Y"
                    "<INCIMAGES>N<USEHTML>Y<CCACCTFROM></CCACCTFROM>"
                    "<BANKMAILTRNRQ></BANKMAILTRNRQ>"));
}

TEST(KRSyncRs, WritesInTheWireOrder) {
  auto sync = MakeSync<KRSyncRs>("INVMAILSYNCRS");
  auto* transaction = Make<KRTransRs>(2).release();
  transaction->SetType(KRTag_INVMAILTRNRS);
  sync->AppendTrans(transaction);
  sync->SetAccount(Make<KRInvAcctFrom>(2).release());
  sync->SetNorvRefresh(u16{1});
  sync->SetNorvSyncError(s32{7});
  sync->SetSyncError(s32{-6});
  sync->SetLostSync(u16{1});
  sync->SetToken2(KRString("abc"));
  EXPECT_EQ(TextOf(*sync), InLines("<TOKEN2>abc<LOSTSYNC>Y<SYNCERROR>-6<NORV.SYNCERROR>7"
                                   "<NORV.REFRESH>Y<INVACCTFROM></INVACCTFROM>"
                                   "<INVMAILTRNRS></INVMAILTRNRS>"));
  sync->SetMsgSetVersion(1);
  EXPECT_EQ(sync->SetSyncError(s32{1}), 0) << "the first version has no SYNCERROR";
  EXPECT_EQ(sync->SetToken(KRString("1")), 1);
}

TEST(KRSyncRq, HoldsSyncErrorsThatAreNeverWrittenNorRead) {
  for (const TagList& row : kRequestSyncs) {
    auto sync = MakeSync<KRSyncRq>(row.name);
    EXPECT_EQ(sync->SetSyncError(s32{15}), 0) << row.name;
    EXPECT_EQ(sync->SetNorvSyncError(s32{16}), 0) << row.name;
    EXPECT_EQ(sync->GetSyncError(), 15);
    EXPECT_EQ(sync->GetNorvSyncError(), 16);
    EXPECT_EQ(TextOf(*sync), "") << row.name;
  }
  const Parsed<KRFileRq> file(
      RequestFile("BANKMSGSRQ", Aggregate("INTRASYNCRQ", "<TOKEN>0<SYNCERROR>15")));
  EXPECT_EQ(file.Status(), KRParseStatus_Warnings);
  EXPECT_EQ(FindIn<KRSyncRq>(file.Get())->GetSyncError(), 0);
}

TEST(KRSyncRq, WritesTransactionsGroupedByTag) {
  auto sync = MakeSync<KRSyncRq>("N.PAYROLLUPDATERQ");
  for (const char* id : {"1", "2"}) {
    auto* transaction = Make<KRTransRq>(2).release();
    transaction->SetType(KRTag_N_PAYROLLTRNRQ);
    transaction->SetTransUserID(KRString(id));
    EXPECT_EQ(sync->AppendTrans(transaction), 1);
  }
  auto* foreign = Make<KRTransRq>(2).release();
  foreign->SetType(KRTag_STMTTRNRQ);
  EXPECT_EQ(sync->AppendTrans(foreign), 1) << "it is held, though its tag is not valid";
  EXPECT_EQ(sync->GetNumTrans(), 3);
  EXPECT_EQ(TextOf(*sync), InLines("<N.PAYROLLTRNRQ><TRNUID>1</N.PAYROLLTRNRQ>"
                                   "<N.PAYROLLTRNRQ><TRNUID>2</N.PAYROLLTRNRQ>"));
  sync->DeleteAllTrans();
  EXPECT_EQ(sync->GetNumTrans(), 0);
  EXPECT_EQ(sync->GetTrans(0), nullptr);
}

std::string SyncText(std::string_view inside) {
  return RequestFile("BANKMSGSRQ", Aggregate("BANKMAILSYNCRQ",
                                             "<TOKEN>0<REJECTIFMISSING>N" + std::string(inside)));
}

TEST(KRSyncRq, TakesTheLastOfTwoAccountsWithAWarning) {
  const Parsed<KRFileRq> file(
      SyncText(BankAccountText("BANKACCTFROM") + "<CCACCTFROM><ACCTID>99</CCACCTFROM>"));
  EXPECT_EQ(file.Status(), KRParseStatus_Warnings);
  EXPECT_EQ(file.Warnings(), Lines{"EXTRAAGG " + TagNumber(KRTag_CCACCTFROM)});
  auto* sync = FindIn<KRSyncRq>(file.Get());
  EXPECT_EQ(sync->GetAccount()->GetType(), KRTag_CCACCTFROM);
  // Both tags have been seen, so the choice between them is not complete.
  EXPECT_EQ(sync->ValidateTag(KRTag_BANKACCTFROM), 1);
  EXPECT_EQ(sync->AllRequiredPresent(), 0);
}

TEST(KRSyncRq, ReplacesAnInvestmentAccountWithoutAWarning) {
  const std::string account = "<INVACCTFROM><BROKERID>b<ACCTID>7</INVACCTFROM>";
  for (const bool request : {true, false}) {
    const std::string text = "<TOKEN>0" + account + account;
    if (request) {
      const Parsed<KRFileRq> file(RequestFile("INVSTMTMSGSRQ", Aggregate("INVMAILSYNCRQ", text)));
      EXPECT_EQ(file.Status(), KRParseStatus_Accepted);
      EXPECT_EQ(FindIn<KRSyncRq>(file.Get())->GetAccount()->GetType(), KRTag_INVACCTFROM);
    } else {
      const Parsed<KRFileRs> file(ResponseFile("INVSTMTMSGSRS", Aggregate("INVMAILSYNCRS", text)));
      EXPECT_EQ(file.Status(), KRParseStatus_Accepted);
      EXPECT_EQ(FindIn<KRSyncRs>(file.Get())->GetAccount()->GetType(), KRTag_INVACCTFROM);
    }
  }
}

TEST(KRSyncRq, ReadsItsTransactionsUnderTheirOwnTags) {
  const Parsed<KRFileRq> file(SyncText("<INCIMAGES>N<USEHTML>N" + BankAccountText("BANKACCTFROM") +
                                       Aggregate("BANKMAILTRNRQ", "<TRNUID>1") +
                                       Aggregate("BANKMAILTRNRQ", "<TRNUID>2")));
  EXPECT_EQ(file.Status(), KRParseStatus_Accepted);
  auto* sync = FindIn<KRSyncRq>(file.Get());
  ASSERT_EQ(sync->GetNumTrans(), 2);
  EXPECT_EQ(sync->GetTrans(1)->GetType(), KRTag_BANKMAILTRNRQ);
  EXPECT_EQ(Str(sync->GetTrans(1)->GetTransUserID()), "2");
  EXPECT_EQ(sync->AllRequiredPresent(), 1);
  EXPECT_EQ(sync->GetNumberOfChildren(), 3);
  EXPECT_EQ(sync->GetChild(0), sync->GetAccount());
  EXPECT_EQ(sync->GetChild(2), sync->GetTrans(1));
  EXPECT_EQ(sync->GetChild(3), nullptr);
}

TEST(KRSyncRq, StopsAtABooleanThatIsNone) {
  const Parsed<KRFileRq> file(SyncText("<INCIMAGES>maybe"));
  EXPECT_EQ(file.Status(), KRParseStatus_Invalid);
  EXPECT_EQ(file.Warnings().at(1), "BADFORMAT " + TagNumber(KRTag_INCIMAGES) + " \"maybe\"");
  EXPECT_EQ(FindIn<KRSyncRq>(file.Get())->ValidateTag(KRTag_INCIMAGES), 0);
}

TEST(KRSyncRq, CopiesTransactionsAccountAndMessageSet) {
  const Parsed<KRFileRq> file(
      SyncText(BankAccountText("BANKACCTFROM") + Aggregate("BANKMAILTRNRQ", "<TRNUID>1")));
  auto* source = FindIn<KRSyncRq>(file.Get());
  source->SetMsgsRqTag(KRTag_BANKMSGSRQV1);
  KRSyncRq copy;
  EXPECT_EQ(copy.DeepCopyFrom(source), 1);
  EXPECT_EQ(copy.GetMsgsRqTag(), KRTag_BANKMSGSRQV1);
  EXPECT_NE(copy.GetTrans(0), source->GetTrans(0));
  EXPECT_NE(copy.GetAccount(), source->GetAccount());
  EXPECT_EQ(TextOf(copy), TextOf(*source));
  EXPECT_EQ(copy.DeepCopyFrom(nullptr), 0);
}

TEST(KRSyncRs, CopiesTransactionsAccountAndMessageSet) {
  auto source = MakeSync<KRSyncRs>("PMTSYNCRS");
  source->SetMsgsRsTag(KRTag_BILLPAYMSGSRSV2);
  source->SetToken2(KRString("5"));
  source->SetAccount(Make<KRBankAccount>(2).release());
  auto* transaction = Make<KRTransRs>(2).release();
  transaction->SetType(KRTag_PMTTRNRS);
  source->AppendTrans(transaction);
  KRSyncRs copy;
  EXPECT_EQ(copy.DeepCopyFrom(source.get()), 1);
  EXPECT_EQ(copy.GetMsgsRsTag(), KRTag_BILLPAYMSGSRSV2);
  EXPECT_EQ(TextOf(copy), TextOf(*source));
  EXPECT_EQ(copy.GetNumTrans(), 1);
  EXPECT_NE(copy.GetTrans(0), transaction);
  EXPECT_EQ(copy.DeepCopyFrom(nullptr), 0);
}

TEST(KRSyncRs, HandsItsVersionToItsTransactions) {
  auto sync = MakeSync<KRSyncRs>("PMTSYNCRS");
  auto* transaction = Make<KRTransRs>(2).release();
  transaction->SetType(KRTag_PMTTRNRS);
  sync->AppendTrans(transaction);
  sync->SetMsgSetVersion(1);
  EXPECT_EQ(transaction->GetMsgSetVersion(), 1);
}

// The tags of a rule that a wrapper does not meet, by name.
template <class Sync>
std::string UnmetTags(Sync& sync, u16 index) {
  KRUnmetRule rule;
  if (KRUtility::GetUnmetRule(&sync, index, rule) == 0) return "";
  std::string names = std::to_string(rule.present) + " of";
  for (u16 i = 0; i < rule.count; ++i) {
    names += std::string(" ") + KRTagDictionary::TheKRTagDictionary()->GetTagString(rule.tags[i]);
  }
  return names;
}

TEST(KRSyncRq, SaysWhichTagsExcludeEachOther) {
  auto sync = MakeSync<KRSyncRq>("BANKMAILSYNCRQ", 1);
  EXPECT_EQ(UnmetTags(*sync, 0), "0 of TOKEN TOKENONLY REFRESH");
  EXPECT_EQ(UnmetTags(*sync, 1), "0 of BANKACCTFROM CCACCTFROM");
  for (const KRTagID tag : {KRTag_TOKEN, KRTag_REFRESH, KRTag_CCACCTFROM}) sync->SetTag(tag);
  EXPECT_EQ(UnmetTags(*sync, 0), "2 of TOKEN TOKENONLY REFRESH");
  EXPECT_EQ(UnmetTags(*sync, 1), "");
  EXPECT_EQ(UnmetTags(*MakeSync<KRSyncRq>("INTRASYNCRQ", 2), 0), "0 of TOKEN2 TOKENONLY REFRESH");
}

TEST(KRSyncRq, NeedsNoAccountWithoutAType) {
  KRSyncRq request;
  request.SetMsgSetVersion(1);
  KRArrayOfTags tags;
  EXPECT_EQ(request.GetArrayOfValidTags(tags), 1);
  EXPECT_EQ(tags.count, 0);
  EXPECT_EQ(request.AllRequiredPresent(), 0);
  EXPECT_EQ(UnmetTags(request, 0), "");
  KRSyncRs response;
  EXPECT_EQ(response.AllRequiredPresent(), 0);
  EXPECT_EQ(UnmetTags(response, 0), "");
}

TEST(KRSyncRs, SaysThatOneAccountOfTwoIsMeant) {
  EXPECT_EQ(UnmetTags(*MakeSync<KRSyncRs>("BANKMAILSYNCRS"), 0), "0 of BANKACCTFROM CCACCTFROM");
  EXPECT_EQ(UnmetTags(*MakeSync<KRSyncRs>("PAYEESYNCRS"), 0), "");
}

}  // namespace
