// Judging what a text declares by its bytes.

#include "krofx/reader/header/charset_choice.h"

#include <algorithm>
#include <cstring>

#include "krofx/reader/characters/references.h"
#include "krofx/reader/characters/working_text.h"
#include "krofx/reader/header/header.h"
#include "krofx/reader/records/recorder.h"
#include "krofx/values/internal/keyword_table.h"

namespace krofx::internal {

namespace {

constexpr std::string_view kUsual = "WINDOWS-1252";

bool IsOneOf(std::string_view text, std::initializer_list<std::string_view> words) {
  return std::any_of(words.begin(), words.end(),
                     [text](std::string_view word) { return EqualsWithoutCase(text, word); });
}

// A name that iconv knows for what files say.
class CharsetName {
 public:
  explicit CharsetName(std::string_view declared) {
    const bool digits =
        !declared.empty() &&
        std::all_of(declared.begin(), declared.end(), [](char c) { return c >= '0' && c <= '9'; });
    if (IsOneOf(declared, {"", "NONE", "ANSI", "USASCII", "US-ASCII", "ASCII", "ISO-8859-1",
                           "8859-1", "ISO8859-1", "LATIN1", "LATIN-1", "1252", "CP1252"})) {
      // ISO-8859-1 has control characters where those who write it mean signs of this set.
      Put("", kUsual);
    } else if (IsOneOf(declared, {"UTF8", "CSUTF8", "UNICODE", "CSUNICODE", "UTF-16", "UTF16"})) {
      // A text in UTF-16 has become UTF-8 by now.
      Put("", "UTF-8");
    } else if (digits) {
      Put(declared.size() == 4 && declared.starts_with("125") ? "WINDOWS-" : "CP", declared);
    } else if (declared.starts_with("8859-")) {
      Put("ISO-", declared);
    } else {
      Put("", declared);
    }
  }

  std::string_view Get() const { return {m_name, m_length}; }

 private:
  void Put(std::string_view prefix, std::string_view name) {
    for (const std::string_view part : {prefix, name}) {
      const std::size_t count = std::min(part.size(), sizeof m_name - m_length);
      std::memcpy(m_name + m_length, part.data(), count);
      m_length += count;
    }
  }

  char m_name[64];
  std::size_t m_length = 0;
};

std::string_view NameOf(const DeclaredCharset& declared) {
  if (!declared.xmlEncoding.empty()) return declared.xmlEncoding;
  if (declared.xml && declared.encoding.empty()) return "UTF-8";
  if (!IsOneOf(declared.encoding, {"", "USASCII", "US-ASCII", "ASCII", "NONE"})) {
    // Some name the character set here.
    return declared.encoding;
  }
  return declared.charset;
}

}  // namespace

void HighByteCount::Count(std::string_view part) {
  for (std::string_view rest = part; !rest.empty();) {
    const auto* const high = std::find_if(
        rest.begin(), rest.end(), [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
    rest.remove_prefix(static_cast<std::size_t>(high - rest.begin()));
    if (rest.empty()) break;
    if (!Any()) m_first = m_passed + part.size() - rest.size();
    char32_t code;
    const std::size_t bytes = DecodeUtf8(rest, code);
    ++(bytes > 1 ? m_whole : m_broken);
    rest.remove_prefix(bytes);
  }
  m_passed += part.size();
}

bool MakeUtf8(WorkingText& text, u32 from, const Charset& charset) {
  TextEdit edit(text);
  const std::string_view bytes = text.Bytes();
  edit.Keep(0, from);
  for (u32 at = from; at < text.Size();) {
    const auto* const high = std::find_if(bytes.begin() + at, bytes.end(), [](char c) {
      return static_cast<unsigned char>(c) >= 0x80;
    });
    const u32 next = static_cast<u32>(high - bytes.begin());
    edit.Keep(at, next);
    at = next;
    if (at == text.Size()) break;
    char32_t code;
    const std::size_t width = charset.Decode(bytes.substr(at), code);
    char out[4];
    edit.Put({out, EncodeUtf8(code, out)}, at, static_cast<u8>(width));
    at += static_cast<u32>(width);
  }
  return edit.Finish();
}

bool ChooseCharset(std::string_view text, const DeclaredCharset& declared, Charset& charset,
                   ChosenCharset& chosen) {
  HighByteCount bytes;
  if (HasHighBytes(text)) bytes.Count(text);
  return ChooseCharset(bytes, declared, charset, chosen);
}

bool ChooseCharset(const HighByteCount& bytes, const DeclaredCharset& declared, Charset& charset,
                   ChosenCharset& chosen) {
  Charset::Opened opened = charset.Open(CharsetName(NameOf(declared)).Get());
  if (opened == Charset::Opened::kUnknown) {
    chosen.unknown = true;
    opened = charset.Open(kUsual);
  }
  if (opened == Charset::Opened::kNoMemory) return false;
  chosen.ascii = !bytes.Any();
  if (chosen.ascii) return true;
  chosen.high = bytes.First();
  const bool saysUtf8 = charset.IsUtf8();
  // Names that were cut to a length leave a piece of a character now and then.
  constexpr std::size_t kMostlyWhole = 4;
  const bool isUtf8 = saysUtf8
                          ? bytes.Whole() >= bytes.Broken()
                          : bytes.Whole() != 0 && bytes.Whole() >= kMostlyWhole * bytes.Broken();
  if (isUtf8 == saysUtf8) return true;
  chosen.lies = true;
  return charset.Open(isUtf8 ? std::string_view("UTF-8") : kUsual) == Charset::Opened::kYes;
}

DeclaredCharset DeclaredIn(const Header& header) {
  return {header.Field(KRHeaderTag_ENCODING), header.Field(KRHeaderTag_CHARSET), header.xmlEncoding,
          header.form == TextForm::kOfx2};
}

bool SayCharset(const WorkingText& text, const Header& header, const Charset& charset,
                const ChosenCharset& chosen, std::size_t high, Recorder& recorder) {
  const std::string_view declared = NameOf(DeclaredIn(header));
  const auto note = [&](MendingKind kind, std::size_t offset) {
    return recorder.Note(kind, {offset, PathLog::kNoPath}, "CHARSET", declared, charset.Name());
  };
  if (chosen.unknown) {
    const auto at = static_cast<std::size_t>(declared.data() - header.base);
    if (!note(MendingKind::kHeaderValue, text.ToOriginal(at))) return false;
  }
  return !chosen.lies || note(MendingKind::kCharset, high);
}

KRParseStatus SettleCharset(WorkingText& text, Header& header, Recorder& recorder, Charset& charset,
                            ChosenCharset& chosen) {
  const std::string_view body = text.Bytes().substr(header.body);
  if (!ChooseCharset(body, DeclaredIn(header), charset, chosen)) return KRParseStatus_Fatal;
  const std::size_t high = text.ToOriginal(header.body + chosen.high);
  if (!SayCharset(text, header, charset, chosen, high, recorder)) return KRParseStatus_Invalid;
  if (charset.IsUtf8() || !HasForeignReference(body, charset)) return KRParseStatus_Accepted;
  const bool made = (chosen.ascii || MakeUtf8(text, header.body, charset)) &&
                    charset.Open("UTF-8") == Charset::Opened::kYes;
  chosen.ascii = false;
  return made ? KRParseStatus_Accepted : KRParseStatus_Fatal;
}

}  // namespace krofx::internal
