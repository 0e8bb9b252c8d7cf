// Looks through a reply for statuses of severity ERROR, and says what they mean.

#include "exchange/refusals.h"

#include <string_view>

namespace krofx::command {

namespace {

struct Meaning {
  std::string_view code;
  std::string_view text;
};

// The codes of the OFX standard that a user can do something about.
constexpr Meaning kMeanings[] = {
    {"2003", "it does not know the account; check its number"},
    {"2004", "the account is closed"},
    {"2005", "you have no right to the account"},
    {"2020", "the date is not valid"},
    {"2027", "the span of days is not valid"},
    {"15000", "the password must be changed first"},
    {"15500", "user or password is wrong; several attempts may lock the account"},
    {"15501", "somebody else is signed on; try again later"},
    {"15502", "the sign-on is locked; ask the institution"},
};

std::string ValueOf(const Element& element, std::string_view tag) {
  const Element* const found = element.Find(tag);
  return std::string(found == nullptr ? "" : found->value);
}

std::string Describe(std::string_view where, const Element& status) {
  const std::string code = ValueOf(status, "CODE");
  std::string text = where == "SONRS" ? "the institution refused the sign-on"
                                      : "the institution refused <" + std::string(where) + ">";
  text += ": status " + code;
  for (const Meaning& meaning : kMeanings) {
    if (meaning.code == code) text += ", " + std::string(meaning.text);
  }
  std::string message = ValueOf(status, "MESSAGE");
  if (message.empty()) message = ValueOf(status, "MESSAGE2");
  return message.empty() ? text : text + " (\"" + message + "\")";
}

void Find(const Element& element, std::vector<std::string>& refusals) {
  for (const Element& child : element.children) {
    if (child.tag == "STATUS" && ValueOf(child, "SEVERITY") == "ERROR") {
      refusals.push_back(Describe(element.tag, child));
    } else {
      Find(child, refusals);
    }
  }
}

}  // namespace

std::vector<std::string> FindRefusals(const Element& file) {
  std::vector<std::string> refusals;
  Find(file, refusals);
  return refusals;
}

}  // namespace krofx::command
