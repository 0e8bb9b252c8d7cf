// The two forms, made from one text of the builder.
//
// The builder's text has a tag or an element on each line, and every '<' in it opens a tag, so the
// form of OFX 2 is that text with a closed tag after each value.

#include "krofx/rewriting/rewrite.h"

#include <algorithm>
#include <cstdio>
#include <string_view>

#include "krofx/core/internal/byte_search.h"
#include "krofx/core/internal/whole_write.h"
#include "krofx/core/thread.h"
#include "krofx/reader/characters/charset.h"
#include "krofx/reader/header/charset_choice.h"
#include "krofx/rewriting/whole_builder.h"

namespace krofx {

namespace {

using internal::Charset;

std::string_view BytesOf(const KRBuffer& buffer) {
  const char* const bytes = buffer.GetBufferPtr();
  return bytes == nullptr ? std::string_view() : std::string_view(bytes, buffer.GetBufferSize());
}

// Where the body of a text of the builder begins.
std::size_t BodyOf(std::string_view text) { return std::min(text.find('<'), text.size()); }

// Writes into a buffer, and remembers that it did not take something.
class Output {
 public:
  explicit Output(KRBuffer& buffer) : m_buffer(buffer) {
    m_buffer.SetBufferOffset(m_buffer.GetBufferSize());
  }

  Output& Add(std::string_view text) {
    if (m_buffer.WriteLarge(text.data(), static_cast<u32>(text.size())) != KRBufferOK) {
      m_failed = true;
    }
    return *this;
  }
  bool HasFailed() const { return m_failed; }

