// Damaged texts are read and streamed without memory: whichever allocation fails, the status says
// so or nothing is lost, no mending either.

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "allocation/reading_attempts.h"
#include "allocation/sweep.h"
#include "reader/damaged_texts.h"

namespace krofx::testing {
namespace {

// Calls `attempt(text, failure)` for each of some damaged texts and each failure.
template <class Attempt>
void SweepDamagedTexts(Attempt attempt) {
  constexpr unsigned kSample = 60;
  constexpr unsigned kWhole = 300;
  const std::vector<std::string> examples = WholeExamples();
  const std::vector<Damage> kinds = AllDamage();
  for (unsigned seed = 1; seed <= (SweepsWhole() ? kWhole : kSample); ++seed) {
    const std::string text = MakeDamage(seed, examples, kinds).text;
    SCOPED_TRACE("seed " + std::to_string(seed));
    Sweep([&](const Failure& failure) { return attempt(text, failure); });
    if (::testing::Test::HasFailure()) return;
  }
}

TEST(FailedAllocations, EndAReadingOfDamageAsFatalOrLoseNothing) { SweepDamagedTexts(&ReadText); }

TEST(FailedAllocations, EndAStreamAsFatalOrLoseNothing) {
  SweepDamagedTexts([](const std::string& text, const Failure& failure) {
    return StreamText(text, false, 0, failure);
  });
}

TEST(FailedAllocations, EndAMendedStreamAsFatalOrLoseNothing) {
  SweepDamagedTexts([](const std::string& text, const Failure& failure) {
    return StreamText(text, true, 0, failure);
  });
}

TEST(FailedAllocations, EndAMendedStreamOfPiecesAsFatalOrLoseNothing) {
  SweepDamagedTexts([](const std::string& text, const Failure& failure) {
    return StreamText(text, true, 999, failure);
  });
}

}  // namespace
}  // namespace krofx::testing
