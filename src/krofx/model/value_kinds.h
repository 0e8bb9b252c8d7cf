// The kinds of values that aggregate rows hold: for each, how a text becomes the value, how the
// value becomes an element and how it is copied.
//
// Every kind is one constant ValueKind made from a template, named in rows as kAmount,
// kKeyword<...> and so on. A text that is not a value of the kind leaves the member as it was.

#ifndef KROFX_MODEL_VALUE_KINDS_H_
#define KROFX_MODEL_VALUE_KINDS_H_

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstring>
#include <limits>
#include <string_view>
#include <type_traits>
#include <utility>

#include "krofx/build/builder.h"
#include "krofx/core/fixed_strings.h"
#include "krofx/model/internal/aggregate.h"
#include "krofx/model/internal/stored_values.h"
#include "krofx/values/data_conversion.h"
#include "krofx/values/date_time.h"
#include "krofx/values/language.h"
#include "krofx/values/precision_integer.h"

namespace krofx::internal {

/// Copies a value by assignment.
template <class T>
u16 CopyValue(void* to, const void* from) {
  *static_cast<T*>(to) = *static_cast<const T*>(from);
  return 1;
}

/// @return the form of values that are held as a T.
template <class T>
constexpr ValueForm FormOf() {
  if constexpr (std::is_base_of_v<KRPrecisionInteger, T>) return ValueForm::kDecimal;
  if constexpr (std::is_base_of_v<KRDateTime, T>) return ValueForm::kDate;
  if constexpr (std::is_base_of_v<KRTime, T>) return ValueForm::kTime;
  if constexpr (std::is_base_of_v<KRLanguage, T>) return ValueForm::kLanguage;
  if constexpr (std::is_enum_v<T>) return ValueForm::kKeyword;
  return std::is_integral_v<T> ? ValueForm::kInteger : ValueForm::kText;
}

/// A kind whose text goes through `Read(text, value)` and which `Write(builder, tag, value)`
/// writes.
/// @tparam Form what the text of the value looks like.
/// @tparam Stored the class of the member, which converts from and to a T.
/// @tparam ReadCommon reads texts of the common form, without warnings; null when the kind has no
///         such form: see ValueKind::fromCommonText.
/// @tparam WriteCommon writes the value as ValueKind::writeCommon does; null when the kind has no
///         such form.
template <class T, u16 (*Read)(const KRString&, T&),
          KRBuildStatus (*Write)(KRBuilder&, KRTagID, const T&), ValueForm Form = FormOf<T>(),
          class Stored = T, auto ReadCommon = nullptr, auto WriteCommon = nullptr>
struct Converted {
  static StoreResult FromText(KRDataObj&, KRTagID, void* member, const KRString& text) {
    T value{};
    if (Read(text, value) == 0) return StoreResult::kBadFormat;
    *static_cast<Stored*>(member) = value;
    return StoreResult::kStored;
  }
  static KRBuildStatus Build(KRBuilder& builder, KRTagID tag, const void* member) {
    return Write(builder, tag, *static_cast<const Stored*>(member));
  }
  static bool FromCommonText(void* member, const char* text, std::size_t length) {
    return ReadCommon(text, length, *static_cast<Stored*>(member));
  }
  static char* ToText(const void* member, char* out, const char* end) {
    return WriteCommon(*static_cast<const Stored*>(member), out, end);
  }
  static constexpr decltype(ValueKind::fromCommonText) CommonReader() {
    if constexpr (std::is_null_pointer_v<decltype(ReadCommon)>) {
      return nullptr;
    } else {
      return &FromCommonText;
    }
  }
  static constexpr decltype(ValueKind::writeCommon) CommonWriter() {
    if constexpr (std::is_null_pointer_v<decltype(WriteCommon)>) {
      return nullptr;
    } else {
      return &ToText;
    }
  }
  static constexpr ValueKind kKind{&FromText, &Build,         &CopyValue<Stored>,
                                   Form,      CommonReader(), CommonWriter()};
};

/// As Converted, for a value that keeps a part of its state when a text is read into it.
template <class T, u16 (*Read)(const KRString&, T&),
          KRBuildStatus (*Write)(KRBuilder&, KRTagID, const T&), ValueForm Form, auto WriteCommon>
struct ConvertedInPlace : Converted<T, Read, Write, Form, T, nullptr, WriteCommon> {
  using Base = Converted<T, Read, Write, Form, T, nullptr, WriteCommon>;
  static StoreResult FromText(KRDataObj&, KRTagID, void* member, const KRString& text) {
    T& held = *static_cast<T*>(member);
    T value = held;
    if (Read(text, value) == 0) return StoreResult::kBadFormat;
    held = value;
    return StoreResult::kStored;
  }
  static constexpr ValueKind kKind{&FromText, &Base::Build, &CopyValue<T>,
                                   Form,      nullptr,      Base::CommonWriter()};
};

/// Reads a text of the common form into a stored value.
template <class Stored>
bool ReadStored(const char* text, std::size_t length, Stored& value) {
  return value.AssignCommon(text, length);
}

/// Writes tag and value by an operation of the builder.
template <class T, auto Operation>
KRBuildStatus WriteBy(KRBuilder& builder, KRTagID tag, const T& value) {
  return (builder.*Operation)(tag, value);
}

/// Writes a text, and zeros in front of it up to `width` characters.
/// @return the end; null when there is too little room.
inline char* WriteText(std::string_view text, char* out, const char* end, std::size_t width = 0) {
  const std::size_t zeros = width > text.size() ? width - text.size() : 0;
  if (static_cast<std::size_t>(end - out) < zeros + text.size()) return nullptr;
  return std::copy(text.begin(), text.end(), std::fill_n(out, zeros, '0'));
}

/// Writes an integer in decimal digits, `Width` of them at least.
template <class Integer, std::size_t Width = 0>
char* WriteInteger(const Integer& value, char* out, const char* end) {
  char digits[std::numeric_limits<Integer>::digits10 + 2];
  const char* const last = std::to_chars(digits, digits + sizeof digits, value).ptr;
  return WriteText({digits, static_cast<std::size_t>(last - digits)}, out, end, Width);
}

/// Writes a time that is valid.
inline char* WriteTime(const KRTime& value, char* out, const char* end) {
  KRTime copy(value);
  KRString text;
  if (copy.GetTimeString(text) == 0) return nullptr;
  return WriteText({text, text.GetStrLength()}, out, end);
}

/// Reads an exact decimal by the rule of its class.
template <class Number>
u16 ReadNumber(const KRString& text, Number& value) {
  return value.ConvertStringToKRPrecisionInteger(text);
}

/// Writes a number that its class allows.
template <class Number>
char* WriteStoredNumber(const StoredNumber<Number>& value, char* out, const char* end) {
  if (end - out < KRPrecisionInteger::kTextSize) return nullptr;
  if constexpr (std::is_same_v<Number, KRPrecisionInteger>) {
    if (value.Plain().decimals > KRPrecisionInteger::kMaxDecimals) return nullptr;
  } else {
    const Number number = value;
    if (number.IsValid() == 0) return nullptr;
  }
  return WriteDecimal(value.Plain(), out);
}

/// An exact decimal of class `Number`, written by the builder's `Operation`.
template <class Number, auto Operation>
inline constexpr const ValueKind& kNumber =
    Converted<Number, &ReadNumber<Number>, &WriteBy<Number, Operation>, FormOf<Number>(),
              StoredNumber<Number>, &ReadStored<StoredNumber<Number>>,
              &WriteStoredNumber<Number>>::kKind;

/// Writes a date that is valid.
inline char* WriteStoredDate(const StoredDate& value, char* out, const char* end) {
  const PlainDate* const date = value.Plain();
  if (date == nullptr || end - out < static_cast<std::ptrdiff_t>(PlainDate::kTextSize)) {
    return nullptr;
  }
  return WriteDate(*date, out);
}

inline constexpr const ValueKind& kDateTime =
    Converted<KRDateTime, &KRDataConversion::StringToDateTime,
              &WriteBy<KRDateTime, &KRBuilder::AddTagKRDateTime>, FormOf<KRDateTime>(), StoredDate,
              &ReadStored<StoredDate>, &WriteStoredDate>::kKind;
inline constexpr const ValueKind& kTime =
    Converted<KRTime, &KRDataConversion::StringToTime, &WriteBy<KRTime, &KRBuilder::AddTagKRTime>,
              FormOf<KRTime>(), KRTime, nullptr, &WriteTime>::kKind;
inline constexpr const ValueKind& kBoolean =
    Converted<u16, &KRDataConversion::StringToBoolean, &WriteBy<u16, &KRBuilder::AddTagKRBoolean>,
              ValueForm::kBoolean>::kKind;
/// An integer, written by the builder's `Operation`.
template <class Integer, u16 (*Read)(const KRString&, Integer&), auto Operation>
inline constexpr const ValueKind& kInteger =
    Converted<Integer, Read, &WriteBy<Integer, Operation>, ValueForm::kInteger, Integer, nullptr,
              &WriteInteger<Integer>>::kKind;
inline constexpr const ValueKind& kUShort =
    kInteger<u16, &KRDataConversion::StringToUShort,
             static_cast<KRBuildStatus (KRBuilder::*)(KRTagID, u16)>(&KRBuilder::AddTagKRUShort)>;
inline constexpr const ValueKind& kSShort =
    kInteger<s16, &KRDataConversion::StringToSShort, &KRBuilder::AddTagKRSShort>;
inline constexpr const ValueKind& kULong =
    kInteger<u32, &KRDataConversion::StringToULong, &KRBuilder::AddTagKRULong>;
inline constexpr const ValueKind& kSLong =
    kInteger<s32, &KRDataConversion::StringToSLong, &KRBuilder::AddTagKRSLong>;

/// A language, which needs a text.
struct LanguageKind : Converted<KRLanguage, &KRDataConversion::StringToLanguage,
                                &WriteBy<KRLanguage, &KRBuilder::AddTagKRLanguage>> {
  static StoreResult FromText(KRDataObj& owner, KRTagID tag, void* member, const KRString& text) {
    return text.IsEmpty() != 0 ? StoreResult::kNoText
                               : Converted::FromText(owner, tag, member, text);
  }
  static constexpr ValueKind kKind{&FromText, &Build, &CopyValue<KRLanguage>, ValueForm::kLanguage};
};
inline constexpr const ValueKind& kLanguage = LanguageKind::kKind;

/// Writes a u16 with leading zeros to `Width` digits.
template <u16 Width>
KRBuildStatus WritePadded(KRBuilder& builder, KRTagID tag, const u16& value) {
  return builder.AddTagKRUShort(tag, value, '0', Width);
}
template <u16 Width>
inline constexpr const ValueKind& kPaddedUShort =
    Converted<u16, &KRDataConversion::StringToUShort, &WritePadded<Width>, ValueForm::kInteger, u16,
              nullptr, &WriteInteger<u16, Width>>::kKind;

/// Reads the keyword of an enumeration.
template <class Enumeration>
u16 ReadKeyword(const KRString& text, Enumeration& value) {
  return KeywordTraits<Enumeration>::FromText(text, value);
}

/// As ReadKeyword, without a warning for a text that is not a keyword.
template <class Enumeration>
bool ReadKnownKeyword(const char* text, std::size_t length, Enumeration& value) {
  const s32 found = FindKeyword(KeywordTraits<Enumeration>::kTable, std::string_view(text, length));
  if (found >= 0) value = static_cast<Enumeration>(found);
  return found >= 0;
}

/// Writes a known keyword; no keyword has a character that must be escaped.
template <class Enumeration>
char* WriteKnownKeyword(const Enumeration& value, char* out, const char* end) {
  const auto index = static_cast<u32>(value);
  if (index >= KeywordTraits<Enumeration>::kCount) return nullptr;
  const std::string_view text = KeywordTraits<Enumeration>::kTexts[index];
  if (text.empty() || end - out < static_cast<std::ptrdiff_t>(text.size())) return nullptr;
  std::memcpy(out, text.data(), text.size());
  return out + text.size();
}

/// Writes a keyword by the builder's operation for the enumeration: by the one that writes tag and
/// value if there is one, otherwise by the one that writes the value after the tag. For an
/// enumeration without such an operation, null, the keyword is written as a text.
template <class Enumeration, auto Operation>
KRBuildStatus WriteKeyword(KRBuilder& builder, KRTagID tag, const Enumeration& value) {
  using Type = decltype(Operation);
  if constexpr (std::is_null_pointer_v<Type>) {
    KRString text;
    if (KeywordTraits<Enumeration>::ToText(value, text) == 0) return KRBuildStatus_NoTextForm;
    return builder.AddTagKRString(tag, text);
  } else if constexpr (std::is_same_v<Type, KRBuildStatus (KRBuilder::*)(KRTagID, Enumeration)>) {
    return (builder.*Operation)(tag, value);
  } else {
    const KRBuildStatus status = builder.AddTagElement(tag);
    return status == KRBuildStatus_Done ? (builder.*Operation)(value) : status;
  }
}
template <class Enumeration, auto Operation>
inline constexpr const ValueKind& kKeyword =
    Converted<Enumeration, &ReadKeyword<Enumeration>, &WriteKeyword<Enumeration, Operation>,
              FormOf<Enumeration>(), Enumeration, &ReadKnownKeyword<Enumeration>,
              &WriteKnownKeyword<Enumeration>>::kKind;

/// An enumeration that is held in a u16; the text has the keyword.
template <class Enumeration>
u16 ReadKeywordIndex(const KRString& text, u16& value) {
  Enumeration keyword{};
  if (KeywordTraits<Enumeration>::FromText(text, keyword) == 0) return 0;
  value = static_cast<u16>(keyword);
  return 1;
}
template <class Enumeration>
KRBuildStatus WriteKeywordIndex(KRBuilder& builder, KRTagID tag, const u16& value) {
  return WriteKeyword<Enumeration, nullptr>(builder, tag, static_cast<Enumeration>(value));
}
template <class Enumeration>
inline constexpr const ValueKind& kKeywordIndex =
    Converted<u16, &ReadKeywordIndex<Enumeration>, &WriteKeywordIndex<Enumeration>,
              ValueForm::kKeyword>::kKind;

/// @return whether a value is valid by the rule of its class, which numbers, dates, times and
///         languages have; a blank payroll amount or date is, and a language without a text is not.
///         An enumeration has no such rule: a build refuses a value without a keyword.
template <class Value>
bool PassesItsRule(const Value& value) {
  if constexpr (requires { value.IsEmpty(); } && !std::is_base_of_v<KRString, Value>) {
    if (value.IsEmpty() != 0) return true;
  }
  if constexpr (std::is_base_of_v<KRPrecisionInteger, Value>) {
    return value.IsValid() != 0;
  } else if constexpr (std::is_base_of_v<KRTime, Value>) {
    return Value(value).IsValidTime() != 0;
  } else if constexpr (std::is_base_of_v<KRDateTime, Value>) {
    return value.IsValidDate() != 0 && Value(value).IsValidTime() != 0;
  } else if constexpr (std::is_same_v<KRLanguage, Value>) {
    return value.IsValid() != 0 && value.GetString().IsEmpty() == 0;
  } else {
    return true;
  }
}

/// The body of a generated setter that takes a value: stores it if its class allows it, and notes
/// the tag.
/// @return 1; 0 when it is not allowed, or the tag is not valid in this object.
template <class Member, class Value>
u16 SetNative(KRDataObj& object, KRTagID tag, Member& member, const Value& value) {
  using Held = typename HeldIn<Member>::Type;
  if constexpr (std::is_same_v<Held, Value>) {
    if (!PassesItsRule(value)) return 0;
  } else {
    Held candidate;
    candidate = value;
    if (!PassesItsRule(candidate)) return 0;
  }
  member = value;
  return object.SetTag(tag);
}

/// As SetNative, for entry `index` of an array of values.
template <class Array, class Value>
u16 SetNativeEntry(KRDataObj& object, KRTagID tag, Array& array, u16 index, const Value& value) {
  if constexpr (KeywordEnum<Value>) {
    return NoteValue(object, array.SetVal(index, static_cast<u16>(value)), tag);
  } else {
    if (!PassesItsRule(value)) return 0;
    return NoteValue(object, array.SetVal(index, value), tag);
  }
}

/// As SetNativeEntry, for a new entry at the end.
/// @return 1 when the array took the value, whether the tag is valid here or not; 0 otherwise.
template <class Array, class Value>
u16 AppendNativeEntry(KRDataObj& object, KRTagID tag, Array& array, const Value& value) {
  const u16 entries = array.Entries();
  SetNativeEntry(object, tag, array, entries, value);
  return array.Entries() > entries ? 1 : 0;
}

/// The body of a generated setter of entry `index` of an array of texts.
/// A text over the limit is kept, after a KRPW_TOOLONG warning.
/// @return what SetTag gives; 0 when the array did not take the text; 3 for an empty text, which is
///         not stored.
KROFX_API u16 SetTextEntry(KRDataObj& object, KRTagID tag, KRDynamicArrayString& array, u16 index,
                           const KRString& text);

/// Warns that a text is longer than its spec length.
void WarnTooLong(KRTagID tag, const KRString& text);

/// Writes a text that its class allows and that needs no escaping; null for any other.
KROFX_API char* WriteCommonText(const KRString& text, char* out, const char* end);

/// A text; its class says how long it may be. `Text` derives from KRString.
/// @tparam Stored the class of the member: `Text`, or a class that converts to it.
template <class Text, class Stored>
struct TextKind {
  static StoreResult FromText(KRDataObj&, KRTagID tag, void* member, const KRString& text) {
    Stored& stored = *static_cast<Stored*>(member);
    stored = text;
    const Text& own = stored;
    if (own.IsEmpty()) return StoreResult::kNoText;
    if (own.ExceedsSpecLength()) WarnTooLong(tag, text);
    return StoreResult::kStored;
  }
  static KRBuildStatus Build(KRBuilder& builder, KRTagID tag, const void* member) {
    const Text& own = *static_cast<const Stored*>(member);
    return builder.AddTagKRString(tag, own);
  }
  static bool FromCommonText(void* member, const char* text, std::size_t length) {
    return static_cast<Stored*>(member)->AssignCommon(text, length);
  }
  static char* ToText(const void* member, char* out, const char* end) {
    const Text& own = *static_cast<const Stored*>(member);
    return WriteCommonText(own, out, end);
  }
  static constexpr ValueKind MakeKind() {
    ValueKind kind{&FromText, &Build, &CopyValue<Stored>};
    if constexpr (!std::is_same_v<Text, Stored>) {
      kind.fromCommonText = &FromCommonText;
      kind.writeCommon = &ToText;
    }
    return kind;
  }
  static constexpr ValueKind kKind = MakeKind();
};

/// A text whose class has more rules than its length.
template <class Text>
inline constexpr const ValueKind& kText = TextKind<Text, Text>::kKind;
/// A text with a fixed spec length.
template <class Text>
inline constexpr const ValueKind& kFixedText = TextKind<Text, StoredText<Text>>::kKind;

/// Appends one value to an array of repeated values; one overload for each class of array.
StoreResult AppendRepeated(KRDynamicArrayString& array, KRTagID tag, const KRString& text);
StoreResult AppendRepeated(KRDynamicArrayUShort& array, KRTagID tag, const KRString& text);
StoreResult AppendRepeated(KRDynamicArrayBankAccountType& array, KRTagID tag, const KRString& text);
StoreResult AppendRepeated(KRDynamicArrayBankAccountType2& array, KRTagID tag,
                           const KRString& text);
StoreResult AppendRepeated(KRDynamicArrayDayOfWeek& array, KRTagID tag, const KRString& text);
StoreResult AppendRepeated(KRDynamicArrayNorvService& array, KRTagID tag, const KRString& text);
StoreResult AppendRepeated(KRDynamicArrayNorvService2& array, KRTagID tag, const KRString& text);
StoreResult AppendRepeated(KRDynamicArrayLanguage& array, KRTagID tag, const KRString& text);

/// @return the form of the elements of an array.
template <class Array>
constexpr ValueForm FormOfElements() {
  if constexpr (std::is_base_of_v<KRDynamicArrayString, Array>) return ValueForm::kText;
  if constexpr (std::is_base_of_v<KRDynamicArrayLanguage, Array>) return ValueForm::kLanguage;
  return std::is_same_v<Array, KRDynamicArrayUShort> ? ValueForm::kInteger : ValueForm::kKeyword;
}

/// Repeated values in an array class of krofx/model/value_arrays.h.
template <class Array>
struct Repeated {
  static StoreResult FromText(KRDataObj&, KRTagID tag, void* member, const KRString& text) {
    return AppendRepeated(*static_cast<Array*>(member), tag, text);
  }
  static KRBuildStatus Build(KRBuilder& builder, KRTagID tag, const void* member) {
    return static_cast<const Array*>(member)->Build(&builder, tag);
  }
  static u16 Copy(void* to, const void* from) {
    Array& target = *static_cast<Array*>(to);
    const Array& source = *static_cast<const Array*>(from);
    target.DeleteAll();
    for (u16 index = 0; index < source.Entries(); ++index) {
      const auto* element = source.Get(index);
      if (element != nullptr && target.SetVal(index, *element) == 0) return 0;
    }
    return 1;
  }
  static constexpr ValueKind kKind{&FromText, &Build,  &Copy, FormOfElements<Array>(),
                                   nullptr,   nullptr, true};
};
template <class Array>
inline constexpr const ValueKind& kRepeated = Repeated<Array>::kKind;

/// An array of children of one class, or of any class for KRDynamicArrayDataObj.
template <class Array, class Child>
struct ChildArray {
  static u16 Entries(const void* array) { return static_cast<const Array*>(array)->Entries(); }
  static KRDataObj* Get(const void* array, u16 index) {
    return static_cast<const Array*>(array)->Get(index);
  }
  static u16 Set(void* array, u16 index, KRDataObj* child) {
    return static_cast<Array*>(array)->Set(index, static_cast<Child*>(child));
  }
  static void Truncate(void* array, u16 entries) {
    Array& own = *static_cast<Array*>(array);
    // Elements that a shallow copy shares must not be changed.
    if (own.IsShared()) own.DeleteAll();
    while (own.Entries() > entries) {
      const u16 last = static_cast<u16>(own.Entries() - 1);
      Child* child = own.Get(last);
      own.UnSet(last);
      delete child;
    }
  }
  static KRDataObj* TakeLast(void* array) {
    Array& own = *static_cast<Array*>(array);
    if (own.Entries() == 0 || own.IsShared()) return nullptr;
    const u16 last = static_cast<u16>(own.Entries() - 1);
    Child* const child = own.Get(last);
    own.UnSet(last);
    return child;
  }
  static KRBuildStatus Build(const void* array, KRBuilder& builder, KRTagID tag) {
    const Array& own = *static_cast<const Array*>(array);
    if constexpr (std::is_same_v<Child, KRDataObj>) {
      return own.Build(&builder, tag);
    } else {
      for (u16 index = 0; index < own.Entries(); ++index) {
        const Child* child = own.Get(index);
        if (child == nullptr) continue;
        const KRBuildStatus status = child->BuildObject(&builder, tag);
        if (status != KRBuildStatus_Done) return status;
      }
      return KRBuildStatus_Done;
    }
  }
  static constexpr ChildArrayKind kKind{
      &Entries, &Get, &Set, &Truncate, &TakeLast, &Build, std::is_same_v<Child, KRDataObj>};
};

}  // namespace krofx::internal

#endif  // KROFX_MODEL_VALUE_KINDS_H_
