// Dates in tests: all fields at a glance, and the protected operations.

#ifndef KROFX_TESTS_VALUES_DATE_VALUES_H_
#define KROFX_TESTS_VALUES_DATE_VALUES_H_

#include <string>

#include "krofx/values/date_time.h"

/// All fields, as "year-month-day hour:minute:second.millisecond offset/fraction zone".
inline std::string Shown(const KRDateTimeBase& d) {
  const auto n = [](auto value) { return std::to_string(value); };
  return n(d.GetYear()) + '-' + n(d.GetMonth()) + '-' + n(d.GetDay()) + ' ' + n(d.GetHour()) + ':' +
         n(d.GetMinute()) + ':' + n(d.GetSecond()) + '.' + n(d.GetMillisecond()) + ' ' +
         n(d.GetGMTOffset()) + '/' + n(d.GetGMTOffsetFraction()) + ' ' +
         static_cast<const char*>(d.GetTimeZone());
}

/// Makes the protected operations public.
class OpenDate : public KRDateTime {
 public:
  using KRDateTime::KRDateTime;
  using KRDateTimeBase::ExtractTimeZone;
};

#endif  // KROFX_TESTS_VALUES_DATE_VALUES_H_
