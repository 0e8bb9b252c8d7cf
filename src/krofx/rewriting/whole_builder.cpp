// Writing texts in UTF-8.

#include "krofx/rewriting/whole_builder.h"

#include "krofx/build/internal/writing.h"
#include "krofx/core/parse_logger.h"
#include "krofx/reader/characters/utf8_text.h"
#include "krofx/values/utility.h"

namespace krofx::internal {

KRBuildStatus WholeBuilder::AddHeader(KRHeaderTag tag, const KRString& value) {
  bool whole = true;
  const KRString shown = ConvertToUtf8(value, m_text.charset, Conversion::kAsWritten, &whole);
  return whole ? KRBuilder::AddHeader(tag, shown) : KRBuildStatus_TooLong;
}

KRBuildStatus WholeBuilder::AddTagElement(KRTagID tag) {
  m_secret = IsSecret(tag);
  return KRBuilder::AddTagElement(tag);
}

KRBuildStatus WholeBuilder::AddString(const KRString& text, KRBuildStringMacroOpt macroOption,
                                      KRBuildStringCrLfOpt lineOption) {
  KRBuffer* const buffer = GetBuffer();
  if (buffer == nullptr) return KRBuildStatus_NullArgument;
  if (m_strict && text.IsValid() == 0) {
    return text.ExceedsSpecLength() != 0 ? KRBuildStatus_TooLong : KRBuildStatus_NotValid;
  }
  // A password is what it is, letter by letter.
  bool whole = true;
  const KRString shown = ConvertToUtf8(
      text, m_text.charset, m_secret ? Conversion::kAsWritten : Conversion::kAsMeant, &whole);
  if (!whole) return KRBuildStatus_TooLong;
  for (const char* at = shown; *at != '\0'; ++at) {
    const char* const macro =
        macroOption == KRBuildStringMacroOpt_Escape ? KRUtility::GetMacroString(*at) : nullptr;
    if (macro == nullptr) {
      Put(*buffer, at, 1);
      continue;
    }
    *buffer += "&";
    *buffer += macro;
    *buffer += ";";
  }
  if (lineOption == KRBuildStringCrLfOpt_NewLine) Put(*buffer, KR_NEW_LINE, 1);
  return KRBuildStatus_Done;
}

}  // namespace krofx::internal
