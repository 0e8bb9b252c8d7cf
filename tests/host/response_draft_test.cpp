// Files of responses that a server cannot write, or writes without one thing or another.

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "krofx/core/buffer.h"
#include "krofx/envelope/multi_trans.h"
#include "krofx/host/draft.h"
#include "krofx/host/look.h"
#include "krofx/host/own.h"
#include "krofx/host/words.h"
#include "krofx/messages/banking/statements.h"
#include "krofx/messages/banking/transfers.h"
#include "krofx/messages/investment/securities.h"
#include "krofx/messages/signon/signon.h"
#include "krofx/messages/signon/status.h"
#include "support/failing_allocation.h"
#include "support/readings.h"

namespace krofx::testing {
namespace {

// A request in a wrapper with a tag, as a server has read it.
std::unique_ptr<KRTransRq> Asked(KRTagID wrapper, u16 version = 1) {
  auto request = New<KRTransRq>(version);
  request->SetType(wrapper);
  request->SetTransUserID(KRString("t-1"));
  return request;
}

// Why a draft is not written.
DraftResult ResultOf(ResponseDraft& answer) {
  KRBuffer buffer(0, 0);
  DraftResult result = answer.Write(buffer);
  EXPECT_FALSE(result);
  EXPECT_EQ(ContentOf(buffer), "");
  return result;
}
std::string ProblemOf(ResponseDraft& answer) { return Str(ResultOf(answer).problem); }

TEST(ResponseDraft, IsNotWrittenInAVersionThatDoesNotExist) {
  for (const u16 version : {u16{0}, u16{3}}) {
    ResponseDraft answer(version);
    const DraftResult result = ResultOf(answer);
    EXPECT_EQ(result.status, KRBuildStatus_TreeNotAllowed);
    EXPECT_EQ(Str(result.problem), "there are message sets of version 1 and 2 only");
  }
}

TEST(ResponseDraft, RefusesAPayloadThatTheWrapperOfTheRequestDoesNotCarry) {
  ResponseDraft answer(1);
  EXPECT_EQ(answer.Add(answer.New<KRBankStatementRs>(), *Asked(KRTag_INTRATRNRQ)), nullptr);
  EXPECT_EQ(ProblemOf(answer), "<STMTRS> may not be in that wrapper");
}

TEST(ResponseDraft, KeepsToTheFirstThingThatWentWrong) {
  ResponseDraft answer(1);
  EXPECT_EQ(answer.Add(answer.New<KRBankStatementRs>(), *Asked(KRTag_INTRATRNRQ)), nullptr);
  EXPECT_FALSE(answer.Add(answer.NewSync(KRTag_STMTTRNRS, "0")));
  EXPECT_EQ(ProblemOf(answer), "<STMTRS> may not be in that wrapper");
}

TEST(ResponseDraft, RefusesASynchronisationThatIsNone) {
  ResponseDraft answer(1);
  EXPECT_FALSE(answer.Add(answer.NewSync(KRTag_STMTTRNRS, "0")));
  EXPECT_EQ(ProblemOf(answer), "<STMTTRNRS> is no synchronisation");
}

TEST(ResponseDraft, RefusesASynchronisationThatItsVersionDoesNotHave) {
  ResponseDraft answer(2);
  EXPECT_FALSE(answer.Add(answer.NewSync(KRTag_N_PAYROLLUPDATERS, "0")));
  EXPECT_EQ(ProblemOf(answer), "<N.PAYROLLUPDATERS> travels in no message set of this version");
}

TEST(ResponseDraft, CountsNothingThatIsGivenAsExhaustedMemory) {
  const auto noPayload = [](ResponseDraft& answer) {
    return answer.Add(nullptr, *Asked(KRTag_STMTTRNRQ)) != nullptr;
  };
  const auto noSync = [](ResponseDraft& answer) { return answer.Add(std::unique_ptr<KRSyncRs>()); };
  const auto noList = [](ResponseDraft& answer) {
    return answer.Add(std::unique_ptr<KRSecList>());
  };
  const auto noSignOn = [](ResponseDraft& answer) {
    return answer.SignOn(std::unique_ptr<KRSignOnRs>());
  };
  for (bool (*add)(ResponseDraft&) : {+noPayload, +noSync, +noList, +noSignOn}) {
    ResponseDraft answer(1);
    EXPECT_FALSE(add(answer));
    EXPECT_EQ(ResultOf(answer).status, KRBuildStatus_Fatal);
    KRSetFireAlarm(KRFireAlarm_None);
  }
}

TEST(ResponseDraft, SaysWhichObjectHasAValueThatCannotBeWritten) {
  ResponseDraft answer(1);
  answer.SignOn({.organisation = std::string(33, 'x'), .institution = "1"});
  const DraftResult result = ResultOf(answer);
  EXPECT_EQ(result.status, KRBuildStatus_TooLong);
  EXPECT_EQ(Str(result.problem), "a text is longer than OFX allows in <FI>");
}

TEST(ResponseDraft, NamesAnInstitutionByWhatIsKnownOfIt) {
  ResponseDraft nameless(1);
  nameless.SignOn({.institution = "40711"});
  const auto byId = *Each<KRFI>(nameless.File()).begin();
  EXPECT_EQ(Str(byId->GetFId()), "40711");
  EXPECT_EQ(byId->HasOrg(), 0);
  ResponseDraft named(1);
  named.SignOn({.organisation = "HARBORFED"});
  const auto byName = *Each<KRFI>(named.File()).begin();
  EXPECT_EQ(Str(byName->GetOrg()), "HARBORFED");
  EXPECT_EQ(byName->HasFId(), 0);
  ResponseDraft unknown(1);
  unknown.SignOn(SignOnAnswer());
  for (const auto& institution : Each<KRFI>(unknown.File())) ADD_FAILURE() << institution->HasFId();
}

TEST(ResponseDraft, RefusesASignOnWithItsReason) {
  for (const u16 version : {u16{1}, u16{2}}) {
    ResponseDraft answer(version);
    EXPECT_TRUE(answer.SignOn({.code = 15500, .message = "not today"}));
    const auto status = *Each<KRStatus>(answer.File()).begin();
    EXPECT_EQ(status->GetCode(), 15500);
    EXPECT_EQ(status->GetSeverity(), KRStatusSeverity_ERROR);
    EXPECT_EQ(Str(version == 1 ? KRString(status->GetMessageText())
                               : KRString(status->GetMessage2Text())),
              "not today");
  }
}

TEST(ResponseDraft, AnswersSeveralTransfersInOneWrapper) {
  ResponseDraft answer(2);
  auto* const many = dynamic_cast<KRMultiTransRs*>(
      answer.Add(answer.New<KRInterRs>(), *Asked(KRTag_MULTIINTERTRNRQ, 2)));
  ASSERT_NE(many, nullptr);
  EXPECT_TRUE(Give(*many, &KRMultiTransRs::AppendActualTrans, answer.New<KRInterRs>()));
  Lines paths;
  for (const auto& found : Each<KRInterRs>(answer.File())) paths.push_back(Str(found.Path()));
  const std::string path = "OFX/INTERXFERMSGSRSV2/MULTIINTERTRNRS/INTERRS";
  EXPECT_EQ(paths, (Lines{path + "[1]", path + "[2]"}));
  EXPECT_EQ(answer.Add(answer.New<KRIntraRs>(), *Asked(KRTag_MULTIINTERTRNRQ, 2)), nullptr);
  EXPECT_EQ(ProblemOf(answer), "<INTRARS> may not be in that wrapper");
}

TEST(ResponseDraft, FailsWholeWhicheverAllocationFails) {
  const auto request = Asked(KRTag_STMTTRNRQ);
  for (std::size_t nth = 1; nth < 3000; ++nth) {
    KRBuffer buffer(65536, 0);
    bool failed = false;
    {
      const FailingAllocation failing(nth);
      ResponseDraft answer(1);
      answer.SignOn({.message = "welcome", .organisation = "HARBORFED"});
      answer.Refuse(*request, 2003, "no such account");
      answer.Add(answer.NewSync(KRTag_INTRASYNCRS, "18"));
      answer.Add(answer.New<KRSecList>());
      const DraftResult result = answer.Write(buffer);
      krofx::internal::AllocationFailure::FailAt(0);
      failed = result.status == KRBuildStatus_Fatal;
      // The synchronisation has no account.
      EXPECT_TRUE(failed || result.status == KRBuildStatus_MissingTag) << nth << result.status;
    }
    EXPECT_EQ(ContentOf(buffer), "") << nth;
    if (!failed) {
      EXPECT_GT(nth, 20u);
      return;
    }
  }
  FAIL() << "never enough memory";
}

}  // namespace
}  // namespace krofx::testing
