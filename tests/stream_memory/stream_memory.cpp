// Streams one statement of any size, which is made piece by piece, and says how much memory that
// took.
//
//   krofx_stream_memory MEGABYTES [LIMIT [pieces | mended | mended-pieces]]
//
// "pieces" is a statement that is in order, and comes in pieces. In the one that is mended all tags
// are in small letters, the amounts have commas, and each transaction has a tag of the
// institution's own and lacks its end tag; it comes from a buffer that makes each byte when it is
// asked for, so that it can be read several times, or in pieces too. Ends with 1 when an element is
// missing or wrong, or when the process has ever had more than LIMIT megabytes in memory.

#include <algorithm>
#include <cctype>
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

// A transaction that needs mending, of the same length for all numbers.
void AddDamagedTransaction(std::string& text, std::size_t number) {
  char line[300];
  std::snprintf(
      line, sizeof line,
      "<stmttrn>\n<trntype>DEBIT\n<dtposted>20250203120000\n<trnamt>-%05zu,25\n<own.tag>1\n"
      "<fitid>%010zu\n<checknum>%04zu\n<name>Grocer and Sons\n<memo>card 12345678\n",
      number % 100000, number, number % 10000);
  text += line;
}

std::string InSmallLetters(std::string text) {
  bool inTag = false;
  for (char& c : text) {
    inTag = c == '<' || (inTag && c != '>');
    if (inTag) c = static_cast<char>(std::tolower(c));
  }
  return text;
}

// A text that needs mending, whose bytes are made when they are asked for.
class DamagedText : public KRBuffer {
 public:
  explicit DamagedText(std::size_t transactions)
      : KRBuffer(1, 0),
        m_head(InSmallLetters(kHead)),
        m_tail(InSmallLetters(kTail)),
        m_transactions(transactions),
        m_length(LengthOfOne()) {}

  static std::size_t LengthOfOne() {
    std::string one;
    AddDamagedTransaction(one, 1);
    return one.size();
  }

  char GetCh(s32 index) override {
    auto at = static_cast<std::size_t>(index);
    if (at < m_head.size()) return m_head[at];
    at -= m_head.size();
    const std::size_t number = at / m_length + 1;
    if (number > m_transactions) {
      at -= m_transactions * m_length;
      return at < m_tail.size() ? m_tail[at] : '\0';
    }
    if (number != m_number) {
      m_number = number;
      m_transaction.clear();
      AddDamagedTransaction(m_transaction, number);
    }
    return m_transaction[at % m_length];
  }

 private:
  const std::string m_head;
  const std::string m_tail;
  const std::size_t m_transactions;
  const std::size_t m_length;
  std::size_t m_number = 0;
  std::string m_transaction;
};

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
  explicit Reader(bool mends) : m_stream(OptionsOf(mends)), m_mends(mends) {
    m_stream.Want<KRBankStatementTx>();
  }

  bool Read(KRBuffer& buffer) {
    m_stream.Open(buffer);
    return Finish();
  }
  bool Take(const std::string& piece) {
    return m_stream.Feed(piece) && TakeElements() &&
           m_stream.State() == krofx::StreamState::kHungry;
  }
  bool Finish() {
    const bool isAsMade = TakeElements();
    std::printf("%zu mendings\n", m_stream.Mendings().size() + m_stream.Unrecorded());
    return isAsMade && m_stream.Root() != nullptr &&
           m_stream.Status() == (m_mends ? KRParseStatus_Warnings : KRParseStatus_Accepted);
  }
  bool FinishPieces() {
    m_stream.Finish();
    return Finish();
  }
  std::size_t Count() const { return m_count; }

 private:
  static krofx::StreamOptions OptionsOf(bool mends) {
    krofx::StreamOptions options;
    options.mends = mends;
    return options;
  }
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
  bool m_mends;
  std::size_t m_count = 0;
};

bool StreamStatement(std::size_t bytes) {
  Reader reader(false);
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

bool MendStatement(std::size_t bytes, bool inPieces) {
  const std::size_t transactions = bytes / DamagedText::LengthOfOne();
  DamagedText text(transactions);
  Reader reader(true);
  bool good = true;
  if (!inPieces) {
    good = reader.Read(text);
  } else {
    std::string piece;
    s32 at = 0;
    for (char c = text.GetCh(0); c != '\0' && good; c = text.GetCh(at)) {
      piece.clear();
      for (; piece.size() < kPiece && c != '\0'; c = text.GetCh(++at)) piece += c;
      good = reader.Take(piece);
    }
    good = good && reader.FinishPieces();
  }
  std::printf("%zu bytes, %zu transactions\n", bytes, reader.Count());
  return good && reader.Count() == transactions;
}

}  // namespace

int main(int count, char** arguments) {
  if (count < 2) {
    std::fprintf(
        stderr, "usage: krofx_stream_memory MEGABYTES [LIMIT [pieces | mended | mended-pieces]]\n");
    return 64;
  }
  const std::size_t bytes = std::strtoul(arguments[1], nullptr, 10) * kMegabyte;
  const std::string way = count > 3 ? arguments[3] : "pieces";
  const bool good =
      way == "pieces" ? StreamStatement(bytes) : MendStatement(bytes, way == "mended-pieces");
  const std::size_t peak = FromStatus("VmHWM:");
  std::printf("at most %zu kB in memory, %zu kB of addresses\n", peak, FromStatus("VmPeak:"));
  if (!good) std::printf("it was not read as it was made\n");
  const bool within = count < 3 || peak <= std::strtoul(arguments[2], nullptr, 10) * 1024;
  return good && within ? 0 : 1;
}
