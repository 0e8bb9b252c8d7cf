// Damage to values: numbers, dates and words in other forms, and values that are none.

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>

#include "reader/damage_kinds.h"

namespace krofx::testing {

namespace {

using Type = Token::Type;

// The tags whose elements have one kind of value wherever they are.
class TagsByKind {
 public:
  TagsByKind() {
    const std::regex row("^\\s+([A-Z0-9._]+)\\s+([A-Za-z0-9]+).*");
    for (const auto& entry : std::filesystem::recursive_directory_iterator(KROFX_SCHEMAS)) {
      if (entry.path().extension() != ".schema") continue;
      std::ifstream file(entry.path());
      std::smatch match;
      for (std::string line; std::getline(file, line);) {
        if (std::regex_match(line, match, row)) m_kinds[match[1]].insert(match[2]);
      }
    }
  }
  bool Is(const std::string& tag, const std::string& kind) const {
    const auto found = m_kinds.find(tag);
    return found != m_kinds.end() && found->second == std::set<std::string>{kind};
  }

 private:
  std::map<std::string, std::set<std::string>> m_kinds;
};

std::vector<std::size_t> ElementsOf(const Document& document, const std::string& kind) {
  static const TagsByKind kTags;
  return document.Find([&kind](const Token& token) {
    return token.type == Type::kElement && token.number != 0 && kTags.Is(token.tag, kind);
  });
}

bool IsPlainNumber(const std::string& value) {
  return std::regex_match(value, std::regex("-?([0-9]+(\\.[0-9]+)?|\\.[0-9]+)"));
}

// A number in another style.
std::string InStyle(const std::string& value, char decimal, const std::string& group) {
  const std::size_t sign = value[0] == '-' ? 1 : 0;
  const std::size_t point = std::min(value.find('.'), value.size());
  std::string text = value.substr(0, sign);
  for (std::size_t at = sign; at < point; ++at) {
    if (at > sign && (point - at) % 3 == 0) text += group;
    text += value[at];
  }
  if (point < value.size()) text += decimal + value.substr(point + 1);
  return text;
}

// Whether a number does not show what its only sign means.
bool IsAmbiguous(const std::string& text) {
  return std::regex_match(text, std::regex("-?[1-9][0-9]{0,2}[.,][0-9]{3}"));
}

// Writes all numbers in a style, when those of each element show what those mean that do not show
// it themselves.
bool WriteNumbers(Dice& dice, DamagedText& text) {
  Document& document = text.damaged;
  const std::pair<char, std::string> styles[] = {{',', ""},  {',', "."}, {',', " "}, {',', "'"},
                                                 {'.', ","}, {'.', " "}, {'.', "'"}};
  const auto& [decimal, group] = dice.OneOf(styles);
  const std::vector<std::size_t> places = ElementsOf(document, "amount");
  std::map<std::string, bool> shown;
  std::map<std::string, bool> asked;
  bool changed = false;
  for (const std::size_t place : places) {
    const Token& token = document.tokens[place];
    if (!IsPlainNumber(token.value)) return false;
    const std::string styled = InStyle(token.value, decimal, group);
    changed = changed || styled != token.value;
    (IsAmbiguous(styled) ? asked : shown)[token.tag] |=
        IsAmbiguous(styled) || styled.find(decimal) != std::string::npos;
  }
  for (const auto& [tag, is] : asked) {
    if (!shown[tag]) return false;
  }
  if (!changed) return false;
  for (const std::size_t place : places) {
    std::string& value = document.tokens[place].value;
    value = InStyle(value, decimal, group);
  }
  return true;
}

// Changes one value of a kind that `change` can change.
template <class Change>
bool ChangeOne(Dice& dice, DamagedText& text, const std::string& kind, Change change) {
  std::vector<std::size_t> places = ElementsOf(text.damaged, kind);
  const std::size_t last = text.damaged.tokens.size() - 1;
  // A value that the end of the text cuts is lost whatever it is.
  const bool isCut =
      text.expected.PlaceOf(text.damaged.tokens[last].number) >= text.expected.tokens.size();
  if (isCut && !places.empty() && places.back() == last) places.pop_back();
  while (!places.empty()) {
    const std::size_t at = dice.Below(places.size());
    Token& token = text.damaged.tokens[places[at]];
    const std::string changed = change(token.value);
    if (!changed.empty()) {
      token.value = changed;
      return true;
    }
    places.erase(places.begin() + static_cast<std::ptrdiff_t>(at));
  }
  return false;
}

bool MoveSign(Dice& dice, DamagedText& text) {
  const std::size_t form = dice.Below(4);
  return ChangeOne(dice, text, "amount", [form](const std::string& value) -> std::string {
    if (value[0] != '-' || value.find_first_of("0123456789") == std::string::npos) return {};
    const std::string rest = value.substr(1);
    const std::string forms[] = {rest + "-", "(" + rest + ")", rest + " DR", "&minus;" + rest};
    return forms[form];
  });
}

bool Decorate(Dice& dice, DamagedText& text) {
  const std::size_t form = dice.Below(4);
  return ChangeOne(dice, text, "amount", [form](const std::string& value) {
    const std::string forms[] = {"$" + value, "USD " + value, value + " EUR", "R$ " + value};
    return forms[form];
  });
}

// A date in another form; nothing for one that has none.
std::string DateInForm(const std::string& value, std::size_t form) {
  static const std::regex date(
      "([0-9]{4})([0-9]{2})([0-9]{2})(([0-9]{2})([0-9]{2})([0-9]{2}))?"
      "(\\.[0-9]{3})?(\\[(-?[0-9]+)(:[A-Z]{3})?\\])?");
  std::smatch match;
  if (!std::regex_match(value, match, date)) return {};
  const bool hasTime = match[4].matched;
  const std::string rest = match[8].str() + match[9].str();
  const std::string signs[] = {"-", "/", "."};
  if (form < 3) {
    const std::string day =
        match[1].str() + signs[form] + match[2].str() + signs[form] + match[3].str();
    if (!hasTime) return day + rest;
    return day + (form == 0 ? "T" : " ") + match[5].str() + ":" + match[6].str() + ":" +
           match[7].str() + rest;
  }
  return hasTime && !rest.empty() && match[8].matched
             ? match[1].str() + match[2].str() + match[3].str() + match[4].str() + ":" +
                   rest.substr(1)
             : std::string();
}

bool WriteDate(Dice& dice, DamagedText& text) {
  const std::size_t form = dice.Below(4);
  return ChangeOne(dice, text, "KRDateTime",
                   [form](const std::string& value) { return DateInForm(value, form); });
}

bool OpenZone(Dice& dice, DamagedText& text) {
  const std::size_t form = dice.Below(2);
  return ChangeOne(dice, text, "KRDateTime", [form](const std::string& value) -> std::string {
    const std::size_t open = value.find('[');
    if (open == std::string::npos || !value.ends_with(']')) return {};
    std::string changed = value.substr(0, value.size() - 1);
    // A zone that has no sign is known only by its bracket.
    if (form == 0 && changed[open + 1] == '-') changed.erase(open, 1);
    return changed;
  });
}

bool WriteBoolean(Dice& dice, DamagedText& text) {
  const std::size_t form = dice.Below(4);
  return ChangeOne(dice, text, "boolean", [form](const std::string& value) -> std::string {
    const std::string yes[] = {"true", "1", "yes", "y"};
    const std::string no[] = {"false", "0", "NO", "n"};
    return value == "Y" ? yes[form] : value == "N" ? no[form] : "";
  });
}

// Makes a value of a kind none, so that exactly it is lost.
Damage Losing(const std::string& name, const std::string& kind, const std::string& mending,
              const std::string& value) {
  return {name, "lost " + kind, mending, [=](Dice& dice, DamagedText& text) {
            const std::vector<std::size_t> places = ElementsOf(text.damaged, kind);
            if (places.empty()) return false;
            Token& token = text.damaged.tokens[dice.OneOf(places)];
            const std::size_t place = text.expected.PlaceOf(token.number);
            if (place == text.expected.tokens.size()) return false;
            // One that was changed before is another, and a list that is divided has its dates
            // twice.
            const Token& whole = text.expected.tokens[place];
            if (whole.value != token.value || token.tag == "DTSTART" || token.tag == "DTEND") {
              return false;
            }
            token.value = value;
            text.expected.Remove(place);
            return true;
          }};
}

bool NameOtherType(Dice& dice, DamagedText& text) {
  const auto isType = [](const Token& token) { return token.Is(Type::kElement, "TRNTYPE"); };
  const std::vector<std::size_t> places = text.damaged.Find(isType);
  if (places.empty()) return false;
  Token& token = text.damaged.tokens[dice.OneOf(places)];
  const std::size_t place = text.expected.PlaceOf(token.number);
  if (place == text.expected.tokens.size()) return false;
  token.value = "TRANSFERENCIA PIX";
  text.expected.tokens[place].value = "OTHER";
  return true;
}

}  // namespace

std::vector<Damage> DamageToValues() {
  return {
      {"style of numbers", "1 numbers", "", &WriteNumbers},
      {"moved sign", "2 signs", "amount-sign", &MoveSign},
      {"currency", "3 currency", "amount-decoration", &Decorate},
      {"form of a date", "date", "date-form", &WriteDate},
      {"zone without a bracket", "date", "date-zone", &OpenZone},
      {"word for yes or no", "boolean", "boolean", &WriteBoolean},
      {"unknown transaction type", "type", "transaction-type", &NameOtherType},
      Losing("date of zeros", "KRDateTime", "date-absent", "00000000"),
      Losing("date that does not exist", "KRDateTime", "date-refused", "20260231"),
      Losing("no number", "amount", "amount-absent", "None"),
      Losing("number that is none", "amount", "number-refused", "many"),
      Losing("word for no boolean", "boolean", "keyword-refused", "perhaps"),
  };
}

std::vector<Damage> AllDamage() {
  std::vector<Damage> all = DamageToForm();
  for (std::vector<Damage>& more :
       std::vector<std::vector<Damage>>{DamageToTags(), DamageToValues()}) {
    all.insert(all.end(), more.begin(), more.end());
  }
  return all;
}

}  // namespace krofx::testing
