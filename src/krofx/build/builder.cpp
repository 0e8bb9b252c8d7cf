// The builder's core: the build itself, tags, header lines, and lines of finished text.

#include "krofx/build/builder.h"

#include <cstring>
#include <typeinfo>

#include "krofx/build/internal/writing.h"
#include "krofx/core/internal/hooks.h"
#include "krofx/core/string.h"
#include "krofx/core/tag_dictionary.h"
#include "krofx/values/internal/keyword_table.h"

using krofx::internal::hooks;
using krofx::internal::KeywordTraits;
using krofx::internal::Put;

namespace {

// The size of the stack area in which a short line is composed, so that it is written to the buffer
// at once. The longest tag of the dictionary fits, with its end tag.
constexpr std::size_t kShortLine = 160;

// The text of a tag; null for an id that is not a tag. The dictionary is looked up each time
// because a host may destroy it between two builds.
const char* TagText(KRTagID tag) {
  const KRTagDictionary* const dictionary = KRTagDictionary::TheKRTagDictionary();
  return dictionary == nullptr ? nullptr : dictionary->GetTagString(tag);
}

// Collects the pieces of a tag.
class TagLine {
 public:
  void Add(char c) { m_text[m_length++] = c; }
  void Add(const char* text, std::size_t length) {
    std::memcpy(m_text + m_length, text, length);
    m_length += length;
  }
  void PutInto(KRBuffer& buffer) {
    Put(buffer, m_text, m_length);
    m_length = 0;
  }

 private:
  char m_text[kShortLine];
  std::size_t m_length = 0;
};

}  // namespace

KRBuilder::KRBuilder(KRBuildStringCrLfOpt lineEnd, u16 closeTags)
    : m_lineEnd(lineEnd), m_closeTags(closeTags) {}

KRBuildStatus KRBuilder::Build(KRBuffer* buffer, KRDataObj* root, KRBuildStringOpt option,
                               u16 checkRequired) {
  if (buffer == nullptr || root == nullptr) return KRBuildStatus_NullArgument;
  KRSetFireAlarm(KRFireAlarm_None);
  m_buffer = buffer;
  m_stringOption = option;
  const bool isPlain = typeid(*this) == typeid(KRBuilder) && m_closeTags != 1;
  const bool hasTags = KRTagDictionary::TheKRTagDictionary() != nullptr;
  m_plainTarget = isPlain && hasTags && buffer->HasPlainBytes() != 0 ? buffer : nullptr;

  KRBuildStatus status = hooks.buildRoot(*root, *this);
  if (status == KRBuildStatus_Done && checkRequired != 0) {
    if (KRDataObj* const incomplete = hooks.findIncomplete(*root)) {
      if (m_failingObject == nullptr) m_failingObject = incomplete;
      status = KRBuildStatus_MissingTag;
    }
  }
  if (KRGetFireAlarm() != KRFireAlarm_None) {
    if (m_failingObject == nullptr) m_failingObject = root;
    status = KRBuildStatus_Fatal;
  }
  return status;
}

KRBuildStatus KRBuilder::AddTagStart(KRTagID tag) { return AddTag(KRTagType_Start, TagText(tag)); }

KRBuildStatus KRBuilder::AddTagEnd(KRTagID tag) { return AddTag(KRTagType_End, TagText(tag)); }

KRBuildStatus KRBuilder::AddTagElement(KRTagID tag) {
  return AddTag(KRTagType_Element, TagText(tag));
}

KRBuildStatus KRBuilder::AddTag(KRTagType type, const char* text) {
  if (m_buffer == nullptr || text == nullptr) return KRBuildStatus_NullArgument;
  const std::size_t length = std::strlen(text);
  TagLine line;
  // A caller's own text may be longer than any tag; it is then written to the buffer separately.
  const bool isShort = 2 * length + sizeof "</></>\n" <= kShortLine;
  const auto addText = [&] {
    if (isShort) return line.Add(text, length);
    line.PutInto(*m_buffer);
    Put(*m_buffer, text, length);
  };

  line.Add(KR_LEFT_BRACE);
  if (type == KRTagType_End) line.Add(KR_END_MARKER);
  addText();
  line.Add(KR_RIGHT_BRACE);
  if (m_closeTags == 1) {
    line.Add(KR_LEFT_BRACE);
    line.Add(KR_END_MARKER);
    addText();
    line.Add(KR_RIGHT_BRACE);
  }
  if (type != KRTagType_Element) line.Add(KR_NEW_LINE[0]);
  line.PutInto(*m_buffer);
  return KRBuildStatus_Done;
}

KRBuildStatus KRBuilder::AddLine(const char* text, std::size_t length) {
  if (m_buffer == nullptr) return KRBuildStatus_NullArgument;
  if (length < kShortLine) {
    TagLine line;
    line.Add(text, length);
    line.Add(KR_NEW_LINE[0]);
    line.PutInto(*m_buffer);
  } else {
    Put(*m_buffer, text, length);
    Put(*m_buffer, KR_NEW_LINE, 1);
  }
  return KRBuildStatus_Done;
}

KRBuildStatus KRBuilder::AddHeader(KRHeaderTag tag, const KRString& value) {
  using Names = KeywordTraits<KRHeaderTag>;
  if (value.IsEmpty()) return KRBuildStatus_Done;
  if (m_buffer == nullptr) return KRBuildStatus_NullArgument;
  if (static_cast<u32>(tag) >= Names::kCount) return KRBuildStatus_NoTextForm;
  const std::string_view name = Names::kTexts[tag];
  Put(*m_buffer, name.data(), name.size());
  Put(*m_buffer, &KR_HEADER_SEP, 1);
  Put(*m_buffer, value, value.GetStrLength());
  return AddBlankLine();
}

KRBuildStatus KRBuilder::AddBlankLine() {
  if (m_buffer == nullptr) return KRBuildStatus_NullArgument;
  switch (m_lineEnd) {
    case KRBuildStringCrLfOpt_CRLF:
    case KRBuildStringCrLfOpt_CRLF2:
      Put(*m_buffer, "\r\n", 2);
      break;
    case KRBuildStringCrLfOpt_LF:
    case KRBuildStringCrLfOpt_LF2:
      Put(*m_buffer, "\n", 1);
      break;
    case KRBuildStringCrLfOpt_CR:
    case KRBuildStringCrLfOpt_CR2:
      Put(*m_buffer, "\r", 1);
      break;
    default:
      break;
  }
  return KRBuildStatus_Done;
}

KRBuffer* KRBuilder::GetBuffer() { return m_buffer; }

KRBuildStatus KRBuilder::AddBuffer(KRBuffer* source) {
  if (m_buffer == nullptr || source == nullptr) return KRBuildStatus_NullArgument;
  const u32 size = source->GetBufferSize();
  const u32 start = m_buffer->GetBufferOffset();
  if (m_buffer->Write(source) < 0) return KRBuildStatus_Fatal;
  // The buffer does not report an append that fails partway.
  if (m_buffer->GetBufferOffset() - start != size) KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
  return KRBuildStatus_Done;
}

void KRBuilder::SetCRLFoption(KRBuildStringCrLfOpt option) { m_lineEnd = option; }
