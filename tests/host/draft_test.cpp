// Files of requests and responses, put together from payloads.

#include "krofx/host/draft.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <set>
#include <string>

#include "krofx/build/builder.h"
#include "krofx/core/buffer.h"
#include "krofx/envelope/internal/routing.h"
#include "krofx/envelope/multi_trans.h"
#include "krofx/host/build_reason.h"
#include "krofx/host/look.h"
#include "krofx/host/own.h"
#include "krofx/host/words.h"
#include "krofx/messages/banking/accounts.h"
#include "krofx/messages/banking/statements.h"
#include "krofx/messages/banking/transfers.h"
#include "krofx/messages/investment/securities.h"
#include "krofx/messages/profile/profile.h"
#include "krofx/messages/signon/signon.h"
#include "krofx/messages/signon/status.h"
#include "support/failing_allocation.h"
#include "support/readings.h"

namespace krofx::testing {
namespace {

using namespace std::chrono_literals;  // NOLINT(google-build-using-namespace)

SignOnData Ada() {
  return {.user = "ada.w",
          .password = "not-a-real-password",
          .organisation = "HARBORFED",
          .institution = "40711",
          .appId = "DEMO",
          .time = Instant(std::chrono::sys_days(2026y / 2 / 1) + 6h)};
}

std::unique_ptr<KRBankAccount> Account(const Draft& draft, std::string_view number) {
  auto account = draft.New<KRBankAccount>();
  Set(*account, &KRBankAccount::SetBankID, "211370545");
  Set(*account, &KRBankAccount::SetAccountID, number);
  if (draft.Version() == 1) {
    account->SetAccountType(KRBankAccountType_CHECKING);
  } else {
    account->SetAccountType2(KRBankAccountType2_CHECKING);
  }
  return account;
}

std::unique_ptr<KRIntraRq> Transfer(const Draft& draft) {
  auto info = draft.New<KRXferInfo>();
  Give(*info, &KRXferInfo::SetBankAcctFrom, Account(draft, "1"));
  Give(*info, &KRXferInfo::SetBankAcctTo, Account(draft, "2"));
  Set(*info, &KRXferInfo::SetTranAmount, "62.40");
  auto transfer = draft.New<KRIntraRq>();
  Give(*transfer, &KRIntraRq::SetXferInfo, std::move(info));
  return transfer;
}

std::string TextOf(const KRBuffer& buffer) {
  return buffer.GetBufferPtr() == nullptr
             ? ""
             : std::string(buffer.GetBufferPtr(), buffer.GetBufferSize());
}

TEST(Draft, WritesARequestThatReadsCleanInBothVersions) {
  for (const u16 version : {u16{1}, u16{2}}) {
    Draft draft(version);
    EXPECT_TRUE(draft.SignOn(Ada()));
    const KRTransRq* const wrapper = draft.Add(Transfer(draft));
    ASSERT_NE(wrapper, nullptr);
    EXPECT_EQ(wrapper->GetTransUserID().GetStrLength(), 36);
    KRBuffer buffer(0, 0);
    const DraftResult result = draft.Write(buffer);
    EXPECT_TRUE(result) << Str(result.problem);
    const std::string text = TextOf(buffer);
    const Reading reading = Read(text);
    EXPECT_EQ(reading.status, KRParseStatus_Accepted) << text;
    ASSERT_NE(reading.Request(), nullptr);
    const std::string end = version == 1 ? "V1" : "V2";
    std::string path;
    for (const auto& found : Each<KRXferInfo>(reading)) path = Str(found.Path());
    EXPECT_EQ(path, "OFX/BANKMSGSRQ" + end + "/INTRATRNRQ/INTRARQ/XFERINFO");
    const auto signOn = *Each<KRSignOnRq>(reading).begin();
    EXPECT_EQ(Str(signOn->GetUserId()), "ada.w");
    EXPECT_EQ(Str(signOn->GetFI()->GetOrg()), "HARBORFED");
    EXPECT_EQ(ToText(signOn->GetDtClient()), "2026-02-01T06:00:00");
  }
}

TEST(Draft, GivesEachTransactionAnIdentifierOfItsOwn) {
  Draft draft(1);
  draft.SignOn(Ada());
  std::set<std::string> ids;
  for (int index = 0; index < 3; ++index) {
    ids.insert(Str(draft.Add(Transfer(draft))->GetTransUserID()));
  }
  EXPECT_EQ(ids.size(), 3u);
  KRBuffer buffer(0, 0);
  EXPECT_TRUE(draft.Write(buffer));
  int sets = 0;
  ForEach<KRMessageSetRq>(Read(TextOf(buffer)), [&](const KRMessageSetRq&) { ++sets; });
  EXPECT_EQ(sets, 2);
}

TEST(Draft, ListsAllThatIsMissingAndLeavesTheBuffer) {
  Draft draft(2);
  draft.Add(draft.New<KRIntraRq>());
  draft.Add(draft.New<KRBankStatementRq>());
  KRBuffer buffer(0, 0);
  buffer += 'x';
  const DraftResult result = draft.Write(buffer);
  EXPECT_FALSE(result);
  EXPECT_EQ(result.status, KRBuildStatus_MissingTag);
  EXPECT_EQ(TextOf(buffer), "x");
  Lines lines;
  for (const MissingTag& missing : result.missing) {
    lines.push_back(Str(missing.path) + ": " + Str(missing.sentence));
  }
  EXPECT_EQ(lines, (Lines{"OFX: <SIGNONMSGSRQV2> is missing",
                          "OFX/BANKMSGSRQV2/INTRATRNRQ/INTRARQ: <XFERINFO> is missing",
                          "OFX/BANKMSGSRQV2/STMTTRNRQ/STMTRQ: <BANKACCTFROM> is missing"}));
}

TEST(Draft, SaysWhichObjectHasAValueThatCannotBeWritten) {
  Draft draft(1);
  SignOnData data = Ada();
  data.appId = "TOOLONGFORIT";
  draft.SignOn(data);
  draft.Add(Transfer(draft));
  KRBuffer buffer(0, 0);
  const DraftResult result = draft.Write(buffer);
  EXPECT_EQ(result.status, KRBuildStatus_TooLong);
  EXPECT_EQ(Str(result.problem), "a text is longer than OFX allows in <SONRQ>");
  EXPECT_EQ(buffer.GetBufferSize(), 0u);
}

TEST(Draft, HasAReasonForEachStatusOfABuild) {
  const std::pair<KRBuildStatus, const char*> kReasons[] = {
      {KRBuildStatus_Done, ""},
      {KRBuildStatus_Fatal, "memory was exhausted"},
      {KRBuildStatus_NoTextForm, "a value has no text form"},
      {KRBuildStatus_NullArgument, "it cannot be written"},
      {KRBuildStatus_EmptyText, "a text is empty"},
      {KRBuildStatus_TooLong, "a text is longer than OFX allows"},
      {KRBuildStatus_NoArrayWriter, "it cannot be written"},
      {KRBuildStatus_TreeNotAllowed, "two message sets of the same kind"},
      {KRBuildStatus_NotValid, "a text is not valid"},
      {KRBuildStatus_MissingTag, "something required is missing"},
  };
  for (const auto& [status, reason] : kReasons) {
    EXPECT_STREQ(krofx::ReasonOf(status), reason) << status;
  }
}

TEST(Draft, CanBeWrittenAgain) {
  Draft draft(1);
  draft.Add(Transfer(draft));
  KRBuffer first(0, 0);
  EXPECT_FALSE(draft.Write(first));
  draft.SignOn(Ada());
  EXPECT_TRUE(draft.Write(first));
  KRBuffer second(0, 0);
  EXPECT_TRUE(draft.Write(second));
  EXPECT_EQ(TextOf(first), TextOf(second));
}

TEST(Draft, RefusesWhatTravelsInNoRequestOfItsVersion) {
  Draft response(1);
  response.SignOn(Ada());
  EXPECT_EQ(response.Add(response.New<KRBankStatementRs>()), nullptr);
  KRBuffer buffer(0, 0);
  DraftResult result = response.Write(buffer);
  EXPECT_EQ(result.status, KRBuildStatus_TreeNotAllowed);
  EXPECT_EQ(Str(result.problem), "<STMTRS> is carried by no wrapper");
  Draft payroll(2);
  payroll.SignOn(Ada());
  EXPECT_FALSE(payroll.Add(payroll.NewSync(KRTag_N_PAYROLLUPDATERQ, "0")));
  result = payroll.Write(buffer);
  EXPECT_EQ(Str(result.problem), "<N.PAYROLLUPDATERQ> travels in no message set of this version");
  Draft third(3);
  EXPECT_EQ(third.Write(buffer).status, KRBuildStatus_TreeNotAllowed);
}

TEST(Draft, TakesAWrapperThatTheCallerChooses) {
  Draft draft(2);
  draft.SignOn(Ada());
  auto transfer = draft.New<KRInterRq>();
  EXPECT_EQ(draft.Add(std::move(transfer), KRTag_STMTTRNRQ), nullptr);
  KRBuffer buffer(0, 0);
  EXPECT_EQ(Str(draft.Write(buffer).problem), "<INTERRQ> may not be in that wrapper");
}

TEST(Draft, AsksForASynchronisation) {
  for (const u16 version : {u16{1}, u16{2}}) {
    Draft draft(version);
    draft.SignOn(Ada());
    auto sync = draft.NewSync(KRTag_INTRASYNCRQ, "17");
    ASSERT_NE(sync, nullptr);
    Give(*sync, &KRSyncRq::SetAccount, std::unique_ptr<KRAccount>(Account(draft, "1")));
    EXPECT_TRUE(Give(*sync, &KRSyncRq::AppendTrans, draft.Wrap(Transfer(draft))));
    EXPECT_TRUE(draft.Add(std::move(sync)));
    KRBuffer buffer(0, 0);
    const DraftResult result = draft.Write(buffer);
    EXPECT_TRUE(result) << Str(result.problem);
    const Reading reading = Read(TextOf(buffer));
    EXPECT_EQ(reading.status, KRParseStatus_Accepted);
    const auto found = *Each<KRSyncRq>(reading).begin();
    EXPECT_EQ(Str(version == 1 ? KRString(found->GetToken()) : KRString(found->GetToken2())), "17");
    EXPECT_EQ(found->GetNumTrans(), 1);
  }
}

TEST(Draft, RefusesASynchronisationThatIsNone) {
  Draft draft(1);
  draft.SignOn(Ada());
  EXPECT_FALSE(draft.Add(draft.NewSync(KRTag_STMTTRNRQ, "0")));
  KRBuffer buffer(0, 0);
  EXPECT_EQ(Str(draft.Write(buffer).problem), "<STMTTRNRQ> is no synchronisation");
}

std::unique_ptr<KRInterRq> InterTransfer(const Draft& draft) {
  auto transfer = draft.New<KRInterRq>();
  Give(*transfer, &KRInterRq::SetXferInfo, Clone(*Transfer(draft)->GetXferInfo()));
  return transfer;
}

TEST(Draft, AsksForSeveralTransfersAtOnce) {
  Draft draft(2);
  draft.SignOn(Ada());
  auto* const many =
      dynamic_cast<KRMultiTransRq*>(draft.Add(InterTransfer(draft), KRTag_MULTIINTERTRNRQ));
  ASSERT_NE(many, nullptr);
  EXPECT_TRUE(Give(*many, &KRMultiTransRq::AppendActualTrans, InterTransfer(draft)));
  KRBuffer buffer(0, 0);
  const DraftResult result = draft.Write(buffer);
  EXPECT_TRUE(result) << Str(result.problem);
  const Reading reading = Read(TextOf(buffer));
  EXPECT_EQ(reading.status, KRParseStatus_Accepted) << TextOf(buffer);
  Lines paths;
  for (const auto& found : Each<KRInterRq>(reading)) paths.push_back(Str(found.Path()));
  const std::string path = "OFX/INTERXFERMSGSRQV2/MULTIINTERTRNRQ/INTERRQ";
  EXPECT_EQ(paths, (Lines{path + "[1]", path + "[2]"}));
  Draft other(2);
  other.SignOn(Ada());
  EXPECT_EQ(other.Add(Transfer(other), KRTag_MULTIINTERTRNRQ), nullptr);
  EXPECT_EQ(Str(other.Write(buffer).problem), "<INTRARQ> may not be in that wrapper");
}

// The table of routes is the only one: what it carries can be drafted.
TEST(Draft, FindsAWrapperForEveryPayloadAndASetForEveryWrapper) {
  using internal::Side;
  const KRTagDictionary* const dictionary = KRTagDictionary::TheKRTagDictionary();
  for (const auto& route : internal::Transactions(Side::kRequest)) {
    // Transactions of a payroll travel in its synchronisation only; INTERRQ has two wrappers.
    if (route.wrapper == KRTag_N_PAYROLLTRNRQ || route.wrapper == KRTag_MULTIINTERTRNRQ) continue;
    for (u8 index = 0; index < route.payloadCount; ++index) {
      Draft draft(1);
      std::unique_ptr<KRTransBase> payload(
          dynamic_cast<KRTransBase*>(route.payloads[index].create(*KRDataObj::GetFactory())));
      ASSERT_NE(payload, nullptr);
      payload->SetType(route.payloads[index].tag);
      KRTransRq* const wrapper = draft.Add(std::move(payload));
      ASSERT_NE(wrapper, nullptr) << dictionary->GetTagString(route.payloads[index].tag);
      EXPECT_EQ(wrapper->GetType(), route.wrapper);
      const KRTagID mapped = internal::WrapperOfPayload(route.payloads[index].tag);
      EXPECT_TRUE(mapped == KRTag_None || mapped == route.wrapper);
    }
  }
}

void ExpectFullSet(Draft& draft) {
  EXPECT_FALSE(AlarmIsSet());
  KRBuffer buffer(0, 0);
  buffer += "before";
  const DraftResult result = draft.Write(buffer);
  EXPECT_EQ(result.status, KRBuildStatus_TreeNotAllowed);
  EXPECT_EQ(Str(result.problem),
            "a list has more than 65535 entries, which is the most that a list takes");
  EXPECT_EQ(TextOf(buffer), "before");
}

TEST(Draft, SaysThatAMessageSetIsFull) {
  constexpr u32 kMost = 65535;
  Draft draft(1);
  for (u32 count = 0; count < kMost; ++count) {
    ASSERT_NE(draft.Add(draft.New<KRBankStatementRq>()), nullptr) << count;
  }
  EXPECT_EQ(draft.Add(draft.New<KRBankStatementRq>()), nullptr);
  ExpectFullSet(draft);

  Draft synchronising(1);
  for (u32 count = 0; count < kMost; ++count) {
    ASSERT_TRUE(synchronising.Add(synchronising.NewSync(KRTag_INTRASYNCRQ, "0"))) << count;
  }
  EXPECT_FALSE(synchronising.Add(synchronising.NewSync(KRTag_INTRASYNCRQ, "0")));
  ExpectFullSet(synchronising);
}

TEST(Draft, SaysThatMemoryIsExhaustedBeforeAnythingElse) {
  for (const u16 version : {u16{1}, u16{2}}) {
    Draft draft(version);
    std::unique_ptr<KRBankStatementRq> question = draft.New<KRBankStatementRq>();
    {
      const FailingAllocation failing(1, true);
      EXPECT_EQ(draft.Add(std::move(question)), nullptr);
    }
    KRBuffer buffer(0, 0);
    const DraftResult result = draft.Write(buffer);
    EXPECT_EQ(result.status, KRBuildStatus_Fatal);
    EXPECT_EQ(Str(result.problem), "memory was exhausted");
    EXPECT_TRUE(result.missing.empty());
  }
}

TEST(Draft, FailsWholeWhicheverAllocationFails) {
  std::string whole;
  for (std::size_t nth = 0; nth < 3000; ++nth) {
    KRBuffer buffer(65536, 0);
    bool failed = false;
    {
      const FailingAllocation failing(nth);
      Draft draft(1);
      draft.SignOn(Ada());
      auto rq = draft.New<KRBankStatementRq>();
      if (rq != nullptr) {
        auto account = draft.New<KRBankAccount>();
        if (account != nullptr) {
          Set(*account, &KRBankAccount::SetBankID, "211370545");
          Set(*account, &KRBankAccount::SetAccountID, "1");
          account->SetAccountType(KRBankAccountType_CHECKING);
          Give(*rq, &KRBankStatementRq::SetBankAcctFrom, std::move(account));
        }
      }
      draft.Add(std::move(rq));
      const DraftResult result = draft.Write(buffer);
      failed = !result;
      krofx::internal::AllocationFailure::FailAt(0);
      EXPECT_TRUE(!failed || result.status == KRBuildStatus_Fatal) << nth << Str(result.problem);
    }
    EXPECT_EQ(failed, buffer.GetBufferSize() == 0) << nth;
    if (nth == 0) {
      ASSERT_FALSE(failed);
    } else if (!failed) {
      EXPECT_GT(nth, 20u);
      return;
    }
  }
  FAIL() << "never enough memory";
}

TEST(ResponseDraft, AnswersAndRefusesRequests) {
  for (const u16 version : {u16{1}, u16{2}}) {
    Draft question(version);
    question.SignOn(Ada());
    KRTransRq* const first = question.Add(Transfer(question));
    first->SetClientCookie(KRString("biscuit"));
    KRTransRq* const second = question.Add(question.New<KRBankStatementRq>());

    ResponseDraft answer(version);
    EXPECT_TRUE(answer.SignOn({.organisation = "HARBORFED", .institution = "40711"}));
    auto done = answer.New<KRIntraRs>();
    done->SetCurrencyDefault(KRString("USD"));
    done->SetServerTransactionID(KRString("9"));
    done->SetServerTransactionID2(KRString("9"));
    Give(*done, &KRIntraRs::SetXferInfo, Clone(**Each<KRXferInfo>(question.File()).begin()));
    KRTransRs* const accepted = answer.Add(std::move(done), *first);
    KRTransRs* const refused = answer.Refuse(*second, 2003, "no such account");
    ASSERT_NE(accepted, nullptr);
    ASSERT_NE(refused, nullptr);
    EXPECT_EQ(Str(accepted->GetTransUserID()), Str(first->GetTransUserID()));
    EXPECT_EQ(Str(accepted->GetClientCookie()), "biscuit");
    EXPECT_EQ(refused->GetType(), KRTag_STMTTRNRS);
    EXPECT_EQ(refused->IsErrorStatus(), 1);
    KRBuffer buffer(0, 0);
    const DraftResult result = answer.Write(buffer);
    for (const MissingTag& missing : result.missing) {
      ADD_FAILURE() << Str(missing.path) << ": " << Str(missing.sentence);
    }
    EXPECT_TRUE(result) << Str(result.problem);
    const Reading reading = Read(TextOf(buffer));
    EXPECT_EQ(reading.status, KRParseStatus_Accepted) << TextOf(buffer);
    EXPECT_NE(reading.Response(), nullptr);
  }
}

TEST(ResponseDraft, AnswersASynchronisation) {
  for (const u16 version : {u16{1}, u16{2}}) {
    Draft question(version);
    const KRTransRq* const asked = question.Add(Transfer(question));
    ResponseDraft answer(version);
    answer.SignOn(SignOnAnswer());
    auto done = answer.New<KRIntraRs>();
    done->SetCurrencyDefault(KRString("USD"));
    done->SetServerTransactionID(KRString("9"));
    done->SetServerTransactionID2(KRString("9"));
    Give(*done, &KRIntraRs::SetXferInfo, Clone(**Each<KRXferInfo>(question.File()).begin()));
    auto sync = answer.NewSync(KRTag_INTRASYNCRS, "18");
    Give(*sync, &KRSyncRs::SetAccount, std::unique_ptr<KRAccount>(Account(question, "1")));
    auto wrapper = answer.Wrap(std::move(done), *asked);
    ASSERT_NE(wrapper, nullptr);
    EXPECT_EQ(Str(wrapper->GetTransUserID()), Str(asked->GetTransUserID()));
    EXPECT_TRUE(Give(*sync, &KRSyncRs::AppendTrans, std::move(wrapper)));
    EXPECT_TRUE(answer.Add(std::move(sync)));
    KRBuffer buffer(0, 0);
    const DraftResult result = answer.Write(buffer);
    for (const MissingTag& missing : result.missing) {
      ADD_FAILURE() << Str(missing.path) << ": " << Str(missing.sentence);
    }
    EXPECT_TRUE(result) << Str(result.problem);
    EXPECT_EQ(Read(TextOf(buffer)).status, KRParseStatus_Accepted) << TextOf(buffer);
  }
}

TEST(ResponseDraft, CarriesAListOfSecurities) {
  ResponseDraft answer(1);
  answer.SignOn(SignOnAnswer());
  EXPECT_TRUE(answer.Add(answer.New<KRSecList>()));
  EXPECT_EQ(Str((*Each<KRSecList>(answer.File()).begin()).Path()), "OFX/SECLISTMSGSRSV1/SECLIST");
}

}  // namespace
}  // namespace krofx::testing
