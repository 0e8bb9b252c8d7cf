// Strings: memory, assignment, editing and CDATA.

#include "krofx/core/string.h"

#include <strings.h>

#include <cctype>
#include <cstring>

#include "krofx/core/fixed_strings.h"
#include "krofx/core/internal/wipe.h"
#include "krofx/core/thread.h"

using krofx::internal::AllocateSized;
using krofx::internal::FreeSized;
using krofx::internal::Wipe;

namespace {

constexpr char kCDATAOpen[] = "<![CDATA[";
constexpr char kCDATAClose[] = "]]>";
constexpr u16 kCDATAOpenLength = sizeof(kCDATAOpen) - 1;
constexpr u16 kCDATACloseLength = sizeof(kCDATAClose) - 1;

/// @return the length of `text`, or kMaxLength + 1 if it is longer than a string may be.
std::size_t BoundedLength(const char* text) { return strnlen(text, KRString::kMaxLength + 1); }

void RaiseAlarm() { KRSetFireAlarm(KRFireAlarm_MemoryExhausted); }

}  // namespace

const char KRString::s_emptyText[1] = {'\0'};

KRString::KRString(const char* text) { CopyString(text); }

KRString::KRString(const KRString& source)
    : m_specLength(source.m_specLength), m_encoding(source.m_encoding) {
  if (source.m_length > 0) ReplaceText(source.m_buffer, source.m_length);
}

KRString::KRString(KRString&& source) noexcept
    : m_specLength(source.m_specLength), m_encoding(source.m_encoding) {
  if (source.HasTextBehind()) {
    ReplaceText(source.m_buffer, source.m_length);
    source.ReleaseBuffer();
    return;
  }
  m_buffer = source.m_buffer;
  m_allocated = source.m_allocated;
  m_length = source.m_length;
  source.m_buffer = nullptr;
  source.m_allocated = 0;
  source.m_length = 0;
}

KRString& KRString::operator=(const KRString& source) {
  // An empty source may have a buffer, but this string's is freed in any case.
  ReplaceText(source.m_buffer, source.m_length);
  m_encoding = source.m_encoding;
  m_specLength = source.m_specLength;
  return *this;
}

u16 KRString::SetMsgSetVersion(u16) { return 1; }

u16 KRString::IsValid() const { return ExceedsSpecLength() == 0 ? 1 : 0; }

void KRString::SetSpecLength(u16 length) { m_specLength = length; }

void KRString::Truncate(u16 length) {
  if (m_buffer == nullptr || length == kNoSpecLength || length > m_allocated) return;
  // A length equal to the allocated size would be the byte after the buffer.
  if (length < m_allocated) m_buffer[length] = '\0';
  UnlockBuffer();
}

void KRString::TruncateToSpec() { Truncate(m_specLength); }

KRString& KRString::operator=(const char* text) {
  if (text != nullptr && *text != '\0') {
    CopyString(text);
  } else if (m_buffer != nullptr) {
    FreeMemory();
  }
  return *this;
}

u16 KRString::Assign(const char* text, u16 length) {
  const u16 counted = text == nullptr ? u16{0} : static_cast<u16>(strnlen(text, length));
  const u16 result = ReplaceText(text, counted);
  if (counted <= kMaxLength) m_encoding = KRStringEncode_Plain;
  return result;
}

KRString& KRString::operator+=(const char* text) {
  if (text == nullptr || *text == '\0') return *this;
  const std::size_t length = BoundedLength(text);
  if (length > kMaxLength) {
    RaiseAlarm();
  } else {
    AppendText(text, static_cast<u16>(length));
  }
  return *this;
}

KRString& KRString::operator+=(char character) {
  if (character != '\0') AppendText(&character, 1);
  return *this;
}

u16 KRString::IsWhiteSpace() const {
  return m_buffer == nullptr || std::strspn(m_buffer, " \n\r\t") == m_length ? 1 : 0;
}

u16 KRString::Equal(const KRString& other) const {
  if (m_length != other.m_length) return 0;
  return m_length == 0 || std::memcmp(m_buffer, other.m_buffer, m_length) == 0 ? 1 : 0;
}

u16 KRString::operator==(const char* text) const {
  if (m_length == 0 || text == nullptr) {
    return m_length == 0 && (text == nullptr || *text == '\0') ? 1 : 0;
  }
  return std::strcmp(m_buffer, text) == 0 ? 1 : 0;
}

