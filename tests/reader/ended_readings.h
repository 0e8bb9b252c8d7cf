// Readings that end early, for tests of the reader: at damage that must not be mended, and without
// memory.

#ifndef KROFX_TESTS_READER_ENDED_READINGS_H_
#define KROFX_TESTS_READER_ENDED_READINGS_H_

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>

#include "krofx/reader/reading.h"
#include "support/failing_allocation.h"
#include "support/readings.h"

namespace krofx::testing {

/// Expects that a reading ends at the first damage of each kind that the text has, when it is of
/// the kind that must not be mended.
inline void ExpectEndsAtEachKind(const std::string& text) {
  const Reading whole = Read(std::string_view(text));
  const Lines said = MendingLines(whole);
  for (const MendingKind kind : KindsOf(whole)) {
    SCOPED_TRACE(NameOf(kind));
    ReadOptions options;
    options.mend.Remove(kind);
    const Reading reading = Read(std::string_view(text), options);
    EXPECT_EQ(reading.status, KRParseStatus_Invalid);
    EXPECT_EQ(Str(reading.problem), ProblemWithout(kind));
    for (const std::string& line : MendingLines(reading)) {
      EXPECT_NE(line.substr(0, line.find(' ')), NameOf(kind));
      EXPECT_NE(std::find(said.begin(), said.end(), line), said.end()) << line;
    }
  }
}

/// What a host sees of a reading.
inline std::string ShownReading(const Reading& reading) {
  std::string shown = std::to_string(reading.status) + " " + Str(reading.problem) + "\n";
  for (const OfxText& text : reading.texts) shown += Str(text.charset) + Written(text.root.get());
  for (const std::string& line : MendingLines(reading)) shown += line + "\n";
  for (const std::string& line : WarningLines(reading)) shown += line + "\n";
  return shown;
}

/// Expects that a reading ends with status 3, or has all that the text holds, whichever allocation
/// fails, alone or with all after it. For short texts.
inline void ExpectFatalOrWhole(const std::string& text, const ReadOptions& options = {}) {
  const std::string whole = ShownReading(Read(std::string_view(text), options));
  for (const bool andAllLater : {false, true}) {
    std::size_t fatal = 0;
    bool hasFailed = true;
    for (std::size_t nth = 1; hasFailed; ++nth) {
      Reading reading;
      {
        const FailingAllocation failing(nth, andAllLater);
        reading = Read(std::string_view(text), options);
        hasFailed = internal::AllocationFailure::Count() >= nth;
      }
      if (reading.status == KRParseStatus_Fatal) {
        ++fatal;
      } else {
        EXPECT_EQ(ShownReading(reading), whole) << "allocation " << nth;
      }
    }
    EXPECT_GT(fatal, 0u);
  }
}

}  // namespace krofx::testing

#endif  // KROFX_TESTS_READER_ENDED_READINGS_H_
