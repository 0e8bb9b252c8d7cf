// What the values under test log, seen from the thread's logger.

#ifndef KROFX_TESTS_VALUES_VALUE_WARNINGS_H_
#define KROFX_TESTS_VALUES_VALUE_WARNINGS_H_

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "krofx/core/memory.h"
#include "krofx/core/parse_logger.h"
#include "krofx/core/thread.h"

/// One warning: code, value text, tag text.
struct SeenWarning {
  KRParseWarning code;
  std::string value;
  std::string tag;

  bool operator==(const SeenWarning&) const = default;
};

inline void PrintTo(const SeenWarning& warning, std::ostream* out) {
  *out << '{' << warning.code << ", \"" << warning.value << "\", \"" << warning.tag << "\"}";
}

/// A test of values: begins and ends with an empty log, a clear alarm and memory that does not
/// fail.
class ValueTest : public testing::Test {
 protected:
  ValueTest() { Reset(); }
  ~ValueTest() override { Reset(); }

  static void Reset() {
    krofx::internal::AllocationFailure::FailAt(0);
    KRSetFireAlarm(KRFireAlarm_None);
    KRParseLogger::TheKRParseLogger()->DeleteAll();
  }

  /// Removes the warnings from the log and returns them.
  static std::vector<SeenWarning> TakeWarnings() {
    KRParseLogger& logger = *KRParseLogger::TheKRParseLogger();
    std::vector<SeenWarning> seen;
    for (u16 i = 0; i < logger.Entries(); ++i) {
      const KRParseException& e = *logger.Get(i);
      seen.push_back({e.m_warning, static_cast<const char*>(e.m_valueText),
                      static_cast<const char*>(e.m_tagText)});
    }
    logger.DeleteAll();
    return seen;
  }

  /// Removes the warnings from the log and returns their codes.
  static std::vector<KRParseWarning> TakeCodes() {
    std::vector<KRParseWarning> codes;
    for (const SeenWarning& warning : TakeWarnings()) codes.push_back(warning.code);
    return codes;
  }

  using Warnings = std::vector<SeenWarning>;
  using Codes = std::vector<KRParseWarning>;
};

#endif  // KROFX_TESTS_VALUES_VALUE_WARNINGS_H_
