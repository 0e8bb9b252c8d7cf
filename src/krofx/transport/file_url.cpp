// Both ways between file names and `file:` URLs: '|' stands for the ':' of a drive, '/' for '\'.

#include "krofx/transport/file_url.h"

#include <cstring>
#include <limits>
#include <string_view>

#include "krofx/transport/net_request.h"

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

namespace krofx::internal {

bool HasFileScheme(char const* url) {
  if (url == nullptr) return false;
  for (char const expected : kScheme) {
    char const character = *url++;
    bool const capital = character >= 'A' && character <= 'Z';
    if ((capital ? character - 'A' + 'a' : character) != expected) return false;
  }
  return true;
}

bool FileUrlToName(char* out, std::size_t room, char const* url) {
  bool const isFile = HasFileScheme(url);
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

}  // namespace krofx::internal

u16 KRNetRequest::HasFileScheme(const char* url) {
  return krofx::internal::HasFileScheme(url) ? 1 : 0;
}

u16 KRNetRequest::ConvertFileURLToLocalFileName(char* out, const char* url) {
  constexpr std::size_t kAnyRoom = std::numeric_limits<std::size_t>::max();
  return out != nullptr && krofx::internal::FileUrlToName(out, kAnyRoom, url) ? 1 : 0;
}

u16 KRNetRequest::ConvertLocalFileNameToFileURL(char* out, const char* name) {
  if (out == nullptr || name == nullptr) return 0;
  if (krofx::internal::HasFileScheme(name)) {
    std::strcpy(out, name);
    return 1;
  }
  out = static_cast<char*>(std::memcpy(out, kScheme.data(), kScheme.size())) + kScheme.size();
  *out++ = '/';
  if (name[0] == '\\' || (name[0] != '\0' && name[1] == ':')) *out++ = '/';
  do *out++ = UrlCharacter(*name);
  while (*name++ != '\0');
  return 1;
}
