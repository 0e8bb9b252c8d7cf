// See identifiers.h.

#include "identifiers.h"

#include <algorithm>
#include <iterator>

namespace krofx::command {

namespace {

// Identifiers of people. New ones go here and nowhere else.
constexpr std::string_view kPersonalTags[] = {"N.SSN", "TAXID"};

constexpr std::size_t kShownCharacters = 4;

}  // namespace

bool IsPassword(KRTagID tag) {
  return tag == KRTag_USERPASS || tag == KRTag_NEWUSERPASS || tag == KRTag_ONETIMEPASS ||
         tag == KRTag_TEMPPASS;
}

bool IsPersonal(KRTagID, std::string_view tagText) {
  return std::find(std::begin(kPersonalTags), std::end(kPersonalTags), tagText) !=
         std::end(kPersonalTags);
}

std::string Masked(std::string_view value) {
  if (value.size() <= kShownCharacters) return std::string(value.size(), '*');
  const std::size_t hidden = value.size() - kShownCharacters;
  return std::string(hidden, '*') + std::string(value.substr(hidden));
}

}  // namespace krofx::command
