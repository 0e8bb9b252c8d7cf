// Damages whole texts and requires that reading them gives the tree of the whole text, without
// what the damage lost.
//
// Each text is made from one number, its seed. The tests try a fixed count of them; to try any
// other, say how many, and from which seed on; then it prints how often each kind was tried:
//
//   KROFX_DAMAGED_TEXTS=100000 KROFX_DAMAGE_SEED=1 krofx_reader_tests --gtest_filter='Damage.*'

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <map>

#include "reader/damaged_texts.h"
#include "support/readings.h"

namespace krofx::testing {
namespace {

// The first line in which two texts differ, with the one before it.
std::string Difference(const std::string& read, const std::string& expected) {
  const auto [here, there] =
      std::mismatch(read.begin(), read.end(), expected.begin(), expected.end());
  const auto lines = [](const std::string& text, auto at) {
    const std::size_t place = static_cast<std::size_t>(at - text.begin());
    std::size_t from = place == 0 ? std::string::npos : text.rfind('\n', place - 1);
    if (from != std::string::npos && from > 0) from = text.rfind('\n', from - 1);
    from = from == std::string::npos ? 0 : from + 1;
    return text.substr(from, text.find('\n', place) - from);
  };
  return "read:\n" + lines(read, here) + "\nexpected:\n" + lines(expected, there);
}

unsigned NumberFrom(const char* variable, unsigned usual) {
  const char* const value = std::getenv(variable);
  return value == nullptr ? usual : static_cast<unsigned>(std::strtoul(value, nullptr, 10));
}

TEST(Damage, IsMendedAndLosesNoMoreThanItDestroyed) {
  const std::vector<std::string> examples = WholeExamples();
  ASSERT_FALSE(examples.empty());
  const std::vector<Damage> kinds = AllDamage();
  const unsigned first = NumberFrom("KROFX_DAMAGE_SEED", 1);
  const unsigned count = NumberFrom("KROFX_DAMAGED_TEXTS", 1000);
  std::map<std::string, unsigned> done;
  unsigned failures = 0;
  for (unsigned seed = first; seed < first + count; ++seed) {
    const DamageTrial attempt = MakeDamage(seed, examples, kinds);
    for (const std::string& name : attempt.names) ++done[name];
    const Reading reading = Read(attempt.text);
    std::string names;
    for (const std::string& name : attempt.names) names += (names.empty() ? "" : ", ") + name;
    const std::string read = WrittenBody(reading.root);
    const Lines said = MendingNames(reading);
    bool failed = read != attempt.expected;
    EXPECT_FALSE(failed) << "seed " << seed << ": " << names << "\n"
                         << Difference(read, attempt.expected) << (count == 1 ? attempt.text : "");
    for (const std::string& mending : attempt.mendings) {
      const bool isSaid = std::find(said.begin(), said.end(), mending) != said.end();
      EXPECT_TRUE(isSaid) << "seed " << seed << ": " << names << ": " << mending << " is not said\n"
                          << (count == 1 ? attempt.text : "");
      failed = failed || !isSaid;
    }
    // What is wrong once is wrong often: a few are enough to see it.
    if (failed && ++failures == 40) FAIL() << "and so on";
  }
  if (std::getenv("KROFX_DAMAGED_TEXTS") != nullptr) {
    for (const auto& [name, times] : done) std::printf("%8u  %s\n", times, name.c_str());
  }
  if (count < 1000) return;
  for (const Damage& kind : kinds) EXPECT_NE(done[kind.name], 0u) << kind.name;
}

}  // namespace
}  // namespace krofx::testing
