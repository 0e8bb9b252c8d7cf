// Takes a URL apart, and shows it without what may be secret.

#include "banks/url.h"

#include <arpa/inet.h>
#include <curl/curl.h>

#include <algorithm>
#include <memory>
#include <optional>

#include "krofx/transport/exchange/internal/log_line.h"
#include "output/characters.h"

namespace krofx::command {

namespace {

// The scheme of a proxy may be one that the parser does not know, and may be left out.
constexpr unsigned kFlagsOfProxies = CURLU_NON_SUPPORT_SCHEME | CURLU_GUESS_SCHEME;

// What the parser of the transport makes of a URL: nothing of one that cannot be used.
class ParsedUrl {
 public:
  ParsedUrl(const std::string& text, unsigned flags) : m_handle(::curl_url(), ::curl_url_cleanup) {
    const bool plain = std::all_of(text.begin(), text.end(), [](char character) {
      return !IsControl(character) && character != ' ' && character != '\\';
    });
    if (!plain || m_handle == nullptr ||
        ::curl_url_set(m_handle.get(), CURLUPART_URL, text.c_str(), flags) != CURLUE_OK) {
      m_handle.reset();
    }
  }

  // A part of the URL, or nothing when it has no such part.
  std::optional<std::string> Get(CURLUPart part) const {
    char* text = nullptr;
    if (m_handle == nullptr || ::curl_url_get(m_handle.get(), part, &text, 0) != CURLUE_OK) {
      return std::nullopt;
    }
    const std::unique_ptr<char, decltype(&::curl_free)> kept(text, ::curl_free);
    return text;
  }

 private:
  std::unique_ptr<CURLU, decltype(&::curl_url_cleanup)> m_handle;
};

std::size_t EndOfHost(const std::string& url, std::size_t start) {
  return std::min(url.find_first_of("/?#", start), url.size());
}

// Removes the user and what could be a password, from what is not a URL that can be used as well.
// A password may have the characters that end a host, or be in the place of a port.
void EraseSecrets(std::string& url) {
  const std::size_t slashes = url.find("//");
  const std::size_t start = slashes == std::string::npos ? 0 : slashes + 2;
  const std::size_t at = url.rfind('@');
  const std::size_t end = EndOfHost(url, start);
  if (at != std::string::npos && at >= start) {
    if (at < end || url.find(':', start) < end) {
      url.erase(start, at + 1 - start);
    } else {
      // What looks like a host and a path may be a key before the host.
      url.replace(start, std::string::npos, "***");
    }
  }
  const std::size_t hostEnd = EndOfHost(url, start);
  const std::size_t port = url.rfind(':', hostEnd);
  // The colons of an address in brackets are its own.
  if (port == std::string::npos || port < start || url.find(']', port) < hostEnd) return;
  if (url.find_first_not_of("0123456789", port + 1) < hostEnd) url.erase(port);
}

// Hides what the library's log would hide of it.
std::string WithoutWhatTheLogHides(const std::string& url) {
  const krofx::internal::LoggableUrl loggable(url.c_str());
  const std::string_view masked(loggable.Text());
  const auto [kept, hidden] = std::mismatch(url.begin(), url.end(), masked.begin(), masked.end());
  return kept == url.end() ? url : std::string(url.begin(), kept) + "***";
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
  if (rest.starts_with("///") || (scheme != "https" && scheme != "http")) return;
  const ParsedUrl parsed(Text(), 0);
  host = parsed.Get(CURLUPART_HOST).value_or("");
  // Wide forms of '@' and ':' become these when the name is looked up.
  if (!host.starts_with('[') && WithoutWhatTheLogHides(host) != host) host.clear();
  hasUser = parsed.Get(CURLUPART_USER).has_value() || parsed.Get(CURLUPART_PASSWORD).has_value();
  const std::optional<std::string> zone = parsed.Get(CURLUPART_ZONEID);
  if (zone.has_value()) host.insert(host.size() - 1, "%" + *zone);
}

std::string Url::Shown() const {
  std::string shown = scheme.empty() ? rest : Text();
  if (scheme != "file") EraseSecrets(shown);
  shown.erase(std::min(shown.find_first_of("?#"), shown.size()));
  // The escape in what the transport reads as a numeric address is that of its zone.
  if (scheme == "file" || host.starts_with('[')) return shown;
  return WithoutWhatTheLogHides(shown);
}

bool Url::IsLoopback() const {
  in_addr address{};
  if (::inet_pton(AF_INET, host.c_str(), &address) == 1) return ntohl(address.s_addr) >> 24 == 127;
  return LowerAscii(host) == "localhost" || host == "[::1]";
}

bool HasPassword(const std::string& proxy) {
  const ParsedUrl parsed(proxy, kFlagsOfProxies);
  return parsed.Get(CURLUPART_PASSWORD).has_value();
}

bool IsProxyAddress(const std::string& text) {
  constexpr std::string_view kSchemes[] = {"http",    "https",  "socks4",
                                           "socks4a", "socks5", "socks5h"};
  const ParsedUrl parsed(text, kFlagsOfProxies);
  const std::string scheme = parsed.Get(CURLUPART_SCHEME).value_or("");
  return std::find(std::begin(kSchemes), std::end(kSchemes), scheme) != std::end(kSchemes) &&
         !parsed.Get(CURLUPART_HOST).value_or("").empty() &&
         (text.find("://") != std::string::npos || parsed.Get(CURLUPART_PORT).has_value());
}

}  // namespace krofx::command
