// The rows of statements are made by getters, those of all other tables by the paths of the
// layouts. Both give the same for a transaction, whatever is in it.

#include "showing/transaction_cells.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "input/element_tree.h"
#include "input/parsed_file.h"
#include "krofx/host/look.h"
#include "showing/row_maker.h"

namespace krofx::command {
namespace {

constexpr std::string_view kHeader =
    "OFXHEADER:100\nDATA:OFXSGML\nVERSION:160\nSECURITY:NONE\nENCODING:USASCII\nCHARSET:1252\n"
    "COMPRESSION:NONE\nOLDFILEUID:NONE\nNEWFILEUID:NONE\n\n";

constexpr std::string_view kPayee =
    "<NAME>Of the payee<ADDR1>1 Road<CITY>Town<STATE>NY<POSTALCODE>10001<PHONE>1";

// Transactions with everything that one can have, in the form of a version of the message set.
std::string Transactions(const std::string& version) {
  const std::string two = version == "V1" ? "" : "2";
  const std::string payee = "<PAYEE" + two + ">" + std::string(kPayee) + "</PAYEE" + two + ">";
  return "<STMTTRN><TRNTYPE>CHECK<DTPOSTED>20260102120000.500[-5.50:EST]<DTUSER>20260103000000[0:"
         "GMT]"
         "<DTAVAIL>20260104120000[5:PKT]<TRNAMT>-0012.500<FITID>1<CORRECTFITID>0"
         "<CORRECTACTION>REPLACE<SRVRTID" +
         two + ">server<CHECKNUM>0012<REFNUM>reference<SIC>1234<PAYEEID" + two +
         ">payee<NAME>A &amp; B<BANKACCTTO><BANKID>9<ACCTID>to "
         "1<ACCTTYPE>SAVINGS</BANKACCTTO><MEMO" +
         two +
         ">caf\xe9 \x93quoted\x94<CURRENCY><CURRATE>1.10<CURSYM>EUR</CURRENCY></STMTTRN>"
         "<STMTTRN><TRNTYPE>XFER<DTPOSTED>20260102115959<DTUSER>20260102<TRNAMT>+.5<FITID>2" +
         payee + "<CCACCTTO><ACCTID>4111222233334444</CCACCTTO><MEMO" + two +
         ">USERPASS&gt;secret<ORIGCURRENCY><CURRATE>.5<CURSYM>CHF</ORIGCURRENCY></STMTTRN>"
         "<STMTTRN><TRNTYPE>FEE<DTPOSTED>20260105<TRNAMT>100<FITID>3</STMTTRN>";
}

std::unique_ptr<ParsedFile> ReadStatement(const std::string& version) {
  const std::string text =
      std::string(kHeader) + "<OFX><SIGNONMSGSRSV1><SONRS><STATUS><CODE>0<SEVERITY>INFO</STATUS>" +
      "<DTSERVER>20260101<LANGUAGE>ENG</SONRS></SIGNONMSGSRSV1><BANKMSGSRS" + version +
      "><STMTTRNRS><TRNUID>1<STATUS><CODE>0<SEVERITY>INFO</STATUS><STMTRS><CURDEF>USD" +
      "<BANKACCTFROM><BANKID>1<ACCTID>2<ACCTTYPE>CHECKING</BANKACCTFROM>" +
      "<BANKTRANLIST><DTSTART>20260101<DTEND>20260131" + Transactions(version) +
      "</BANKTRANLIST></STMTRS></STMTTRNRS></BANKMSGSRS" + version + "></OFX>";
  std::unique_ptr<KRBuffer> buffer(new KRBuffer(0, 4096));
  EXPECT_EQ(buffer->WriteLarge(text.data(), static_cast<u32>(text.size())), KRBufferOK);
  return std::make_unique<ParsedFile>("test", std::move(buffer));
}

const TableSpec& TableOfStatements() {
  const auto layout = std::find_if(Layouts().begin(), Layouts().end(),
                                   [](const Layout& each) { return each.tag == "STMTRS"; });
  return layout->tables.front();
}

// The columns that any of the transactions has a value in.
std::set<std::string_view> CompareRows(const std::string& version, bool showIdentifiers) {
  const std::unique_ptr<ParsedFile> file = ReadStatement(version);
  const TableSpec& table = TableOfStatements();
  const OfxFile ofx = file->GetOfxFiles().at(0);
  TextArena arena;
  RowMaker rows(arena, showIdentifiers);
  std::vector<Cell> byPaths;
  const std::function<void(const Element&)> visit = [&](const Element& element) {
    if (element.tag == "STMTTRN") rows.AppendRow(byPaths, element, table);
    for (const Element& child : element.children) visit(child);
  };
  visit(ReadElements(*ofx.file, arena, ofx.text));
  TransactionCells cells(table, showIdentifiers, file->MayHaveMovedCards());
  std::set<std::string_view> filled;
  std::size_t at = 0;
  krofx::ForEach<KRBankStatementTx>(*ofx.file, [&](const KRBankStatementTx& transaction) {
    for (const Cell& cell : cells.Make(transaction, *ofx.text)) {
      const std::string_view key = table.columns[at % table.columns.size()].key;
      EXPECT_EQ(cell.text, byPaths.at(at).text) << key;
      EXPECT_EQ(cell.isThere, byPaths.at(at).isThere) << key;
      if (cell) {
        EXPECT_EQ(cell.kind, byPaths.at(at).kind) << key;
        filled.insert(key);
      }
      ++at;
    }
  });
  EXPECT_EQ(at, byPaths.size());
  return filled;
}

TEST(TransactionCells, AreThoseThatThePathsOfTheLayoutFind) {
  for (const char* const version : {"V1", "V2"}) {
    for (const bool showIdentifiers : {false, true}) {
      // A column without a getter would stay empty.
      EXPECT_EQ(CompareRows(version, showIdentifiers).size(), TableOfStatements().columns.size())
          << version;
    }
  }
}

}  // namespace
}  // namespace krofx::command
