// Sign-up: the tables, and the action, whose type decides which of its accounts is used.

#include "krofx/messages/signup/signup.h"

#include <gtest/gtest.h>

#include "krofx/messages/banking/accounts.h"
#include "krofx/model/factory.h"
#include "krofx/model/parser.h"
#include "krofx/values/utility.h"

#include "support/aggregate_table.h"
#include "support/ofx_text.h"

namespace krofx::testing {
namespace {

constexpr char kEnrollRq[] = R"(
    FIRSTNAME     text32  required
    MIDDLENAME    text32  required
    LASTNAME      text32  required
    ADDR1         text32  required
    ADDR2         text32
    ADDR3         text32
    CITY          text32  required
    STATE         text5   required
    POSTALCODE    text11  required
    COUNTRY       text3   required
    DAYPHONE      text32  required
    EVEPHONE      text32  required
    EMAIL         text80  required
    USERID        text32
    TAXID         text32  required
    SECURITYNAME  text32  required
    DATEBIRTH     date    required
    BANKACCTFROM  child
    INVACCTFROM   child   other
    CCACCTFROM    child   other
)";

constexpr char kEnrollRs[] = R"(
    TEMPPASS  text32
    USERID    text32
    DTEXPIRE  date
)";

constexpr char kAccountInfoRq[] = R"(
    DTACCTUP  date  required
)";

constexpr char kAccountInfoRs[] = R"(
    DTACCTUP  date      required
    ACCTINFO  children
)";

constexpr char kAccountServiceRq[] = R"(
    SVCADD  child
    SVCCHG  child         other
    SVCDEL  child         other
    SVC     word=BANKSVC  required  V1
    SVC2    word=PRESSVC  required  V2+
)";

constexpr char kAccountServiceRs[] = R"(
    SVCADD      child
    SVCCHG      child          other
    SVCDEL      child          other
    SVC         word=BANKSVC   required  V1
    SVC2        word=PRESSVC   required  V2+
    SVCSTATUS   word=ACTIVE    required  V1
    SVCSTATUS2  word=REJECTED  required  V2+
    REASON      text255        V2+
)";

constexpr char kClientEnroll[] = R"(
    ACCTREQUIRED  boolean  required
)";

constexpr char kWebEnroll[] = R"(
    URL   text255   required  V1
    URL2  text1024  required  V2+
)";

constexpr char kOtherEnroll[] = R"(
    MESSAGE   text80    required  V1
    MESSAGE2  text2000  required  V2+
)";

constexpr char kSignUpMessageSetBase[] = R"(
    MSGSETCORE    child    required
    CLIENTENROLL  child
    WEBENROLL     child
    OTHERENROLL   child
    CHGUSERINFO   boolean  required
    AVAILACCTS    boolean  required
    CLIENTACTREQ  boolean  required
    PREAUTH       boolean  required  V2+
)";

TEST(SignUpTables, Enrollment) {
  ExpectTable<KREnrollRq>("ENROLLRQ", kEnrollRq);
  ExpectTable<KREnrollRs>("ENROLLRS", kEnrollRs);
}

TEST(SignUpTables, AccountInformation) {
  ExpectTable<KRAccountInfoRq>("ACCTINFORQ", kAccountInfoRq);
  ExpectTable<KRAccountInfoRs>("ACCTINFORS", kAccountInfoRs);
}

TEST(SignUpTables, AccountService) {
  ExpectTable<KRAccountServiceRq>("ACCTRQ", kAccountServiceRq);
  ExpectTable<KRAccountServiceRs>("ACCTRS", kAccountServiceRs);
}

TEST(SignUpTables, WaysToEnroll) {
  ExpectTable<KRClientEnroll>("CLIENTENROLL", kClientEnroll);
  ExpectTable<KRWebEnroll>("WEBENROLL", kWebEnroll);
  ExpectTable<KROtherEnroll>("OTHERENROLL", kOtherEnroll);
}

