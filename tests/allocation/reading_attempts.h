// Readings and streams of texts while allocations fail, and what a host sees of them.

#ifndef KROFX_TESTS_ALLOCATION_READING_ATTEMPTS_H_
#define KROFX_TESTS_ALLOCATION_READING_ATTEMPTS_H_

#include <string>
#include <string_view>

#include "allocation/sweep.h"
#include "krofx/envelope/file_rq_rs.h"
#include "krofx/messages/banking/statements.h"
#include "krofx/reader/reading.h"
#include "krofx/stream/stream.h"
#include "support/ofx_text.h"
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

/// Reads a text with krofx::Read.
inline Outcome ReadText(const std::string& text, const Failure& failure) {
  Reading reading;
  {
    const FailingScope scope(failure);
    reading = Read(std::string_view(text));
  }
  std::string shown = std::to_string(reading.status) + " " + Str(reading.problem) + "\n" +
                      ShownRecords(reading.mendings, reading.warnings);
  for (const OfxText& one : reading.texts) shown += Shown(*one.root);
  return {reading.status == KRParseStatus_Fatal, shown};
}

/// Streams the transactions and closings of a text.
/// @param piece bytes of the pieces that it comes in; 0 for the whole from memory.
inline Outcome StreamText(const std::string& text, bool mends, std::size_t piece,
                          const Failure& failure) {
  std::string shown;
  FailingScope scope(failure);
  StreamOptions options;
  options.mends = mends;
  Stream stream(options);
  stream.Want<KRBankStatementTx>().Want<KRClosing>();
  const auto takeAll = [&] {
    while (const StreamElement* const element = stream.Next()) {
      scope.Pause();
      shown += std::to_string(element->Where().offset) + " " + Str(element->Path()) + "\n" +
               Shown(element->Object());
      scope.Resume();
    }
  };
  if (piece == 0) stream.Open(std::string_view(text));
  for (std::size_t at = 0; piece != 0 && at < text.size(); at += piece) {
    if (!stream.Feed(std::string_view(text).substr(at, piece))) break;
    takeAll();
  }
  if (piece != 0) stream.Finish();
  takeAll();
  scope.Pause();
  const KRParseStatus status = stream.Status();
  shown += std::to_string(status) + " " + Str(stream.Problem()) + "\n" +
           ShownRecords(stream.Mendings(), stream.Warnings());
  if (stream.Root() != nullptr) shown += Shown(*stream.Root());
  return {status == KRParseStatus_Fatal, shown};
}

}  // namespace krofx::testing

#endif  // KROFX_TESTS_ALLOCATION_READING_ATTEMPTS_H_
