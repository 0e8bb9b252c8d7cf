// Text of an OFX element, with the length that the OFX standard allows for it.
//
// The allowed length (the spec length) is advice: a string never refuses or cuts text because of
// it, so an over-long value survives parsing, and code that needs valid text asks IsValid. Text is
// single-byte and ends at its first NUL. A string that never held text (null) and one that was
// emptied (empty) differ, but both convert to "".
//
// The classes with a fixed spec length are in fixed_strings.h.

#ifndef KROFX_CORE_STRING_H_
#define KROFX_CORE_STRING_H_

#include <cstddef>
#include <cstring>

#include "krofx/core/export.h"
#include "krofx/core/lifetime.h"
#include "krofx/core/memory.h"
#include "krofx/core/types.h"

namespace krofx::internal {
template <class Text>
class StoredText;
}  // namespace krofx::internal

/// How the text of a string is meant.
enum KRStringEncode : u32 {
  /// Plain text.
  KRStringEncode_Plain = 0,
  /// Text wrapped as a CDATA section.
  KRStringEncode_CDATA = 1,
};

/// The library's only text value: owned, deep-copied, at most kMaxLength characters.
///
/// Memory is allocated exactly: a string that grows takes as many bytes as the text and its
/// terminator need, and never shrinks by itself. When memory is exhausted the string becomes null
/// and the thread's fire alarm is raised; no operation throws. Text of more than kMaxLength
/// characters is refused: the string keeps its text, and the fire alarm is raised, as for any text
/// that is lost.
class KROFX_API KRString : public krofx::internal::HeapObject {
 public:
  /// The spec length that means no limit.
  static constexpr u16 kNoSpecLength = 65535;
  /// The longest text that a string takes.
  static constexpr u16 kMaxLength = 65534;

  /// A null string: no text, no spec length, plain.
  KRString() noexcept = default;
  /// A copy of `text`; a null or empty text makes a null string.
  KRString(const char* text);
  /// A copy of text, encoding and spec length. An empty source makes a null string.
  KRString(const KRString& source);
  /// Moves the text; the source is left null, with its spec length and encoding.
  KRString(KRString&& source) noexcept;
  /// Frees the text.
  virtual ~KRString() {
    if (m_buffer != nullptr) ReleaseBuffer();
  }

  /// Takes a copy of the source's text, encoding and spec length. An empty source frees the text.
  /// Classes with a spec length of their own keep it.
  virtual KRString& operator=(const KRString& source);
  /// Takes the message-set version of the owner, on which no string of the library depends.
  /// @return 1.
  virtual u16 SetMsgSetVersion(u16 version);
  /// @return 1 when the text is acceptable to the OFX standard: not longer than the spec length.
  virtual u16 IsValid() const;
  /// Sets the spec length, in characters; 65535 is no limit. The text stays as it is.
  virtual void SetSpecLength(u16 length);
  /// Cuts the text after `length` characters, keeping the memory. Nothing happens when `length` is
  /// 65535 or above the allocated size, or when the string is null.
  virtual void Truncate(u16 length);
  /// Cuts the text to the spec length.
  virtual void TruncateToSpec();

  /// Takes a copy of `text`; spec length and encoding stay. A null or empty text frees what the
  /// string held and then also resets spec length (65535) and encoding (plain); on a null string it
  /// does nothing.
  KRString& operator=(const char* text);
  /// Takes a copy of `length` bytes, which need no terminator; text ends at a NUL among them. The
  /// spec length stays and the encoding becomes plain. No bytes, or a null pointer, free the text.
  /// @return 1; 0 when memory is exhausted, and then the string is null, or the text is too long,
  ///         and then the string keeps its text.
  u16 Assign(const char* text, u16 length);
  /// Appends `text`; null or empty does nothing.
  KRString& operator+=(const char* text);
  /// Appends one character; a NUL does nothing.
  KRString& operator+=(char character);

  /// @return the characters before the terminator.
  u16 GetStrLength() const { return m_length; }
  /// @return the allocated bytes, the terminator's included; 0 for a null string.
  int BufferSize() const { return m_allocated; }
  /// @return the length that the OFX standard allows; 65535 is no limit.
  u16 SpecLength() const { return m_specLength; }
  /// @return 1 when the string holds no buffer.
  u16 IsNull() const { return m_buffer == nullptr ? 1 : 0; }
  /// @return 1 when the length is 0, with a buffer or without.
  u16 IsEmpty() const { return m_length == 0 ? 1 : 0; }
  /// @return 1 when the text is longer than the spec length.
  u16 ExceedsSpecLength() const { return m_length > m_specLength ? 1 : 0; }
  /// @return how the text is meant.
  KRStringEncode GetEncoding() const { return static_cast<KRStringEncode>(m_encoding); }
  /// Sets how the text is meant; the text stays as it is.
  void SetEncoding(KRStringEncode encoding) { m_encoding = static_cast<unsigned char>(encoding); }
  /// The text, never null: a null string gives an empty text. Valid until the string changes.
  operator const char*() const KROFX_LIFETIME_BOUND {
    return m_buffer != nullptr ? m_buffer : s_emptyText;
  }
  /// @return 1 when every character is a blank, line feed, carriage return or tab.
  u16 IsWhiteSpace() const;

