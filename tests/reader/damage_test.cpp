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
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <set>

#include "reader/damage_kinds.h"
#include "support/readings.h"

namespace krofx::testing {
namespace {

// What the strict parser makes of a text in which nothing is wrong but that something may be
// missing; nothing for another.
std::string ParsedBody(const std::string& text) {
  ReadOptions options;
  options.strict = true;
  const Reading reading = Read(text, options);
  const bool clean =
      std::all_of(reading.warnings.begin(), reading.warnings.end(),
                  [](const ReadWarning& warning) { return warning.warning == KRPW_MISSINGTAG; });
  const bool read =
      reading.status == KRParseStatus_Accepted || reading.status == KRParseStatus_Warnings;
  return clean && read ? WrittenBody(reading.root) : std::string();
}

std::string RandomTransaction(Dice& dice, std::size_t number) {
  const std::string types[] = {"DEBIT", "CREDIT", "CHECK", "ATM", "FEE", "XFER"};
  const std::string dates[] = {"20260105", "20260117101500", "20260123235959.123[-5:EST]",
                               "20260130000000[5.50:IST]"};
  const std::string amounts[] = {"-12.34",      "250.00", "-7",    "1234.56",
                                 "-1234567.89", ".5",     "0.125", "-98765"};
  const std::string memos[] = {"", "", "<MEMO>coffee &amp; cake", "<MEMO>1,234.56 at 10:30"};
  std::string text = "<TRNTYPE>" + dice.OneOf(types) + "<DTPOSTED>" + dice.OneOf(dates);
  if (dice.Below(3) == 0) text += "<DTUSER>" + dice.OneOf(dates);
  text += "<TRNAMT>" + dice.OneOf(amounts) + "<FITID>F" + std::to_string(number);
  if (dice.Below(4) == 0) text += "<CHECKNUM>" + std::to_string(dice.Below(10000));
  return Aggregate("STMTTRN",
                   text + "<NAME>Shop " + std::to_string(dice.Below(100)) + dice.OneOf(memos));
}

std::string RandomStatement(Dice& dice) {
  std::string transactions;
  for (std::size_t number = 1 + dice.Below(6); number > 0; --number) {
    transactions += RandomTransaction(dice, number);
  }
  return BankStatementFile(transactions);
}

// The examples that are in order, as the builder writes them.
std::vector<std::string> WholeExamples() {
  std::set<std::filesystem::path> paths;
  for (const auto& entry : std::filesystem::directory_iterator(KROFX_EXAMPLES)) {
    if (entry.path().extension() == ".ofx") paths.insert(entry.path());
  }
  std::vector<std::string> texts;
  ReadOptions options;
  options.strict = true;
  for (const std::filesystem::path& path : paths) {
    const Reading reading = Read(path, options);
    if (reading.status != KRParseStatus_Accepted) continue;
    if (reading.texts[0].kind == TextKind::kMultipart) continue;
    texts.push_back(Written(reading.root));
  }
  return texts;
}

// Damage done to one text.
struct Attempt {
  std::string text;
  std::string expected;
  Lines names;
  std::set<std::string> mendings;
};

Attempt Damaged(unsigned seed, const std::vector<std::string>& examples,
                const std::vector<Damage>& kinds) {
  Dice dice(seed);
  const std::string whole =
      dice.Below(2) == 0 ? RandomStatement(dice) : examples[dice.Below(examples.size())];
  ReadOptions options;
  options.strict = true;
  const Document document(Written(Read(whole, options).root));
  DamagedText text{document, document};
  std::map<std::string, const Damage*> chosen;
  for (std::size_t count = 1 + dice.Below(5); count > 0; --count) {
    const Damage& damage = kinds[dice.Below(kinds.size())];
    chosen[damage.group] = &damage;
  }
  Attempt attempt;
  for (const auto& [group, damage] : chosen) {
    if (!damage->inflict(dice, text)) continue;
    attempt.names.push_back(damage->name);
    if (!damage->mending.empty()) attempt.mendings.insert(damage->mending);
  }
  // Where the text breaks off, its missing ends are not said one by one.
  if (attempt.mendings.contains("cut-off")) attempt.mendings.erase("missing-end");
  attempt.text = text.damaged.Text();
  attempt.expected = ParsedBody(text.expected.Text());
  return attempt;
}

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
    const Attempt attempt = Damaged(seed, examples, kinds);
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
      EXPECT_TRUE(isSaid) << "seed " << seed << ": " << names << ": " << mending << " is not said";
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
