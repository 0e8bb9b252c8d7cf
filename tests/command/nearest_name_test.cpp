// Which name a misspelled one was meant to be.

#include "command_line/nearest_name.h"

#include <gtest/gtest.h>

namespace krofx::command {
namespace {

TEST(NearestName, CountsSingleChanges) {
  EXPECT_EQ(EditDistance("", ""), 0U);
  EXPECT_EQ(EditDistance("", "abc"), 3U);
  EXPECT_EQ(EditDistance("print", "print"), 0U);
  EXPECT_EQ(EditDistance("prnt", "print"), 1U);
  EXPECT_EQ(EditDistance("pirnt", "print"), 1U);
  EXPECT_EQ(EditDistance("Print", "pRINT"), 0U);
  EXPECT_EQ(EditDistance("kitten", "sitting"), 3U);
}

TEST(NearestName, NamesWhatIsAlikeAndNothingElse) {
  constexpr std::string_view kNames[] = {"print", "check", "rewrite"};
  EXPECT_EQ(FindNearest("prnt", kNames), "print");
  EXPECT_EQ(FindNearest("chekc", kNames), "check");
  EXPECT_EQ(FindNearest("rewriet", kNames), "rewrite");
  EXPECT_EQ(FindNearest("bank", kNames), "");
  EXPECT_EQ(FindNearest("x", kNames), "");
  EXPECT_EQ(FindNearest("", kNames), "");
  EXPECT_EQ(SuggestNearest("prnt", kNames), "; did you mean print?");
  EXPECT_EQ(SuggestNearest("bank", kNames), "");
}

}  // namespace
}  // namespace krofx::command
