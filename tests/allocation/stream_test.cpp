// Every example is streamed without memory, from memory and in pieces: whichever allocation fails,
// the stream ends with a status that says so or nothing is lost; what the host asks of an element
// is whole, or the alarm says so.

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "allocation/example_trees.h"
#include "allocation/reading_attempts.h"
#include "allocation/sweep.h"
#include "krofx/messages/banking/statements.h"
#include "krofx/stream/stream.h"
#include "support/failing_allocation.h"
#include "support/ofx_text.h"

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

TEST(FailedAllocations, EndAStreamOfABufferAsFatalOrLoseNothing) {
  SweepStreams({.isBuffer = true});
}

TEST(FailedAllocations, EndAMendedStreamOfABufferAsFatalOrLoseNothing) {
  SweepStreams({.mends = true, .isBuffer = true});
}

TEST(FailedAllocations, EndAStreamOfPiecesOfAnExampleAsFatalOrLoseNothing) {
  SweepStreams({.piece = 999, .window = kSmallWindow});
}

TEST(FailedAllocations, EndAMendedStreamOfPiecesOfAnExampleAsFatalOrLoseNothing) {
  SweepStreams({.mends = true, .piece = 999, .window = kSmallWindow});
}

// Asks for the name of each transaction as a person reads it. The thread converts texts of another
// character set meanwhile.
Outcome ReadNames(const std::string& text, const Failure& failure) {
  OfxText other;
  other.charset = "UTF-8";
  FailingScope scope(failure);
  scope.Pause();
  Stream stream;
  stream.Want<KRBankStatementTx>();
  stream.Open(std::string_view(text));
  Outcome outcome;
  while (const StreamElement* const element = stream.Next()) {
    EXPECT_EQ(Str(other.ToUtf8(KRString("\xC3\xA4"))), "\xC3\xA4");
    KRSetFireAlarm(KRFireAlarm_None);
    scope.Resume();
    const std::string name = Str(element->ToUtf8(element->As<KRBankStatementTx>()->GetName()));
    scope.Pause();
    EXPECT_TRUE(name == "Caf\xC3\xA9" || (name.empty() && AlarmIsSet())) << name;
    outcome.failed = outcome.failed || AlarmIsSet();
    outcome.shown += name + "\n";
  }
  return outcome;
}

TEST(FailedAllocations, LeaveNoElementOfAStreamInAnotherCharacterSet) {
  const std::string transaction =
      "<STMTTRN><TRNTYPE>DEBIT<DTPOSTED>20260105<TRNAMT>-7<FITID>1<NAME>Caf\xE9</STMTTRN>";
  const std::string text = BankStatementFile(transaction + transaction + transaction);
  Sweep([&](const Failure& failure) { return ReadNames(text, failure); });
}

}  // namespace
}  // namespace krofx::testing