 private:
  KRBuffer& m_buffer;
  bool m_failed = false;
};

// A text in the character set 1252, when it can be, and when a reader does not take it for UTF-8.
bool MakeWindows(std::string_view text, KRBuffer& out) {
  Charset windows;
  if (windows.Open("WINDOWS-1252") != Charset::Opened::kYes) return false;
  Output output(out);
  while (!text.empty()) {
    char32_t code;
    const std::size_t width = internal::DecodeUtf8(text, code);
    char bytes[Charset::kLongest];
    const std::size_t count = windows.Encode(code, bytes);
    if (count == 0) return false;
    output.Add({bytes, count});
    text.remove_prefix(width);
  }
  if (output.HasFailed()) return false;
  // A reader looks at the body alone.
  const std::string_view body = BytesOf(out).substr(BodyOf(BytesOf(out)));
  internal::ChosenCharset chosen;
  return internal::ChooseCharset(body, {"USASCII", "1252", {}, false}, windows, chosen) &&
         !chosen.lies;
}

// Writes the header of OFX 1 with the character set that the body is in.
void AddHeader1(std::string_view header, bool utf8, Output& output) {
  while (!header.empty()) {
    const std::size_t end = std::min(header.find('\n'), header.size() - 1) + 1;
    const std::string_view line = header.substr(0, end);
    header.remove_prefix(end);
    if (line.starts_with("ENCODING:")) {
      output.Add(utf8 ? "ENCODING:UTF-8" : "ENCODING:USASCII");
    } else if (line.starts_with("CHARSET:")) {
      output.Add(utf8 ? "CHARSET:NONE" : "CHARSET:1252");
    } else {
      output.Add(line.substr(0, line.find_first_of("\r\n")));
    }
    output.Add("\r\n");
  }
}

bool WriteOfx1(std::string_view text, Output& output) {
  KRBuffer renewed(0, 65536);
  const std::size_t header = BodyOf(text);
  if (internal::HasHighBytes(text.substr(0, header))) {
    // They may be in the fields that name the character set. Those are replaced, and must not
    // choose it.
    Output whole(renewed);
    AddHeader1(text.substr(0, header), false, whole);
    whole.Add(text.substr(header));
    if (whole.HasFailed()) return false;
    text = BytesOf(renewed);
  }
  KRBuffer windows(0, 65536);
  const bool ascii = !internal::HasHighBytes(text);
  const bool fits = ascii || MakeWindows(text, windows);
  if (!ascii && fits) text = BytesOf(windows);
  const std::size_t body = BodyOf(text);
  AddHeader1(text.substr(0, body), !fits, output);
  output.Add(text.substr(body));
  return !output.HasFailed();
}

void AddAttribute(std::string_view name, const char* value, Output& output) {
  output.Add(" ").Add(name).Add("=\"");
  for (const char c : std::string_view(value)) {
    if (c == '"' || c == '<' || c == '&' || c == '>') {
      output.Add(c == '"' ? "&quot;" : c == '<' ? "&lt;" : c == '>' ? "&gt;" : "&amp;");
    } else {
      output.Add({&c, 1});
    }
  }
  output.Add("\"");
}

// A header field as an attribute of the header of OFX 2.
void AddField(const OfxText& text, KRHeaderTag tag, std::string_view name, Output& output) {
  const KRString* const value = text.root->GetHeader(tag);
  AddAttribute(name, value == nullptr ? KRString("NONE") : text.ToUtf8(*value), output);
}

bool WriteOfx2(const OfxText& text, std::string_view body, u16 version, Output& output) {
  char number[8];
  std::snprintf(number, sizeof number, "%u", static_cast<unsigned>(version));
  output.Add("<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"no\"?>\r\n<?OFX");
  AddAttribute("OFXHEADER", "200", output);
  AddAttribute("VERSION", number, output);
  AddField(text, KRHeaderTag_SECURITY, "SECURITY", output);
  AddField(text, KRHeaderTag_OLDFILEUID, "OLDFILEUID", output);
  AddField(text, KRHeaderTag_NEWFILEUID, "NEWFILEUID", output);
  output.Add("?>\r\n");
  // The element whose end tag has been written already.
  std::string_view closed;
  for (std::size_t at = body.find('<'); at != std::string_view::npos;) {
    const std::size_t close = std::min(body.find('>', at), body.size());
    const std::string_view name = body.substr(at + 1, close - at - 1);
    const std::size_t next = body.find('<', close);
    std::string_view value = body.substr(std::min(close + 1, body.size()), next - close - 1);
    while (!value.empty() && internal::IsWhite(value.back())) value.remove_suffix(1);
    at = next;
    if (name.starts_with('/') && name.substr(1) == closed) {
      closed = {};
      continue;
    }
    closed = value.empty() ? std::string_view() : name;
    output.Add("<").Add(name).Add(">").Add(value);
    if (!value.empty()) output.Add("</").Add(name).Add(">");
    output.Add("\r\n");
  }
  return !output.HasFailed();
}

// Makes the whole text in a buffer that is empty.
KRBuildStatus Make(const OfxText& text, const RewriteOptions& options, KRBuffer& made,
                   KRDataObj** failing) {
  KRBuffer built(65536, 65536);
  internal::WholeBuilder builder(text, options.strict);
  const KRBuildStatus status = builder.Build(
      &built, text.root.get(), options.strict ? KRBuildStringOpt_Strict : KRBuildStringOpt_Lenient,
      options.strict ? 1 : 0);
  if (failing != nullptr) *failing = builder.GetFailingObject();
  if (status != KRBuildStatus_Done) return status;

  const std::string_view whole = BytesOf(built);
  Output output(made);
  const bool written = options.form == TextForm::kOfx1
                           ? WriteOfx1(whole, output)
                           : WriteOfx2(text, whole.substr(BodyOf(whole)), options.version, output);
  return written && KRGetFireAlarm() == KRFireAlarm_None ? KRBuildStatus_Done : KRBuildStatus_Fatal;
}

}  // namespace

KRBuildStatus Rewrite(const OfxText& text, KRBuffer& out, const RewriteOptions& options,
                      KRDataObj** failing) {
  if (failing != nullptr) *failing = nullptr;
  if (text.root == nullptr) return KRBuildStatus_NullArgument;
  if (text.kind == TextKind::kMultipart) return KRBuildStatus_TreeNotAllowed;
  KRBuffer made(65536, 65536);
  KRBuildStatus status = Make(text, options, made, failing);
  if (status == KRBuildStatus_Done) {
    const u32 cursor = out.GetBufferOffset();
    out.SetBufferOffset(out.GetBufferSize());
    if (internal::WriteWhole(out, made)) return KRBuildStatus_Done;
    out.SetBufferOffset(cursor);
    status = KRBuildStatus_Fatal;
  }
  if (status == KRBuildStatus_Fatal) KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
  return status;
}

}  // namespace krofx
