// Damage of a kind that must not be mended ends a reading, wherever the damage is.

#include <gtest/gtest.h>

#include <string>

#include "reader/damaged_fronts.h"
#include "reader/damaged_texts.h"
#include "reader/ended_readings.h"
#include "support/readings.h"

namespace krofx::testing {
namespace {

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
