// The lines that a transport writes to the host's log.

#include "krofx/transport/exchange/internal/log_line.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <string_view>

#include "krofx/core/memory.h"
#include "krofx/transport/contract/net_access.h"
#include "krofx/transport/files/internal/file_url.h"

namespace krofx::internal {

namespace {

constexpr std::size_t kUsualLine = 2048;

constexpr std::string_view kDigits = "0123456789";
constexpr std::string_view kUserCharacters =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~+";
constexpr std::string_view kAddressCharacters = "0123456789ABCDEFabcdef:.";

// A part of a text: from the first place up to the second.
struct Span {
  std::size_t begin;
  std::size_t end;
};

// Where user, host and port begin: after the scheme and its slashes, of which HTTP libraries accept
// one to three, or at the start of a URL without a scheme.
std::size_t AuthorityOf(std::string_view url) {
  const std::size_t scheme =
      url.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+-.");
  if (scheme == std::string_view::npos || url.substr(scheme, 2) != ":/") return 0;
  const std::size_t after = url.find_first_not_of('/', scheme + 1);
  return after == std::string_view::npos ? url.size() : after;
}

// The part of a URL that is not shown. If the text does not clearly have the form scheme, slashes,
// user, colon, password, that is everything before the last '@', since it could contain a secret.
Span SecretOf(std::string_view url) {
  constexpr auto kNone = std::string_view::npos;
  const Span nothing = {0, 0};
  if (HasFileScheme(url.data())) return nothing;
  const std::size_t begin = AuthorityOf(url);
  const std::size_t lastAt = url.rfind('@');
  const std::size_t authorityEnd = std::min(url.find_first_of("/?#", begin), url.size());
  const bool hasScheme = begin > 0;
  std::size_t colon = url.find(':', begin);
  if (url.substr(begin, 1) == "[") {
    // The colons in a numeric address are not separators.
    const std::size_t address = url.find_first_not_of(kAddressCharacters, begin + 1);
    if (address == kNone || url[address] != ']') {
      return lastAt == kNone || lastAt < begin ? nothing : Span{begin, lastAt};
    }
    colon = url.find(':', address);
  } else if (lastAt != kNone && lastAt > begin) {
    const std::size_t user = std::min(url.find_first_not_of(kUserCharacters, begin), lastAt);
    const bool plain = hasScheme ? user == lastAt || url[user] == ':' || user == authorityEnd
                                 : user == lastAt || (url[user] == ':' && lastAt < authorityEnd);
    if (!plain) return {hasScheme ? begin : 0, lastAt};
  }
  if (colon == kNone || colon >= authorityEnd) return nothing;
  // User and password end at the last '@' of the authority. A password that was not escaped may
  // contain the characters that end an authority. The port is then not a number, and the password
  // extends to the last '@' of the whole text.
  const std::size_t at = url.substr(0, authorityEnd).rfind('@');
  if (at != kNone && at > colon) return {colon + 1, at};
  const std::size_t port = url.find_first_not_of(kDigits, colon + 1);
  if (std::min(port, url.size()) >= authorityEnd) return nothing;
  return {colon + 1, lastAt != kNone && lastAt > colon ? lastAt : authorityEnd};
}

// Keeps a line to one line, and free of control sequences for terminals.
void ReplaceControlCharacters(char* text) {
  for (; *text != '\0'; ++text) {
    if (static_cast<unsigned char>(*text) < ' ' || *text == '\x7f') *text = '?';
  }
}

}  // namespace

void LogLine(KRNetAccess* access, u16 level, const char* format, ...) {
  if (access == nullptr) return;
  char usual[kUsualLine];
  va_list arguments;
  va_start(arguments, format);
  va_list again;
  va_copy(again, arguments);
  const int length = std::vsnprintf(usual, sizeof usual, format, arguments);
  va_end(arguments);
  char* longer = nullptr;
  if (length >= static_cast<int>(sizeof usual)) {
    const std::size_t room = static_cast<std::size_t>(length) + 1;
    longer = static_cast<char*>(Allocate(room));
    if (longer != nullptr) std::vsnprintf(longer, room, format, again);
  }
  va_end(again);
  char* const line = longer == nullptr ? usual : longer;
  if (length >= 0) {
    ReplaceControlCharacters(line);
    access->LogMessage(line, level, nullptr);
  }
  Free(longer);
}

LoggableUrl::LoggableUrl(const char* url) : m_text(url) {
  const std::string_view text(url);
  const Span secret = SecretOf(text);
  if (secret.begin == secret.end) return;
  m_copy = static_cast<char*>(Allocate(text.size() + 1));
  m_text = m_copy;
  if (m_copy == nullptr) {
    m_text = "***";
    return;
  }
  std::memcpy(m_copy, url, text.size() + 1);
  std::memset(m_copy + secret.begin, '*', secret.end - secret.begin);
}

LoggableUrl::~LoggableUrl() { Free(m_copy); }

}  // namespace krofx::internal
