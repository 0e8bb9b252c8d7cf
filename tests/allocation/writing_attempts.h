// Writing into a buffer that holds something while allocations fail, and what a host sees of it.

#ifndef KROFX_TESTS_ALLOCATION_WRITING_ATTEMPTS_H_
#define KROFX_TESTS_ALLOCATION_WRITING_ATTEMPTS_H_

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>

#include "allocation/sweep.h"
#include "krofx/core/buffer.h"
#include "krofx/core/thread.h"
#include "krofx/host/draft.h"
#include "krofx/host/own.h"
#include "krofx/host/words.h"
#include "krofx/messages/banking/accounts.h"
#include "krofx/messages/banking/statements.h"
#include "support/buffers.h"
#include "support/readings.h"

namespace krofx::testing {

/// What a buffer holds before something is written into it.
inline constexpr char kBefore[] = "before";

/// Looks at what a buffer holds after it was written into.
inline Outcome Judge(KRBuffer& buffer, KRBuildStatus status, const std::string& said) {
  if (status != KRBuildStatus_Done) {
    EXPECT_EQ(Content(buffer), kBefore);
    EXPECT_EQ(buffer.Write('x'), KRBufferOK) << "the buffer cannot be used again";
  }
  KRSetFireAlarm(KRFireAlarm_None);
  return {status == KRBuildStatus_Fatal,
          std::to_string(status) + "\n" + said + "\n" + Content(buffer)};
}

/// What a host sees of a result.
inline std::string Said(const DraftResult& result) {
  std::string said = Str(result.problem);
  for (const MissingTag& missing : result.missing) {
    said += "\n" + Str(missing.path) + ": " + Str(missing.sentence);
  }
  return said;
}

/// Expects a result that was said without memory to say nothing else.
inline void ExpectExhaustedMemory(const DraftResult& result) {
  EXPECT_EQ(result.status, KRBuildStatus_Fatal);
  const std::string problem = Str(result.problem);
  EXPECT_TRUE(problem.empty() || problem == "memory was exhausted") << problem;
  EXPECT_TRUE(result.missing.empty());
}

/// A request for a statement, with its account or without it; null without memory for it.
inline std::unique_ptr<KRBankStatementRq> Question(const Draft& draft, bool hasAccount) {
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

/// Writes a draft that was made in `scope`, and looks at what comes of it.
template <class AnyDraft>
Outcome WriteDraft(AnyDraft& draft, KRBuffer& buffer, FailingScope& scope) {
  const DraftResult result = draft.Write(buffer);
  scope.Pause();
  if (KRGetFireAlarm() != KRFireAlarm_None) ExpectExhaustedMemory(result);
  return Judge(buffer, result.status, Said(result));
}

}  // namespace krofx::testing

#endif  // KROFX_TESTS_ALLOCATION_WRITING_ATTEMPTS_H_
