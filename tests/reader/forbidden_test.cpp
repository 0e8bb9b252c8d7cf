// Damage of a kind that must not be mended ends a reading, wherever the damage is.

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "reader/damaged_fronts.h"
#include "reader/damaged_texts.h"
#include "support/readings.h"

namespace krofx::testing {
namespace {

// Reads a text with each kind of its mendings forbidden.
void ExpectEndsAtEachKind(const std::string& text) {
  const Reading whole = Read(text);
  const Lines said = MendingLines(whole);
  for (const MendingKind kind : KindsOf(whole)) {
    SCOPED_TRACE(NameOf(kind));
    ReadOptions options;
    options.mend.Remove(kind);
    const Reading reading = Read(text, options);
    EXPECT_EQ(reading.status, KRParseStatus_Invalid);
    EXPECT_EQ(Str(reading.problem), ProblemWithout(kind));
    for (const std::string& line : MendingLines(reading)) {
      EXPECT_NE(line.substr(0, line.find(' ')), NameOf(kind));
      EXPECT_NE(std::find(said.begin(), said.end(), line), said.end()) << line;
    }
  }
}

TEST(ForbiddenMendings, EndTheReadingOfDamagedTexts) {
  const std::vector<std::string> examples = WholeExamples();
  const std::vector<Damage> kinds = AllDamage();
  for (unsigned seed = 1; seed <= 300; ++seed) {
    SCOPED_TRACE(seed);
    ExpectEndsAtEachKind(MakeDamage(seed, examples, kinds).text);
    if (HasFailure()) return;
  }
}

TEST(ForbiddenMendings, EndTheReadingOfTextsWithDamagedFronts) {
  for (const std::string& text : TextsWithDamagedFronts()) {
    SCOPED_TRACE(text.substr(0, 200));
    EXPECT_FALSE(Read(text).mendings.empty());
    ExpectEndsAtEachKind(text);
  }
}

}  // namespace
}  // namespace krofx::testing
