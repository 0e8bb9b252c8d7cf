// Damaged texts are read and streamed without memory: whichever allocation fails, the status says
// so or nothing is lost, no mending either.

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <string_view>

#include "allocation/reading_attempts.h"
#include "allocation/sweep.h"
#include "reader/damaged_texts.h"
#include "support/example_texts.h"
#include "support/failing_allocation.h"

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

// What a host sees of the list of all that was out of order in a text.
Outcome ListNotes(const Reading& reading, const Failure& failure) {
  List<ReadNote> notes;
  {
    const FailingScope scope(failure);
    notes = reading.Warnings();
  }
  std::string shown;
  for (const ReadNote& note : notes) {
    shown += std::to_string(note.offset) + " " + Str(note.path) + " <" + Str(note.tag) + "> " +
             Str(note.kind) + " " + Str(note.sentence) + " " + Str(note.was) + " " +
             Str(note.taken) + "\n";
  }
  return {AlarmIsSet(), shown};
}

TEST(FailedAllocations, EndTheListOfDamageWithTheAlarmOrLoseNothing) {
  const Reading reading = Read(std::string_view(ExampleTexts().at("quirks.ofx")));
  ASSERT_GT(reading.mendings.size(), 5u);
  Sweep([&](const Failure& failure) { return ListNotes(reading, failure); });
}

TEST(FailedAllocations, EndAStreamAsFatalOrLoseNothing) {
  SweepDamagedTexts([](const std::string& text, const Failure& failure) {
    return StreamText(text, {}, failure);
  });
}

TEST(FailedAllocations, EndAMendedStreamAsFatalOrLoseNothing) {
  SweepDamagedTexts([](const std::string& text, const Failure& failure) {
    return StreamText(text, {.mends = true}, failure);
  });
}

TEST(FailedAllocations, EndAMendedStreamOfPiecesAsFatalOrLoseNothing) {
  SweepDamagedTexts([](const std::string& text, const Failure& failure) {
    return StreamText(text, {.mends = true, .piece = 999}, failure);
  });
}

}  // namespace
}  // namespace krofx::testing
