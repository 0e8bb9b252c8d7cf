// Answers are drafted without memory, as a server drafts them: whichever allocation fails, the
// status says so and the buffer holds what it held, or nothing is lost.

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>
#include <utility>

#include "allocation/sweep.h"
#include "allocation/writing_attempts.h"
#include "krofx/core/buffer.h"
#include "krofx/host/amounts.h"
#include "krofx/host/draft.h"
#include "krofx/host/look.h"
#include "krofx/host/own.h"
#include "krofx/host/words.h"
#include "krofx/messages/banking/accounts.h"
#include "krofx/messages/banking/statements.h"
#include "krofx/messages/banking/transfers.h"
#include "krofx/messages/investment/securities.h"
#include "krofx/reader/reading.h"
#include "support/buffers.h"
#include "support/example_texts.h"

namespace krofx::testing {
namespace {

std::unique_ptr<KRBankStatementRs> Statement(const ResponseDraft& draft,
                                             const KRBankStatementRq& question) {
  std::unique_ptr<KRBankStatementRs> answer = draft.New<KRBankStatementRs>();
  std::unique_ptr<KRLedgerBalance> balance = draft.New<KRLedgerBalance>();
  if (answer == nullptr || balance == nullptr) return answer;
  balance->SetBalAmt(FromMinor(128841, 2));
  Set(*balance, &KRLedgerBalance::SetDtAsOf, "20260131");
  Set(*answer, &KRBankStatementRs::SetCurrencyDefault, "USD");
  if (question.GetBankAcctFrom() != nullptr) {
    Give(*answer, &KRBankStatementRs::SetBankAcctFrom, Clone(*question.GetBankAcctFrom()));
  }
  Give(*answer, &KRBankStatementRs::SetLedgerBal, std::move(balance));
  return answer;
}

// A synchronisation that brings a refusal.
std::unique_ptr<KRSyncRs> Synchronisation(const ResponseDraft& draft, const KRAccount& account) {
  std::unique_ptr<KRSyncRs> sync = draft.NewSync(KRTag_INTRASYNCRS, "18");
  if (sync != nullptr) Give(*sync, &KRSyncRs::SetAccount, Clone(account));
  return sync;
}

// A request for a statement and one for its closings, as a server has read them.
Reading Questions(u16 version) {
  Draft draft(version);
  draft.SignOn({.user = "ada.w", .password = "not-a-real-password", .appId = "DEMO"});
  auto statement = Question(draft, true);
  auto closings = draft.New<KRStatementEndRq>();
  Give(*closings, &KRStatementEndRq::SetBankAcctFrom, Clone(*statement->GetBankAcctFrom()));
  KRTransRq* const first = draft.Add(std::move(statement));
  KRTransRq* const second = draft.Add(std::move(closings));
  Set(*first, &KRTransRq::SetTransUserID, "1");
  Set(*second, &KRTransRq::SetTransUserID, "2");
  Set(*second, &KRTransRq::SetClientCookie, "biscuit");
  KRBuffer text(0, 0);
  EXPECT_TRUE(draft.Write(text));
  return Read(text);
}

// Answers all requests with what a server says to them.
Outcome WriteAnswers(const Reading& questions, u16 version, bool isWhole, const Failure& failure) {
  KRBuffer buffer(0, 0);
  Put(buffer, kBefore);
  FailingScope scope(failure);
  ResponseDraft draft(version);
  draft.SignOn({.message = isWhole ? "welcome" : "",
                .organisation = "HARBORFED",
                .institution = "40711",
                .time = Instant(std::chrono::seconds(0))});
  for (const auto& request : Each<KRTransRq>(questions)) {
    const auto* const question = dynamic_cast<const KRBankStatementRq*>(request->GetActualTrans());
    if (question == nullptr) {
      draft.Refuse(*request, 2000, "not today");
      continue;
    }
    draft.Add(Statement(draft, *question), *request);
    if (isWhole) draft.Add(Synchronisation(draft, *question->GetBankAcctFrom()));
  }
  if (!isWhole) draft.Add(draft.NewSync(KRTag_INTRASYNCRS, "18"));
  draft.Add(draft.New<KRSecList>());
  return WriteDraft(draft, buffer, scope);
}

void SweepAnswers(bool isWhole, KRBuildStatus expected) {
  for (const u16 version : {u16{1}, u16{2}}) {
    SCOPED_TRACE(version);
    const Reading questions = Questions(version);
    const Outcome answers = WriteAnswers(questions, version, isWhole, {});
    ASSERT_TRUE(answers.shown.starts_with(std::to_string(expected) + "\n")) << answers.shown;
    Sweep(
        [&](const Failure& failure) { return WriteAnswers(questions, version, isWhole, failure); });
  }
}

TEST(FailedAllocations, EndAnAnswerAsFatalOrLoseNothing) { SweepAnswers(true, KRBuildStatus_Done); }

TEST(FailedAllocations, EndAnIncompleteAnswerAsFatalOrSayAllThatIsMissing) {
  SweepAnswers(false, KRBuildStatus_MissingTag);
}

}  // namespace
}  // namespace krofx::testing
