// Searching memory block by block finds the same as searching it byte by byte.

#include "krofx/core/internal/byte_search.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace {

using namespace krofx::internal;

// Bytes next to those that are searched for: the marks must not affect neighbours.
std::string RandomText(std::mt19937& random, std::size_t length) {
  static constexpr char kBytes[] = {'<',    ';', '=', '&',  '%',  '>',    '?',    '\0',
                                    '\x01', 'a', ' ', '\t', '\n', '\x80', '\xbc', '\xff'};
  std::string text(length, 'x');
  for (char& c : text) {
    if (random() % 4 == 0) c = kBytes[random() % sizeof kBytes];
  }
  return text;
}

template <class Block>
void ExpectFirstMarks() {
  std::mt19937 random(7);
  for (int round = 0; round < 20000; ++round) {
    const std::string text = RandomText(random, Block::kSize);
    const Block block(text.data());
    for (char one : {'<', '>', '\0', '\xff'}) {
      const std::size_t single = std::min<std::size_t>(text.find(one), Block::kSize);
      ASSERT_EQ(block.Equal(one).First(), static_cast<int>(single));
      const std::size_t either = std::min(single, text.find('&'));
      ASSERT_EQ((block.Equal(one) | block.Equal('&')).First(), static_cast<int>(either));
    }
  }
}

TEST(WordBlock, MarksTheFirstOfTheBytesAskedFor) { ExpectFirstMarks<WordBlock>(); }

TEST(ByteBlock, MarksTheFirstOfTheBytesAskedFor) { ExpectFirstMarks<ByteBlock>(); }

TEST(ByteSearch, FindsWhatALookAtEachByteFinds) {
  std::mt19937 random(11);
  for (int round = 0; round < 20000; ++round) {
    const std::string text = RandomText(random, random() % 70);
    const char* begin = text.data();
    const char* end = begin + text.size();
    const std::size_t start = text.empty() ? 0 : random() % text.size();

    const auto placeOf = [&](const char* set, std::size_t count) {
      const std::size_t place = text.find_first_of(set, start, count);
      return place == std::string::npos ? text.size() : place;
    };
    ASSERT_EQ(FindOrNul(begin + start, end, '&') - begin, placeOf("&\0", 2));
    ASSERT_EQ(FindNameEnd(begin + start, end) - begin, placeOf("> \n\r\t\0", 6));
    bool hasMacros = false;
    const std::size_t valueEnd = placeOf("<\0", 2);
    ASSERT_EQ(FindValueEnd(begin + start, end, hasMacros) - begin, valueEnd);
    ASSERT_EQ(hasMacros, text.substr(start, valueEnd - start).find('&') != std::string::npos);
  }
}

TEST(ByteSearch, CopiesATextUnlessItHasACharacterWithAMacro) {
  std::mt19937 random(13);
  for (int round = 0; round < 20000; ++round) {
    // Each in memory of its own size, so that a sanitizer sees a read or write beyond it.
    const std::string made = RandomText(random, random() % 70);
    const std::vector<char> text(made.begin(), made.end());
    std::vector<char> copy(text.size(), '?');
    const bool hasNone = made.find_first_of("<>&") == std::string::npos;
    ASSERT_EQ(CopyWithoutMacros(text.data(), text.size(), copy.data()), hasNone);
    ASSERT_TRUE(!hasNone || copy == text);
  }
}

}  // namespace
