// The strings with a fixed spec length: a field of an aggregate declares by its type how long the
// OFX standard lets it be. The number in the name is the spec length.

#ifndef KROFX_CORE_FIXED_STRINGS_H_
#define KROFX_CORE_FIXED_STRINGS_H_

#include <utility>

#include "krofx/core/string.h"

namespace krofx::internal {

/// What the fixed-length strings share: a null string of spec length N, which assignment keeps.
template <u16 N>
class KROFX_API FixedString : public KRMultiLenString {
 public:
  /// A null string.
  FixedString() noexcept : KRMultiLenString(OfLength{N}) {}
  /// A copy of the source's text and encoding, with spec length N.
  FixedString(const KRString& source) : KRMultiLenString(source, OfLength{N}) {}
  /// A copy, the source's spec length included.
  FixedString(const FixedString& source) = default;
  /// Takes the text over, and the source's spec length.
  FixedString(FixedString&& source) noexcept = default;

  using KRMultiLenString::operator=;
  /// Takes a copy of text and encoding; the spec length stays.
  FixedString& operator=(const FixedString& source) {
    operator=(static_cast<const KRString&>(source));
    return *this;
  }
};

}  // namespace krofx::internal

/// Text of at most 1 character.
class KROFX_API KRString1 : public krofx::internal::FixedString<1> {
 public:
  using FixedString::FixedString;
  using FixedString::operator=;
};

/// Text of at most 2 characters.
class KROFX_API KRString2 : public krofx::internal::FixedString<2> {
 public:
  using FixedString::FixedString;
  using FixedString::operator=;
};

/// Text of at most 3 characters.
class KROFX_API KRString3 : public krofx::internal::FixedString<3> {
 public:
  using FixedString::FixedString;
  using FixedString::operator=;
};

/// Text of at most 4 characters.
class KROFX_API KRString4 : public krofx::internal::FixedString<4> {
 public:
  using FixedString::FixedString;
  using FixedString::operator=;
};

/// Text of at most 5 characters.
class KROFX_API KRString5 : public krofx::internal::FixedString<5> {
 public:
  using FixedString::FixedString;
  using FixedString::operator=;
};

/// Text of at most 6 characters.
class KROFX_API KRString6 : public krofx::internal::FixedString<6> {
 public:
  using FixedString::FixedString;
  using FixedString::operator=;
};

/// Text of at most 7 characters.
class KROFX_API KRString7 : public krofx::internal::FixedString<7> {
 public:
  using FixedString::FixedString;
  using FixedString::operator=;
};

/// Text of at most 8 characters.
class KROFX_API KRString8 : public krofx::internal::FixedString<8> {
 public:
  using FixedString::FixedString;
  using FixedString::operator=;
};

/// Text of at most 9 characters.
class KROFX_API KRString9 : public krofx::internal::FixedString<9> {
 public:
  using FixedString::FixedString;
  using FixedString::operator=;
};

/// Text of at most 10 characters.
class KROFX_API KRString10 : public krofx::internal::FixedString<10> {
 public:
  using FixedString::FixedString;
  using FixedString::operator=;
};

/// Text of at most 11 characters.
class KROFX_API KRString11 : public krofx::internal::FixedString<11> {
 public:
  using FixedString::FixedString;
  using FixedString::operator=;
};

/// Text of at most 12 characters.
class KROFX_API KRString12 : public krofx::internal::FixedString<12> {
 public:
  using FixedString::FixedString;
  using FixedString::operator=;
};

/// Text of at most 16 characters.
class KROFX_API KRString16 : public krofx::internal::FixedString<16> {
 public:
  using FixedString::FixedString;
  using FixedString::operator=;
};

/// Text of at most 22 characters.
class KROFX_API KRString22 : public krofx::internal::FixedString<22> {
 public:
  using FixedString::FixedString;
  using FixedString::operator=;
};

/// Text of at most 32 characters.
class KROFX_API KRString32 : public krofx::internal::FixedString<32> {
 public:
  using FixedString::FixedString;
  using FixedString::operator=;
};

/// Text of at most 36 characters.
class KROFX_API KRString36 : public krofx::internal::FixedString<36> {
 public:
  using FixedString::FixedString;
  using FixedString::operator=;
};

/// Text of at most 40 characters.
class KROFX_API KRString40 : public krofx::internal::FixedString<40> {
 public:
  using FixedString::FixedString;
  using FixedString::operator=;
};

/// Text of at most 60 characters.
class KROFX_API KRString60 : public krofx::internal::FixedString<60> {
 public:
  using FixedString::FixedString;
  using FixedString::operator=;
};

/// Text of at most 64 characters.
class KROFX_API KRString64 : public krofx::internal::FixedString<64> {
 public:
  using FixedString::FixedString;
  using FixedString::operator=;
};

/// Text of at most 80 characters.
class KROFX_API KRString80 : public krofx::internal::FixedString<80> {
 public:
  using FixedString::FixedString;
  using FixedString::operator=;
};

