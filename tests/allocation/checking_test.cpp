// Trees are checked without memory, complete ones and such as lack something: whichever allocation
// fails, the alarm says so, and what is found missing nevertheless is missing and is named whole.

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

#include "allocation/example_trees.h"
#include "allocation/sweep.h"
#include "krofx/reader/reading.h"
#include "krofx/values/utility.h"
#include "support/ofx_text.h"

namespace krofx::testing {
namespace {

// A text without every `step`-th of its elements.
std::string Thinned(const std::string& text, std::size_t step) {
  std::string kept;
  std::size_t elements = 0;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find('\n', at), text.size() - 1) + 1;
    const std::string line = text.substr(at, end - at);
    at = end;
    const bool isElement = line[0] == '<' && line.find_last_not_of("\r\n") > line.find('>');
    if (!isElement || ++elements % step != 0) kept += line;
  }
  return kept;
}

std::vector<std::string> LinesOf(const List<MissingTag>& missing) {
  std::vector<std::string> lines;
  for (const MissingTag& each : missing) {
    std::string line = std::to_string(each.text) + " " + Str(each.path) + ": " +
                       std::to_string(each.tag) + " " + Str(each.tagText) + " " +
                       Str(each.sentence);
    for (const KRTagID tag : each.choices) line += " " + std::to_string(tag);
    lines.push_back(line);
  }
  return lines;
}

std::string Joined(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\n";
  return text;
}

// Looks for all that a reading lacks. What is found is the beginning of all that there is.
Outcome FindAll(const Reading& reading, const std::vector<std::string>& all,
                const Failure& failure) {
  List<MissingTag> missing;
  {
    const FailingScope scope(failure);
    missing = reading.Missing();
  }
  const std::vector<std::string> found = LinesOf(missing);
  EXPECT_TRUE(found.size() <= all.size() && std::equal(found.begin(), found.end(), all.begin()))
      << Joined(found) << "is not how this begins:\n"
      << Joined(all);
  return {AlarmIsSet(), Joined(found)};
}

// Finds what a tree lacks first, and then tag by tag, as the helpers of KRUtility say it.
std::string FindOneByOne(KRDataObj& root) {
  KRDataObj* deepest = &root;
  KRTagID tag = KRTag_None;
  std::string found = std::to_string(KRUtility::AllRequiredPresent(&deepest, &tag));
  found += " " + std::to_string(deepest->GetType()) + " " + std::to_string(tag) + "\n";
  constexpr int kEnough = 100;
  KRDataObj* holder = nullptr;
  tag = KRTag_None;
  for (int count = 0; count < kEnough; ++count) {
    tag = KRUtility::GetNextMissingRequiredTag(&root, &holder, tag);
    if (tag == KRTag_None) break;
    found += std::to_string(holder->GetType()) + " " + std::to_string(tag) + "\n";
  }
  return found;
}

constexpr std::size_t kSteps[] = {3, 7};

TEST(FailedAllocations, EndASearchForAllThatIsMissingWithTheAlarmOrLoseNothing) {
  ForExamples(
      [](const std::string& text) {
        for (const std::size_t step : kSteps) {
          const Reading reading = Read(Thinned(text, step));
          const std::vector<std::string> all = LinesOf(reading.Missing());
          Sweep([&](const Failure& failure) { return FindAll(reading, all, failure); });
        }
      },
      3);
}

TEST(FailedAllocations, LeaveNothingUnsaidOfWhatSeveralTextsLack) {
  const std::string one = Thinned(Examples().at("statement-v2.ofx"), 3);
  const Reading reading = Read(one + one + one);
  const std::vector<std::string> all = LinesOf(reading.Missing());
  ASSERT_EQ(reading.texts.size(), 3u);
  ASSERT_FALSE(all.empty());
  ASSERT_TRUE(all.back().starts_with("2 ")) << all.back();
  Sweep([&](const Failure& failure) { return FindAll(reading, all, failure); });
}

TEST(FailedAllocations, EndAParseThatWarnsOfWhatIsMissingAsFatalOrLoseNothing) {
  ForExamples(
      [](const std::string& text) {
        const std::string thinned = Thinned(text, kSteps[0]);
        Sweep([&](const Failure& failure) { return ParseText(thinned, failure); });
      },
      3);
}

TEST(FailedAllocations, DoNotReachTheSearchForOneMissingTagWhichTakesNoMemory) {
  ForExamples([](const std::string& text) {
    for (const std::string& each : {text, Thinned(text, kSteps[0]), Thinned(text, kSteps[1])}) {
      const Reading reading = Read(each);
      for (const OfxText& one : reading.texts) {
        const std::string expected = FindOneByOne(*one.root);
        std::string found;
        {
          const FailingScope scope({1, true});
          found = FindOneByOne(*one.root);
        }
        EXPECT_EQ(FailingScope::LastCount(), 0u);
        EXPECT_EQ(found, expected);
      }
    }
  });
}

}  // namespace
}  // namespace krofx::testing
