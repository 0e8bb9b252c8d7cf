// Texts of the tree as a person would read them.

#include "krofx/reader/characters/utf8_text.h"

#include <algorithm>

#include "krofx/core/buffer.h"
#include "krofx/core/thread.h"
#include "krofx/reader/characters/charset.h"
#include "krofx/reader/characters/references.h"
#include "krofx/reader/characters/trimmed.h"
#include "krofx/reader/reading.h"

namespace krofx {

namespace internal {

namespace {

constexpr std::string_view kSectionOpen = "<![CDATA[";
constexpr std::string_view kSectionClose = "]]>";

bool IsPlain(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return (byte >= 0x20 && byte < 0x7F && c != '&') || c == '\t' || c == '\n' || c == '\r';
}

// The text in a CDATA section, which the strict parser hands on as it is.
std::string_view WithoutSection(std::string_view text) {
  const bool section = text.size() >= kSectionOpen.size() + kSectionClose.size() &&
                       text.starts_with(kSectionOpen) && text.ends_with(kSectionClose);
  return section ? text.substr(kSectionOpen.size(),
                               text.size() - kSectionOpen.size() - kSectionClose.size())
                 : text;
}

bool IsControl(char32_t code) {
  return (code < 0x20 && code != '\t' && code != '\n' && code != '\r') ||
         (code >= 0x7F && code < 0xA0);
}

bool Append(KRBuffer& out, char32_t code) {
  char bytes[4];
  const std::size_t count = EncodeUtf8(code, bytes);
  return out.Write(bytes, static_cast<u16>(count)) == KRBufferOK;
}

// Appends the characters of a text.
// leftOut: takes whether there were control characters that are not wanted.
bool Convert(std::string_view text, const Charset& charset, Conversion conversion, KRBuffer& out,
             bool& leftOut) {
  Charset utf8;
  if (utf8.Open("UTF-8") != Charset::Opened::kYes) return false;
  const ReferenceReader references(text, utf8, true);
  for (std::size_t at = 0; at < text.size();) {
    char bytes[Charset::kLongest];
    if (const auto found = text[at] == '&' && conversion == Conversion::kAsMeant
                               ? references.Read(at, bytes)
                               : ReferenceReader::Found{};
        found.length != 0) {
      if (out.Write(bytes, static_cast<u16>(found.count)) != KRBufferOK) return false;
      at += found.length;
      continue;
    }
    char32_t code;
    at += charset.Decode(text.substr(at), code);
    if (IsControl(code) && conversion == Conversion::kAsMeant) {
      leftOut = true;
    } else if (!Append(out, code)) {
      return false;
    }
  }
  return true;
}

}  // namespace

KRString ConvertToUtf8(const KRString& text, const KRString& charset, Conversion conversion,
                       bool* whole) {
  if (whole != nullptr) *whole = true;
  std::string_view view(text, text.GetStrLength());
  if (conversion == Conversion::kAsMeant) view = WithoutSection(view);
  KRString result;
  if (std::all_of(view.begin(), view.end(), &IsPlain)) {
    result.Assign(view.data(), static_cast<u16>(view.size()));
    return result;
  }
  // The texts of a file come one after the other, and a set takes some time to open.
  static thread_local Charset set;
  KRBuffer out(0, 256);
  Charset::Opened opened = Charset::Opened::kYes;
  if (charset != set.Name()) opened = set.Open({charset, charset.GetStrLength()});
  // A text whose set is not known is not read in the set of the text before it.
  if (opened == Charset::Opened::kUnknown) opened = set.Open("US-ASCII");
  bool leftOut = false;
  if (opened != Charset::Opened::kYes || !Convert(view, set, conversion, out, leftOut)) {
    KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
    return result;
  }
  std::string_view written(out.GetBufferPtr(), out.GetBufferSize());
  // A control character at an end kept the parser from trimming the white space next to it.
  if (leftOut) written = Trimmed(written);
  // A text that grows beyond what a string takes is cut between two characters.
  std::size_t size = std::min<std::size_t>(written.size(), KRString::kMaxLength);
  while (size > 0 && size < written.size() &&
         (static_cast<unsigned char>(written[size]) & 0xC0) == 0x80) {
    --size;
  }
  if (whole != nullptr) *whole = size == written.size();
  if (size != 0) result.Assign(written.data(), static_cast<u16>(size));
  return result;
}

}  // namespace internal

KRString OfxText::ToUtf8(const KRString& text) const {
  return internal::ConvertToUtf8(text, charset, internal::Conversion::kAsMeant);
}

}  // namespace krofx
