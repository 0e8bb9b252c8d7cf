// Finding where the texts of a file begin and end.

#include "krofx/reader/file/text_bounds.h"

#include <algorithm>

#include "krofx/core/internal/byte_search.h"
#include "krofx/reader/header/header.h"
#include "krofx/values/internal/keyword_table.h"

namespace krofx::internal {

namespace {

bool StartsWithoutCase(std::string_view text, std::string_view start) {
  return text.size() >= start.size() && EqualsWithoutCase(text.substr(0, start.size()), start);
}

bool IsLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

// The name of the tag after a '<', without a prefix.
std::string_view NameAt(std::string_view rest) {
  while (!rest.empty() && IsWhite(rest.front())) rest.remove_prefix(1);
  std::size_t length = 0;
  constexpr std::size_t kLongest = 32;
  while (length < rest.size() && length < kLongest &&
         (IsLetter(rest[length]) || (rest[length] >= '0' && rest[length] <= '9') ||
          rest[length] == '.' || rest[length] == ':')) {
    ++length;
  }
  const std::string_view name = rest.substr(0, length);
  const std::size_t prefix = name.rfind(':');
  return prefix == std::string_view::npos ? name : name.substr(prefix + 1);
}

bool Contains(std::string_view name, std::string_view part) {
  for (std::size_t at = 0; at + part.size() <= name.size(); ++at) {
    if (EqualsWithoutCase(name.substr(at, part.size()), part)) return true;
  }
  return false;
}

// Where the header of the text begins whose first tag is at `tag`: the word OFXHEADER after
// the tag before it.
std::size_t HeaderBefore(std::string_view bytes, std::size_t from, std::size_t tag) {
  // What is in front of the text is not looked at: each text of a file would look at it again.
  const std::size_t last = bytes.substr(from, tag - from).rfind('>');
  const std::size_t start = last == std::string_view::npos ? from : from + last + 1;
  constexpr std::string_view kWord = "OFXHEADER";
  for (std::size_t at = start; at + kWord.size() <= tag; ++at) {
    if (EqualsWithoutCase(bytes.substr(at, kWord.size()), kWord)) return at;
  }
  return tag;
}

// Whether the tag OFX or an instruction may begin after a '<'.
bool MayBeOfx(std::string_view bytes, std::size_t at) {
  if (at + 2 >= bytes.size()) return true;
  const char c = bytes[at + (bytes[at + 1] == '/' ? 2 : 1)];
  return c == 'O' || c == 'o' || c == '?' || c == '/' || IsWhite(c);
}

// The next '<' from a place on. In a text they are so near to each other that to call a function of
// the C library takes longer.
std::size_t FindOpen(std::string_view bytes, std::size_t from) {
  const char* const end = bytes.data() + bytes.size();
  const char* const found = SearchBytes(
      bytes.data() + std::min(from, bytes.size()), end,
      [](ByteBlock block) { return block.Equal('<'); }, [](char c) { return c == '<'; });
  return found == end ? std::string_view::npos : static_cast<std::size_t>(found - bytes.data());
}

// Whether there may be a tag OFX with a prefix. "DATA:OFXSGML" is none.
bool HasPrefixedOfx(std::string_view text) {
  constexpr std::string_view kName = "OFX";
  for (std::size_t at = text.find(':'); at != std::string_view::npos; at = text.find(':', at + 1)) {
    const std::string_view rest = text.substr(at + 1);
    if (!EqualsWithoutCase(rest.substr(0, kName.size()), kName)) continue;
    if (rest.size() == kName.size() || rest[kName.size()] == '/' || EndsName(rest[kName.size()])) {
      return true;
    }
  }
  return false;
}

}  // namespace

namespace {

std::size_t FindEnd(std::string_view bytes, std::size_t from, bool& inBody) {
  // A file may have many texts, so no more is looked at than a little beyond the end of each.
  constexpr std::size_t kBlock = 4096;
  constexpr std::size_t kLongestTag = 64;
  std::size_t blockEnd = from;
  // The header of the next text comes after the tag that opens this one, so that a text is never
  // empty.
  std::size_t body = from;
  bool hasPrefixes = false;
  for (std::size_t at = FindOpen(bytes, from); at != std::string_view::npos;
       at = FindOpen(bytes, at + 1)) {
    if (at >= blockEnd) {
      blockEnd = at + kBlock;
      hasPrefixes = HasPrefixedOfx(bytes.substr(at, kBlock + kLongestTag));
    }
    // Most tags of a body have other first letters.
    if (inBody && !hasPrefixes && !MayBeOfx(bytes, at)) continue;
    std::string_view rest = bytes.substr(at + 1);
    while (!rest.empty() && IsWhite(rest.front())) rest.remove_prefix(1);
    if (rest.starts_with('/')) {
      if (!EqualsWithoutCase(NameAt(rest.substr(1)), "OFX")) continue;
      const std::size_t close = bytes.find('>', at);
      return close == std::string_view::npos ? bytes.size() : close + 1;
    }
    const bool instruction = StartsWithoutCase(rest, "?xml") || StartsWithoutCase(rest, "?OFX");
    const std::string_view name = NameAt(rest);
    if (inBody && (instruction || EqualsWithoutCase(name, "OFX"))) {
      return HeaderBefore(bytes, body, at);
    }
    if (inBody) continue;
    inBody =
        EqualsWithoutCase(name, "OFX") || Contains(name, "MSGSRSV") || Contains(name, "MSGSRQV");
    body = at + 1;
  }
  return std::string_view::npos;
}

}  // namespace

std::size_t FindTextEnd(std::string_view bytes, std::size_t from) {
  bool inBody = false;
  return std::min(FindEnd(bytes, from, inBody), bytes.size());
}

std::size_t FindTextEndInPart(std::string_view part, bool& inBody) {
  return FindEnd(part, 0, inBody);
}

bool HasText(std::string_view bytes, std::size_t from, const TagDictionary& dictionary) {
  const std::string_view rest = bytes.substr(std::min(from, bytes.size()));
  u32 body;
  return rest.find('<') != std::string_view::npos && FindBody(rest, dictionary, body);
}

TextKind FindKind(std::string_view text) {
  bool isNamed;
  return FindKind(text, isNamed);
}

TextKind FindKind(std::string_view text, bool& isNamed) {
  isNamed = true;
  std::string_view start = text;
  while (!start.empty() && IsWhite(start.front())) start.remove_prefix(1);
  if (StartsWithoutCase(start, "CONTENT-TYPE:")) {
    const std::string_view line = start.substr(0, start.find('\n'));
    if (Contains(line, "MULTIPART/")) return TextKind::kMultipart;
  }
  for (std::size_t at = text.find('<'); at != std::string_view::npos; at = text.find('<', at + 1)) {
    const std::string_view name = NameAt(text.substr(at + 1));
    for (const char* const part : {"MSGSRSV", "MSGSRQV"}) {
      if (Contains(name, part)) return part[5] == 'S' ? TextKind::kResponse : TextKind::kRequest;
    }
    if (EqualsWithoutCase(name, "SONRQ")) return TextKind::kRequest;
    if (EqualsWithoutCase(name, "SONRS")) return TextKind::kResponse;
    constexpr std::string_view kResponse = "TRNRS";
    constexpr std::string_view kRequest = "TRNRQ";
    if (name.size() < kResponse.size()) continue;
    const std::string_view end = name.substr(name.size() - kResponse.size());
    if (EqualsWithoutCase(end, kResponse)) return TextKind::kResponse;
    if (EqualsWithoutCase(end, kRequest)) return TextKind::kRequest;
  }
  isNamed = false;
  return TextKind::kResponse;
}

}  // namespace krofx::internal
