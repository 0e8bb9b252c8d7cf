// The helper functions that need no object tree: response text, small numbers, byte order and
// macros.

#include "krofx/values/utility.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "krofx/core/buffer.h"
#include "krofx/core/tag_dictionary.h"
#include "krofx/values/internal/byte_order.h"
#include "krofx/values/internal/digits.h"
#include "krofx/values/internal/keyword_table.h"

using krofx::internal::EqualsWithoutCase;
using krofx::internal::PackU16;
using krofx::internal::PackU32;
using krofx::internal::ReadDigits;
using krofx::internal::UnpackU16;
using krofx::internal::UnpackU32;

namespace {

// "nbsp" is first, so that the search for a name uses all rows, and the search for a character,
// which must not find blanks, begins after it.
constexpr struct {
  std::string_view name;
  char character;
} kMacros[] = {{"nbsp", ' '}, {"gt", '>'}, {"lt", '<'}, {"amp", '&'}};
constexpr std::size_t kFirstWritten = 1;

// Limited to ASCII: the host's locale must not decide which characters are parsed.
constexpr bool MayStandInResponse(char c) {
  return (c >= ' ' && c <= '~') || c == '\r' || c == '\n';
}

}  // namespace

u16 KRUtility::RemoveBadCharFromBuffer(KRBuffer* buffer) {
  if (buffer == nullptr) return 0;
  char* data = buffer->GetBufferPtr();
  if (data == nullptr) return 1;
  // A host may have set a size that is larger than the memory.
  const u32 size = std::min(buffer->GetBufferSize(), buffer->GetBufferAllocation());
  for (u32 i = 0; i < size; ++i) {
    if (!MayStandInResponse(data[i])) data[i] = ' ';
  }
  buffer->SetBufferOffset(size);
  return 1;
}

KRString KRUtility::TagToString(KRTagID tag) {
  const KRTagDictionary* dictionary = KRTagDictionary::TheKRTagDictionary();
  const char* text = dictionary == nullptr ? nullptr : dictionary->GetTagString(tag);
  return text == nullptr ? KRString("TAG UNKNOWN") : KRString(text);
}

KRParseStatus KRUtility::AscToUInt(const char* text, u16* value, s16 exactDigits, s16 scaleDigits) {
  if (text == nullptr || value == nullptr) return KRParseStatus_Invalid;
  return ReadDigits(text, std::strlen(text), *value, exactDigits, scaleDigits)
             ? KRParseStatus_Accepted
             : KRParseStatus_Invalid;
}

void KRUtility::PackByte(char* block, char value) {
  if (block != nullptr) *block = value;
}

char KRUtility::UnPackByte(const char* block) { return block == nullptr ? '\0' : *block; }

void KRUtility::PackShort(char* block, u16 value) {
  if (block != nullptr) PackU16(block, value);
}

u16 KRUtility::UnPackShort(const char* block) {
  return block == nullptr ? u16{0} : UnpackU16(block);
}

void KRUtility::PackLong(char* block, u32 value) {
  if (block != nullptr) PackU32(block, value);
}

u32 KRUtility::UnPackLong(const char* block) { return block == nullptr ? 0 : UnpackU32(block); }

char KRUtility::GetMacroChar(const char* name) {
  if (name == nullptr) return '\0';
  for (const auto& macro : kMacros) {
    if (macro.name == name) return macro.character;
  }
  return '\0';
}

const char* KRUtility::GetMacroString(char c) {
  for (std::size_t i = kFirstWritten; i < std::size(kMacros); ++i) {
    if (kMacros[i].character == c) return kMacros[i].name.data();
  }
  return nullptr;
}

const char* KRUtility::ContainsMacro(const char* text) {
  return text == nullptr ? nullptr : std::strpbrk(text, "><&");
}

char* KRUtility::ContainsMacro(char* text) {
  return text == nullptr ? nullptr : std::strpbrk(text, "><&");
}

namespace krofx::internal {

char MacroCharWithoutCase(std::string_view name) noexcept {
  for (const auto& macro : kMacros) {
    if (EqualsWithoutCase(macro.name, name)) return macro.character;
  }
  return '\0';
}

}  // namespace krofx::internal
