// Appending to arrays of repeated values: the conversion of the element and the array's own store.

#include "krofx/model/value_kinds.h"

#include "krofx/core/internal/byte_search.h"

namespace krofx::internal {

char* WriteCommonText(const KRString& text, char* out, char* end) {
  const std::size_t length = text.GetStrLength();
  // What is written is then looked at a block at a time, which may reach beyond its end.
  if (text.GetEncoding() != KRStringEncode_Plain || length > text.SpecLength() ||
      static_cast<std::size_t>(end - out) < length + ByteBlock::kSize) {
    return nullptr;
  }
  const char* const characters = text;
  // A text that begins with white space may be all of it.
  if (length == 0 || IsWhite(*characters)) return nullptr;
  std::memcpy(out, characters, length);
  return FindMacroCharacter(out, out + length) == out + length ? out + length : nullptr;
}

namespace {

// Appends an enumeration's value, held as a number, read by the enumeration's own keywords.
template <class Enumeration>
StoreResult AppendKeyword(KRDynamicArrayUShort& array, const KRString& text) {
  u16 value = 0;
  if (ReadKeywordIndex<Enumeration>(text, value) == 0) return StoreResult::kBadFormat;
  return array.SetVal(array.Entries(), value) != 0 ? StoreResult::kStored
                                                   : StoreResult::kCannotStore;
}

}  // namespace

void WarnTooLong(KRTagID tag, const KRString& text) {
  LogWarning(KRPW_TOOLONG, text, KRString(), tag, nullptr);
}

StoreResult AppendRepeated(KRDynamicArrayString& array, KRTagID tag, const KRString& text) {
  if (text.IsEmpty()) return StoreResult::kNoText;
  const u16 index = array.Entries();
  if (array.SetVal(index, text) == 0) return StoreResult::kCannotStore;
  if (const KRString* stored = array.Get(index); stored->ExceedsSpecLength()) {
    WarnTooLong(tag, text);
  }
  return StoreResult::kStored;
}

StoreResult AppendRepeated(KRDynamicArrayUShort& array, KRTagID /*tag*/, const KRString& text) {
  u16 value = 0;
  if (KRDataConversion::StringToUShort(text, value) == 0) return StoreResult::kBadFormat;
  return array.SetVal(array.Entries(), value) != 0 ? StoreResult::kStored
                                                   : StoreResult::kCannotStore;
}

StoreResult AppendRepeated(KRDynamicArrayBankAccountType& array, KRTagID /*tag*/,
                           const KRString& text) {
  return AppendKeyword<KRBankAccountType>(array, text);
}

StoreResult AppendRepeated(KRDynamicArrayBankAccountType2& array, KRTagID /*tag*/,
                           const KRString& text) {
  return AppendKeyword<KRBankAccountType2>(array, text);
}

StoreResult AppendRepeated(KRDynamicArrayDayOfWeek& array, KRTagID /*tag*/, const KRString& text) {
  return AppendKeyword<KRDayOfWeek>(array, text);
}

StoreResult AppendRepeated(KRDynamicArrayNorvService& array, KRTagID /*tag*/,
                           const KRString& text) {
  return AppendKeyword<KRNorvService>(array, text);
}

StoreResult AppendRepeated(KRDynamicArrayNorvService2& array, KRTagID /*tag*/,
                           const KRString& text) {
  return AppendKeyword<KRNorvService2>(array, text);
}

StoreResult AppendRepeated(KRDynamicArrayLanguage& array, KRTagID /*tag*/, const KRString& text) {
  KRLanguage language;
  if (KRDataConversion::StringToLanguage(text, language) == 0) return StoreResult::kBadFormat;
  return array.SetVal(array.Entries(), language) != 0 ? StoreResult::kStored
                                                      : StoreResult::kCannotStore;
}

}  // namespace krofx::internal
