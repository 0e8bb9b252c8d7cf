// Converts between file names and `file:` URLs: '|' replaces the ':' of a drive, and '/' replaces
// '\'.

#include "krofx/transport/files/internal/file_url.h"

#include <cstring>
#include <string_view>

namespace krofx::internal {

namespace {

constexpr std::string_view kScheme = "file:";

char NameCharacter(char character) {
  if (character == '/') return '\\';
  return character == '|' ? ':' : character;
}

char UrlCharacter(char character) {
  if (character == '\\') return '/';
  return character == ':' ? '|' : character;
}

}  // namespace

bool HasFileScheme(const char* url) {
  if (url == nullptr) return false;
  for (const char expected : kScheme) {
    const char character = *url++;
    const bool capital = character >= 'A' && character <= 'Z';
    if ((capital ? character - 'A' + 'a' : character) != expected) return false;
  }
  return true;
}

bool FileUrlToName(char* out, std::size_t room, const char* url) {
  const bool isFile = HasFileScheme(url);
  out[0] = '\0';
  if (!isFile) return false;
  url += kScheme.size();
  if (*url != '\0') ++url;
  if (*url == '/') ++url;
  if (std::strlen(url) >= room) return false;
  do *out++ = NameCharacter(*url);
  while (*url++ != '\0');
  return true;
}

void NameToFileUrl(char* out, const char* name) {
  if (HasFileScheme(name)) {
    std::strcpy(out, name);
    return;
  }
  out = static_cast<char*>(std::memcpy(out, kScheme.data(), kScheme.size())) + kScheme.size();
  *out++ = '/';
  if (name[0] == '\\' || (name[0] != '\0' && name[1] == ':')) *out++ = '/';
  do *out++ = UrlCharacter(*name);
  while (*name++ != '\0');
}

}  // namespace krofx::internal
