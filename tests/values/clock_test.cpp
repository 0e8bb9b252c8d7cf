// The interface to the platform's clock and zone, and that no date depends on that zone.

#include "krofx/values/internal/clock.h"

#include <gtest/gtest.h>
#include <time.h>

#include <cstdlib>
#include <string>

#include "krofx/values/date_time.h"
#include "krofx/values/internal/digits.h"

namespace {

using krofx::internal::Clock;

class FixedClock : public Clock {
 public:
  std::int64_t Now() override { return 951868800; }
  s32 LocalZoneOffset() override { return -12345; }
};

/// Sets the zone of the process for the lifetime of the object.
class Zone {
 public:
  explicit Zone(const char* name) {
    if (const char* old = std::getenv("TZ")) {
      m_old = old;
      m_hadOne = true;
    }
    setenv("TZ", name, 1);
    tzset();
  }
  ~Zone() {
    if (m_hadOne) {
      setenv("TZ", m_old.c_str(), 1);
    } else {
      unsetenv("TZ");
    }
    tzset();
  }

 private:
  std::string m_old;
  bool m_hadOne = false;
};

TEST(Clock, CanBeReplacedAndPutBack) {
  FixedClock fixed;
  EXPECT_EQ(Clock::Replace(&fixed), nullptr);
  EXPECT_EQ(Clock::Current().Now(), 951868800);
  EXPECT_EQ(KRDateTime().LocalTimeZoneOffset(), -12345);
  EXPECT_EQ(Clock::Replace(nullptr), &fixed);
  EXPECT_NE(&Clock::Current(), &fixed);
}

TEST(Clock, TheSystemsClockRunsForwards) {
  const std::int64_t first = Clock::Current().Now();
  EXPECT_GT(first, 1700000000);
  EXPECT_GE(Clock::Current().Now(), first);
}

TEST(Clock, TheSystemsZoneIsAheadOfGMTWhenItLiesEast) {
  const Zone west("XST5");
  EXPECT_EQ(Clock::Current().LocalZoneOffset(), -5 * 3600);
  const Zone east("XST-5:30");
  EXPECT_EQ(Clock::Current().LocalZoneOffset(), 5 * 3600 + 1800);
  const Zone none("UTC0");
  EXPECT_EQ(KRDateTime().LocalTimeZoneOffset(), 0);
}

TEST(Clock, TheZoneOfTheMachineChangesNoDate) {
  for (const char* const name : {"UTC0", "XST5", "XST-13", "XST5XDT,M3.2.0,M11.1.0"}) {
    const Zone zone(name);
    KRDateTime date("20000701120000[-5:EST]");
    EXPECT_EQ(date.GetTimeT(), 962470800) << name;
    date = s32{962470800};
    EXPECT_EQ(date.GetHour(), 17) << name;
  }
}

// --- Digits --------------------------------------------------------------------------------------

TEST(Digits, AreReadUpToFive) {
  u16 value = 99;
  EXPECT_TRUE(krofx::internal::ReadDigits("12", 2, value, 2, 0));
  EXPECT_EQ(value, 12);
  EXPECT_TRUE(krofx::internal::ReadDigits("1234567", 7, value, 0, 0));
  EXPECT_EQ(value, 12345);
  EXPECT_TRUE(krofx::internal::ReadDigits("65536", 5, value, 0, 0));
  EXPECT_EQ(value, 0);
  EXPECT_TRUE(krofx::internal::ReadDigits("", 0, value, 0, 3));
  EXPECT_EQ(value, 0);
  EXPECT_TRUE(krofx::internal::ReadDigits("5", 1, value, 0, 3));
  EXPECT_EQ(value, 500);
  EXPECT_TRUE(krofx::internal::ReadDigits("1234", 4, value, 0, 3));
  EXPECT_EQ(value, 1234);
}

TEST(Digits, ThatAreNoneOrTooFewLeaveTheValue) {
  u16 value = 99;
  EXPECT_FALSE(krofx::internal::ReadDigits("1x", 2, value, 0, 0));
  EXPECT_FALSE(krofx::internal::ReadDigits("123", 3, value, 2, 0));
  EXPECT_FALSE(krofx::internal::ReadDigits("1", 1, value, 2, 0));
  EXPECT_FALSE(krofx::internal::ReadDigits(" 1", 2, value, 2, 0));
  EXPECT_EQ(value, 99);
}

}  // namespace
