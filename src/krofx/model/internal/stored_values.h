// How aggregates hold their values in little memory.
//
// A transaction has room for some twenty values, of which most are absent, and a statement has tens
// of thousands of transactions. So an absent text takes one pointer, a present one is in one block
// with its characters, and dates and amounts are held as plain data, from which a getter makes the
// value that a host sees.

#ifndef KROFX_MODEL_INTERNAL_STORED_VALUES_H_
#define KROFX_MODEL_INTERNAL_STORED_VALUES_H_

#include <cstddef>
#include <cstring>
#include <new>
#include <type_traits>

#include "krofx/core/export.h"
#include "krofx/core/fixed_strings.h"
#include "krofx/core/memory.h"
#include "krofx/values/date_time.h"
#include "krofx/values/internal/plain_date.h"
#include "krofx/values/internal/plain_decimal.h"

namespace krofx::internal {

/// Raises the calling thread's fire alarm, because there was no memory for a text.
KROFX_API void RaiseTextAlarm();

/// A text of class `Text`, one of those with a fixed spec length. Once it exists it stays at its
/// address for the life of the member, whatever is assigned, so references to it stay valid.
template <class Text>
class StoredText {
 public:
  /// What getters give.
  using Value = Text;

  StoredText() = default;
  StoredText(const StoredText& other) { *this = other; }
  StoredText& operator=(const StoredText& other) {
    if (this != &other && (m_text != nullptr || other.m_text != nullptr)) *this = other.Get();
    return *this;
  }
  /// As the assignment of `Text`.
  StoredText& operator=(const KRString& source) {
    const bool isPlain = source.GetEncoding() == KRStringEncode_Plain;
    if (m_text != nullptr) {
      *m_text = source;
    } else if (source.IsEmpty() == 0 && isPlain) {
      m_text = Make(source, source.GetStrLength());
    } else if (!isPlain) {
      m_text = new Text(source);
      if (m_text == nullptr) RaiseTextAlarm();
    }
    return *this;
  }
  ~StoredText() {
    if (m_text != nullptr) Destroy(m_text);
  }

  /// @return the text; an empty one that all absent texts share when there is none.
  const Text& Get() const { return m_text != nullptr ? *m_text : Empty(); }
  operator const Text&() const { return Get(); }

  /// Takes a copy of `length` plain characters, at least one, none of them NUL, and no more than
  /// the spec length.
  /// @return false, with nothing changed, when there are more, or when memory is exhausted, and
  ///         then the fire alarm is raised.
  bool AssignCommon(const char* text, std::size_t length) {
    if (length > Get().SpecLength()) return false;
    if (m_text != nullptr) return m_text->Assign(text, static_cast<u16>(length)) != 0;
    m_text = Make(text, static_cast<u16>(length));
    return m_text != nullptr;
  }

 private:
  // Makes a string, in one block with its characters if the pools have blocks of that size.
  static Text* Make(const char* text, u16 length) {
    static_assert(sizeof(Text) == sizeof(KRString));
    const std::size_t size = sizeof(Text) + length + 1;
    const bool fits = size <= KRString::kMostInBlock;
    void* const block = AllocateSized(fits ? size : sizeof(Text));
    if (block == nullptr) {
      RaiseTextAlarm();
      return nullptr;
    }
    Text* const made = new (block) Text;
    if (fits) {
      static_cast<KRString*>(made)->PlaceText(text, length, size);
    } else if (made->Assign(text, length) == 0) {
      Destroy(made);
      return nullptr;
    }
    return made;
  }

  static void Destroy(Text* text) {
    const std::size_t units = static_cast<KRString*>(text)->m_blockUnits;
    text->Text::~Text();
    FreeSized(text, units != 0 ? units * KRString::kBlockUnit : sizeof(Text));
  }

  static const Text& Empty() {
    // Never destroyed, since an object may outlive the static objects of the process.
    alignas(Text) static unsigned char storage[sizeof(Text)];
    static const Text* const empty = new (storage) Text;
    return *empty;
  }

  Text* m_text = nullptr;
};

/// A number of class `Number`, which holds no more than KRPrecisionInteger does.
template <class Number>
class StoredNumber {
 public:
  /// What getters give.
  using Value = Number;

  StoredNumber() = default;
  StoredNumber& operator=(const KRPrecisionInteger& value) {
    m_number = value.AsPlain();
    return *this;
  }
  /// As the assignment of `Number`.
  StoredNumber& operator=(const char* text) {
    Number value(*this);
    value = text;
    return *this = value;
  }
  /// As the assignment of `Number`.
  StoredNumber& operator=(s32 value) { return *this = KRPrecisionInteger(value, 0); }
  operator Number() const { return Number(KRPrecisionInteger(m_number)); }

  /// Reads a number of the common form.
  /// @return false, with nothing changed, for any other text and for a number that the class
  ///         refuses.
  bool AssignCommon(const char* text, std::size_t length) {
    PlainDecimal number;
    if (!ReadCommonDecimal(text, length, number)) return false;
    if constexpr (!std::is_same_v<Number, KRPrecisionInteger>) {
      const Number value{KRPrecisionInteger(number)};
      if (value.IsValid() == 0) return false;
    }
    m_number = number;
    return true;
  }
  /// @return the number as plain data.
  const PlainDecimal& Plain() const { return m_number; }

 private:
  PlainDecimal m_number;
};

/// A date. One with fields or a zone that cannot come from OFX text is held as a KRDateTime.
class KROFX_API StoredDate {
 public:
  /// What getters give.
  using Value = KRDateTime;

  StoredDate() = default;
  StoredDate(const StoredDate& other) { *this = other; }
  StoredDate& operator=(const StoredDate& other) {
    if (!IsWhole() && !other.IsWhole()) {
      m_date = other.m_date;
    } else if (this != &other) {
      *this = static_cast<KRDateTime>(other);
    }
    return *this;
  }
  StoredDate& operator=(const KRDateTime& value);
  /// As the assignment of KRDateTime.
  u16 operator=(const char* text);
  ~StoredDate() {
    if (IsWhole()) Drop();
  }
  operator KRDateTime() const { return IsWhole() ? *Whole() : KRDateTime(m_date); }

  /// Reads a date of a common form.
  /// @return false, with nothing changed, for any other text.
  bool AssignCommon(const char* text, std::size_t length) {
    PlainDate date;
    if (!ReadCommonDate(text, length, date)) return false;
    if (IsWhole()) Drop();
    m_date = date;
    return true;
  }
  /// @return the date as plain data; null when it is held as a KRDateTime.
  const PlainDate* Plain() const { return IsWhole() ? nullptr : &m_date; }

 private:
  // A date that is held as a KRDateTime has the address of that object in place of the fields.
  bool IsWhole() const { return m_date.extra != 0; }
  KRDateTime* Whole() const {
    KRDateTime* whole;
    std::memcpy(&whole, &m_date, sizeof(void*));
    return whole;
  }
  void Drop();

  PlainDate m_date;
};

}  // namespace krofx::internal

#endif  // KROFX_MODEL_INTERNAL_STORED_VALUES_H_