u16 KRString::strcmpi(const char* text) const {
  return strcasecmp(*this, text == nullptr ? s_emptyText : text) == 0 ? 1 : 0;
}

void KRString::Clear(char character) {
  if (m_buffer == nullptr) return;
  std::memset(m_buffer, character, m_allocated);
  UnlockBuffer();
}

void KRString::TrimTrailingSpaces() {
  if (m_buffer == nullptr) return;
  while (m_length > 0 && m_buffer[m_length - 1] == ' ') --m_length;
  m_buffer[m_length] = '\0';
}

void KRString::TrimLeadingSpaces() {
  if (m_buffer == nullptr) return;
  const auto blanks = static_cast<u16>(std::strspn(m_buffer, " "));
  m_length = static_cast<u16>(m_length - blanks);
  std::memmove(m_buffer, m_buffer + blanks, m_length + 1u);
}

void KRString::MakeUpper() {
  for (u16 i = 0; i < m_length; ++i) {
    m_buffer[i] = static_cast<char>(std::toupper(static_cast<unsigned char>(m_buffer[i])));
  }
}

void KRString::MakeLower() {
  for (u16 i = 0; i < m_length; ++i) {
    m_buffer[i] = static_cast<char>(std::tolower(static_cast<unsigned char>(m_buffer[i])));
  }
}

char* KRString::LockBuffer(u16 size) {
  AllocStringBuffer(size);
  return m_buffer;
}

void KRString::UnlockBuffer() {
  m_length = 0;
  if (m_buffer == nullptr) return;
  m_buffer[m_allocated - 1] = '\0';
  m_length = static_cast<u16>(std::strlen(m_buffer));
}

void KRString::ToCDATA() {
  if (m_buffer != nullptr && std::strncmp(m_buffer, kCDATAOpen, kCDATAOpenLength) != 0) {
    if (m_length > kMaxLength - kCDATAOpenLength - kCDATACloseLength) {
      RaiseAlarm();
      return;
    }
    KRString wrapped;
    wrapped.m_secret = m_secret;
    const auto size = static_cast<u16>(kCDATAOpenLength + m_length + kCDATACloseLength + 1);
    if (wrapped.AllocStringBuffer(size) != 0) {
      wrapped.AppendText(kCDATAOpen, kCDATAOpenLength);
      wrapped.AppendText(m_buffer, m_length);
      wrapped.AppendText(kCDATAClose, kCDATACloseLength);
    }
    *this = wrapped;
  }
  SetEncoding(KRStringEncode_CDATA);
}

void KRString::FromCDATA() {
  if (m_buffer != nullptr && std::strncmp(m_buffer, kCDATAOpen, kCDATAOpenLength) == 0) {
    KRString body;
    body.m_secret = m_secret;
    auto length = static_cast<u16>(m_length - kCDATAOpenLength);
    if (length >= kCDATACloseLength) length = static_cast<u16>(length - kCDATACloseLength);
    body.ReplaceText(m_buffer + kCDATAOpenLength, length);
    *this = body;
  }
  SetEncoding(KRStringEncode_Plain);
}

void KRString::Init() {
  m_buffer = nullptr;
  m_specLength = kNoSpecLength;
  m_allocated = 0;
  m_length = 0;
  m_encoding = KRStringEncode_Plain;
}

void KRString::FreeMemory() {
  ReleaseBuffer();
  Init();
}

// Frees the buffer, overwritten if it is a secret, and leaves the string null.
void KRString::ReleaseBuffer() {
  if (m_buffer != nullptr) {
    if (m_secret != 0) Wipe(m_buffer, m_allocated);
    if (!HasTextBehind()) FreeSized(m_buffer, m_allocated);
  }
  m_buffer = nullptr;
  m_allocated = 0;
  m_length = 0;
}

// Makes room for exactly `size` bytes, keeping the text. Returns 0 when there is no buffer.
u16 KRString::AllocStringBuffer(u16 size) {
  if (size <= m_allocated) return m_buffer != nullptr ? 1 : 0;
  auto* grown = static_cast<char*>(AllocateSized(size));
  if (grown == nullptr) {
    ReleaseBuffer();
    RaiseAlarm();
    return 0;
  }
  if (m_buffer == nullptr) {
    std::memset(grown, 0, size);
  } else {
    const u16 length = m_length;
    std::memcpy(grown, m_buffer, m_allocated);
    ReleaseBuffer();
    m_length = length;
  }
  m_buffer = grown;
  m_allocated = size;
  return 1;
}

