// The slow paths of ZoneName: setting a name, and making the string for hosts.

#include "krofx/values/internal/zone_name.h"

#include <cstring>

#include "krofx/core/fixed_strings.h"
#include "krofx/core/string.h"
#include "krofx/core/thread.h"

namespace krofx::internal {

void ZoneName::Assign(const char* text, std::size_t length) noexcept {
  // The assigned text may be the string's own; it must not be read while it is being replaced.
  const bool isOwn = m_string != nullptr && text == static_cast<const char*>(*m_string);
  const std::size_t kept = length < kShortSize ? length : kShortSize - 1;
  if (kept != 0) std::memmove(m_short, text, kept);
  m_short[kept] = '\0';
  if (isOwn && length == m_string->GetStrLength()) return;

  if (m_string == nullptr && length >= kShortSize) {
    m_string = new KRString3;
    if (m_string == nullptr) KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
  }
  if (m_string != nullptr) {
    const std::size_t most = KRString::kMaxLength;
    m_string->Assign(kept == length ? m_short : text,
                     static_cast<u16>(length < most ? length : most));
  }
}

const char* ZoneName::Text() const noexcept {
  return Length() < kShortSize ? m_short : static_cast<const char*>(*m_string);
}

std::size_t ZoneName::Length() const noexcept {
  const std::size_t inString = m_string == nullptr ? 0 : m_string->GetStrLength();
  return inString >= kShortSize ? inString : std::strlen(m_short);
}

const KRString3& ZoneName::AsString() const noexcept {
  static const KRString3 none;
  if (m_string == nullptr) {
    m_string = new KRString3;
    if (m_string == nullptr) {
      KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
      return none;
    }
  }
  if (m_string->IsEmpty() && !IsEmpty()) {
    m_string->Assign(m_short, static_cast<u16>(std::strlen(m_short)));
  }
  return *m_string;
}

void ZoneName::DropString() noexcept { delete m_string; }

}  // namespace krofx::internal
