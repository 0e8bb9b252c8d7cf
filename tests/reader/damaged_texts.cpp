// Making texts with damage.

#include "reader/damaged_texts.h"

#include <algorithm>
#include <filesystem>
#include <map>

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

}  // namespace

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

DamageTrial MakeDamage(unsigned seed, const std::vector<std::string>& examples,
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
  DamageTrial attempt;
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

}  // namespace krofx::testing
