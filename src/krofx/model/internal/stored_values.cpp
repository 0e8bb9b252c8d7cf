// The cases of stored values that are rare enough to stay out of line.

#include "krofx/model/internal/stored_values.h"

#include "krofx/core/thread.h"

namespace krofx::internal {

void RaiseTextAlarm() { KRSetFireAlarm(KRFireAlarm_MemoryExhausted); }

StoredDate& StoredDate::operator=(const KRDateTime& value) {
  PlainDate plain;
  if (value.AsPlain(plain)) {
    if (IsWhole()) Drop();
    m_date = plain;
    return *this;
  }
  auto* const whole = new KRDateTime(value);
  if (whole == nullptr) {
    KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
    return *this;
  }
  if (IsWhole()) Drop();
  std::memcpy(static_cast<void*>(&m_date), &whole, sizeof(void*));
  m_date.extra = 1;
  return *this;
}

u16 StoredDate::operator=(const char* text) {
  KRDateTime value = *this;
  const u16 read = value = text;
  *this = value;
  return read;
}

void StoredDate::Drop() {
  delete Whole();
  m_date = PlainDate();
}

}  // namespace krofx::internal
