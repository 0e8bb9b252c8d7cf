// Streams one statement of any size, which is made piece by piece, and says how much memory that
// took.
//
//   krofx_stream_memory MEGABYTES [LIMIT]
//
// Ends with 1 when an element is missing or wrong, or when the process has ever had more than LIMIT
// megabytes in memory.

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>

#include "krofx/messages/banking/accounts.h"
#include "krofx/messages/banking/statements.h"
#include "krofx/stream/stream.h"

namespace {

constexpr std::size_t kMegabyte = 1024 * 1024;
// A reply comes in pieces like this.
constexpr std::size_t kPiece = 16384;

constexpr const char* kHead =
    "OFXHEADER:100\r\nDATA:OFXSGML\r\nVERSION:102\r\nSECURITY:NONE\r\nENCODING:USASCII\r\n"
    "CHARSET:1252\r\nCOMPRESSION:NONE\r\nOLDFILEUID:NONE\r\nNEWFILEUID:NONE\r\n\r\n"
    "<OFX>\n<SIGNONMSGSRSV1>\n<SONRS>\n<STATUS>\n<CODE>0\n<SEVERITY>INFO\n</STATUS>\n"
    "<DTSERVER>20260105120000\n<LANGUAGE>ENG\n</SONRS>\n</SIGNONMSGSRSV1>\n"
    "<BANKMSGSRSV1>\n<STMTTRNRS>\n<TRNUID>1\n<STATUS>\n<CODE>0\n<SEVERITY>INFO\n</STATUS>\n"
    "<STMTRS>\n<CURDEF>USD\n<BANKACCTFROM>\n<BANKID>011000015\n<ACCTID>1029384756\n"
    "<ACCTTYPE>CHECKING\n</BANKACCTFROM>\n<BANKTRANLIST>\n<DTSTART>20000101\n<DTEND>20260101\n";
constexpr const char* kTail =
    "</BANKTRANLIST>\n<LEDGERBAL>\n<BALAMT>1523.75\n<DTASOF>20260105\n</LEDGERBAL>\n"
    "</STMTRS>\n</STMTTRNRS>\n</BANKMSGSRSV1>\n</OFX>\n";

void AddTransaction(std::string& text, std::size_t number) {
  char line[300];
  std::snprintf(line, sizeof line,
                "<STMTTRN>\n<TRNTYPE>DEBIT\n<DTPOSTED>20250203120000\n<TRNAMT>-%zu.25\n"
                "<FITID>%zu\n<CHECKNUM>%zu\n<NAME>Grocer and Sons\n<MEMO>card 1234\n</STMTTRN>\n",
                number % 100000, number, number % 10000);
  text += line;
}

// A number of /proc/self/status, in kilobytes.
std::size_t FromStatus(const char* name) {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.rfind(name, 0) == 0)
      return std::strtoul(line.c_str() + std::strlen(name), nullptr, 10);
  }
  return 0;
}

// Streams what is made, and checks each element.
class Reader {
 public:
  Reader() { m_stream.Want<KRBankStatementTx>(); }

  bool Take(const std::string& piece) {
    return m_stream.Feed(piece) && TakeElements() &&
           m_stream.State() == krofx::StreamState::kHungry;
  }
  bool Finish() {
    return TakeElements() && m_stream.Status() == KRParseStatus_Accepted &&
           m_stream.Root() != nullptr;
  }
  std::size_t Count() const { return m_count; }

 private:
  bool TakeElements() {
    for (const krofx::StreamElement& element : m_stream) {
      ++m_count;
      const auto* const transaction = element.As<KRBankStatementTx>();
      if (transaction == nullptr || element.Account() == nullptr || element.Number() != m_count ||
          std::strtoull(transaction->GetFITId(), nullptr, 10) != m_count) {
        return false;
      }
    }
    return true;
  }

  krofx::Stream m_stream;
  std::size_t m_count = 0;
};

bool StreamStatement(std::size_t bytes) {
  Reader reader;
  std::string piece = kHead;
  piece.reserve(2 * kPiece);
  std::size_t made = 0;
  std::size_t transactions = 0;
  while (made < bytes) {
    while (piece.size() < kPiece) AddTransaction(piece, ++transactions);
    made += piece.size();
    if (!reader.Take(piece)) return false;
    piece.clear();
  }
  // The end tag of OFX ends the text, so nothing is asked for after it.
  const bool ended = !reader.Take(kTail) && reader.Finish();
  std::printf("%zu bytes, %zu transactions\n", made, reader.Count());
  return ended && reader.Count() == transactions;
}

}  // namespace

int main(int count, char** arguments) {
  if (count < 2) {
    std::fprintf(stderr, "usage: krofx_stream_memory MEGABYTES [LIMIT]\n");
    return 64;
  }
  const bool good = StreamStatement(std::strtoul(arguments[1], nullptr, 10) * kMegabyte);
  const std::size_t peak = FromStatus("VmHWM:");
  std::printf("at most %zu kB in memory, %zu kB of addresses\n", peak, FromStatus("VmPeak:"));
  if (!good) std::printf("it was not read as it was made\n");
  const bool within = count < 3 || peak <= std::strtoul(arguments[2], nullptr, 10) * 1024;
  return good && within ? 0 : 1;
}
