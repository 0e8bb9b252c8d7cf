// Compares texts with the names of the tags of passwords, by the number of edits between them.

#include "krofx/core/internal/passwords.h"

#include <algorithm>
#include <iterator>
#include <numeric>

#include "krofx/core/parse_logger.h"

namespace krofx::internal {

namespace {

struct PasswordTag {
  KRTagID tag;
  std::string_view name;
};

// The tags of passwords: their values are never shown, nor what follows a damaged one.
constexpr PasswordTag kPasswordTags[] = {
    {KRTag_USERPASS, "USERPASS"},
    {KRTag_NEWUSERPASS, "NEWUSERPASS"},
    {KRTag_ONETIMEPASS, "ONETIMEPASS"},
    {KRTag_TEMPPASS, "TEMPPASS"},
};

constexpr std::size_t kLongestName =
    std::max_element(std::begin(kPasswordTags), std::end(kPasswordTags),
                     [](const PasswordTag& left, const PasswordTag& right) {
                       return left.name.size() < right.name.size();
                     })
        ->name.size();
constexpr std::size_t kMostEdits = 2;

char Upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

// How many of the first characters that an iterator goes over are most like a name; 0 when none are
// at most kMostEdits edits away from it.
template <typename Text, typename Name>
std::size_t LengthOfNear(Text text, std::size_t size, Name name, std::size_t length) {
  // The edits from the whole name to none, one, two ... characters of the text, column by column.
  std::size_t edits[kLongestName + 1];
  std::iota(std::begin(edits), std::end(edits), std::size_t{0});
  std::size_t least = kMostEdits + 1;
  std::size_t best = 0;
  size = std::min(size, length + kMostEdits);
  for (std::size_t column = 1; column <= size; ++column, ++text) {
    std::size_t diagonal = edits[0];
    edits[0] = column;
    std::size_t fewest = column;
    for (std::size_t row = 1; row <= length; ++row) {
      const std::size_t left = edits[row];
      const std::size_t other = Upper(*text) == name[static_cast<std::ptrdiff_t>(row) - 1] ? 0 : 1;
      edits[row] = std::min({edits[row - 1] + 1, left + 1, diagonal + other});
      fewest = std::min(fewest, edits[row]);
      diagonal = left;
    }
    // More characters do not make the edits fewer.
    if (fewest > kMostEdits) break;
    if (edits[length] < least) {
      least = edits[length];
      best = column;
    }
  }
  return best;
}

}  // namespace

bool IsSecret(KRTagID tag) noexcept {
  // A user key stands in for the password of a sign-on. Damage to its tag is not looked for: it is
  // so like USERID that users would be hidden too.
  return tag == KRTag_USERKEY ||
         std::any_of(std::begin(kPasswordTags), std::end(kPasswordTags),
                     [tag](const PasswordTag& each) { return each.tag == tag; });
}

bool HoldsPasswords(KRTagID aggregate) noexcept {
  return aggregate == KRTag_SONRQ || aggregate == KRTag_PINCHRQ || aggregate == KRTag_ENROLLRS;
}

bool EndsWithPasswordTag(std::string_view name) noexcept {
  return std::any_of(std::begin(kPasswordTags), std::end(kPasswordTags), [name](const auto& each) {
    return LengthOfNear(name.rbegin(), name.size(), each.name.rbegin(), each.name.size()) != 0;
  });
}

std::size_t LengthOfPasswordTag(std::string_view name) noexcept {
  const std::size_t slash = name.starts_with('/') ? 1 : 0;
  name.remove_prefix(slash);
  for (const PasswordTag& each : kPasswordTags) {
    const std::size_t length =
        LengthOfNear(name.begin(), name.size(), each.name.begin(), each.name.size());
    if (length != 0) return slash + length;
  }
  return 0;
}

std::size_t FindPasswordTag(std::string_view text) noexcept {
  for (std::size_t at = text.find_first_of("<>"); at != std::string_view::npos;
       at = text.find_first_of("<>", at + 1)) {
    if (text[at] == '<') {
      if (LengthOfPasswordTag(text.substr(at + 1)) != 0) return at;
      continue;
    }
    const std::string_view before = text.substr(0, at);
    if (!EndsWithPasswordTag(before)) continue;
    const std::size_t end = before.find_last_of(" \t\r\n<>");
    return end == std::string_view::npos ? 0 : end + 1;
  }
  return std::string_view::npos;
}

}  // namespace krofx::internal
