// Transaction wrappers: identity, payload, status, what makes each complete, and copies.

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>

#include "envelope/routing_lists.h"
#include "krofx/envelope/envelope.h"
#include "krofx/envelope/file_rq_rs.h"
#include "krofx/messages/banking/statements.h"
#include "krofx/messages/billpay/payees.h"
#include "krofx/messages/signon/status.h"
#include "krofx/values/utility.h"
#include "support/factory_in_force.h"
#include "support/failing_allocation.h"
#include "support/ofx_text.h"

namespace {

using namespace krofx::testing;

// A payload of any type: a wrapper uses only its type.
class AnyPayload : public KRTransBase {
 public:
  explicit AnyPayload(KRTagID type) { SetType(type); }
};

template <class Wrapper>
std::unique_ptr<Wrapper> MakeWrapper(std::string_view type, u16 version = 2) {
  auto wrapper = Make<Wrapper>(version);
  wrapper->SetType(Id(type));
  wrapper->SetTransUserID(KRString("1001"));
  return wrapper;
}

std::unique_ptr<KRTransRs> MakeResponse(std::string_view type, s32 code = 0,
                                        KRStatusSeverity severity = KRStatusSeverity_INFO) {
  auto wrapper = MakeWrapper<KRTransRs>(type);
  KRStatus* status = Make<KRStatus>().release();
  status->SetCode(code);
  status->SetSeverity(severity);
  wrapper->SetStatus(status);
  return wrapper;
}

// Whether the wrapper is complete with the payloads of `mask`, one bit for each of the row. They
// are set one after another, so that all their tags are present.
template <class Wrapper>
u16 CompleteWith(Wrapper& wrapper, const std::vector<std::string>& payloads, unsigned mask) {
  for (std::size_t i = 0; i < payloads.size(); ++i) {
    if ((mask & (1u << i)) != 0) wrapper.SetActualTrans(new AnyPayload(Id(payloads[i])));
  }
  return wrapper.AllRequiredPresent();
}

TEST(KRTransRq, AsksForAPayloadAndAnIdentity) {
  for (const TagList& row : kRequestPayloads) {
    auto wrapper = MakeWrapper<KRTransRq>(row.name);
    EXPECT_EQ(wrapper->AllRequiredPresent(), 0) << row.name;
    wrapper->SetActualTrans(new AnyPayload(Id(Words(row.tags)[0])));
    EXPECT_EQ(wrapper->AllRequiredPresent(), 1) << row.name;
    wrapper->ClearTransUserID();
    EXPECT_EQ(wrapper->AllRequiredPresent(), 0) << row.name;
  }
}

TEST(KRTransRq, TakesOneOrThreeTagsOfAChoiceButNotTwo) {
  for (const TagList& row : kRequestPayloads) {
    const std::vector<std::string> payloads = Words(row.tags);
    if (payloads.size() < 2) continue;
    for (unsigned mask = 1; mask < 1u << payloads.size(); ++mask) {
      auto wrapper = MakeWrapper<KRTransRq>(row.name);
      EXPECT_EQ(CompleteWith(*wrapper, payloads, mask), __builtin_popcount(mask) % 2)
          << row.name << " " << mask;
    }
  }
}

TEST(KRTransRq, AsksForTheTagOnlyWhereTheWrapperDoes) {
  const std::vector<std::string> anyPayload = {"ACCTINFOTRNRQ",    "ACCTTRNRQ",   "CHALLENGETRNRQ",
                                               "CHGUSERINFOTRNRQ", "ENROLLTRNRQ", "PINCHTRNRQ",
                                               "PROFTRNRQ"};
  for (const TagList& row : kRequestPayloads) {
    const bool any = std::find(anyPayload.begin(), anyPayload.end(), row.name) != anyPayload.end();
    auto wrapper = MakeWrapper<KRTransRq>(row.name);
    EXPECT_EQ(wrapper->SetActualTrans(new AnyPayload(KRTag_OFX)), 0) << "it is held all the same";
    EXPECT_EQ(wrapper->AllRequiredPresent(), any ? 1 : 0) << row.name;
  }
  auto unknown = MakeWrapper<KRTransRq>("OFX");
  unknown->SetActualTrans(new AnyPayload(KRTag_OFX));
  EXPECT_EQ(unknown->AllRequiredPresent(), 0) << "an unknown type knows no TRNUID";
}

TEST(KRTransRq, WritesIdentityAndThenThePayload) {
  auto wrapper = MakeWrapper<KRTransRq>("STMTENDTRNRQ", 1);
  wrapper->SetActualTrans(Make<KRStatementEndRq>().release());
  wrapper->SetTAN(KRString("42"));
  wrapper->SetClientCookie(KRString("biscuit"));
  EXPECT_EQ(TextOf(*wrapper),
            InLines("<TRNUID>1001<CLTCOOKIE>biscuit<TAN>42<STMTENDRQ></STMTENDRQ>"));
  wrapper->ClearTAN();
  wrapper->ClearTransUserID();
  EXPECT_EQ(TextOf(*wrapper), InLines("<CLTCOOKIE>biscuit<STMTENDRQ></STMTENDRQ>"));
}

TEST(KRTransRq, WritesAPayloadWhoseTagIsNotValidHere) {
  auto wrapper = MakeWrapper<KRTransRq>("PROFTRNRQ", 1);
  wrapper->SetActualTrans(Make<KRStatementEndRq>().release());
  EXPECT_EQ(TextOf(*wrapper), InLines("<TRNUID>1001<STMTENDRQ></STMTENDRQ>"));
}

TEST(KRTransRq, LeavesTheBitOverANullPayload) {
  auto wrapper = MakeWrapper<KRTransRq>("STMTTRNRQ");
  wrapper->SetActualTrans(new AnyPayload(KRTag_STMTRQ));
  EXPECT_EQ(wrapper->SetActualTrans(nullptr), 1);
  EXPECT_EQ(wrapper->GetActualTrans(), nullptr);
  EXPECT_EQ(wrapper->ValidateTag(KRTag_STMTRQ), 1);
  EXPECT_EQ(wrapper->AllRequiredPresent(), 0);
}

TEST(KRTransRq, SaysNothingOfAPayloadThatCannotBeNamed) {
  auto wrapper = MakeWrapper<KRTransRq>("PMTTRNRQ");
  EXPECT_EQ(wrapper->SetActualTrans(nullptr), 0);
  EXPECT_EQ(TakeWarnings(), Lines{});
  auto single = MakeWrapper<KRTransRq>("STMTTRNRQ");
  EXPECT_EQ(single->SetActualTrans(nullptr), 1);
  EXPECT_EQ(single->ValidateTag(KRTag_STMTRQ), 1) << "as after any null pointer";
  EXPECT_EQ(TakeWarnings(), Lines{});
}

TEST(KRTransRq, SaysThatOneOfItsPayloadsIsMeant) {
  auto wrapper = MakeWrapper<KRTransRq>("PMTTRNRQ");
  KRUnmetRule rule;
  ASSERT_EQ(KRUtility::GetUnmetRule(wrapper.get(), 0, rule), 1);
  EXPECT_EQ(rule.demand, KRPresenceDemand_ExactlyOne);
  ASSERT_EQ(rule.count, 3);
  EXPECT_EQ(rule.tags[0], KRTag_PMTRQ);
  EXPECT_EQ(rule.tags[2], KRTag_PMTCANCRQ);
  wrapper->SetActualTrans(new AnyPayload(KRTag_PMTMODRQ));
  EXPECT_EQ(KRUtility::GetUnmetRule(wrapper.get(), 0, rule), 0);
  EXPECT_EQ(KRUtility::GetUnmetRule(MakeWrapper<KRTransRq>("STMTTRNRQ").get(), 0, rule), 0);
}

TEST(KRTransRs, NeedsNoPayloadAfterAnError) {
  auto wrapper = MakeWrapper<KRTransRs>("PMTTRNRS");
  KRUnmetRule rule;
  EXPECT_EQ(KRUtility::GetUnmetRule(wrapper.get(), 0, rule), 0) << "the status is missing first";
  auto status = std::make_unique<KRStatus>();
  status->SetSeverity(KRStatusSeverity_INFO);
  KRStatus* held = status.get();
  wrapper->SetStatus(status.release());
  EXPECT_EQ(KRUtility::GetUnmetRule(wrapper.get(), 0, rule), 1);
  held->SetSeverity(KRStatusSeverity_ERROR);
  EXPECT_EQ(KRUtility::GetUnmetRule(wrapper.get(), 0, rule), 0);
}

TEST(KRTransRq, KnowsItsMessageSetAndItsOneChild) {
  auto wrapper = MakeWrapper<KRTransRq>("STMTTRNRQ");
  EXPECT_EQ(wrapper->GetMsgsRqTag(), KRTag_None);
  wrapper->SetMsgsRqTag(KRTag_BANKMSGSRQV1);
  EXPECT_EQ(wrapper->GetMsgsRqTag(), KRTag_BANKMSGSRQV1);
  EXPECT_EQ(wrapper->GetNumberOfChildren(), 1);
  EXPECT_EQ(wrapper->GetChild(0), nullptr);
  auto* payload = new AnyPayload(KRTag_STMTRQ);
  wrapper->SetActualTrans(payload);
  EXPECT_EQ(wrapper->GetChild(0), payload);
  EXPECT_EQ(wrapper->GetChild(1), nullptr);
}

// Opens the maker of payloads.
class OpenRequest : public KRTransRq {
 public:
  using KRTransRq::NewRq;
};

TEST(KRTransRq, MakesAnyPayloadWhateverItsOwnType) {
  OpenRequest wrapper;
  wrapper.SetType(KRTag_PROFTRNRQ);
  EXPECT_EQ(wrapper.NewRq(KRTag_STMTRQ), KRParseStatus_Accepted);
  KRTransBase* first = wrapper.GetActualTrans();
  EXPECT_NE(dynamic_cast<KRBankStatementRq*>(first), nullptr);
  EXPECT_EQ(wrapper.NewRq(KRTag_STMTRS), KRParseStatus_Invalid);
  EXPECT_EQ(wrapper.GetActualTrans(), first);
  EXPECT_EQ(wrapper.NewRq(KRTag_PAYEERQ), KRParseStatus_Accepted);
  EXPECT_NE(dynamic_cast<KRPayeeRq*>(wrapper.GetActualTrans()), nullptr);
  // The first stays readable until the wrapper is destroyed.
  EXPECT_EQ(first->GetType(), KRTag_STMTRQ);
}

class OpenResponse : public KRTransRs {
 public:
  using KRTransRs::NewRs;
};

TEST(KRTransRs, MakesAnyPayloadWhateverItsOwnType) {
  OpenResponse wrapper;
  wrapper.SetType(KRTag_PROFTRNRS);
  EXPECT_EQ(wrapper.NewRs(KRTag_STMTRS), KRParseStatus_Accepted);
  KRTransBase* first = wrapper.GetActualTrans();
  EXPECT_NE(dynamic_cast<KRBankStatementRs*>(first), nullptr);
  EXPECT_EQ(wrapper.NewRs(KRTag_STMTRQ), KRParseStatus_Invalid);
  EXPECT_EQ(wrapper.GetActualTrans(), first);
  EXPECT_EQ(wrapper.NewRs(KRTag_PAYEERS), KRParseStatus_Accepted);
  EXPECT_NE(dynamic_cast<KRPayeeRs*>(wrapper.GetActualTrans()), nullptr);
  EXPECT_EQ(first->GetType(), KRTag_STMTRS);
}

// Makes neither statements nor statuses, and reports nothing.
class PoorFactory : public KRDataObjFactory {
 public:
  KRBankStatementRq* NewBankStatementRq(u16) override { return nullptr; }
  KRBankStatementRs* NewBankStatementRs(u16) override { return nullptr; }
  KRStatus* NewStatus(u16) override { return nullptr; }
};

TEST(KRTransRq, RaisesNoAlarmOverAPayloadThatIsNotMade) {
  PoorFactory factory;
  const InForce inForce(factory);
  KRSetFireAlarm(KRFireAlarm_None);
  OpenRequest request;
  EXPECT_EQ(request.NewRq(KRTag_STMTRQ), KRParseStatus_Fatal);
  OpenResponse response;
  EXPECT_EQ(response.NewRs(KRTag_STMTRS), KRParseStatus_Fatal);
  EXPECT_EQ(response.GetActualTrans(), nullptr);
  EXPECT_FALSE(AlarmIsSet());
}

TEST(KRTransRq, KeepsItsPayloadWithoutMemoryForAnother) {
  for (std::size_t nth = 1;; ++nth) {
    OpenRequest request;
    ASSERT_EQ(request.NewRq(KRTag_STMTENDRQ), KRParseStatus_Accepted);
    const KRDataObj* const first = request.GetActualTrans();
    const FailingAllocation failing(nth);
    const KRParseStatus status = request.NewRq(KRTag_STMTENDRQ);
    if (krofx::internal::AllocationFailure::Count() < nth) {
      EXPECT_EQ(status, KRParseStatus_Accepted);
      EXPECT_NE(request.GetActualTrans(), first);
      break;
    }
    EXPECT_EQ(status, KRParseStatus_Fatal) << nth;
    EXPECT_EQ(request.GetActualTrans(), first) << nth;
  }
}

TEST(KRTransRs, RaisesTheAlarmOverAStatusThatIsNotMade) {
  PoorFactory factory;
  const InForce inForce(factory);
  KRSetFireAlarm(KRFireAlarm_None);
  auto wrapper = MakeWrapper<KRTransRs>("STMTTRNRS");
  const KRTagDictionaryEntry entry = {KRTag_STATUS, "STATUS"};
  EXPECT_EQ(wrapper->HandleTagStart(&entry), KRParseStatus_Fatal);
  EXPECT_TRUE(AlarmIsSet());
  KRSetFireAlarm(KRFireAlarm_None);
}

TEST(KRTransRq, TakesTheLastOfTwoPayloadsWithoutAWarning) {
  const Parsed<KRFileRq> file(
      RequestFile("BANKMSGSRQ", RequestWrapper("STMTENDTRNRQ",
                                               "<STMTENDRQ><DTSTART>20260101</STMTENDRQ>"
                                               "<STMTENDRQ><DTEND>20260201</STMTENDRQ>")));
  EXPECT_EQ(file.Status(), KRParseStatus_Accepted);
  EXPECT_EQ(file.Warnings(), Lines());
  auto* payload = FindIn<KRStatementEndRq>(file.Get());
  ASSERT_NE(payload, nullptr);
  EXPECT_EQ(payload->ValidateTag(KRTag_DTSTART), 0);
  EXPECT_EQ(payload->ValidateTag(KRTag_DTEND), 1);
}

TEST(KRTransRq, KeepsAForeignPayloadOutOfAParse) {
  const Parsed<KRFileRq> file(RequestFile(
      "BANKMSGSRQ", RequestWrapper("STMTTRNRQ", "<STMTENDRQ><DTSTART>20260101</STMTENDRQ>")));
  EXPECT_EQ(file.Status(), KRParseStatus_Warnings);
  EXPECT_EQ(file.Warnings(), Lines{"INVALIDAGG <STMTENDRQ> " + TagNumber(KRTag_STMTENDRQ)});
  EXPECT_EQ(FindIn<KRTransRq>(file.Get())->GetActualTrans(), nullptr);
}

TEST(KRTransRq, CopiesPayloadAndMessageSet) {
  auto source = MakeWrapper<KRTransRq>("STMTENDTRNRQ", 1);
  auto* payload = Make<KRStatementEndRq>().release();
  payload->SetDtStart("20260101");
  source->SetActualTrans(payload);
  source->SetMsgsRqTag(KRTag_BANKMSGSRQV1);
  KRTransRq copy;
  EXPECT_EQ(copy.DeepCopyFrom(source.get()), 1);
  EXPECT_NE(copy.GetActualTrans(), payload);
  EXPECT_EQ(copy.GetMsgsRqTag(), KRTag_BANKMSGSRQV1);
  EXPECT_EQ(copy.GetType(), KRTag_STMTENDTRNRQ);
  EXPECT_EQ(TextOf(copy), TextOf(*source));

  KRTransRs other;
  EXPECT_EQ(copy.DeepCopyFrom(&other), 0);
  EXPECT_EQ(copy.DeepCopyFrom(nullptr), 0);
  EXPECT_EQ(TextOf(copy), TextOf(*source));
}

// Whether a response wrapper of a row is complete with only a status, in four letters: with an
// error shown, with an error not marked as present, with the code 1 shown, with the code 1 not
// marked as present.
struct Excuses {
  std::string_view wrappers;
  std::string_view answers;
};
constexpr Excuses kExcuses[] = {
    {"NORV.BRANDTRNRS NORV.MKTTIERTRNRS", "1010"},
    {"PROFTRNRS ACCTINFOTRNRS", "1111"},
    {"GETMIMETRNRS MAILTRNRS RECPMTTRNRS", "1000"},
    {"INTERTRNRS INTRATRNRS PAYEETRNRS PMTTRNRS RECINTERTRNRS RECINTRATRNRS WIRETRNRS "
     "BANKMAILTRNRS "
     "ACCTTRNRS CCSTMTENDTRNRS CCSTMTTRNRS CHALLENGETRNRS CHGUSERINFOTRNRS ENROLLTRNRS "
     "INVMAILTRNRS INVSTMTTRNRS PINCHTRNRS PMTINQTRNRS PMTMAILTRNRS SECLISTTRNRS STMTENDTRNRS "
     "STMTTRNRS STPCHKTRNRS",
     "1100"},
    {"MULTIINTERTRNRS", "0000"},
    {"NORV.CLIENTLOGTRNRS NORV.SURVEYTRNRS NORV.FIUSAGELOGTRNRS NORV.CUUSAGELOGTRNRS "
     "N.PAYROLLENROLLTRNRS N.PAYROLLTRNRS",
     "1111"},
};

TEST(KRTransRs, IsExcusedFromItsPayloadByItsStatus) {
  std::size_t rows = 0;
  for (const Excuses& row : kExcuses) {
    for (const std::string& name : Words(row.wrappers)) {
      ++rows;
      std::string answers;
      for (const bool error : {true, false}) {
        for (const bool shown : {true, false}) {
          auto wrapper = MakeResponse(name, error ? 2000 : 1,
                                      error ? KRStatusSeverity_ERROR : KRStatusSeverity_INFO);
          if (!shown) {
            wrapper->GetStatus()->ClearCode();
            wrapper->GetStatus()->ClearSeverity();
          }
          answers += wrapper->AllRequiredPresent() != 0 ? '1' : '0';
        }
      }
      EXPECT_EQ(answers, row.answers) << name;
    }
  }
  EXPECT_EQ(rows, std::size(kResponsePayloads));
}

TEST(KRTransRs, AsksForTheTagsOfItsPayloads) {
  for (const TagList& row : kResponsePayloads) {
    const std::vector<std::string> payloads = Words(row.tags);
    const bool free = row.name.starts_with("N.") || payloads.empty();
    for (unsigned mask = 0; mask < 1u << payloads.size(); ++mask) {
      auto wrapper = MakeResponse(row.name);
      const int count = __builtin_popcount(mask);
      int expected = payloads.size() == 1 ? count : count % 2;
      if (row.name == "BANKMAILTRNRS") expected = count != 0;
      if (free) expected = 1;
      EXPECT_EQ(CompleteWith(*wrapper, payloads, mask), expected) << row.name << " " << mask;
    }
  }
}

TEST(KRTransRs, AsksForAStatusAndAnIdentity) {
  for (const TagList& row : kResponsePayloads) {
    auto wrapper = MakeResponse(row.name);
    if (!row.tags.empty()) wrapper->SetActualTrans(new AnyPayload(Id(Words(row.tags)[0])));
    ASSERT_EQ(wrapper->AllRequiredPresent(), 1) << row.name;
    wrapper->ClearTransUserID();
    EXPECT_EQ(wrapper->AllRequiredPresent(), 0) << row.name;
    wrapper->SetTransUserID(KRString("1"));
    wrapper->SetStatus(nullptr);
    EXPECT_EQ(wrapper->AllRequiredPresent(), 0) << row.name;
  }
  EXPECT_EQ(MakeResponse("OFX")->AllRequiredPresent(), 0) << "an unknown type knows no TRNUID";
}

TEST(KRTransRs, IsCompleteWithAnErrorAndNoStatement) {
  EXPECT_EQ(MakeResponse("STMTTRNRS", 2000, KRStatusSeverity_ERROR)->AllRequiredPresent(), 1);
}

TEST(KRTransRs, IsCompleteUpToDateWhereThePayloadIsAProfile) {
  EXPECT_EQ(MakeResponse("PROFTRNRS", 1)->AllRequiredPresent(), 1);
  EXPECT_EQ(MakeResponse("STMTTRNRS", 1)->AllRequiredPresent(), 0);
}

TEST(KRTransRs, IsNotExcusedFromAMultipleTransferByAnError) {
  EXPECT_EQ(MakeResponse("MULTIINTERTRNRS", 2000, KRStatusSeverity_ERROR)->AllRequiredPresent(), 0);
}

TEST(KRTransRs, TellsAnErrorAndBeingUpToDateOnlyWhenShown) {
  auto wrapper = MakeResponse("STMTTRNRS", 1, KRStatusSeverity_ERROR);
  EXPECT_EQ(wrapper->IsErrorStatus(), 1);
  EXPECT_EQ(wrapper->IsUpToDate(), 1);
  wrapper->GetStatus()->ClearCode();
  EXPECT_EQ(wrapper->IsUpToDate(), 0);
  wrapper->GetStatus()->SetCode(0);
  EXPECT_EQ(wrapper->IsUpToDate(), 0);
  wrapper->GetStatus()->ClearSeverity();
  EXPECT_EQ(wrapper->IsErrorStatus(), 0);
  wrapper->GetStatus()->SetSeverity(KRStatusSeverity_WARN);
  EXPECT_EQ(wrapper->IsErrorStatus(), 0);
  wrapper->GetStatus()->SetSeverity(KRStatusSeverity_ERROR);
  wrapper->ClearStatus();
  EXPECT_EQ(wrapper->IsErrorStatus(), 0);
  wrapper->SetStatus(nullptr);
  EXPECT_EQ(wrapper->IsErrorStatus(), 0);
  EXPECT_EQ(wrapper->IsUpToDate(), 0);
}

TEST(KRTransRs, WritesIdentityStatusCookieAndThenThePayload) {
  auto wrapper = MakeResponse("STMTENDTRNRS");
  wrapper->SetActualTrans(Make<KRStatementEndRs>().release());
  wrapper->SetClientCookie(KRString("biscuit"));
  EXPECT_EQ(TextOf(*wrapper),
            InLines("<TRNUID>1001<STATUS><CODE>0<SEVERITY>INFO</STATUS><CLTCOOKIE>biscuit"
                    "<STMTENDRS></STMTENDRS>"));
}

TEST(KRTransRs, TakesTheLastOfTwoStatusesWithAWarning) {
  const Parsed<KRFileRs> file(ResponseFile(
      "BANKMSGSRS", Aggregate("STMTTRNRS", "<TRNUID>1" + GoodStatus() +
                                               "<STATUS><CODE>2000<SEVERITY>ERROR</STATUS>")));
  EXPECT_EQ(file.Status(), KRParseStatus_Warnings);
  EXPECT_EQ(file.Warnings(), Lines{"EXTRAAGG " + TagNumber(KRTag_STATUS)});
  EXPECT_EQ(FindIn<KRTransRs>(file.Get())->GetStatus()->GetCode(), 2000);
}

TEST(KRTransRs, ForgetsAPayloadWithoutDeletingIt) {
  auto wrapper = MakeResponse("STMTTRNRS");
  std::unique_ptr<KRTransBase> payload(new AnyPayload(KRTag_STMTRS));
  wrapper->SetActualTrans(payload.get());
  wrapper->DisconnectActualTrans();
  EXPECT_EQ(wrapper->GetActualTrans(), nullptr);
  EXPECT_EQ(payload->GetType(), KRTag_STMTRS);
}

TEST(KRTransRs, GivesStatusAndPayloadAsChildren) {
  auto wrapper = MakeResponse("STMTTRNRS");
  auto* payload = new AnyPayload(KRTag_STMTRS);
  wrapper->SetActualTrans(payload);
  EXPECT_EQ(wrapper->GetNumberOfChildren(), 2);
  EXPECT_EQ(wrapper->GetChild(0), wrapper->GetStatus());
  EXPECT_EQ(wrapper->GetChild(1), payload);
  EXPECT_EQ(wrapper->GetChild(2), nullptr);
  wrapper->SetMsgsRsTag(KRTag_BANKMSGSRSV2);
  EXPECT_EQ(wrapper->GetMsgsRsTag(), KRTag_BANKMSGSRSV2);
  wrapper->SetMsgSetVersion(1);
  EXPECT_EQ(payload->GetMsgSetVersion(), 1);
  EXPECT_EQ(wrapper->GetStatus()->GetMsgSetVersion(), 1);
}

TEST(KRTransRs, CopiesEverything) {
  const Parsed<KRFileRs> file(BankStatementFile(""));
  ASSERT_EQ(file.Status(), KRParseStatus_Accepted);
  auto* source = FindIn<KRTransRs>(file.Get());
  source->SetMsgsRsTag(KRTag_BANKMSGSRSV1);
  KRTransRs copy;
  EXPECT_EQ(copy.DeepCopyFrom(source), 1);
  EXPECT_EQ(TextOf(copy), TextOf(*source));
  EXPECT_EQ(copy.GetMsgsRsTag(), KRTag_BANKMSGSRSV1);
  EXPECT_NE(copy.GetStatus(), source->GetStatus());
  EXPECT_EQ(copy.DeepCopyFrom(&copy), 1);
  KRTransRq other;
  EXPECT_EQ(copy.DeepCopyFrom(&other), 0);
  EXPECT_EQ(copy.DeepCopyFrom(nullptr), 0);
  EXPECT_EQ(TextOf(copy), TextOf(*source));
}

TEST(KRStatus, ReadsAndWritesItsRowsByVersion) {
  for (const u16 version : {u16{1}, u16{2}}) {
    const std::string own = version == 2 ? "<MESSAGE2>all well" : "<MESSAGE>all well";
    const std::string text = "<CODE>-12<SEVERITY>WARN" + own;
    const Parsed<KRStatus> status(text, version);
    EXPECT_EQ(status.Status(), KRParseStatus_Accepted);
    EXPECT_EQ(status->GetCode(), -12);
    EXPECT_EQ(status->GetSeverity(), KRStatusSeverity_WARN);
    EXPECT_EQ(Str(version == 2 ? KRString(status->GetMessage2Text())
                               : KRString(status->GetMessageText())),
              "all well");
    EXPECT_EQ(TextOf(*status), InLines(text));
  }
}

TEST(KRStatus, LeavesASeverityThatCannotBeReadUnset) {
  const Parsed<KRStatus> status("<CODE>0<SEVERITY>GRAVE");
  EXPECT_EQ(status.Status(), KRParseStatus_Invalid);
  EXPECT_EQ(status->ValidateTag(KRTag_SEVERITY), 0);
  // The conversion warns first, and then the object that knows the tag.
  EXPECT_EQ(status.Warnings().at(0), "BADFORMAT \"GRAVE\"");
  EXPECT_EQ(status.Warnings().at(1), "BADFORMAT " + TagNumber(KRTag_SEVERITY) + " \"GRAVE\"");
  EXPECT_EQ(status->AllRequiredPresent(), 0);
}

TEST(KRStatus, SetsFromTexts) {
  auto status = Make<KRStatus>();
  EXPECT_EQ(status->GetType(), KRTag_STATUS);
  EXPECT_EQ(status->AllRequiredPresent(), 0);
  EXPECT_EQ(status->SetCode(KRString("2000")), 1);
  EXPECT_EQ(status->SetSeverity(KRString("error")), 1);
  EXPECT_EQ(status->GetCode(), 2000);
  EXPECT_EQ(status->GetSeverity(), KRStatusSeverity_ERROR);
  EXPECT_EQ(status->SetCode(KRString("many")), 0);
  EXPECT_EQ(status->SetSeverity(KRString("GRAVE")), 0);
  EXPECT_EQ(status->GetCode(), 2000);
  EXPECT_EQ(status->SetMessage2Text(KRString("no such tag in V1")), 0);
  EXPECT_EQ(status->AllRequiredPresent(), 1);
}

}  // namespace