TEST(SignUpTables, MessageSets) {
  ExpectTable<KRSignUpMessageSetBase>("", kSignUpMessageSetBase);
  ExpectTable<KRSignUpMessageSetV1>("SIGNUPMSGSETV1", kSignUpMessageSetBase);
  ExpectTable<KRSignUpMessageSetV2>("SIGNUPMSGSETV2", kSignUpMessageSetBase, 2);
}

// The action of a service request, under the tag that gives it its type.
struct ActionText {
  explicit ActionText(const std::string& tag, const std::string& content, u16 version = 1)
      : service(Aggregate(tag, content), version) {}
  KRAction* operator->() const { return service->GetAction(); }
  Parsed<KRAccountServiceRq> service;
};

std::string Bank(const char* tag) { return BankAccountText(tag); }
std::string Card(const char* tag) { return Aggregate(tag, "<ACCTID>4400"); }
std::string Broker(const char* tag) { return Aggregate(tag, "<BROKERID>b.example<ACCTID>77"); }

u16 IsComplete(const char* action, const std::string& content) {
  KRAction object;
  object.SetMsgSetVersion(1);
  object.SetType(action[3] == 'A' ? KRTag_SVCADD : action[3] == 'C' ? KRTag_SVCCHG : KRTag_SVCDEL);
  for (const KRTagID tag : {KRTag_BANKACCTTO, KRTag_CCACCTTO, KRTag_INVACCTTO, KRTag_BANKACCTFROM,
                            KRTag_CCACCTFROM, KRTag_INVACCTFROM}) {
    const char* text = KRTagDictionary::TheKRTagDictionary()->GetTagString(tag);
    if (content.find(std::string("<") + text + ">") != std::string::npos) object.SetTag(tag);
  }
  const u16 complete = object.AllRequiredPresent();
  EXPECT_EQ(object.GetFirstMissingRequiredTag(KRTag_None) == KRTag_None, complete == 1);
  return complete;
}

TEST(KREnrollRq, IsIncompleteWithoutMiddleName) {
  const std::string before = "<FIRSTNAME>Ada";
  const std::string after =
      "<LASTNAME>Byron<ADDR1>1 Main St<CITY>Bath<STATE>SO<POSTALCODE>BA1<COUNTRY>GBR<DAYPHONE>1"
      "<EVEPHONE>2<EMAIL>ada@example.com<TAXID>3<SECURITYNAME>Gordon<DATEBIRTH>18151210";
  const Parsed<KREnrollRq> without(before + after);
  EXPECT_EQ(without.Status(), KRParseStatus_Accepted);
  EXPECT_EQ(without->AllRequiredPresent(), 0);
  EXPECT_EQ(without->GetFirstMissingRequiredTag(KRTag_None), KRTag_MIDDLENAME);
  const Parsed<KREnrollRq> with(before + "<MIDDLENAME>Augusta" + after);
  EXPECT_EQ(with->AllRequiredPresent(), 1);
}

TEST(KREnrollRq, MakesTheAccountOfItsTag) {
  const Parsed<KREnrollRq> card(Card("CCACCTFROM"));
  ASSERT_NE(card->GetAccount(), nullptr);
  EXPECT_EQ(card->GetAccount()->GetType(), KRTag_CCACCTFROM);
  EXPECT_NE(dynamic_cast<KRCCAccount*>(card->GetAccount()), nullptr);
  EXPECT_EQ(card->GetBankAcctFrom(), nullptr);
  EXPECT_NE(Parsed<KREnrollRq>(Broker("INVACCTFROM"))->GetInvAcctFrom(), nullptr);
}

TEST(KREnrollRs, IsCompleteWhenEmpty) { EXPECT_EQ(Make<KREnrollRs>()->AllRequiredPresent(), 1); }

TEST(KRAccountServiceRq, IsCompleteWithoutAnAction) {
  EXPECT_EQ(Parsed<KRAccountServiceRq>("<SVC>BANKSVC")->AllRequiredPresent(), 1);
}