  /// @return 1 when the texts are the same; null and empty count as the same.
  u16 operator==(const KRString& other) const { return Equal(other); }
  /// @return 1 when the texts are the same; a null or empty string equals a null or empty pointer.
  u16 operator==(const char* text) const;
  /// @return the negation of ==.
  u16 operator!=(const KRString& other) const { return Equal(other) == 0 ? 1 : 0; }
  /// @return the negation of ==.
  u16 operator!=(const char* text) const { return *this == text ? 0 : 1; }
  /// Compares as ==, without regard to case.
  /// @return 1 when the texts are equal, 0 when not: the reverse of the standard function of that
  ///         name.
  u16 strcmpi(const char* text) const;

  /// Fills all allocated bytes but the last with `character`: Clear(0) empties the text and keeps
  /// the memory. A null string stays null.
  void Clear(char character);
  /// Removes blanks (0x20 only) at the end.
  void TrimTrailingSpaces();
  /// Removes blanks (0x20 only) at the start.
  void TrimLeadingSpaces();
  /// Passes each character through the standard toupper.
  void MakeUpper();
  /// Passes each character through the standard tolower.
  void MakeLower();
  /// Makes room for `size` bytes, terminator included, for the caller to fill and then to end with
  /// UnlockBuffer. Nothing is locked.
  /// @return the buffer; null when there is none.
  char* LockBuffer(u16 size);
  /// Ends a direct write: puts a NUL into the last allocated byte and recounts the length.
  void UnlockBuffer();

  /// Wraps the text as a CDATA section, unless it begins as one, and sets the encoding. The
  /// wrapping resets the spec length of a string that does not keep its own. A null string gets the
  /// encoding only.
  void ToCDATA();
  /// Unwraps a CDATA section: removes its 9 opening characters and its last 3, and sets the
  /// encoding to plain. Text that does not begin as a CDATA section stays as it is. When fewer than
  /// 3 characters follow the opening, they all stay.
  void FromCDATA();

 protected:
  /// A spec length, for the constructors of strings that begin with one.
  struct OfLength {
    u16 value;
  };
  /// A null string with a spec length.
  explicit KRString(OfLength specLength) noexcept : m_specLength(specLength.value) {}

  /// @return 1 when the texts are the same.
  u16 Equal(const KRString& other) const;
  /// From now on memory is overwritten before it is freed.
  void KeepSecret() { m_secret = 1; }

 private:
  template <class Text>
  friend class krofx::internal::StoredText;
  friend KROFX_API KRString operator+(const KRString& left, const KRString& right);

  // A string that was made in one block with its text has the text directly after the object.
  char* TextBehind() { return reinterpret_cast<char*>(this) + sizeof(KRString); }
  bool HasTextBehind() const {
    return m_blockUnits != 0 && m_buffer == reinterpret_cast<const char*>(this) + sizeof(KRString);
  }
  // Stores the text of a string that is made in a block of `bytes` bytes, at most kMostInBlock.
  void PlaceText(const char* text, u16 length, std::size_t bytes) {
    m_buffer = TextBehind();
    m_allocated = static_cast<u16>(length + 1);
    m_length = length;
    m_blockUnits = ((bytes + kBlockUnit - 1) / kBlockUnit) & 0x7f;
    std::memcpy(m_buffer, text, length);
    m_buffer[length] = '\0';
  }
  static constexpr std::size_t kBlockUnit = 16;
  static constexpr std::size_t kMostInBlock = 1024;

  void Init();
  void FreeMemory();
  u16 AllocStringBuffer(u16 size);
  u16 CopyString(const char* text);
  u16 ReplaceText(const char* text, u16 length);
  u16 AppendText(const char* text, u16 length);
  void ReleaseBuffer();
  void Recount();

  static const char s_emptyText[1];

  char* m_buffer = nullptr;
  u16 m_specLength = kNoSpecLength;
  u16 m_allocated = 0;
  u16 m_length = 0;
  unsigned char m_encoding = KRStringEncode_Plain;
  // The size, in units, of the block that holds the string and its text; 0 when they are apart.
  unsigned char m_blockUnits : 7 = 0;
  unsigned char m_secret : 1 = 0;
};

/// @return the text of `left` followed by that of `right`, with the left's spec length, as CDATA
///         when either is; the left text alone when the whole cannot be made.
KROFX_API KRString operator+(const KRString& left, const KRString& right);

/// @return 1 when the texts are the same.
inline u16 operator==(const char* text, const KRString& string) { return string == text; }
/// @return 1 when the texts differ.
inline u16 operator!=(const char* text, const KRString& string) { return string != text; }

/// A string that keeps its own spec length whatever it is assigned. Used directly where the length
/// depends on the message-set version.
class KROFX_API KRMultiLenString : public KRString {
 public:
  /// A null string with no limit.
  KRMultiLenString() noexcept = default;
  /// A copy of the source's text and encoding, with no limit.
  KRMultiLenString(const KRString& source) : KRMultiLenString(source, OfLength{kNoSpecLength}) {}
  /// A copy, the spec length included.
  KRMultiLenString(const KRMultiLenString& source) = default;
  /// Moves the text; the spec length is copied.
  KRMultiLenString(KRMultiLenString&& source) noexcept = default;

  /// Takes a copy of text and encoding; the spec length of this string stays.
  KRMultiLenString& operator=(const KRString& source) override;
  /// As for any string.
  KRMultiLenString& operator=(const KRMultiLenString& source) {
    return operator=(static_cast<const KRString&>(source));
  }

 protected:
  /// A null string with a spec length.
  explicit KRMultiLenString(OfLength specLength) noexcept : KRString(specLength) {}
  /// A copy of the source's text and encoding with a spec length.
  KRMultiLenString(const KRString& source, OfLength specLength);
};

#endif  // KROFX_CORE_STRING_H_
