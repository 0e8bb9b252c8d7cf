// Finds out whether memory ran out during a part of an operation, even if the fire alarm was
// already raised before.

#ifndef KROFX_CORE_INTERNAL_ALARM_SCOPE_H_
#define KROFX_CORE_INTERNAL_ALARM_SCOPE_H_

#include "krofx/core/thread.h"

namespace krofx::internal {

/// Clears the thread's fire alarm. The destructor raises it again if it was raised before; an alarm
/// that was raised in the meantime stays.
class AlarmScope {
 public:
  AlarmScope() : m_before(KRGetFireAlarm()) {
    if (m_before == KRFireAlarm_None) return;
    KRSetFireAlarm(KRFireAlarm_None);
    m_isOn = KRGetFireAlarm() != KRFireAlarm_None;
  }
  AlarmScope(const AlarmScope&) = delete;
  AlarmScope& operator=(const AlarmScope&) = delete;
  ~AlarmScope() {
    if (m_before != KRFireAlarm_None) KRSetFireAlarm(m_before);
  }

  /// @return whether memory ran out in this scope; false on a thread without an alarm, where it
  ///         cannot be known.
  bool WasRaised() const { return !m_isOn && KRGetFireAlarm() != KRFireAlarm_None; }

 private:
  const KRFireAlarm m_before;
  bool m_isOn = false;
};

}  // namespace krofx::internal

#endif  // KROFX_CORE_INTERNAL_ALARM_SCOPE_H_
