// How the builder writes strings: validity, escaping, CDATA, and the elements that are strings.
//
// Text is copied directly from the string into the buffer, in runs between the characters that need
// a macro, so a text without such characters is one write.

#include <cstring>

#include "krofx/build/builder.h"
#include "krofx/build/internal/writing.h"
#include "krofx/core/fixed_strings.h"
#include "krofx/core/string.h"
#include "krofx/values/language.h"
#include "krofx/values/utility.h"

using krofx::internal::Put;
using krofx::internal::WithTag;

namespace {

// Writes up to a given number of characters and drops the rest.
class LimitedOutput {
 public:
  LimitedOutput(KRBuffer& buffer, std::size_t limit) : m_buffer(buffer), m_left(limit) {}

  void Add(const char* text, std::size_t length) {
    if (length > m_left) length = m_left;
    if (length == 0) return;
    Put(m_buffer, text, length);
    m_left -= length;
  }
  void Add(const char* text) { Add(text, std::strlen(text)); }

 private:
  KRBuffer& m_buffer;
  std::size_t m_left;
};

void PutEscaped(LimitedOutput& output, const char* text, const char* end) {
  while (const char* const special = KRUtility::ContainsMacro(text)) {
    output.Add(text, static_cast<std::size_t>(special - text));
    output.Add("&");
    output.Add(KRUtility::GetMacroString(*special));
    output.Add(";");
    text = special + 1;
  }
  output.Add(text, static_cast<std::size_t>(end - text));
}

}  // namespace

KRBuildStatus KRBuilder::AddString(const KRString& text, KRBuildStringMacroOpt macroOption,
                                   KRBuildStringCrLfOpt lineOption) {
  if (m_buffer == nullptr) return KRBuildStatus_NullArgument;
  const char* const characters = text;
  const std::size_t length = text.GetStrLength();

  std::size_t limit = SIZE_MAX;
  if (!text.IsValid()) {
    const bool isOverLong = length > text.SpecLength();
    if (m_stringOption == KRBuildStringOpt_Strict) {
      return isOverLong ? KRBuildStatus_TooLong : KRBuildStatus_NotValid;
    }
    if (isOverLong) limit = text.SpecLength();
  }

  LimitedOutput output(*m_buffer, limit);
  if (text.GetEncoding() == KRStringEncode_CDATA) {
    output.Add(characters, length);
    output.Add("<![CDATA[");
    output.Add(characters, length);
    output.Add("]]>");
  } else if (macroOption == KRBuildStringMacroOpt_Escape) {
    PutEscaped(output, characters, characters + length);
  } else {
    output.Add(characters, length);
  }
  if (lineOption == KRBuildStringCrLfOpt_NewLine) Put(*m_buffer, KR_NEW_LINE, 1);
  return KRBuildStatus_Done;
}

KRBuildStatus KRBuilder::AddString(const KRString* text, KRBuildStringMacroOpt macroOption,
                                   KRBuildStringCrLfOpt lineOption) {
  if (text == nullptr) return KRBuildStatus_EmptyText;
  return AddString(*text, macroOption, lineOption);
}

KRBuildStatus KRBuilder::AddEscaped(const KRString& text) {
  return AddString(text, KRBuildStringMacroOpt_Escape, KRBuildStringCrLfOpt_NewLine);
}

KRBuildStatus KRBuilder::AddTagKRString(KRTagID tag, const KRString& text) {
  if (text.IsWhiteSpace()) return KRBuildStatus_EmptyText;
  return WithTag(*this, tag, [&] { return AddEscaped(text); });
}

KRBuildStatus KRBuilder::AddTagKRString(KRTagID tag, const KRString* text) {
  if (text == nullptr) return KRBuildStatus_EmptyText;
  return AddTagKRString(tag, *text);
}

KRBuildStatus KRBuilder::AddServerID(const KRString36& value) { return AddEscaped(value); }

KRBuildStatus KRBuilder::AddPayeeID(const KRString12& value) { return AddEscaped(value); }

KRBuildStatus KRBuilder::AddLanguage(const KRLanguage& value) {
  return AddEscaped(value.GetString());
}

KRBuildStatus KRBuilder::AddTagKRServerID(KRTagID tag, const KRString36& value) {
  return WithTag(*this, tag, [&] { return AddServerID(value); });
}

KRBuildStatus KRBuilder::AddTagKRPayeeID(KRTagID tag, const KRString12& value) {
  return WithTag(*this, tag, [&] { return AddPayeeID(value); });
}

KRBuildStatus KRBuilder::AddTagKRLanguage(KRTagID tag, const KRLanguage& value) {
  return WithTag(*this, tag, [&] { return AddLanguage(value); });
}
