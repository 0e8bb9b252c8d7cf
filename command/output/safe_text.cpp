// Turns bytes that are not UTF-8, and what a terminal would obey, into text that can be shown.

#include "output/safe_text.h"

#include "output/byte_scan.h"
#include "output/characters.h"

namespace krofx::command {

namespace {

bool IsHarmful(char32_t character) {
  return character < 0x20 || (character >= 0x7F && character < 0xA0) ||
         (character >= 0x200B && character <= 0x200F) ||
         (character >= 0x2028 && character <= 0x202E) ||
         (character >= 0x2060 && character <= 0x206F) || character == 0x061C || character == 0xFEFF;
}

std::string Convert(std::string_view bytes, char lineEnd) {
  if (IsPlainText(bytes)) return std::string(bytes);
  std::string out;
  out.reserve(bytes.size());
  const bool utf8 = FindBadUtf8(bytes) == std::string_view::npos;
  while (!bytes.empty()) {
    char32_t character = 0;
    if (!utf8 || !TakeUtf8(bytes, character)) {
      character = FromCodePage1252(static_cast<unsigned char>(bytes.front()));
      bytes.remove_prefix(1);
    }
    if (character == '\r' && !bytes.empty() && bytes.front() == '\n') continue;
    if (character == '\n' || character == '\r') {
      out += lineEnd;
    } else if (character == '\t') {
      out += ' ';
    } else {
      AppendUtf8(out, IsHarmful(character) ? kReplacementCharacter : character);
    }
  }
  return out;
}

}  // namespace

bool IsPlainText(std::string_view bytes) {
  return !HasAny(bytes, [](ByteBlock block) { return block.HasOdd(); });
}

std::string SafeText(std::string_view bytes) { return Convert(bytes, '\n'); }

std::string SafeLine(std::string_view bytes) { return Convert(bytes, ' '); }

std::size_t DisplayWidth(std::string_view text) {
  if (IsPlainText(text)) return text.size();
  std::size_t width = 0;
  char32_t character = 0;
  while (!text.empty() && TakeUtf8(text, character)) width += ColumnsOf(character);
  return width;
}

std::string Shortened(std::string_view text, std::size_t columns) {
  std::string_view left = text;
  char32_t character = 0;
  for (std::size_t width = 0; !left.empty();) {
    const std::size_t end = text.size() - left.size();
    if (!TakeUtf8(left, character)) break;
    width += ColumnsOf(character);
    if (width > columns) return std::string(text.substr(0, end)) + "...";
  }
  return std::string(text);
}

}  // namespace krofx::command
