// Taking texts apart and writing them out.

#include "reader/damage_document.h"

#include <algorithm>
#include <sstream>

namespace krofx::testing {

namespace {

Token TokenOf(std::string line, std::size_t number) {
  Token token;
  token.number = number;
  const std::size_t close = line.find('>');
  if (line.rfind("</", 0) == 0) {
    token.type = Token::Type::kEnd;
    token.tag = line.substr(2, close - 2);
    return token;
  }
  token.tag = line.substr(1, close - 1);
  token.value = line.substr(close + 1);
  const std::string end = "</" + token.tag + ">";
  if (token.value.ends_with(end)) token.value.resize(token.value.size() - end.size());
  token.type = token.value.empty() ? Token::Type::kStart : Token::Type::kElement;
  return token;
}

std::string InUtf16(const std::string& text, bool bigEndian) {
  std::string wide = bigEndian ? "\xFE\xFF" : "\xFF\xFE";
  for (const char c : text) {
    if (bigEndian) wide += '\0';
    wide += c;
    if (!bigEndian) wide += '\0';
  }
  return wide;
}

}  // namespace

Document::Document(const std::string& text) {
  const std::size_t body = text.find('<');
  header = text.substr(0, body);
  std::istringstream lines(text.substr(body));
  for (std::string line; std::getline(lines, line);) {
    if (line.ends_with('\r')) line.pop_back();
    if (!line.empty()) tokens.push_back(TokenOf(line, tokens.size() + 1));
  }
}

std::string Document::Text() const {
  std::string text = front + header;
  std::size_t depth = 0;
  for (const Token& token : tokens) {
    std::string name = token.tag;
    if (lowerCase) {
      std::transform(name.begin(), name.end(), name.begin(),
                     [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c; });
    }
    const std::string blank = blanksInTags ? " " : "";
    const std::string end = "</" + blank + name + blank + ">";
    if (token.type == Token::Type::kEnd && depth > 0) --depth;
    if (indented) text.append(2 * depth, ' ');
    if (token.type == Token::Type::kStart) ++depth;
    if (token.type == Token::Type::kEnd) {
      text += end;
    } else if (token.type == Token::Type::kLiteral) {
      text += token.value;
    } else {
      text += "<" + blank + name + blank + ">" + token.value;
      if (closed && token.type == Token::Type::kElement) text += end;
    }
    text += lineEnd;
  }
  if (encoding == Encoding::kBytes) return text;
  return InUtf16(text, encoding == Encoding::kUtf16BigEndian);
}

std::size_t Document::PlaceOf(std::size_t number) const {
  const auto found = std::find_if(tokens.begin(), tokens.end(),
                                  [number](const Token& token) { return token.number == number; });
  return static_cast<std::size_t>(found - tokens.begin());
}

std::vector<std::string> Document::OpenAt(std::size_t place) const {
  std::vector<std::string> open;
  for (std::size_t at = 0; at < place; ++at) {
    if (tokens[at].type == Token::Type::kStart) open.push_back(tokens[at].tag);
    if (tokens[at].type == Token::Type::kEnd && !open.empty()) open.pop_back();
  }
  return open;
}

}  // namespace krofx::testing
