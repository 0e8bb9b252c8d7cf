// Streams of texts and what came out of them, for tests.

#ifndef KROFX_TESTS_STREAM_STREAMED_H_
#define KROFX_TESTS_STREAM_STREAMED_H_

#include <algorithm>
#include <string>
#include <vector>

#include "krofx/envelope/file_rq_rs.h"
#include "krofx/messages/banking/accounts.h"
#include "krofx/messages/banking/statements.h"
#include "krofx/messages/investment/statement.h"
#include "krofx/messages/investment/transactions.h"
#include "krofx/payroll/paychecks.h"
#include "krofx/reader/reading.h"
#include "krofx/stream/stream.h"
#include "support/example_texts.h"
#include "support/ofx_text.h"
#include "support/parse_text.h"
#include "support/readings.h"

namespace krofx::testing {

// The usual options of a stream that mends.
inline StreamOptions MendingOptions() {
  StreamOptions options;
  options.mends = true;
  return options;
}

/// Wants the elements of all kinds of lists that the examples have.
inline void WantMuch(Stream& stream) {
  stream.Want<KRBankStatementTx>().Want<KRClosing>().Want<KRCCClosing>();
  stream.WantAllOf<KRInvTranList>();
  stream.Want<KRPosDebt>().Want<KRPosMF>().Want<KRPosOpt>().Want<KRPosOther>().Want<KRPosStock>();
  stream.Want<KRSalaryLine>().Want<KRHourlyWageLine>().Want<KRAdjustmentLine>().Want<KRTaxLine>();
  stream.Want<KRDirectDepositLine>().Want<KRTxLine>();
}

/// What a host sees of a stream.
struct Streamed {
  /// Place, path, account, how many warnings there were, text.
  std::vector<std::string> elements;
  Lines texts;  ///< The texts alone.
  KRParseStatus status = KRParseStatus_Accepted;
  Lines warnings;
  std::string rest;  ///< The tree at the end.

  friend bool operator==(const Streamed&, const Streamed&) = default;
};

inline std::string AtPlace(const Place& place) {
  return std::to_string(place.line) + ":" + std::to_string(place.column) + "@" +
         std::to_string(place.offset);
}

/// Takes the elements that the stream can give now.
inline void TakeAll(Stream& stream, Streamed& out) {
  while (const StreamElement* const element = stream.Next()) {
    const KRAccount* const account = element->Account();
    out.texts.push_back(Written(&element->Object()));
    out.elements.push_back(AtPlace(element->Where()) + " " + Str(element->Path()) + " " +
                           (account == nullptr ? "-" : Str(account->GetAccountID())) + " " +
                           std::to_string(stream.Warnings().size()) + "\n" + out.texts.back());
  }
}

/// Notes what is there at the end.
inline void TakeEnd(Stream& stream, Streamed& out) {
  out.status = stream.Status();
  for (const ReadWarning& warning : stream.Warnings()) {
    out.warnings.push_back(std::to_string(warning.warning) + " " + AtPlace(warning.place) + " <" +
                           Str(warning.tagText) + "> \"" + Str(warning.value) + "\" " +
                           Str(warning.path));
  }
  out.rest = Written(stream.Root());
}

/// Gives a stream a text in pieces of `size` bytes, 0 for the whole text from memory, and calls
/// `take` for what has come.
template <class Take>
void Pour(Stream& stream, const std::string& text, std::size_t size, Take take) {
  if (size == 0) stream.Open(std::string_view(text));
  for (std::size_t at = 0; size != 0 && at < text.size(); at += size) {
    const std::string piece = text.substr(at, size);
    if (!stream.Feed(piece)) break;
    take();
  }
  if (size != 0) stream.Finish();
  take();
}

/// The same, with all elements that come taken.
inline void Pour(Stream& stream, const std::string& text, std::size_t size, Streamed& out) {
  Pour(stream, text, size, [&] { TakeAll(stream, out); });
}

/// Streams a text in pieces of `size` bytes; 0 for the whole text from memory.
inline Streamed StreamText(const std::string& text, std::size_t size = 0,
                           StreamOptions options = {}) {
  Stream stream(options);
  WantMuch(stream);
  Streamed out;
  Pour(stream, text, size, out);
  TakeEnd(stream, out);
  return out;
}

/// Streams a text from a plain buffer.
inline Streamed StreamBuffer(const std::string& text) {
  TextBuffer buffer(text);
  Stream stream;
  WantMuch(stream);
  stream.Open(*buffer.Get());
  Streamed out;
  TakeAll(stream, out);
  TakeEnd(stream, out);
  return out;
}

/// One transaction with a number in it.
inline std::string NumberedTransaction(std::size_t number) {
  const std::string digits = std::to_string(number);
  return "<STMTTRN>\n<TRNTYPE>DEBIT\n<DTPOSTED>20250203120000\n<TRNAMT>-" + digits +
         ".25\n<FITID>" + digits + "\n<NAME>Grocer and Sons\n<MEMO>card 1234\n</STMTTRN>\n";
}

}  // namespace krofx::testing

#endif  // KROFX_TESTS_STREAM_STREAMED_H_