u16 KRString::CopyString(const char* text) {
  if (text == nullptr) return 1;
  const std::size_t length = BoundedLength(text);
  if (length > kMaxLength) {
    RaiseAlarm();
    return 0;
  }
  return ReplaceText(text, static_cast<u16>(length));
}

// Replaces the text by a copy of `length` bytes, which may be the string's own. With a length of 0
// the text is freed.
u16 KRString::ReplaceText(const char* text, u16 length) {
  if (length > kMaxLength) {
    RaiseAlarm();
    return 0;
  }
  if (length == 0) {
    if (m_buffer != nullptr) ReleaseBuffer();
    return 1;
  }
  if (length >= m_allocated) {
    // The old text is not needed any more, so a new block is cheaper than moving the text.
    const auto size = static_cast<u16>(length + 1);
    auto* fresh = static_cast<char*>(AllocateSized(size));
    if (fresh != nullptr) std::memcpy(fresh, text, length);
    if (m_buffer != nullptr) ReleaseBuffer();
    if (fresh == nullptr) {
      RaiseAlarm();
      return 0;
    }
    m_buffer = fresh;
    m_allocated = size;
  } else {
    std::memmove(m_buffer, text, length);
  }
  m_buffer[length] = '\0';
  m_length = length;
  return 1;
}

// Appends `length` bytes, which may be the string's own.
u16 KRString::AppendText(const char* text, u16 length) {
  if (length > kMaxLength - m_length) {
    RaiseAlarm();
    return 0;
  }
  const bool own = m_buffer != nullptr && text >= m_buffer && text < m_buffer + m_allocated;
  const std::size_t place = own ? static_cast<std::size_t>(text - m_buffer) : 0;
  if (AllocStringBuffer(static_cast<u16>(m_length + length + 1)) == 0) return 0;
  std::memmove(m_buffer + m_length, own ? m_buffer + place : text, length);
  m_length = static_cast<u16>(m_length + length);
  m_buffer[m_length] = '\0';
  return 1;
}

KRString operator+(const KRString& left, const KRString& right) {
  KRString sum;
  sum.m_specLength = left.m_specLength;
  const u32 length = u32{left.m_length} + right.m_length;
  const bool tooLong = length > KRString::kMaxLength;
  if (tooLong) RaiseAlarm();
  if (length == 0) {
    // The result stays null: an empty buffer is not copied.
  } else if (tooLong || sum.AllocStringBuffer(static_cast<u16>(length + 1)) == 0) {
    sum.ReplaceText(left.m_buffer, left.m_length);
  } else {
    sum.AppendText(left, left.m_length);
    sum.AppendText(right, right.m_length);
  }
  sum.m_encoding = left.m_encoding;
  if (right.m_encoding == KRStringEncode_CDATA) sum.m_encoding = KRStringEncode_CDATA;
  return sum;
}

KRMultiLenString::KRMultiLenString(const KRString& source, OfLength specLength)
    : KRString(specLength) {
  KRMultiLenString::operator=(source);
}

KRMultiLenString& KRMultiLenString::operator=(const KRString& source) {
  const u16 own = SpecLength();
  KRString::operator=(source);
  KRString::SetSpecLength(own);
  return *this;
}

KRUserPassword& KRUserPassword::operator=(const char* text) {
  Assign(text, text == nullptr ? u16{0} : static_cast<u16>(BoundedLength(text)));
  return *this;
}

KREMailMsgBody& KREMailMsgBody::operator=(const KRString& source) {
  // Read first, since the source may be this string.
  const u16 limit = source.SpecLength() == 10000 ? 10000 : 2000;
  KRString::operator=(source);
  KRString::SetSpecLength(limit);
  return *this;
}

u16 KREMailMsgBody::IsValid() const {
  if (IsEmpty() != 0) return 0;
  const u32 limit = SpecLength() == 2000 ? 2000 + kTolerance : SpecLength();
  return GetStrLength() <= limit ? 1 : 0;
}
