// Message sets: their version, their children, the order of writing and what makes each complete.

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "envelope/routing_lists.h"
#include "krofx/envelope/file_rq_rs.h"
#include "krofx/messages/investment/securities.h"
#include "krofx/messages/signon/status.h"
#include "support/ofx_text.h"

namespace {

using namespace krofx::testing;

template <class Set>
std::unique_ptr<Set> MakeSet(std::string_view type) {
  auto set = std::make_unique<Set>();
  set->SetType(Id(type));
  return set;
}

template <class Child>
Child* MakeChild(KRTagID type, u16 version = 2) {
  auto* child = Make<Child>(version).release();
  child->SetType(type);
  return child;
}

bool IsSync(std::string_view tag) {
  return tag.find("SYNC") != std::string_view::npos || tag.starts_with("N.PAYROLLUPDATE");
}

TEST(KRMessageSetRq, TakesItsVersionFromItsTag) {
  auto set = MakeSet<KRMessageSetRq>("BANKMSGSRQV1");
  EXPECT_EQ(set->GetMsgSetVersion(), 1);
  set->SetMsgSetVersion(2);
  EXPECT_EQ(set->GetMsgSetVersion(), 1);
  set->SetType(KRTag_BANKMSGSRQV2);
  EXPECT_EQ(set->GetMsgSetVersion(), 2);
  EXPECT_EQ(KRMessageSetRs().GetMsgSetVersion(), 0);
}

TEST(KRMessageSetRq, WritesItsChildrenInTheOrderOfItsFamily) {
  for (const TagList& row : kSets) {
    const std::string version = row.name == "N.PAYROLL" ? "V1" : "V2";
    auto set = MakeSet<KRMessageSetRq>(std::string(row.name) + "MSGSRQ" + version);
    const std::vector<std::string> tags = Words(row.tags);
    std::string expected;
    for (const std::string& tag : tags) {
      expected += Aggregate(Bare(tag), "");
    }
    // In reverse order: the caller's order does not matter between types.
    for (auto tag = tags.rbegin(); tag != tags.rend(); ++tag) {
      if (*tag == "SONRQ") {
        EXPECT_EQ(set->SetSignOnRq(MakeChild<KRSignOnRq>(KRTag_SONRQ)), 1);
      } else if (IsSync(*tag)) {
        EXPECT_EQ(set->AppendSync(MakeChild<KRSyncRq>(Id(*tag))), 1) << *tag;
      } else {
        EXPECT_EQ(set->AppendTrans(MakeChild<KRTransRq>(Id(*tag))), 1) << *tag;
      }
    }
    EXPECT_EQ(TextOf(*set), InLines(expected)) << row.name;
  }
}

TEST(KRMessageSetRs, WritesItsChildrenInTheOrderOfItsFamily) {
  for (const TagList& row : kSets) {
    const std::string version = row.name == "N.PAYROLL" ? "V1" : "V2";
    auto set = MakeSet<KRMessageSetRs>(std::string(row.name) + "MSGSRS" + version);
    const std::vector<std::string> tags = Words(row.tags);
    std::string expected;
    for (const std::string& tag : tags) expected += Aggregate(Response(Bare(tag)), "");
    for (auto tag = tags.rbegin(); tag != tags.rend(); ++tag) {
      const KRTagID id = Id(Response(*tag));
      if (id == KRTag_SONRS) {
        EXPECT_EQ(set->SetSignOnRs(MakeChild<KRSignOnRs>(id)), 1);
      } else if (IsSync(*tag)) {
        EXPECT_EQ(set->AppendSync(MakeChild<KRSyncRs>(id)), 1) << *tag;
      } else {
        EXPECT_EQ(set->AppendTrans(MakeChild<KRTransRs>(id)), 1) << *tag;
      }
    }
    EXPECT_EQ(TextOf(*set), InLines(expected)) << row.name;
  }
}

TEST(KRMessageSetRq, KeepsTheOrderWithinOneType) {
  auto set = MakeSet<KRMessageSetRq>("BANKMSGSRQV1");
  for (const char* id : {"b", "a"}) {
    auto* transaction = MakeChild<KRTransRq>(KRTag_STMTTRNRQ, 1);
    transaction->SetTransUserID(KRString(id));
    set->AppendTrans(transaction);
    set->AppendTrans(MakeChild<KRTransRq>(KRTag_INTRATRNRQ, 1));
  }
  EXPECT_EQ(TextOf(*set), InLines("<STMTTRNRQ><TRNUID>b</STMTTRNRQ><STMTTRNRQ><TRNUID>a</STMTTRNRQ>"
                                  "<INTRATRNRQ></INTRATRNRQ><INTRATRNRQ></INTRATRNRQ>"));
}

TEST(KRMessageSetRq, TakesAMultipleTransferOnlyInTheSecondVersion) {
  auto set = MakeSet<KRMessageSetRq>("INTERXFERMSGSRQV1");
  EXPECT_EQ(set->IsValidTag(KRTag_MULTIINTERTRNRQ), 0);
  EXPECT_EQ(set->IsValidTag(KRTag_INTERTRNRQ), 1);
  set->SetType(KRTag_INTERXFERMSGSRQV2);
  EXPECT_EQ(set->IsValidTag(KRTag_MULTIINTERTRNRQ), 1);
}

TEST(KRMessageSetRq, IsCompleteByTheRuleOfItsFamily) {
  // Some families have a rule of their own; in all others any one child is enough.
  for (const TagList& row : kSets) {
    const std::string stem(row.name);
    const std::string type = stem + "MSGSRQV1";
    EXPECT_EQ(MakeSet<KRMessageSetRq>(type)->AllRequiredPresent(), 0) << type;
    for (const std::string& tag : Words(row.tags)) {
      auto set = MakeSet<KRMessageSetRq>(type);
      u16 expected = 1;
      if (tag == "SONRQ") {
        set->SetSignOnRq(MakeChild<KRSignOnRq>(KRTag_SONRQ));
      } else if (IsSync(tag)) {
        set->AppendSync(MakeChild<KRSyncRq>(Id(tag)));
      } else {
        set->AppendTrans(MakeChild<KRTransRq>(Id(tag)));
        // Only its sign-on makes the sign-on set complete.
        if (stem == "SIGNON" || tag.starts_with("MULTI")) expected = 0;
      }
      EXPECT_EQ(set->AllRequiredPresent(), expected) << type << " " << tag;
    }
  }
}

TEST(KRMessageSetRs, IsCompleteByTheRuleOfItsFamily) {
  for (const TagList& row : kSets) {
    const std::string stem(row.name);
    const std::string type = stem + "MSGSRSV1";
    EXPECT_EQ(MakeSet<KRMessageSetRs>(type)->AllRequiredPresent(), 0) << type;
    for (const std::string& tag : Words(row.tags)) {
      auto set = MakeSet<KRMessageSetRs>(type);
      const KRTagID id = Id(Response(tag));
      u16 expected = 1;
      if (tag == "SONRQ") {
        set->SetSignOnRs(MakeChild<KRSignOnRs>(id));
      } else if (IsSync(tag)) {
        set->AppendSync(MakeChild<KRSyncRs>(id));
      } else {
        set->AppendTrans(MakeChild<KRTransRs>(id));
        if (stem == "SIGNON" || tag.starts_with("MULTI")) expected = 0;
      }
      EXPECT_EQ(set->AllRequiredPresent(), expected) << type << " " << tag;
    }
  }
  // Any transaction represents the list.
  auto securities = MakeSet<KRMessageSetRs>("SECLISTMSGSRSV1");
  EXPECT_EQ(securities->AppendTrans(MakeChild<KRTransRs>(KRTag_STMTTRNRS)), 1);
  EXPECT_EQ(securities->AllRequiredPresent(), 1);
}

TEST(KRMessageSetRq, CountsWrappersOfBillPaymentWhateverTheirTag) {
  for (const char* type : {"BILLPAYMSGSRQV1", "N.PAYROLLMSGSRQV1"}) {
    auto set = MakeSet<KRMessageSetRq>(type);
    EXPECT_EQ(set->AppendSync(MakeChild<KRSyncRq>(KRTag_INTRASYNCRQ)), 1);
    EXPECT_EQ(set->AllRequiredPresent(), 1) << type;
  }
}

TEST(KRMessageSetRs, IsCompleteWithASecurityListAlone) {
  auto response = MakeSet<KRMessageSetRs>("SECLISTMSGSRSV1");
  EXPECT_EQ(response->AllRequiredPresent(), 0);
  response->SetTag(KRTag_SECLIST);
  EXPECT_EQ(response->AllRequiredPresent(), 1);

  auto request = MakeSet<KRMessageSetRq>("SECLISTMSGSRQV1");
  EXPECT_EQ(request->AllRequiredPresent(), 0);
  request->SetTag(KRTag_SECLISTTRNRQ);
  EXPECT_EQ(request->AllRequiredPresent(), 0) << "the tag alone, without a transaction";
}

TEST(KRMessageSetRs, IsCompleteWithItsProfileOrSignOn) {
  auto profile = MakeSet<KRMessageSetRs>("PROFMSGSRSV2");
  EXPECT_EQ(profile->AllRequiredPresent(), 0);
  profile->AppendTrans(MakeChild<KRTransRs>(KRTag_PROFTRNRS));
  EXPECT_EQ(profile->AllRequiredPresent(), 1);
  auto signOn = MakeSet<KRMessageSetRs>("SIGNONMSGSRSV2");
  signOn->AppendTrans(MakeChild<KRTransRs>(KRTag_PINCHTRNRS));
  EXPECT_EQ(signOn->AllRequiredPresent(), 0);
  signOn->SetSignOnRs(MakeChild<KRSignOnRs>(KRTag_SONRS));
  EXPECT_EQ(signOn->AllRequiredPresent(), 1);
}

TEST(KRMessageSetRq, GivesSignOnTransactionsAndSynchronisationsAsChildren) {
  auto set = MakeSet<KRMessageSetRq>("BANKMSGSRQV1");
  EXPECT_EQ(set->GetNumberOfChildren(), 1);
  EXPECT_EQ(set->GetChild(0), nullptr);
  set->AppendSync(MakeChild<KRSyncRq>(KRTag_INTRASYNCRQ, 1));
  set->AppendTrans(MakeChild<KRTransRq>(KRTag_STMTTRNRQ, 1));
  set->AppendTrans(MakeChild<KRTransRq>(KRTag_INTRATRNRQ, 1));
  EXPECT_EQ(set->GetNumberOfChildren(), 4);
  EXPECT_EQ(set->GetChild(0), nullptr);
  EXPECT_EQ(set->GetChild(1), set->GetTrans(0));
  EXPECT_EQ(set->GetChild(2), set->GetTrans(1));
  EXPECT_EQ(set->GetChild(3), set->GetSync(0));
  EXPECT_EQ(set->GetChild(4), nullptr);
}

TEST(KRMessageSetRs, CountsItsChildrenWithinSixteenBits) {
  KRMessageSetRs set;
  set.SetType(KRTag_SECLISTMSGSRSV1);
  set.SetSecList(new KRSecList);
  // Only the last entry of each list, as a host may set it.
  set.SetTrans(65534, new KRTransRs);
  EXPECT_EQ(set.GetNumberOfChildren(), 65535);
  set.SetSync(65534, new KRSyncRs);
  EXPECT_EQ(set.GetNumberOfChildren(), 65535);
}

TEST(KRMessageSetRq, HandsItsChildrenOut) {
  auto set = MakeSet<KRMessageSetRq>("BANKMSGSRQV1");
  std::unique_ptr<KRTransRq> transaction(MakeChild<KRTransRq>(KRTag_STMTTRNRQ, 1));
  std::unique_ptr<KRSyncRq> sync(MakeChild<KRSyncRq>(KRTag_INTRASYNCRQ, 1));
  std::unique_ptr<KRSignOnRq> signOn(MakeChild<KRSignOnRq>(KRTag_SONRQ, 1));
  EXPECT_EQ(set->AppendTrans(transaction.get()), 1);
  EXPECT_EQ(set->AppendSync(sync.get()), 1);
  EXPECT_EQ(set->SetSignOnRq(signOn.get()), 0) << "held, but no tag of a bank set";
  set->DisconnectTrans(0);
  set->DisconnectSync(0);
  set->DisconnectSignOnRq();
  EXPECT_EQ(set->GetNumTrans(), 0);
  EXPECT_EQ(set->GetNumSync(), 0);
  EXPECT_EQ(set->GetSignOnRq(), nullptr);
}

TEST(KRMessageSetRq, RefusesNullAndReplacesInPlace) {
  auto set = MakeSet<KRMessageSetRq>("BANKMSGSRQV1");
  EXPECT_EQ(set->AppendTrans(nullptr), 0);
  EXPECT_EQ(set->AppendSync(nullptr), 0);
  EXPECT_EQ(set->AppendTrans(MakeChild<KRTransRq>(KRTag_STMTTRNRQ, 1)), 1);
  EXPECT_EQ(set->SetTrans(0, MakeChild<KRTransRq>(KRTag_INTRATRNRQ, 1)), 1);
  EXPECT_EQ(set->GetNumTrans(), 1);
  EXPECT_EQ(set->GetTrans(0)->GetType(), KRTag_INTRATRNRQ);
  set->DeleteAllTrans();
  set->DeleteAllSync();
  EXPECT_EQ(set->GetNumTrans(), 0);
}

TEST(KRMessageSetRq, TakesTheLastOfTwoSignOnsWithAWarning) {
  const Parsed<KRFileRq> file(
      File(Aggregate("SIGNONMSGSRQV1", "<SONRQ><USERID>ada</SONRQ><SONRQ><USERID>grace</SONRQ>")));
  EXPECT_EQ(file.Status(), KRParseStatus_Warnings);
  EXPECT_EQ(file.Warnings(), Lines{"EXTRAAGG " + TagNumber(KRTag_SONRQ)});
  auto* signOn = FindIn<KRSignOnRq>(file.Get());
  ASSERT_NE(signOn, nullptr);
  EXPECT_EQ(Str(signOn->GetUserId()), "grace");
}

TEST(KRMessageSetRq, SkipsTheChildOfAnotherFamily) {
  const Parsed<KRFileRq> file(RequestFile("BANKMSGSRQ", RequestWrapper("CCSTMTTRNRQ", "")));
  EXPECT_EQ(file.Status(), KRParseStatus_Warnings);
  EXPECT_EQ(file.Warnings(), Lines{"INVALIDAGG <CCSTMTTRNRQ> " + TagNumber(KRTag_CCSTMTTRNRQ)});
}

template <class Set>
void ExpectNoChildOf(KRTagID type, const KRTagDictionaryEntry& entry) {
  Set set;
  set.SetType(type);
  EXPECT_EQ(set.HandleTagStart(&entry), KRParseStatus_Invalid);
}

TEST(KRMessageSetRq, MakesNoChildOfATagThatIsNone) {
  ExpectNoChildOf<KRMessageSetRq>(KRTag_BANKMSGSRQV1, {KRTag_STMTRQ, "STMTRQ"});
}

TEST(KRMessageSetRs, MakesNoChildOfATagThatIsNone) {
  ExpectNoChildOf<KRMessageSetRs>(KRTag_BANKMSGSRSV1, {KRTag_STMTRS, "STMTRS"});
}

TEST(KRMessageSetRs, GivesItsVersionToWhatIsBelow) {
  for (const u16 version : {u16{1}, u16{2}}) {
    const Parsed<KRFileRs> file(BankStatementFile("", version), version);
    ASSERT_EQ(file.Status(), KRParseStatus_Accepted);
    EXPECT_EQ(FindIn<KRTransRs>(file.Get())->GetMsgSetVersion(), version);
    EXPECT_EQ(FindIn<KRStatus>(file.Get())->GetMsgSetVersion(), version);
  }
}

TEST(KRMessageSetRs, TakesEachVersionOfItsOwnInOneFile) {
  const std::string text =
      File(SignOnResponseSet(1) + Aggregate("BANKMSGSRSV2", ResponseWrapper("STMTTRNRS", "")));
  const Parsed<KRFileRs> file(text);
  EXPECT_EQ(file.Status(), KRParseStatus_Accepted);
  EXPECT_EQ(FindIn<KRSignOnRs>(file.Get())->GetMsgSetVersion(), 1);
  EXPECT_EQ(FindIn<KRTransRs>(file.Get())->GetMsgSetVersion(), 2);
}

template <class Set>
void ExpectNothingOfNoType() {
  Set set;
  KRArrayOfTags tags;
  EXPECT_EQ(set.GetArrayOfValidTags(tags), 1);
  EXPECT_EQ(tags.count, 0);
  EXPECT_EQ(set.AllRequiredPresent(), 0);
  EXPECT_EQ(set.GetFirstMissingRequiredTag(KRTag_None), KRTag_None);
  EXPECT_EQ(TextOf(set), "");
}

TEST(KRMessageSetRq, HoldsNothingWithoutAType) { ExpectNothingOfNoType<KRMessageSetRq>(); }
TEST(KRMessageSetRs, HoldsNothingWithoutAType) { ExpectNothingOfNoType<KRMessageSetRs>(); }

TEST(KRMessageSetRq, NamesOneThingThatItLacks) {
  auto signOn = MakeSet<KRMessageSetRq>("SIGNONMSGSRQV2");
  EXPECT_EQ(signOn->GetFirstMissingRequiredTag(KRTag_None), KRTag_SONRQ);
  EXPECT_EQ(signOn->GetFirstMissingRequiredTag(KRTag_SONRQ), KRTag_None);
  signOn->SetSignOnRq(MakeChild<KRSignOnRq>(KRTag_SONRQ));
  EXPECT_EQ(signOn->GetFirstMissingRequiredTag(KRTag_None), KRTag_None);
  auto securities = MakeSet<KRMessageSetRs>("SECLISTMSGSRSV2");
  EXPECT_EQ(securities->GetFirstMissingRequiredTag(KRTag_None), KRTag_SECLIST);
  securities->SetSecList(MakeChild<KRSecList>(KRTag_SECLIST));
  EXPECT_EQ(securities->GetFirstMissingRequiredTag(KRTag_None), KRTag_None);
}

TEST(KRMessageSetRq, CopiesWhatIsThereOfAListWithGaps) {
  auto source = MakeSet<KRMessageSetRq>("BANKMSGSRQV1");
  EXPECT_EQ(source->SetTrans(2, MakeChild<KRTransRq>(KRTag_STMTTRNRQ, 1)), 1);
  KRMessageSetRq copy;
  EXPECT_EQ(copy.DeepCopyFrom(source.get()), 1);
  EXPECT_EQ(copy.GetNumTrans(), 3);
  EXPECT_EQ(copy.GetTrans(0), nullptr);
  ASSERT_NE(copy.GetTrans(2), nullptr);
  EXPECT_NE(copy.GetTrans(2), source->GetTrans(2));
  EXPECT_EQ(TextOf(copy), InLines("<STMTTRNRQ></STMTTRNRQ>"));
}

TEST(KRMessageSetRq, StaysAsItIsWhenItIsCopiedFromItselfOrNothing) {
  auto set = MakeSet<KRMessageSetRq>("BANKMSGSRQV1");
  KRTransRq* const transaction = MakeChild<KRTransRq>(KRTag_STMTTRNRQ, 1);
  set->AppendTrans(transaction);
  EXPECT_EQ(set->DeepCopyFrom(nullptr), 0);
  EXPECT_EQ(set->DeepCopyFrom(set.get()), 1);
  EXPECT_EQ(set->GetTrans(0), transaction);
}

TEST(KRMessageSetRs, StaysAsItIsWhenItIsCopiedFromItselfOrNothing) {
  auto set = MakeSet<KRMessageSetRs>("SECLISTMSGSRSV2");
  KRSecList* const list = MakeChild<KRSecList>(KRTag_SECLIST);
  set->SetSecList(list);
  EXPECT_EQ(set->DeepCopyFrom(nullptr), 0);
  EXPECT_EQ(set->DeepCopyFrom(set.get()), 1);
  EXPECT_EQ(set->GetSecList(), list);
  KRMessageSetRs copy;
  EXPECT_EQ(copy.DeepCopyFrom(set.get()), 1);
  EXPECT_NE(copy.GetSecList(), list);
  EXPECT_NE(copy.GetSecList(), nullptr);
}

TEST(KRMessageSetRs, CopiesEverything) {
  const Parsed<KRFileRs> file(ResponseFile(
      "BANKMSGSRS", ResponseWrapper("STMTTRNRS", "") + Aggregate("INTRASYNCRS", "<TOKEN>1")));
  ASSERT_EQ(file.Status(), KRParseStatus_Accepted);
  KRResponse* response = file->GetResponse(0);
  for (u16 i = 0; i < response->GetNumMessageSet(); ++i) {
    KRMessageSetRs* source = response->GetMessageSet(i);
    KRMessageSetRs copy;
    EXPECT_EQ(copy.DeepCopyFrom(source), 1);
    EXPECT_EQ(TextOf(copy), TextOf(*source));
    EXPECT_EQ(copy.GetType(), source->GetType());
    if (copy.GetSignOnRs() != nullptr) {
      EXPECT_NE(copy.GetSignOnRs(), source->GetSignOnRs());
    }
    if (copy.GetTrans(0) != nullptr) {
      EXPECT_NE(copy.GetTrans(0), source->GetTrans(0));
    }
    EXPECT_EQ(copy.DeepCopyFrom(nullptr), 0);
    EXPECT_EQ(copy.DeepCopyFrom(&copy), 1);
  }
}

}  // namespace
