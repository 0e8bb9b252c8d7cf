// Damage to tags: lost ones, and ones too many.

#include <algorithm>

#include "reader/damage_kinds.h"

namespace krofx::testing {

namespace {

using Type = Token::Type;

// Loses the end tag of an aggregate where what follows shows that it has ended: the end of the
// aggregate around it, or the next of its kind.
bool LoseEnd(Dice& dice, DamagedText& text) {
  Document& document = text.damaged;
  std::vector<std::size_t> places;
  for (std::size_t at = 0; at + 1 < document.tokens.size(); ++at) {
    const Token& token = document.tokens[at];
    const Token& next = document.tokens[at + 1];
    if (token.type != Type::kEnd) continue;
    if (next.type == Type::kEnd || next.Is(Type::kStart, token.tag)) places.push_back(at);
  }
  if (places.empty()) return false;
  document.Remove(dice.OneOf(places));
  return true;
}

// Loses the last end tags.
bool LoseLastEnds(Dice& dice, DamagedText& text) {
  std::vector<Token>& tokens = text.damaged.tokens;
  std::size_t ends = 0;
  while (ends < tokens.size() && tokens[tokens.size() - 1 - ends].type == Type::kEnd) ++ends;
  // The first of them stays: a text that touches the end may have lost its own end.
  if (ends < 2) return false;
  tokens.resize(tokens.size() - 1 - dice.Below(ends - 1));
  return true;
}

// The text breaks off in front of the amount of a transaction: that one is lost, and what follows.
bool BreakOff(Dice& dice, DamagedText& text) {
  Document& expected = text.expected;
  const auto starts =
      expected.Find([](const Token& token) { return token.Is(Type::kStart, "STMTTRN"); });
  if (starts.empty()) return false;
  const std::size_t start = dice.OneOf(starts);
  const std::vector<std::string> open = expected.OpenAt(start);
  if (open.empty() || open.back() != "BANKTRANLIST") return false;
  std::vector<Token>& damaged = text.damaged.tokens;
  const std::size_t from = text.damaged.PlaceOf(expected.tokens[start].number);
  std::size_t amount = from;
  while (amount < damaged.size() && !damaged[amount].Is(Type::kElement, "TRNAMT")) ++amount;
  if (amount >= damaged.size()) return false;
  damaged.resize(from + 1 + dice.Below(amount - from));
  expected.tokens.resize(start);
  for (std::size_t depth = open.size(); depth > 0; --depth) {
    expected.tokens.push_back({Type::kEnd, open[depth - 1], "", 0});
  }
  return true;
}

bool InsertAnywhere(Dice& dice, DamagedText& text, const std::string& literal) {
  const std::size_t inside = text.damaged.tokens.size() - 1;
  text.damaged.Insert(1 + dice.Below(inside), {Type::kLiteral, "", literal, 0});
  return true;
}

bool InsertPrivate(Dice& dice, DamagedText& text) {
  const std::string tags[] = {"<X.BID>3000", "<X.BID>3000</X.BID>", "<X.ORG><X.A>1<X.B>2</X.ORG>"};
  return InsertAnywhere(dice, text, dice.OneOf(tags));
}

bool InsertStrayEnd(Dice& dice, DamagedText& text) {
  const std::string tags[] = {"</NOSUCHTAG>", "</SECLIST>"};
  const std::string& tag = dice.OneOf(tags);
  const auto open =
      text.damaged.Find([](const Token& token) { return token.Is(Type::kStart, "SECLIST"); });
  return open.empty() && InsertAnywhere(dice, text, tag);
}

bool InsertEmpty(Dice& dice, DamagedText& text) {
  Document& document = text.damaged;
  auto amounts =
      document.Find([](const Token& token) { return token.Is(Type::kElement, "TRNAMT"); });
  std::erase_if(amounts, [&document](std::size_t place) {
    return document.OpenAt(place).back() != "STMTTRN";
  });
  if (amounts.empty()) return false;
  const std::string tags[] = {"<DTUSER>", "<DTAVAIL></DTAVAIL>", "<CHECKNUM>", "<REFNUM></REFNUM>",
                              "<SIC>"};
  document.Insert(dice.OneOf(amounts) + 1, {Type::kLiteral, "", dice.OneOf(tags), 0});
  return true;
}

// The list of transactions is in two parts, each with its dates.
bool DivideList(Dice& dice, DamagedText& text) {
  Document& document = text.damaged;
  const auto starts =
      document.Find([](const Token& token) { return token.Is(Type::kStart, "STMTTRN"); });
  if (starts.empty()) return false;
  const std::size_t place = dice.OneOf(starts);
  const std::vector<std::string> open = document.OpenAt(place);
  if (open.empty() || open.back() != "BANKTRANLIST") return false;
  std::size_t start = place;
  while (!document.tokens[start].Is(Type::kStart, "BANKTRANLIST")) --start;
  std::vector<Token> again = {{Type::kEnd, "BANKTRANLIST", "", 0}};
  for (std::size_t at = start; at < place && !document.tokens[at].Is(Type::kStart, "STMTTRN");
       ++at) {
    again.push_back(document.tokens[at]);
    again.back().number = 0;
  }
  document.tokens.insert(document.tokens.begin() + static_cast<std::ptrdiff_t>(place),
                         again.begin(), again.end());
  return true;
}

}  // namespace

std::vector<Damage> DamageToTags() {
  return {
      {"lost end tag", "ends", "missing-end", &LoseEnd},
      {"divided list", "divided list", "joined", &DivideList},
      {"empty element", "empty element", "empty-element", &InsertEmpty},
      {"private tag", "private tag", "private-tag", &InsertPrivate},
      {"stray end tag", "stray end tag", "stray-end", &InsertStrayEnd},
      {"lost last end tags", "the end", "cut-off", &LoseLastEnds},
      {"text that breaks off", "0 break", "cut-off", &BreakOff},
  };
}

}  // namespace krofx::testing
