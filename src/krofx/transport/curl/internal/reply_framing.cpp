// Reads the framing of a reply from its header lines.

#include "krofx/transport/curl/internal/reply_framing.h"

#include <strings.h>

#include <algorithm>
#include <charconv>

namespace krofx::internal {

namespace {

constexpr std::string_view kBlanks = " \t\r\n";

std::string_view Trimmed(std::string_view text) {
  const std::size_t begin = std::min(text.find_first_not_of(kBlanks), text.size());
  return text.substr(begin, text.find_last_not_of(kBlanks) + 1 - begin);
}

bool IsWord(std::string_view text, std::string_view word) {
  return text.size() == word.size() && strncasecmp(text.data(), word.data(), word.size()) == 0;
}

bool ListHas(std::string_view list, std::string_view word) {
  for (std::size_t comma; !list.empty(); list.remove_prefix(std::min(comma + 1, list.size()))) {
    comma = std::min(list.find(','), list.size());
    if (IsWord(Trimmed(list.substr(0, comma)), word)) return true;
  }
  return false;
}

}  // namespace

bool ReplyFraming::Take(std::string_view line) {
  if (line.starts_with(' ') || line.starts_with('\t')) return !m_canBeFolded;
  const std::size_t colon = std::min(line.find(':'), line.size());
  const std::string_view name = Trimmed(line.substr(0, colon));
  const bool isLength = IsWord(name, "Content-Length");
  m_canBeFolded = isLength || IsWord(name, "Transfer-Encoding");
  if (!m_canBeFolded) return true;
  if (name.size() != colon || colon == line.size()) return false;
  const std::string_view value = Trimmed(line.substr(colon + 1));
  if (isLength) return TakeLength(value);
  m_isChunked = m_isChunked || ListHas(value, "chunked");
  return true;
}

bool ReplyFraming::TakeLength(std::string_view value) {
  std::uint64_t length = 0;
  const char* const end = value.data() + value.size();
  const auto [stop, error] = std::from_chars(value.data(), end, length);
  if (error != std::errc() || stop != end || (m_hasLength && length != m_length)) return false;
  m_hasLength = true;
  m_length = length;
  return true;
}

}  // namespace krofx::internal
