// Texts are rewritten and drafts are written without memory, after what a buffer holds: whichever
// allocation fails, the status says so and the buffer holds what it held, or nothing is lost.

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>

#include "allocation/sweep.h"
#include "krofx/core/buffer.h"
#include "krofx/host/draft.h"
#include "krofx/host/own.h"
#include "krofx/host/words.h"
#include "krofx/messages/banking/accounts.h"
#include "krofx/messages/banking/statements.h"
#include "krofx/reader/reading.h"
#include "krofx/rewriting/rewrite.h"
#include "krofx/values/utility.h"
#include "support/buffers.h"
#include "support/example_texts.h"
#include "support/readings.h"

namespace krofx::testing {
namespace {

constexpr char kBefore[] = "before";

// Looks at what a buffer holds after it was written into.
Outcome Judge(KRBuffer& buffer, KRBuildStatus status, const std::string& said) {
  if (status != KRBuildStatus_Done) {
    EXPECT_EQ(Content(buffer), kBefore);
    EXPECT_EQ(buffer.Write('x'), KRBufferOK) << "the buffer cannot be used again";
  }
  KRSetFireAlarm(KRFireAlarm_None);
  return {status == KRBuildStatus_Fatal,
          std::to_string(status) + "\n" + said + "\n" + Content(buffer)};
}

Outcome RewriteText(const OfxText& text, TextForm form, const Failure& failure) {
  KRBuffer out(0, 0);
  Put(out, kBefore);
  RewriteOptions options;
  options.form = form;
  KRBuildStatus status;
  {
    const FailingScope scope(failure);
    status = Rewrite(text, out, options);
  }
  return Judge(out, status, "");
}

std::unique_ptr<KRBankStatementRq> Question(const Draft& draft, bool hasAccount) {
  std::unique_ptr<KRBankStatementRq> question = draft.New<KRBankStatementRq>();
  if (question == nullptr || !hasAccount) return question;
  std::unique_ptr<KRBankAccount> account = draft.New<KRBankAccount>();
  if (account == nullptr) return question;
  Set(*account, &KRBankAccount::SetBankID, "211370545");
  Set(*account, &KRBankAccount::SetAccountID, "1");
  if (draft.Version() == 1) {
    account->SetAccountType(KRBankAccountType_CHECKING);
  } else {
    account->SetAccountType2(KRBankAccountType2_CHECKING);
  }
  Give(*question, &KRBankStatementRq::SetBankAcctFrom, std::move(account));
  return question;
}

// What a host sees of a result.
std::string Said(const DraftResult& result) {
  std::string said = Str(result.problem);
  for (const MissingTag& missing : result.missing) {
    said += "\n" + Str(missing.path) + ": " + Str(missing.sentence);
  }
  return said;
}

void ExpectExhaustedMemory(const DraftResult& result) {
  EXPECT_EQ(result.status, KRBuildStatus_Fatal);
  const std::string problem = Str(result.problem);
  EXPECT_TRUE(problem.empty() || problem == "memory was exhausted") << problem;
  EXPECT_TRUE(result.missing.empty());
}

Outcome WriteRequest(u16 version, bool isWhole, const Failure& failure) {
  KRBuffer buffer(0, 0);
  Put(buffer, kBefore);
  FailingScope scope(failure);
  Draft draft(version);
  draft.SignOn({.user = "ada.w",
                .password = "not-a-real-password",
                .organisation = "HARBORFED",
                .institution = "40711",
                .appId = isWhole ? "DEMO" : "",
                .time = Instant(std::chrono::seconds(0))});
  KRTransRq* const wrapper = draft.Add(Question(draft, isWhole));
  if (wrapper != nullptr) Set(*wrapper, &KRTransRq::SetTransUserID, "1");
  const DraftResult result = draft.Write(buffer);
  scope.Pause();
  if (KRGetFireAlarm() != KRFireAlarm_None) ExpectExhaustedMemory(result);
  return Judge(buffer, result.status, Said(result));
}

TEST(FailedAllocations, EndARewritingAsFatalOrLoseNothing) {
  for (const auto& [name, text] : ExampleTexts(".ofx")) {
    SCOPED_TRACE(name);
    const Reading reading = Read(std::string_view(text));
    for (const TextForm form : {TextForm::kOfx1, TextForm::kOfx2}) {
      Sweep([&](const Failure& failure) { return RewriteText(reading.texts[0], form, failure); });
    }
    if (::testing::Test::HasFailure()) return;
  }
}

TEST(FailedAllocations, EndADraftAsFatalOrLoseNothing) {
  for (const u16 version : {u16{1}, u16{2}}) {
    SCOPED_TRACE(version);
    Sweep([&](const Failure& failure) { return WriteRequest(version, true, failure); });
  }
}

TEST(FailedAllocations, EndAnIncompleteDraftAsFatalOrSayAllThatIsMissing) {
  for (const u16 version : {u16{1}, u16{2}}) {
    SCOPED_TRACE(version);
    Sweep([&](const Failure& failure) { return WriteRequest(version, false, failure); });
  }
}

}  // namespace
}  // namespace krofx::testing