TEST(KRAccountServiceRq, WritesTheActionUnderItsType) {
  const Parsed<KRAccountServiceRq> parsed(Aggregate("SVCADD", Card("CCACCTTO")) +
                                          Aggregate("SVCDEL", Card("CCACCTFROM")));
  EXPECT_EQ(parsed.Warnings(), Lines{"EXTRAAGG " + TagNumber(KRTag_SVCDEL)});
  EXPECT_EQ(parsed->GetAction()->GetType(), KRTag_SVCDEL);
  EXPECT_EQ(TextOf(*parsed), InLines(Aggregate("SVCDEL", Card("CCACCTFROM"))));
}

TEST(KRAction, CountsOnlyTheTargetOfAnAddition) {
  EXPECT_EQ(IsComplete("SVCADD", Bank("BANKACCTTO") + Bank("BANKACCTFROM")), 1);
  EXPECT_EQ(IsComplete("SVCADD", Bank("BANKACCTFROM")), 0);
  EXPECT_EQ(IsComplete("SVCADD", Bank("BANKACCTTO") + Card("CCACCTTO")), 0);
}

TEST(KRAction, NeedsBothAccountsOfAChange) {
  EXPECT_EQ(IsComplete("SVCCHG", Card("CCACCTTO")), 0);
  EXPECT_EQ(IsComplete("SVCCHG", Card("CCACCTFROM")), 0);
  EXPECT_EQ(IsComplete("SVCCHG", Card("CCACCTTO") + Broker("INVACCTFROM")), 1);
}

TEST(KRAction, NeedsOneSourceOfADeletion) {
  EXPECT_EQ(IsComplete("SVCDEL", Broker("INVACCTFROM")), 1);
  EXPECT_EQ(IsComplete("SVCDEL", Bank("BANKACCTFROM") + Card("CCACCTFROM")), 0);
  EXPECT_EQ(IsComplete("SVCDEL", Bank("BANKACCTTO")), 0);
}

TEST(KRAction, OfNoTypeIsNeverComplete) {
  for (const u16 version : {u16{1}, u16{2}}) {
    auto action = Make<KRAction>(version);
    EXPECT_EQ(action->GetType(), KRTag_None);
    for (const KRTagID tag : {KRTag_BANKACCTTO, KRTag_BANKACCTFROM}) {
      EXPECT_EQ(action->AllRequiredPresent(), 0);
      EXPECT_NE(action->GetFirstMissingRequiredTag(KRTag_None), KRTag_None);
      action->SetTag(tag);
    }
    EXPECT_EQ(action->AllRequiredPresent(), 0);
  }
}

TEST(KRAction, NamesEachMissingEndOfAChange) {
  auto action = Make<KRAction>();
  action->SetType(KRTag_SVCCHG);
  EXPECT_EQ(action->GetFirstMissingRequiredTag(KRTag_None), KRTag_BANKACCTTO);
  EXPECT_EQ(action->GetFirstMissingRequiredTag(KRTag_BANKACCTTO), KRTag_BANKACCTFROM);
  EXPECT_EQ(action->GetFirstMissingRequiredTag(KRTag_BANKACCTFROM), KRTag_None);
  action->SetTag(KRTag_CCACCTTO);
  EXPECT_EQ(action->GetFirstMissingRequiredTag(KRTag_None), KRTag_BANKACCTFROM);
}

TEST(KRAction, ListsItsTags) {
  KRArrayOfTags tags;
  KRAction().GetArrayOfValidTags(tags);
  EXPECT_EQ(TableLines(tags),
            (Lines{"PREAUTHTOKEN 65534", "BANKACCTTO 65535", "BANKACCTFROM 65535", "CCACCTTO 65535",
                   "CCACCTFROM 65535", "INVACCTTO 65535", "INVACCTFROM 65535"}));
  KRAction().GetArrayOfRequiredTags(tags);
  EXPECT_EQ(TableLines(tags), Lines());
}

