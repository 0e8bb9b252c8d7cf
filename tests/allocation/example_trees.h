// The examples as trees and as texts, for sweeps over them.

#ifndef KROFX_TESTS_ALLOCATION_EXAMPLE_TREES_H_
#define KROFX_TESTS_ALLOCATION_EXAMPLE_TREES_H_

#include <gtest/gtest.h>

#include <cstddef>
#include <map>
#include <string>

#include "allocation/reading_attempts.h"
#include "allocation/sweep.h"
#include "krofx/envelope/file_rq_rs.h"
#include "krofx/envelope/mime_parser.h"
#include "support/example_texts.h"
#include "support/failing_allocation.h"
#include "support/ofx_text.h"

namespace krofx::testing {

/// The examples by their names, the multipart one included.
inline const std::map<std::string, std::string>& Examples() {
  static const std::map<std::string, std::string> texts = [] {
    std::map<std::string, std::string> found = ExampleTexts(".ofx");
    found.merge(ExampleTexts(".mime"));
    return found;
  }();
  return texts;
}

/// Has `sweep(text)` called for every example; only for each `step`-th of them unless the sweep is
/// whole.
template <class OneSweep>
void ForExamples(OneSweep sweep, std::size_t step = 1) {
  ASSERT_GT(Examples().size(), 40u);
  std::size_t at = 0;
  for (const auto& [name, text] : Examples()) {
    if (at++ % step != 0 && !SweepsWhole()) continue;
    SCOPED_TRACE(name);
    sweep(text);
    if (::testing::Test::HasFailure()) return;
  }
}

/// Calls `use(file, parser)` with an empty file and a parser for a text.
template <class Use>
auto WithFileFor(const std::string& text, Use use) {
  if (text.find("multipart/") != std::string::npos) {
    KRFile file;
    KRMIMEParser parser;
    return use(file, parser);
  }
  KRSimpleParser parser;
  if (text.find("<SONRQ>") != std::string::npos) {
    KRFileRq file;
    return use(file, parser);
  }
  KRFileRs file;
  return use(file, parser);
}

/// The warnings of the thread's log, which is empty then.
inline std::string LoggedWarnings() {
  std::string lines;
  for (const std::string& line : TakeWarnings()) lines += line + "\n";
  return lines;
}

/// Parses a text strictly, and checks that everything required is there.
inline Outcome ParseText(const std::string& text, const Failure& failure) {
  return WithFileFor(text, [&](auto& file, auto& parser) -> Outcome {
    TextBuffer buffer(text);
    KRParseStatus status;
    {
      const FailingScope scope(failure);
      status = parser.Parse(buffer.Get(), &file, 1);
    }
    // A part of a multipart text that failed is skipped, and the alarm says so.
    const bool said = status == KRParseStatus_Fatal || AlarmIsSet();
    const std::string warnings = LoggedWarnings();
    return {said, std::to_string(status) + "\n" + warnings + Shown(file)};
  });
}

/// Sweeps `attempt(file, failure)` over the tree of a text.
template <class TreeAttempt>
void SweepTree(const std::string& text, TreeAttempt attempt) {
  WithFileFor(text, [&](auto& file, auto& parser) {
    TextBuffer buffer(text);
    parser.Parse(buffer.Get(), &file, 0);
    Sweep([&](const Failure& failure) { return attempt(file, failure); });
  });
}

}  // namespace krofx::testing

#endif  // KROFX_TESTS_ALLOCATION_EXAMPLE_TREES_H_
