// Damage of a kind that must not be mended ends a stream, wherever the damage is.

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "reader/damaged_fronts.h"
#include "reader/damaged_texts.h"
#include "stream/streamed.h"

namespace krofx::testing {
namespace {

// Streams a text in pieces of `size` bytes; 0 for the whole text from memory.
void ExpectEndsAt(MendingKind kind, const std::string& text, std::size_t size) {
  SCOPED_TRACE(std::string(NameOf(kind)) + " in pieces of " + std::to_string(size));
  StreamOptions options = MendingOptions();
  options.mend.Remove(kind);
  Stream stream(options);
  WantMuch(stream);
  Streamed out;
  Pour(stream, text, size, out);
  EXPECT_EQ(stream.State(), StreamState::kEnded);
  EXPECT_EQ(stream.Status(), KRParseStatus_Invalid);
  EXPECT_EQ(Str(stream.Problem()), ProblemWithout(kind));
  for (const Mending& mending : stream.Mendings()) EXPECT_NE(mending.kind, kind);
}

// Streams a text with each kind of its mendings forbidden.
void ExpectEndsAtEachKind(const std::string& text) {
  const std::set<MendingKind> met = KindsOf(Read(text));
  // A stream refuses them.
  if (met.contains(MendingKind::kWideCharacters) || met.contains(MendingKind::kMultipartDamage)) {
    return;
  }
  for (const MendingKind kind : met) {
    ExpectEndsAt(kind, text, 0);
    ExpectEndsAt(kind, text, 100);
  }
}

TEST(ForbiddenMendings, EndTheStreamOfDamagedTexts) {
  const std::vector<std::string> examples = WholeExamples();
  const std::vector<Damage> kinds = AllDamage();
  for (unsigned seed = 1; seed <= 150; ++seed) {
    SCOPED_TRACE(seed);
    ExpectEndsAtEachKind(MakeDamage(seed, examples, kinds).text);
    if (HasFailure()) return;
  }
}

TEST(ForbiddenMendings, EndTheStreamOfTextsWithDamagedFronts) {
  for (const std::string& text : TextsWithDamagedFronts()) {
    SCOPED_TRACE(text.substr(0, 200));
    ExpectEndsAtEachKind(text);
  }
}

}  // namespace
}  // namespace krofx::testing
