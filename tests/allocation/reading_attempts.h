// Readings and streams of texts while allocations fail, and what a host sees of them.

#ifndef KROFX_TESTS_ALLOCATION_READING_ATTEMPTS_H_
#define KROFX_TESTS_ALLOCATION_READING_ATTEMPTS_H_

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "allocation/sweep.h"
#include "krofx/envelope/file_rq_rs.h"
#include "krofx/messages/banking/accounts.h"
#include "krofx/messages/banking/statements.h"
#include "krofx/messages/investment/transactions.h"
#include "krofx/reader/reading.h"
#include "krofx/stream/stream.h"
#include "support/failing_allocation.h"
#include "support/ofx_text.h"
#include "support/parse_text.h"
#include "support/readings.h"

namespace krofx::testing {

/// What a host sees of a tree.
inline std::string Shown(const KRDataObj& tree) {
  const Built built = Build(tree, KRBuildStringOpt_Lenient);
  return std::to_string(built.status) + "\n" + built.text;
}

/// What a host sees of mendings and warnings.
template <class Records>
std::string ShownRecords(const Records& mendings, const List<ReadWarning>& warnings) {
  std::string shown;
  for (const Mending& mending : mendings) shown += Line(mending) + " " + Str(mending.path) + "\n";
  for (const ReadWarning& warning : warnings) {
    shown += std::to_string(warning.warning) + " " + Str(warning.path) + "\n";
  }
  return shown;
}

/// Calls `read()`, which gives a Reading.
template <class ReadCall>
Outcome ReadBy(ReadCall read, const Failure& failure) {
  Reading reading;
  {
    const FailingScope scope(failure);
    reading = read();
  }
  std::string shown = std::to_string(reading.status) + " " + Str(reading.problem) + "\n" +
                      ShownRecords(reading.mendings, reading.warnings);
  for (const OfxText& one : reading.texts) shown += Shown(*one.root);
  return {reading.status == KRParseStatus_Fatal, shown};
}

/// Reads a text with krofx::Read.
inline Outcome ReadText(const std::string& text, const Failure& failure) {
  return ReadBy([&text] { return Read(std::string_view(text)); }, failure);
}

/// Takes the path of something while allocations fail: it must be whole, or empty with the alarm
/// raised.
template <class Located>
std::string PathOf(const Located& located, FailingScope& scope) {
  const std::string path = Str(located.Path());
  scope.Pause();
  const bool isLost = path.empty() && AlarmIsSet();
  const std::string whole = isLost ? std::string() : Str(located.Path());
  EXPECT_EQ(path, whole);
  scope.Resume();
  return path;
}

/// How a text is streamed.
struct StreamWay {
  bool mends = false;
  /// Bytes of the pieces that it comes in; 0 for the whole from memory.
  std::size_t piece = 0;
  u32 window = StreamOptions().window;
  /// Whether it is a buffer that is read in place.
  bool isBuffer = false;
};

/// Streams the transactions, closings and wrappers of a text.
inline Outcome StreamText(const std::string& text, const StreamWay& way, const Failure& failure) {
  std::string shown;
  TextBuffer buffer(text);
  FailingScope scope(failure);
  StreamOptions options;
  options.mends = way.mends;
  options.window = way.window;
  Stream stream(options);
  stream.Want<KRBankStatementTx>().Want<KRClosing>().WantAllOf<KRInvTranList>();
  stream.Want<KRTransRq>().Want<KRTransRs>();
  bool isAlarmed = false;
  const auto takeAll = [&] {
    while (const StreamElement* const element = stream.Next()) {
      shown += std::to_string(element->Where().offset) + " " + PathOf(*element, scope) + "\n";
      if (const KRAccount* const account = element->Account()) {
        shown += Str(element->ToUtf8(account->GetAccountID())) + "\n";
      }
      scope.Pause();
      // The host's own failures, which the stream knows nothing of.
      isAlarmed = isAlarmed || AlarmIsSet();
      shown += Shown(element->Object());
      scope.Resume();
    }
  };
  if (way.isBuffer) {
    stream.Open(*buffer);
  } else if (way.piece == 0) {
    stream.Open(std::string_view(text));
  }
  for (std::size_t at = 0; way.piece != 0 && at < text.size(); at += way.piece) {
    if (!stream.Feed(std::string_view(text).substr(at, way.piece))) break;
    takeAll();
  }
  if (way.piece != 0) stream.Finish();
  takeAll();
  scope.Pause();
  const KRParseStatus status = stream.Status();
  shown += std::to_string(status) + " " + Str(stream.Problem()) + "\n" +
           ShownRecords(stream.Mendings(), stream.Warnings());
  if (stream.Root() != nullptr) shown += Shown(*stream.Root());
  return {status == KRParseStatus_Fatal || isAlarmed, shown};
}

}  // namespace krofx::testing

#endif  // KROFX_TESTS_ALLOCATION_READING_ATTEMPTS_H_
