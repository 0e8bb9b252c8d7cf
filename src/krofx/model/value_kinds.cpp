// Appending to arrays of repeated values, and the common form of texts.

#include "krofx/model/value_kinds.h"

#include "krofx/core/internal/byte_search.h"

namespace krofx::internal {

char* WriteCommonText(const KRString& text, char* out, const char* end) {
  const std::size_t length = text.GetStrLength();
  if (text.GetEncoding() != KRStringEncode_Plain || length > text.SpecLength() ||
      static_cast<std::size_t>(end - out) < length) {
    return nullptr;
  }
  const char* const characters = text;
  // A text that begins with white space may have nothing else.
  if (length == 0 || IsWhite(*characters)) return nullptr;
  return CopyWithoutMacros(characters, length, out) ? out + length : nullptr;
}

namespace {

// Appends a value of an enumeration, as a number, read by the keywords of the enumeration.
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

namespace {

StoreResult StoreEntry(KRDynamicArrayString& array, KRTagID tag, u16 index, const KRString& text) {
  if (text.IsEmpty()) return StoreResult::kNoText;
  if (array.SetVal(index, text) == 0) return StoreResult::kCannotStore;
  if (const KRString* stored = array.Get(index); stored->ExceedsSpecLength()) {
    WarnTooLong(tag, text);
  }
  return StoreResult::kStored;
}

}  // namespace

StoreResult AppendRepeated(KRDynamicArrayString& array, KRTagID tag, const KRString& text) {
  return StoreEntry(array, tag, array.Entries(), text);
}

u16 SetTextEntry(KRDataObj& object, KRTagID tag, KRDynamicArrayString& array, u16 index,
                 const KRString& text) {
  const StoreResult stored = StoreEntry(array, tag, index, text);
  if (stored == StoreResult::kNoText) return 3;
  return NoteValue(object, stored == StoreResult::kStored ? 1 : 0, tag);
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
  language = text;
  return array.SetVal(array.Entries(), language) != 0 ? StoreResult::kStored
                                                      : StoreResult::kCannotStore;
}

}  // namespace krofx::internal
