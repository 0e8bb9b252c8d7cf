// Takes a URL apart, and shows it without what may be secret.

#include "banks/url.h"

#include <arpa/inet.h>

#include <algorithm>

#include "output/characters.h"

namespace krofx::command {

namespace {

std::size_t EndOfHost(const std::string& url, std::size_t start) {
  return std::min(url.find_first_of("/\\?#", start), url.size());
}

// Removes the user and what could be a password, from what is not a URL that can be used as well.
// A password may have the characters that end a host, or be in the place of a port.
void EraseSecrets(std::string& url) {
  const std::size_t slashes = url.find("//");
  const std::size_t start = slashes == std::string::npos ? 0 : slashes + 2;
  const std::size_t at = url.rfind('@');
  const std::size_t end = EndOfHost(url, start);
  if (at != std::string::npos && at >= start && (at < end || url.find(':', start) < end)) {
    url.erase(start, at + 1 - start);
  }
  const std::size_t hostEnd = EndOfHost(url, start);
  const std::size_t port = url.rfind(':', hostEnd);
  // The colons of an address in brackets are its own.
  if (port == std::string::npos || port < start || url.find(']', port) < hostEnd) return;
  if (url.find_first_not_of("0123456789", port + 1) < hostEnd) url.erase(port);
}

}  // namespace

Url::Url(std::string_view text) {
  const std::size_t colon = text.find(':');
  if (colon == std::string_view::npos) {
    rest = text;
    return;
  }
  scheme = LowerAscii(text.substr(0, colon));
  rest = text.substr(colon + 1);
  if (!rest.starts_with("//")) return;
  host = rest.substr(2, rest.find_first_of("/?#\\", 2) - 2);
  const std::size_t at = host.rfind('@');
  if (at != std::string::npos) {
    user = host.substr(0, at + 1);
    host.erase(0, at + 1);
  }
  const std::size_t port = host.rfind(':');
  // The colons of an address in brackets are its own.
  if (port != std::string::npos && host.find(']', port) == std::string::npos) host.erase(port);
}

std::string Url::Shown() const {
  std::string shown = scheme.empty() ? rest : Text();
  if (scheme != "file") EraseSecrets(shown);
  shown.erase(std::min(shown.find_first_of("?#"), shown.size()));
  return shown;
}

bool Url::IsLoopback() const {
  in_addr address{};
  if (::inet_pton(AF_INET, host.c_str(), &address) == 1) return ntohl(address.s_addr) >> 24 == 127;
  return host == "localhost" || host == "[::1]";
}

}  // namespace krofx::command
