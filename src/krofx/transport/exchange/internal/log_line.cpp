// The lines that a transport writes to the host's log.

#include "krofx/transport/exchange/internal/log_line.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <string_view>

#include "krofx/core/memory.h"
#include "krofx/transport/contract/net_access.h"
#include "krofx/transport/files/internal/file_url.h"

namespace krofx::internal {

namespace {

constexpr std::size_t kUsualLine = 2048;

constexpr std::string_view kDigits = "0123456789";
constexpr std::string_view kAddressCharacters = "0123456789ABCDEFabcdef:.";

// What stands for '@' or ':' without being it: the beginning of an escape, since hosts have no '%',
// and the wide and small forms of keyboards for Chinese and Japanese, of which U+FF20, U+FE6B,
// U+FF1A, U+FE55 and U+FE13 become '@' and ':' in the names of hosts.
constexpr std::string_view kDisguises[] = {
    "%", "\xef\xbc\xa0", "\xef\xb9\xab", "\xef\xbc\x9a", "\xef\xb9\x95", "\xef\xb8\x93"};

constexpr std::size_t kNone = std::string_view::npos;

// A part of a text: from the first place up to the second.
struct Span {
  std::size_t begin;
  std::size_t end;

  bool IsEmpty() const { return begin == end; }
};

constexpr Span kNothing = {0, 0};

// Where user, host and port begin: after the scheme and its slashes, of which HTTP libraries accept
// one to three; 0 for a text that does not begin with a scheme.
std::size_t AuthorityOf(std::string_view url) {
  const std::size_t scheme =
      url.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+-.");
  if (scheme == kNone || (url.substr(scheme, 2) != ":/" && HasFileScheme(url.data()) == 0))
    return 0;
  return std::min(url.find_first_not_of('/', scheme + 1), url.size());
}

// Where the authority ends for a library that reads URLs.
std::size_t EndOfAuthority(std::string_view url, std::size_t begin) {
  return std::min(url.find_first_of("/?#", begin), url.size());
}

// Whether the text after a colon is a port, and not a password.
bool IsPort(std::string_view url, std::size_t colon) {
  constexpr std::string_view kHighestPort = "65535";
  std::string_view port = url.substr(colon + 1, EndOfAuthority(url, colon + 1) - colon - 1);
  if (port.find_first_not_of(kDigits) != kNone) return false;
  port.remove_prefix(std::min(port.find_first_not_of('0'), port.size()));
  return port.size() < kHighestPort.size() ||
         (port.size() == kHighestPort.size() && port <= kHighestPort);
}

// The end of a numeric address in brackets and of its port, whose colons separate no password.
// `begin` when there is no bracket, kNone when it opens something else.
std::size_t EndOfAddress(std::string_view url, std::size_t begin) {
  if (url.substr(begin, 1) != "[") return begin;
  const std::size_t end = url.find_first_not_of(kAddressCharacters, begin + 1);
  if (end == kNone || url[end] != ']') return kNone;
  const bool hasPort = url.substr(end + 1, 1) == ":" && IsPort(url, end + 1);
  return hasPort ? EndOfAuthority(url, begin) : end + 1;
}

// The part of a text with an '@' at `at` that is not shown. A user may be a secret too, such as a
// key. A user or a password that was not escaped may contain the characters that end an authority,
// so what looks like a host, a port or a path can be a part of it. The name of a file can have an
// '@' too, and is shown, except what could be a password.
Span SecretBefore(std::string_view url, std::size_t begin, std::size_t at) {
  if (HasFileScheme(url.data()) == 0) return {begin, at};
  const std::size_t colon = std::min(url.find(':', begin), at);
  return colon == at ? kNothing : Span{colon + 1, at};
}

// Whether '@' or a colon may be in the text in another form.
bool HasDisguise(std::string_view text) {
  return std::any_of(std::begin(kDisguises), std::end(kDisguises),
                     [text](std::string_view each) { return text.find(each) != kNone; });
}

// The part, in a text without '@' from `begin` on, that is in the place of a port but is none; the
// whole of a text whose '@' and colons may be in another form.
Span SecretAtPort(std::string_view url, std::size_t begin) {
  if (HasFileScheme(url.data()) != 0) return kNothing;
  const std::size_t host = EndOfAddress(url, begin);
  if (host == kNone) return {begin, url.size()};
  const std::size_t end = begin == 0 ? url.size() : EndOfAuthority(url, begin);
  if (HasDisguise(url.substr(host, end - std::min(host, end)))) return {begin, url.size()};
  for (std::size_t colon = url.find(':', host); colon < end; colon = url.find(':', colon + 1)) {
    // Without a clear scheme, a colon before slashes may be that of one.
    const bool isOfScheme = begin == 0 && url.find_first_of("/\\", colon) == colon + 1;
    if (!isOfScheme && !IsPort(url, colon)) return {colon + 1, url.size()};
  }
  return kNothing;
}

// The part of a URL that is not shown: what could be a user or a password, whether a library would
// read it as one or not. If the text does not clearly begin as a URL, this part begins
// where the text does.
Span SecretOf(std::string_view url) {
  const std::size_t begin = AuthorityOf(url);
  const std::size_t at = url.rfind('@');
  if (at == kNone || at < begin) return SecretAtPort(url, begin);
  const Span before = SecretBefore(url, begin, at);
  const Span after = SecretAtPort(url, at + 1);
  if (after.IsEmpty()) return before;
  return {before.IsEmpty() ? after.begin : before.begin, after.end};
}

// The fragment of a URL. It is not sent, so a log does not need it. In the URL of a file it is a
// part of the name.
Span FragmentOf(std::string_view url) {
  const std::size_t mark = HasFileScheme(url.data()) != 0 ? kNone : url.find('#');
  return mark == kNone ? kNothing : Span{mark + 1, url.size()};
}

constexpr unsigned char kDelete = 0x7f;

unsigned char Byte(const char* text) { return static_cast<unsigned char>(*text); }

// The control characters from 0x80 to 0x9f, with which control sequences can begin too.
bool IsHighControl(unsigned char byte) { return byte >= 0x80 && byte < 0xa0; }

// The bytes of the control character at `text`, of which those above are one byte or, in UTF-8,
// two; 0 for any other character.
std::size_t LengthOfControl(const char* text) {
  constexpr unsigned char kHighControlLead = 0xc2;
  if (Byte(text) == kHighControlLead && IsHighControl(Byte(text + 1))) return 2;
  return Byte(text) < ' ' || Byte(text) == kDelete || IsHighControl(Byte(text)) ? 1 : 0;
}

// The bytes of the character at `text` when UTF-8 has more than two bytes for it, or two that are
// no control character; 1 for any other.
std::size_t LengthOfCharacter(const char* text) {
  const unsigned char first = Byte(text);
  if (first <= 0xc2 || first > 0xf4) return 1;
  const std::size_t length = first < 0xe0 ? 2 : first < 0xf0 ? 3 : 4;
  for (std::size_t i = 1; i < length; ++i) {
    if ((Byte(text + i) & 0xc0) != 0x80) return 1;
  }
  return length;
}

// Keeps a line to one line, and free of control sequences for terminals.
void ReplaceControlCharacters(char* text) {
  while (*text != '\0') {
    const std::size_t length = LengthOfCharacter(text);
    const std::size_t control = length > 1 ? 0 : LengthOfControl(text);
    std::memset(text, '?', control);
    text += std::max(length, control);
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
  const Span fragment = FragmentOf(text);
  if (secret.IsEmpty() && fragment.IsEmpty()) return;
  m_copy = static_cast<char*>(Allocate(text.size() + 1));
  m_text = m_copy;
  if (m_copy == nullptr) {
    m_text = "***";
    return;
  }
  std::memcpy(m_copy, url, text.size() + 1);
  for (const Span& hidden : {secret, fragment}) {
    std::memset(m_copy + hidden.begin, '*', hidden.end - hidden.begin);
  }
}

LoggableUrl::~LoggableUrl() { Free(m_copy); }

}  // namespace krofx::internal
