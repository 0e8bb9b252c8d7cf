// Texts are rewritten and drafts are written without memory, after what a buffer holds: whichever
// allocation fails, the status says so and the buffer holds what it held, or nothing is lost.

#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "allocation/sweep.h"
#include "allocation/writing_attempts.h"
#include "krofx/core/buffer.h"
#include "krofx/host/draft.h"
#include "krofx/host/words.h"
#include "krofx/reader/reading.h"
#include "krofx/rewriting/rewrite.h"
#include "krofx/values/utility.h"
#include "support/buffers.h"
#include "support/example_texts.h"

namespace krofx::testing {
namespace {

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
  return WriteDraft(draft, buffer, scope);
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
