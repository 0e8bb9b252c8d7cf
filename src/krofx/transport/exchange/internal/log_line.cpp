// The lines that a transport writes to the host's log.

#include "krofx/transport/exchange/internal/log_line.h"

#include <cctype>
#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "krofx/core/memory.h"
#include "krofx/transport/contract/net_access.h"

namespace krofx::internal {

namespace {

constexpr std::size_t kUsualLine = 2048;

struct Span {
  char const* begin;
  char const* end;
};

// Where user, host and port begin: behind the scheme and its slashes, of which HTTP libraries take
// one to three, or at the front of a URL without a scheme.
char const* AuthorityOf(char const* url) {
  char const* rest = url;
  while (std::isalnum(static_cast<unsigned char>(*rest)) != 0 || *rest == '+' || *rest == '-' ||
         *rest == '.') {
    ++rest;
  }
  if (rest[0] != ':' || rest[1] != '/') return url;
  return rest + 1 + std::strspn(rest + 1, "/");
}

// Where the password of a URL stands; empty when there is none. User and password end at the last
// '@' of the authority. A password that was not escaped may hold the very characters that end an
// authority, which shows in a port that is no number: then it goes on to the last '@' of all.
Span PasswordOf(char const* url) {
  Span const none = {url, url};
  char const* const begin = AuthorityOf(url);
  char const* const lastAt = std::strrchr(begin, '@');
  // The colons of a numeric address separate nothing.
  char const* const address = begin[0] == '[' ? std::strchr(begin, ']') : nullptr;
  char const* const colon = std::strchr(address == nullptr ? begin : address, ':');
  if (colon == nullptr || lastAt == nullptr || lastAt < colon) return none;
  char const* const end = begin + std::strcspn(begin, "/?#");
  if (end < colon) return none;
  char const* at = lastAt < end ? lastAt : end;
  while (at > colon && *at != '@') --at;
  if (at > colon) return {colon + 1, at};
  bool const isPort = colon + 1 + std::strspn(colon + 1, "0123456789") == end;
  return isPort ? none : Span{colon + 1, lastAt};
}

}  // namespace

void LogLine(KRNetAccess* access, u16 level, char const* format, ...) {
  if (access == nullptr) return;
  char usual[kUsualLine];
  va_list arguments;
  va_start(arguments, format);
  va_list again;
  va_copy(again, arguments);
  int const length = std::vsnprintf(usual, sizeof usual, format, arguments);
  va_end(arguments);
  char* longer = nullptr;
  if (length >= static_cast<int>(sizeof usual)) {
    std::size_t const room = static_cast<std::size_t>(length) + 1;
    longer = static_cast<char*>(Allocate(room));
    if (longer != nullptr) std::vsnprintf(longer, room, format, again);
  }
  va_end(again);
  if (length >= 0) access->LogMessage(longer == nullptr ? usual : longer, level, nullptr);
  Free(longer);
}

LoggableUrl::LoggableUrl(char const* url) : m_text(url) {
  Span const password = PasswordOf(url);
  if (password.begin == password.end) return;
  std::size_t const size = std::strlen(url) + 1;
  m_copy = static_cast<char*>(Allocate(size));
  m_text = m_copy;
  if (m_copy == nullptr) {
    m_text = "***";
    return;
  }
  std::memcpy(m_copy, url, size);
  std::memset(m_copy + (password.begin - url), '*',
              static_cast<std::size_t>(password.end - password.begin));
}

LoggableUrl::~LoggableUrl() { Free(m_copy); }

}  // namespace krofx::internal