TEST(KRAction, WritesSourceThenTargetThenToken) {
  const ActionText change("SVCCHG", "<PREAUTHTOKEN>t1" + Card("CCACCTTO") + Broker("INVACCTFROM"),
                          2);
  EXPECT_EQ(change.service.Status(), KRParseStatus_Accepted);
  EXPECT_EQ(
      TextOf(*change.service),
      InLines(Aggregate("SVCCHG", Broker("INVACCTFROM") + Card("CCACCTTO") + "<PREAUTHTOKEN>t1")));
}

TEST(KRAction, KeepsASourceSetOnAnAdditionButDoesNotWriteIt) {
  auto action = Make<KRAction>();
  action->SetType(KRTag_SVCADD);
  auto* source = new KRCCAccount;
  source->SetAccountID("1");
  auto* target = new KRCCAccount;
  target->SetMsgSetVersion(1);
  target->SetAccountID("2");
  EXPECT_EQ(action->SetCCAcctFrom(source), 1);
  EXPECT_EQ(action->SetCCAcctTo(target), 1);
  EXPECT_EQ(action->GetAccountFrom(), source);
  EXPECT_EQ(TextOf(*action), InLines(Aggregate("CCACCTTO", "<ACCTID>2")));
  action->SetType(KRTag_SVCDEL);
  source->SetMsgSetVersion(1);
  source->SetAccountID("1");
  EXPECT_EQ(TextOf(*action), InLines(Aggregate("CCACCTFROM", "<ACCTID>1")));
  action->SetType(KRTag_None);
  EXPECT_EQ(TextOf(*action), "");
}

TEST(KRAction, WritesNoAccountThatWasCleared) {
  auto action = Make<KRAction>();
  action->SetType(KRTag_SVCDEL);
  auto* source = new KRCCAccount;
  EXPECT_EQ(action->SetCCAcctFrom(source), 1);
  source->SetMsgSetVersion(1);
  source->SetAccountID("1");
  EXPECT_EQ(TextOf(*action), InLines(Aggregate("CCACCTFROM", "<ACCTID>1")));
  action->ClearTag(KRTag_CCACCTFROM);
  EXPECT_EQ(TextOf(*action), "");
}

TEST(KRAction, EndsAtASourceThatCannotBeWritten) {
  auto action = Make<KRAction>();
  action->SetType(KRTag_SVCCHG);
  auto* source = new KRCCAccount;
  auto* target = new KRCCAccount;
  action->SetCCAcctFrom(source);
  action->SetCCAcctTo(target);
  for (KRCCAccount* const account : {source, target}) account->SetMsgSetVersion(1);
  source->SetAccountID(KRString(std::string(23, '1').c_str()));
  target->SetAccountID("2");
  const Built built = Build(*action);
  EXPECT_EQ(built.status, KRBuildStatus_TooLong);
  EXPECT_EQ(built.text.find("CCACCTTO"), std::string::npos) << built.text;
}

// The warnings of the action about a child, and then the parser's own, which names it.
Lines Refused(KRTagID tag, int times) {
  Lines lines(static_cast<std::size_t>(times), "INVALIDAGG " + TagNumber(tag));
  const char* text = KRTagDictionary::TheKRTagDictionary()->GetTagString(tag);
  lines.push_back(std::string("INVALIDAGG <") + text + "> " + TagNumber(tag));
  return lines;
}

TEST(KRAction, RefusesASourceUnderAnAddition) {
  const ActionText action("SVCADD", Card("CCACCTFROM"));
  EXPECT_EQ(action.service.Status(), KRParseStatus_Invalid);
  EXPECT_EQ(action.service.Warnings(), Refused(KRTag_CCACCTFROM, 1));
}

TEST(KRAction, StopsAtATargetUnderADeletion) {
  const ActionText action("SVCDEL", Card("CCACCTFROM") + Card("CCACCTTO"));
  EXPECT_EQ(action.service.Status(), KRParseStatus_Fatal);
  EXPECT_EQ(action.service.Warnings(), Refused(KRTag_CCACCTTO, 1));
  EXPECT_NE(action->GetAccountFrom(), nullptr);
  EXPECT_EQ(action->GetAccountTo(), nullptr);
}

