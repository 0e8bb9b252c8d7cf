// Every example is streamed without memory, from memory and in pieces: whichever allocation fails,
// the stream ends with a status that says so or nothing is lost; what the host asks of an element
// is whole, or the alarm says so.

#include <gtest/gtest.h>

#include <string>

#include "allocation/example_trees.h"
#include "allocation/reading_attempts.h"
#include "allocation/sweep.h"

namespace krofx::testing {
namespace {

// A window that longer examples do not fit into.
constexpr u32 kSmallWindow = 4096;

// Streams examples in one way.
void SweepStreams(const StreamWay& way) {
  ForExamples(
      [&way](const std::string& text) {
        Sweep([&](const Failure& failure) { return StreamText(text, way, failure); });
      },
      3);
}

TEST(FailedAllocations, EndAStreamOfAnExampleAsFatalOrLoseNothing) { SweepStreams({}); }

TEST(FailedAllocations, EndAMendedStreamOfAnExampleAsFatalOrLoseNothing) {
  SweepStreams({.mends = true});
}

TEST(FailedAllocations, EndAStreamOfPiecesOfAnExampleAsFatalOrLoseNothing) {
  SweepStreams({.piece = 999, .window = kSmallWindow});
}

TEST(FailedAllocations, EndAMendedStreamOfPiecesOfAnExampleAsFatalOrLoseNothing) {
  SweepStreams({.mends = true, .piece = 999, .window = kSmallWindow});
}

}  // namespace
}  // namespace krofx::testing
