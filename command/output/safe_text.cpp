// Turns bytes that are no UTF-8, and what a terminal would obey, into text that can be shown.

#include "output/safe_text.h"

#include <cstdint>

namespace krofx::command {

namespace {

constexpr char32_t kReplacement = 0xFFFD;

// What the bytes 0x80 to 0x9f mean in code page 1252; 0 for those without a meaning.
constexpr char16_t kHighControls[32] = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

bool IsContinuation(unsigned char byte) { return (byte & 0xC0) == 0x80; }

// Reads one character of UTF-8 and moves behind it.
// Returns false, without moving, for what is no UTF-8.
bool TakeUtf8(std::string_view& text, char32_t& character) {
  const auto first = static_cast<unsigned char>(text.front());
  const std::size_t length = first < 0x80             ? 1
                             : (first & 0xE0) == 0xC0 ? 2
                             : (first & 0xF0) == 0xE0 ? 3
                             : (first & 0xF8) == 0xF0 ? 4
                                                      : 0;
  if (length == 0 || text.size() < length) return false;
  char32_t value = length == 1 ? first : first & (0x7FU >> length);
  for (std::size_t index = 1; index < length; ++index) {
    const auto byte = static_cast<unsigned char>(text[index]);
    if (!IsContinuation(byte)) return false;
    value = (value << 6) | (byte & 0x3FU);
  }
  constexpr char32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
  if (value < kLeast[length] || value > 0x10FFFF || (value >= 0xD800 && value < 0xE000)) {
    return false;
  }
  text.remove_prefix(length);
  character = value;
  return true;
}

bool IsUtf8(std::string_view text) {
  char32_t character = 0;
  while (!text.empty()) {
    if (!TakeUtf8(text, character)) return false;
  }
  return true;
}

char32_t TakeCodePage(std::string_view& text) {
  const auto byte = static_cast<unsigned char>(text.front());
  text.remove_prefix(1);
  if (byte < 0x80 || byte > 0x9F) return byte;
  return kHighControls[byte - 0x80] == 0 ? kReplacement : kHighControls[byte - 0x80];
}

bool IsHarmful(char32_t character) {
  return character < 0x20 || (character >= 0x7F && character < 0xA0) ||
         (character >= 0x200B && character <= 0x200F) ||
         (character >= 0x2028 && character <= 0x202E) ||
         (character >= 0x2060 && character <= 0x206F) || character == 0x061C || character == 0xFEFF;
}

void Append(std::string& out, char32_t character) {
  const auto put = [&out](char32_t byte) { out += static_cast<char>(byte); };
  if (character < 0x80) {
    put(character);
  } else if (character < 0x800) {
    put(0xC0 | (character >> 6));
    put(0x80 | (character & 0x3F));
  } else if (character < 0x10000) {
    put(0xE0 | (character >> 12));
    put(0x80 | ((character >> 6) & 0x3F));
    put(0x80 | (character & 0x3F));
  } else {
    put(0xF0 | (character >> 18));
    put(0x80 | ((character >> 12) & 0x3F));
    put(0x80 | ((character >> 6) & 0x3F));
    put(0x80 | (character & 0x3F));
  }
}

std::string Convert(std::string_view bytes, char lineEnd) {
  std::string out;
  out.reserve(bytes.size());
  const bool utf8 = IsUtf8(bytes);
  while (!bytes.empty()) {
    char32_t character = 0;
    if (!utf8 || !TakeUtf8(bytes, character)) character = TakeCodePage(bytes);
    if (character == '\r' && !bytes.empty() && bytes.front() == '\n') continue;
    if (character == '\n' || character == '\r') {
      out += lineEnd;
    } else if (character == '\t') {
      out += ' ';
    } else {
      Append(out, IsHarmful(character) ? kReplacement : character);
    }
  }
  return out;
}

}  // namespace

std::string SafeText(std::string_view bytes) { return Convert(bytes, '\n'); }

std::string SafeLine(std::string_view bytes) { return Convert(bytes, ' '); }

std::size_t DisplayWidth(std::string_view text) {
  std::size_t width = 0;
  for (const char byte : text) width += IsContinuation(static_cast<unsigned char>(byte)) ? 0 : 1;
  return width;
}

std::string Shortened(std::string_view text, std::size_t characters) {
  if (DisplayWidth(text) <= characters) return std::string(text);
  std::size_t end = 0;
  for (std::size_t width = 0; end < text.size(); ++end) {
    if (!IsContinuation(static_cast<unsigned char>(text[end])) && width++ == characters) break;
  }
  return std::string(text.substr(0, end)) + "...";
}

}  // namespace krofx::command