TEST(KRAction, WarnsTwiceAboutATargetUnderNoType) {
  const Parsed<KRAction> target(Card("CCACCTTO"));
  EXPECT_EQ(target.Status(), KRParseStatus_Invalid);
  EXPECT_EQ(target.Warnings(), Refused(KRTag_CCACCTTO, 2));
  const Parsed<KRAction> source(Card("CCACCTFROM"));
  EXPECT_EQ(source.Status(), KRParseStatus_Invalid);
  EXPECT_EQ(source.Warnings(), Refused(KRTag_CCACCTFROM, 1));
}

TEST(KRAction, TakesNoAccountWithoutAParser) {
  auto action = Make<KRAction>();
  action->SetType(KRTag_SVCADD);
  const KRTagDictionaryEntry entry = {KRTag_CCACCTTO, "CCACCTTO"};
  EXPECT_EQ(action->HandleTagStart(&entry), KRParseStatus_Fatal);
  EXPECT_EQ(action->GetAccountTo(), nullptr);
}

TEST(KRAction, CopiesBothAccounts) {
  const ActionText change("SVCCHG", Bank("BANKACCTTO") + Card("CCACCTFROM"));
  KRAccountServiceRq copy;
  ASSERT_EQ(copy.DeepCopyFrom(change.service.Get()), 1);
  EXPECT_EQ(TextOf(copy), TextOf(*change.service));
  EXPECT_NE(copy.GetAction()->GetAccountTo(), change->GetAccountTo());
}

TEST(KRAction, SaysThatOneAccountOfThreeIsMeant) {
  const ActionText none("SVCCHG", "");
  KRUnmetRule rule;
  ASSERT_EQ(KRUtility::GetUnmetRule(none.service->GetAction(), 0, rule), 1);
  EXPECT_EQ(rule.demand, KRPresenceDemand_ExactlyOne);
  ASSERT_EQ(rule.count, 3);
  EXPECT_EQ(rule.tags[0], KRTag_BANKACCTTO);
  ASSERT_EQ(KRUtility::GetUnmetRule(none.service->GetAction(), 1, rule), 1);
  EXPECT_EQ(rule.tags[2], KRTag_INVACCTFROM);
  EXPECT_EQ(KRUtility::GetUnmetRule(none.service->GetAction(), 2, rule), 0);

  const ActionText two("SVCADD", Bank("BANKACCTTO") + Card("CCACCTTO"));
  ASSERT_EQ(KRUtility::GetUnmetRule(two.service->GetAction(), 0, rule), 1);
  EXPECT_EQ(rule.present, 2);
  EXPECT_EQ(KRUtility::GetUnmetRule(two.service->GetAction(), 1, rule), 0);
}

TEST(KRSignUpMessageSet, AsksForNoWayToEnroll) {
  const Parsed<KRSignUpMessageSetV1> set(Aggregate("MSGSETCORE", "") +
                                         "<CHGUSERINFO>N<AVAILACCTS>Y<CLIENTACTREQ>N");
  EXPECT_EQ(set.Status(), KRParseStatus_Accepted);
  EXPECT_EQ(set->AllRequiredPresent(), 1);
}

TEST(KRSignUpMessageSet, NeedsPreauthorizationInTheSecondVersion) {
  const Parsed<KRSignUpMessageSetV2> set(
      Aggregate("MSGSETCORE", "") + "<CHGUSERINFO>N<AVAILACCTS>Y<CLIENTACTREQ>N", 2);
  EXPECT_EQ(set->GetFirstMissingRequiredTag(KRTag_None), KRTag_PREAUTH);
}

TEST(KRSignUpMessageSet, VersionsAreSiblings) {
  KRDataObj* second = new KRSignUpMessageSetV2;
  EXPECT_NE(dynamic_cast<KRSignUpMessageSetBase*>(second), nullptr);
  EXPECT_EQ(dynamic_cast<KRSignUpMessageSetV1*>(second), nullptr);
  delete second;
}

}  // namespace
}  // namespace krofx::testing
