// Converts single characters, and texts on their way into a request.

#include "output/characters.h"

#include <cwchar>
#include <cwctype>

#include <algorithm>
#include <clocale>
#include <iterator>

namespace krofx::command {

namespace {

constexpr unsigned char kFirstHighControl = 0x80;

// What the bytes 0x80 to 0x9f mean in code page 1252; 0 for those without a meaning.
constexpr char16_t kHighControls[32] = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

// The system's tables of widths and letters belong to a locale of UTF-8, whatever the user's is.
locale_t Utf8Locale() {
  static const locale_t utf8 = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  return utf8;
}

}  // namespace

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
    if (!IsContinuation(text[index])) return false;
    value = (value << 6) | (static_cast<unsigned char>(text[index]) & 0x3FU);
  }
  constexpr char32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
  if (value < kLeast[length] || value > 0x10FFFF || (value >= 0xD800 && value < 0xE000)) {
    return false;
  }
  text.remove_prefix(length);
  character = value;
  return true;
}

std::size_t FindBadUtf8(std::string_view text) {
  std::string_view left = text;
  char32_t character = 0;
  while (!left.empty()) {
    if (!TakeUtf8(left, character)) return text.size() - left.size();
  }
  return std::string_view::npos;
}

void AppendUtf8(std::string& text, char32_t character) {
  const auto put = [&text](char32_t byte) { text += static_cast<char>(byte); };
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

bool HasControlCharacter(std::string_view text, std::string_view taken) {
  return std::any_of(text.begin(), text.end(), [taken](char byte) {
    return IsControl(byte) && taken.find(byte) == std::string_view::npos;
  });
}

std::size_t ColumnsOf(char32_t character) {
  constexpr char32_t kFirstMark = 0x300;
  if (character < kFirstMark) return 1;
  const locale_t utf8 = Utf8Locale();
  if (utf8 == nullptr) return 1;
  const locale_t before = ::uselocale(utf8);
  const int columns = ::wcwidth(static_cast<wchar_t>(character));
  ::uselocale(before);
  return columns < 0 ? 1 : static_cast<std::size_t>(columns);
}

std::string LowerAscii(std::string_view text) {
  std::string lower(text);
  for (char& character : lower) character = LowerAscii(character);
  return lower;
}

std::string FoldCase(std::string_view text) {
  std::string folded;
  folded.reserve(text.size());
  const locale_t utf8 = Utf8Locale();
  char32_t character = 0;
  while (!text.empty() && TakeUtf8(text, character)) {
    if (character < kFirstHighControl) {
      character = static_cast<unsigned char>(LowerAscii(static_cast<char>(character)));
    } else if (utf8 != nullptr) {
      character = static_cast<char32_t>(::towlower_l(static_cast<wint_t>(character), utf8));
    }
    AppendUtf8(folded, character);
  }
  return folded.append(text);
}

char32_t FromCodePage1252(unsigned char byte) {
  if (byte < kFirstHighControl || byte > 0x9F) return byte;
  const char16_t character = kHighControls[byte - kFirstHighControl];
  return character == 0 ? kReplacementCharacter : character;
}

bool ToCodePage1252(char32_t character, char& byte) {
  byte = static_cast<char>(character);
  if (character < kFirstHighControl || (character >= 0xA0 && character <= 0xFF)) return true;
  const auto* const end = std::end(kHighControls);
  const auto* const found = std::find(std::begin(kHighControls), end, character);
  if (character <= 0xFF || found == end) return false;
  byte = static_cast<char>(kFirstHighControl + (found - std::begin(kHighControls)));
  return true;
}

bool ToCodePage1252(std::string_view text, std::string& bytes) {
  bytes.clear();
  while (!text.empty()) {
    char32_t character = 0;
    char byte = 0;
    if (!TakeUtf8(text, character) || !ToCodePage1252(character, byte)) return false;
    bytes += byte;
  }
  return true;
}

}  // namespace krofx::command
