// How the builder writes keywords.
//
// For each enumeration keywords.schema names one of three ways of writing. The three ways are here;
// the operations themselves are generated from the same rows.

#include "krofx/build/builder.h"
#include "krofx/build/internal/writing.h"
#include "krofx/core/string.h"
#include "krofx/values/internal/keyword_table.h"
#include "krofx/values/keywords.h"

using krofx::internal::KeywordTraits;
using krofx::internal::KeywordWriter;
using krofx::internal::WithTag;

template <class E>
KRBuildStatus KRBuilder::AddKeyword(E value) {
  using Traits = KeywordTraits<E>;
  if constexpr (Traits::kWriter == KeywordWriter::Direct) {
    if (static_cast<u32>(value) >= Traits::kCount) return KRBuildStatus_NoTextForm;
    const std::string_view text = Traits::kTexts[value];
    return AddLine(text.data(), text.size());
  } else {
    KRString text;
    const u16 found = Traits::ToText(value, text);
    if constexpr (Traits::kWriter == KeywordWriter::Tolerant) {
      AddString(&text, KRBuildStringMacroOpt_Escape, KRBuildStringCrLfOpt_NewLine);
      return KRBuildStatus_Done;
    } else {
      if (!found) return KRBuildStatus_NoTextForm;
      return AddString(&text, KRBuildStringMacroOpt_AsIs, KRBuildStringCrLfOpt_NewLine);
    }
  }
}

KRBuildStatus KRBuilder::AddTagKRFrequency(KRTagID tag, KRFrequency value) {
  KRString text;
  if (!KeywordTraits<KRFrequency>::ToText(value, text)) return KRBuildStatus_NoTextForm;
  return WithTag(*this, tag, [&] {
    return AddString(text, KRBuildStringMacroOpt_AsIs, KRBuildStringCrLfOpt_NewLine);
  });
}

#include "krofx/build/keyword_writers.h"