/// Text of at most 96 characters.
class KROFX_API KRString96 : public krofx::internal::FixedString<96> {
 public:
  using FixedString::FixedString;
  using FixedString::operator=;
};

/// Text of at most 120 characters.
class KROFX_API KRString120 : public krofx::internal::FixedString<120> {
 public:
  using FixedString::FixedString;
  using FixedString::operator=;
};

/// Text of at most 171 characters.
class KROFX_API KRString171 : public krofx::internal::FixedString<171> {
 public:
  using FixedString::FixedString;
  using FixedString::operator=;
};

/// Text of at most 255 characters.
class KROFX_API KRString255 : public krofx::internal::FixedString<255> {
 public:
  using FixedString::FixedString;
  using FixedString::operator=;
};

/// Text of at most 360 characters.
class KROFX_API KRString360 : public krofx::internal::FixedString<360> {
 public:
  using FixedString::FixedString;
  using FixedString::operator=;
};

/// Text of at most 390 characters.
class KROFX_API KRString390 : public krofx::internal::FixedString<390> {
 public:
  using FixedString::FixedString;
  using FixedString::operator=;
};

/// Text of at most 1000 characters.
class KROFX_API KRString1000 : public krofx::internal::FixedString<1000> {
 public:
  using FixedString::FixedString;
  using FixedString::operator=;
};

/// Text of at most 1024 characters.
class KROFX_API KRString1024 : public krofx::internal::FixedString<1024> {
 public:
  using FixedString::FixedString;
  using FixedString::operator=;
};

/// Text of at most 1280 characters.
class KROFX_API KRString1280 : public krofx::internal::FixedString<1280> {
 public:
  using FixedString::FixedString;
  using FixedString::operator=;
};

/// Text of at most 2000 characters.
class KROFX_API KRString2000 : public krofx::internal::FixedString<2000> {
 public:
  using FixedString::FixedString;
  using FixedString::operator=;
};

/// Text of at most 10000 characters.
class KROFX_API KRString10000 : public krofx::internal::FixedString<10000> {
 public:
  using FixedString::FixedString;
  using FixedString::operator=;
};

/// A password. Its memory is overwritten before it is freed. The default limit of 171 leaves room
/// for an encrypted password.
class KROFX_API KRUserPassword : public KRString171 {
 public:
  /// A null password with a limit of 171.
  KRUserPassword() { KeepSecret(); }
  /// A copy of the source's text and encoding, with a limit of 171.
  KRUserPassword(const KRString& source) : KRString171(source) { KeepSecret(); }
  /// A copy, the source's limit included.
  KRUserPassword(const KRUserPassword& source) : KRString171(source) { KeepSecret(); }
  /// Takes the text over, and the source's limit.
  KRUserPassword(KRUserPassword&& source) noexcept : KRString171(std::move(source)) {
    KeepSecret();
  }

  using KRString171::operator=;
  /// Takes a copy of text and encoding; the limit stays.
  KRUserPassword& operator=(const KRUserPassword& source) {
    operator=(static_cast<const KRString&>(source));
    return *this;
  }
  /// Takes a copy of a text; the limit stays. No copy of the text passes through other memory.
  KRUserPassword& operator=(const char* text);

  /// Lowers the limit to the 32 characters of a password in the clear.
  void SetSpecLength32() { SetSpecLength(32); }
  /// Sets the limit of 171 again.
  void SetSpecLength171() { SetSpecLength(171); }
};

/// The body of an e-mail message: 2000 characters, or 10000.
class KROFX_API KREMailMsgBody : public KRString2000 {
 public:
  /// How many characters a body with the limit of 2000 may exceed it by and still be valid.
  static constexpr u16 kTolerance = 160;

  /// A null body with a limit of 2000.
  KREMailMsgBody() = default;
  /// A copy of the source's text and encoding, with the limit of an assignment.
  KREMailMsgBody(const KRString& source) { KREMailMsgBody::operator=(source); }
  /// A copy, the source's limit included.
  KREMailMsgBody(const KREMailMsgBody& source) = default;
  /// Takes the text over, and the source's limit.
  KREMailMsgBody(KREMailMsgBody&& source) noexcept = default;

  /// Takes a copy of text and encoding. The limit becomes 10000 when the source's is exactly that,
  /// and 2000 otherwise.
  KREMailMsgBody& operator=(const KRString& source) override;
  /// As for any string.
  KREMailMsgBody& operator=(const KREMailMsgBody& source) {
    return operator=(static_cast<const KRString&>(source));
  }

  /// @return 1 when the body is acceptable: not empty, and not longer than its limit, with a
  ///         tolerance of 160 characters over 2000.
  u16 IsValid() const override;

  /// Sets the limit of 2000.
  void SetSpecLength2000() { SetSpecLength(2000); }
  /// Sets the limit of 10000.
  void SetSpecLength10000() { SetSpecLength(10000); }
};

#endif  // KROFX_CORE_FIXED_STRINGS_H_
