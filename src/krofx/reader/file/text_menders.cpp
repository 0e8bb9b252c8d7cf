// The text menders: byte order marks, wide characters, control characters.

#include "krofx/reader/file/text_menders.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "krofx/reader/characters/charset.h"
#include "krofx/reader/characters/working_text.h"
#include "krofx/reader/records/recorder.h"

namespace krofx::internal {

namespace {

Spot At(const WorkingText& text, std::size_t position) {
  return {text.ToOriginal(position), PathLog::kNoPath};
}

bool IsControl(unsigned char c) {
  return (c < 0x20 && c != '\t' && c != '\n' && c != '\r') || c == 0x7F;
}

// The first control character of [at, end), or `end`.
const char* FindControl(const char* at, const char* end) {
  constexpr std::ptrdiff_t kBlock = 256;
  for (; end - at >= kBlock; at += kBlock) {
    // Without a way out of it, the compiler makes vectors of this loop.
    u8 any = 0;
    for (std::ptrdiff_t place = 0; place < kBlock; ++place) {
      const auto c = static_cast<u8>(at[place]);
      const int isLow = (c < 0x20) & (c != '\t') & (c != '\n') & (c != '\r');
      any = static_cast<u8>(any | isLow | (c == 0x7F));
    }
    if (any != 0) break;
  }
  return std::find_if(at, end, [](char c) { return IsControl(static_cast<unsigned char>(c)); });
}

// How wide characters are written.
struct Width {
  u8 bytes = 1;
  bool big = false;  // The highest byte comes first.
  u8 mark = 0;       // Bytes of a mark in front that says so.
};

// By a mark, or by the zeros around the first character, which is one of ASCII.
Width FindWidth(std::string_view text) {
  using namespace std::string_view_literals;
  if (text.starts_with("\xFF\xFE\0\0"sv)) return {4, false, 4};
  if (text.starts_with("\0\0\xFE\xFF"sv)) return {4, true, 4};
  if (text.starts_with("\xFF\xFE"sv)) return {2, false, 2};
  if (text.starts_with("\xFE\xFF"sv)) return {2, true, 2};
  if (text.size() < 4) return {};
  const auto zero = [text](std::size_t at) { return text[at] == '\0'; };
  if (!zero(0) && zero(1) && zero(2) && zero(3)) return {4, false, 0};
  if (zero(0) && zero(1) && zero(2) && !zero(3)) return {4, true, 0};
  if (!zero(0) && zero(1) && !zero(2) && zero(3)) return {2, false, 0};
  if (zero(0) && !zero(1) && zero(2) && !zero(3)) return {2, true, 0};
  return {};
}

char32_t UnitAt(std::string_view text, std::size_t at, Width width) {
  char32_t unit = 0;
  for (u8 index = 0; index < width.bytes; ++index) {
    const std::size_t place = at + (width.big ? index : width.bytes - 1u - index);
    unit = unit << 8 | static_cast<unsigned char>(text[place]);
  }
  return unit;
}

KRParseStatus MendByteOrderMark(WorkingText& text, Recorder& recorder) {
  constexpr std::string_view kMark = "\xEF\xBB\xBF";
  if (!text.Bytes().starts_with(kMark)) return KRParseStatus_Accepted;
  // XML may begin with one.
  const bool xml = text.Bytes().substr(kMark.size()).starts_with("<?");
  if (!xml && !recorder.Note(MendingKind::kByteOrderMark, At(text, 0), {}, {}, {})) {
    return KRParseStatus_Invalid;
  }
  TextEdit edit(text);
  edit.Keep(kMark.size(), text.Size());
  return edit.Finish() ? KRParseStatus_Accepted : KRParseStatus_Fatal;
}

KRParseStatus MendControlCharacters(WorkingText& text, Recorder& recorder) {
  const std::string_view bytes = text.Bytes();
  const char* const control = FindControl(bytes.begin(), bytes.end());
  // What follows the last tag is no text, so it needs no mending.
  const std::size_t last = bytes.rfind('>');
  if (last == std::string_view::npos || control >= bytes.data() + last) {
    if (control == bytes.end()) return KRParseStatus_Accepted;
  } else if (!recorder.Note(MendingKind::kControlCharacter,
                            At(text, static_cast<std::size_t>(control - bytes.data())), {}, {},
                            {})) {
    return KRParseStatus_Invalid;
  }
  return TakeOutControlCharacters(text) ? KRParseStatus_Accepted : KRParseStatus_Fatal;
}

constexpr TextMender kMenders[] = {&MendByteOrderMark, &MendControlCharacters};

}  // namespace

bool HasWideCharacters(std::string_view text) { return FindWidth(text).bytes != 1; }

std::size_t FindControlCharacter(std::string_view text) {
  return static_cast<std::size_t>(FindControl(text.begin(), text.end()) - text.begin());
}

bool TakeOutControlCharacters(WorkingText& text) {
  const std::string_view bytes = text.Bytes();
  TextEdit edit(text);
  const char* kept = bytes.begin();
  for (const char* control = FindControl(kept, bytes.end()); control != bytes.end();
       control = FindControl(kept, bytes.end())) {
    edit.Keep(static_cast<u32>(kept - bytes.begin()), static_cast<u32>(control - bytes.begin()));
    kept = control + 1;
  }
  edit.Keep(static_cast<u32>(kept - bytes.begin()), text.Size());
  return edit.Finish();
}

KRParseStatus MendWideCharacters(WorkingText& file, Recorder& recorder) {
  const std::string_view bytes = file.Bytes();
  const Width width = FindWidth(bytes);
  if (width.bytes == 1) return KRParseStatus_Accepted;
  const char* const name = width.bytes == 4 ? "UTF-32" : "UTF-16";
  if (!recorder.Note(MendingKind::kWideCharacters, {}, {}, name, "UTF-8")) {
    return KRParseStatus_Invalid;
  }
  TextEdit edit(file);
  std::size_t at = width.mark;
  while (at + width.bytes <= bytes.size()) {
    char32_t code = UnitAt(bytes, at, width);
    u8 count = width.bytes;
    const bool high = width.bytes == 2 && code >= 0xD800 && code < 0xDC00;
    if (high && at + 4 <= bytes.size()) {
      const char32_t low = UnitAt(bytes, at + 2, width);
      if (low >= 0xDC00 && low < 0xE000) {
        code = 0x10000 + ((code - 0xD800) << 10) + (low - 0xDC00);
        count = 4;
      }
    }
    char out[4];
    std::size_t size = EncodeUtf8(code, out);
    if (size == 0) size = EncodeUtf8(0xFFFD, out);
    if (code >= 0x80 || !IsControl(static_cast<unsigned char>(code))) {
      edit.Put({out, size}, static_cast<u32>(at), count);
    }
    at += count;
  }
  if (!edit.Finish()) return KRParseStatus_Fatal;
  file.unit = width.bytes;
  return KRParseStatus_Accepted;
}

std::span<const TextMender> TextMenders() { return kMenders; }

}  // namespace krofx::internal
