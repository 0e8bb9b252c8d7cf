// How numbers of cards and people are shown.

#include "output/masking.h"

#include <gtest/gtest.h>

namespace krofx::command {
namespace {

TEST(Masking, ShowsTheLastFourCharactersOfACard) {
  EXPECT_EQ(Masked("5500123412344410", Disclosure::kCard), "************4410");
  EXPECT_EQ(Masked("4410", Disclosure::kCard), "4410");
  EXPECT_EQ(Masked("", Disclosure::kCard), "");
}

TEST(Masking, ShowsNothingOfAPersonsShortNumber) {
  EXPECT_EQ(Masked("078051120", Disclosure::kPersonal), "*****1120");
  EXPECT_EQ(Masked("1120", Disclosure::kPersonal), "****");
  EXPECT_EQ(Masked("\u00FF\u00FF", Disclosure::kPersonal), "**");
}

TEST(Masking, CutsNoCharacter) {
  EXPECT_EQ(Masked("\u00FF\u00FF\u00FF\u00FF\u00FF0", Disclosure::kCard), "**\u00FF\u00FF\u00FF0");
}

}  // namespace
}  // namespace krofx::command
