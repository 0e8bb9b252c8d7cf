// Buffers of text and the warnings of the thread, for tests of reading.

#ifndef KROFX_TESTS_SUPPORT_PARSE_TEXT_H_
#define KROFX_TESTS_SUPPORT_PARSE_TEXT_H_

#include <string>
#include <string_view>
#include <vector>

#include "krofx/core/buffer.h"
#include "krofx/core/parse_logger.h"
#include "krofx/core/string.h"

namespace krofx::testing {

/// A buffer that supplies its characters through GetCh, as a host's may.
class ServingBuffer : public KRBuffer {
 public:
  explicit ServingBuffer(std::string_view text) : KRBuffer(0, 0), m_text(text) {}
  char GetCh(s32 index) override {
    ++m_reads;
    return index >= 0 && static_cast<std::size_t>(index) < m_text.size()
               ? m_text[static_cast<std::size_t>(index)]
               : '\0';
  }
  /// How many characters have been asked for.
  std::size_t Reads() const { return m_reads; }
  /// How many characters there are.
  std::size_t Size() const { return m_text.size(); }

 private:
  std::string m_text;
  std::size_t m_reads = 0;
};

/// A text in either kind of buffer.
class TextBuffer {
 public:
  explicit TextBuffer(std::string_view text, bool plain = true)
      : m_isPlain(plain), m_serving(plain ? std::string_view() : text) {
    if (plain) m_plain.WriteLarge(text.data(), static_cast<u32>(text.size()));
  }
  KRBuffer& operator*() { return m_isPlain ? m_plain : m_serving; }
  KRBuffer* Get() { return &**this; }
  /// How often each character of a derived buffer was asked for, on average; 0 for a plain buffer.
  std::size_t ReadsPerCharacter() const {
    return m_isPlain ? 0 : m_serving.Reads() / (m_serving.Size() + 1);
  }

 private:
  const bool m_isPlain;
  KRBuffer m_plain{0, 0};
  ServingBuffer m_serving;
};

/// The text of a string, for comparisons.
inline std::string Str(const KRString& string) {
  return std::string(static_cast<const char*>(string), string.GetStrLength());
}

/// A warning as one line: its name without the prefix, then what it carries of tag text, tag and
/// value text.
inline std::string Line(const KRParseException& warning) {
  KRString name;
  warning.WarningString(name);
  std::string line = Str(name).substr(5);
  if (warning.m_tagText.IsEmpty() == 0) line += " <" + Str(warning.m_tagText) + ">";
  if (warning.m_tag != 0) line += " " + std::to_string(warning.m_tag);
  if (warning.m_valueText.IsEmpty() == 0) line += " \"" + Str(warning.m_valueText) + "\"";
  return line;
}

/// The warnings of the thread, each as a line.
inline std::vector<std::string> Warnings() {
  std::vector<std::string> lines;
  const KRParseLogger* log = KRParseLogger::TheKRParseLogger();
  for (u16 i = 0; i < log->Entries(); ++i) lines.push_back(Line(*log->Get(i)));
  return lines;
}

/// The list of warnings, to compare with.
using Lines = std::vector<std::string>;

/// `count` times `piece`.
inline std::string Repeat(std::string_view piece, std::size_t count) {
  std::string text;
  text.reserve(piece.size() * count);
  for (std::size_t i = 0; i < count; ++i) text += piece;
  return text;
}

}  // namespace krofx::testing

#endif  // KROFX_TESTS_SUPPORT_PARSE_TEXT_H_
