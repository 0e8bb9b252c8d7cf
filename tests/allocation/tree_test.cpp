// Every example is read, written and copied without memory: whichever allocation fails, the status
// says so or nothing is lost, nothing leaks, and the next one on the thread is clean.

#include <gtest/gtest.h>

#include <map>
#include <string>

#include "allocation/reading_attempts.h"
#include "allocation/sweep.h"
#include "krofx/envelope/file_rq_rs.h"
#include "krofx/envelope/mime_parser.h"
#include "krofx/reader/reading.h"
#include "support/example_texts.h"
#include "support/failing_allocation.h"
#include "support/ofx_text.h"

namespace krofx::testing {
namespace {

// The examples by their names.
const std::map<std::string, std::string>& Examples() {
  static const std::map<std::string, std::string> texts = [] {
    std::map<std::string, std::string> found = ExampleTexts(".ofx");
    found.merge(ExampleTexts(".mime"));
    return found;
  }();
  return texts;
}

bool IsMultipart(const std::string& name) { return name.ends_with(".mime"); }

bool IsRequest(const std::string& text) { return text.find("<SONRQ>") != std::string::npos; }

std::string LoggedWarnings() {
  std::string lines;
  for (const std::string& line : TakeWarnings()) lines += line + "\n";
  return lines;
}

template <class File, class Parser>
Outcome Parse(const std::string& text, const Failure& failure) {
  TextBuffer buffer(text);
  File file;
  Parser parser;
  KRParseStatus status;
  {
    const FailingScope scope(failure);
    status = parser.Parse(buffer.Get(), &file, 1);
  }
  // A part of a multipart text that failed is skipped, and the alarm says so.
  const bool said = status == KRParseStatus_Fatal || AlarmIsSet();
  const std::string warnings = LoggedWarnings();
  return {said, std::to_string(status) + "\n" + warnings + Shown(file)};
}

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

// Has `sweep` called with an attempt for every example.
void ForEveryExample(const std::function<void(const std::string&, const std::string&)>& sweep) {
  ASSERT_GT(Examples().size(), 40u);
  for (const auto& [name, text] : Examples()) {
    SCOPED_TRACE(name);
    sweep(name, text);
    if (::testing::Test::HasFailure()) return;
  }
}

template <class File, class Parser, class Attempt>
void SweepTree(const std::string& text, Attempt attempt) {
  TextBuffer buffer(text);
  File file;
  Parser parser;
  parser.Parse(buffer.Get(), &file, 0);
  Sweep([&](const Failure& failure) { return attempt(file, failure); });
}

// Sweeps an attempt over the tree of an example.
template <class Attempt>
void SweepExample(const std::string& name, const std::string& text, Attempt attempt) {
  if (IsMultipart(name)) {
    SweepTree<KRFile, KRMIMEParser>(text, attempt);
  } else if (IsRequest(text)) {
    SweepTree<KRFileRq, KRSimpleParser>(text, attempt);
  } else {
    SweepTree<KRFileRs, KRSimpleParser>(text, attempt);
  }
}

TEST(FailedAllocations, EndAParseAsFatalOrLoseNothing) {
  ForEveryExample([](const std::string& name, const std::string& text) {
    Sweep([&](const Failure& failure) {
      if (IsMultipart(name)) return Parse<KRFile, KRMIMEParser>(text, failure);
      return IsRequest(text) ? Parse<KRFileRq, KRSimpleParser>(text, failure)
                             : Parse<KRFileRs, KRSimpleParser>(text, failure);
    });
  });
}

TEST(FailedAllocations, EndAReadingAsFatalOrLoseNothing) {
  ForEveryExample([](const std::string&, const std::string& text) {
    Sweep([&](const Failure& failure) { return ReadText(text, failure); });
  });
}

TEST(FailedAllocations, EndABuildAsFatalOrLoseNothing) {
  ForEveryExample([](const std::string& name, const std::string& text) {
    SweepExample(name, text, [](auto& file, const Failure& f) { return WriteTree(file, f); });
  });
}

TEST(FailedAllocations, EndADeepCopyWithNothingOrLoseNothing) {
  ForEveryExample([](const std::string& name, const std::string& text) {
    SweepExample(name, text, [](auto& file, const Failure& f) { return CopyTree(file, f); });
  });
}

}  // namespace
}  // namespace krofx::testing
