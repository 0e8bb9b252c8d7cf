// Every example is read, written and copied without memory: whichever allocation fails, the status
// says so or nothing is lost, nothing leaks, and the next one on the thread is clean.

#include <gtest/gtest.h>

#include <string>

#include "allocation/example_trees.h"
#include "allocation/reading_attempts.h"
#include "allocation/sweep.h"
#include "support/ofx_text.h"

namespace krofx::testing {
namespace {

template <class File>
Outcome WriteTree(File& file, const Failure& failure) {
  KRBuffer buffer(0, 0);
  KRBuilder builder;
  KRBuildStatus status;
  {
    const FailingScope scope(failure);
    status = builder.Build(&buffer, &file, KRBuildStringOpt_Lenient, 0);
  }
  LoggedWarnings();
  return {status == KRBuildStatus_Fatal, std::to_string(status) + "\n" + ContentOf(buffer)};
}

template <class File>
Outcome CopyTree(File& file, const Failure& failure) {
  File copy;
  u16 copied;
  {
    const FailingScope scope(failure);
    copied = copy.DeepCopyFrom(&file);
  }
  const std::string shown = Shown(copy);
  LoggedWarnings();
  return {copied == 0, shown};
}

TEST(FailedAllocations, EndAParseAsFatalOrLoseNothing) {
  ForExamples([](const std::string& text) {
    Sweep([&](const Failure& failure) { return ParseText(text, failure); });
  });
}

TEST(FailedAllocations, EndAReadingAsFatalOrLoseNothing) {
  ForExamples([](const std::string& text) {
    Sweep([&](const Failure& failure) { return ReadText(text, failure); });
  });
}

TEST(FailedAllocations, EndAReadingOfAFileAsFatalOrLoseNothing) {
  Sweep([](const Failure& failure) {
    return ReadBy([] { return ReadFile(KROFX_EXAMPLES "/quirks.ofx"); }, failure);
  });
}

TEST(FailedAllocations, EndABuildAsFatalOrLoseNothing) {
  ForExamples([](const std::string& text) {
    SweepTree(text, [](auto& file, const Failure& f) { return WriteTree(file, f); });
  });
}

TEST(FailedAllocations, EndADeepCopyWithNothingOrLoseNothing) {
  ForExamples([](const std::string& text) {
    SweepTree(text, [](auto& file, const Failure& f) { return CopyTree(file, f); });
  });
}

}  // namespace
}  // namespace krofx::testing
