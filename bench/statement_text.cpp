// Writes the statement, with or without end tags of elements.

#include "statement_text.h"

#include <cstdio>

namespace bench {

namespace {

// Appends one statement; `closed` puts an end tag after each element.
class Writer {
 public:
  explicit Writer(bool closed) : m_closed(closed) {}

  void Open(const char* tag) { m_text += '<' + std::string(tag) + ">\n"; }
  void Close(const char* tag) { m_text += "</" + std::string(tag) + ">\n"; }
  void Element(const char* tag, const std::string& value) {
    m_text += '<' + std::string(tag) + '>' + value;
    if (m_closed) m_text += "</" + std::string(tag) + '>';
    m_text += '\n';
  }
  void Status() {
    Open("STATUS");
    Element("CODE", "0");
    Element("SEVERITY", "INFO");
    Close("STATUS");
  }
  void Transaction(int number) {
    char buffer[64];
    Open("STMTTRN");
    Element("TRNTYPE", number % 3 == 0 ? "DEBIT" : number % 3 == 1 ? "CREDIT" : "CHECK");
    std::snprintf(buffer, sizeof buffer, "2025%02d%02d120000.000[-5:EST]", number % 12 + 1,
                  number % 28 + 1);
    Element("DTPOSTED", buffer);
    std::snprintf(buffer, sizeof buffer, "%s%d.%02d", number % 2 != 0 ? "-" : "", number % 9000 + 1,
                  number % 100);
    Element("TRNAMT", buffer);
    std::snprintf(buffer, sizeof buffer, "FIT%012d", number);
    Element("FITID", buffer);
    if (number % 3 == 2) Element("CHECKNUM", std::to_string(1000 + number));
    Element("NAME", "Grocer and Sons " + std::to_string(number % 97));
    Element("MEMO", "Card purchase at the corner shop, terminal " + std::to_string(number % 31));
    Close("STMTTRN");
  }
  std::string Take() { return std::move(m_text); }

 private:
  bool m_closed;
  std::string m_text;
};

std::string Body(int transactions, bool closed) {
  Writer out(closed);
  out.Open("OFX");
  out.Open("SIGNONMSGSRSV1");
  out.Open("SONRS");
  out.Status();
  out.Element("DTSERVER", "20251231120000");
  out.Element("LANGUAGE", "ENG");
  out.Close("SONRS");
  out.Close("SIGNONMSGSRSV1");
  out.Open("BANKMSGSRSV1");
  out.Open("STMTTRNRS");
  out.Element("TRNUID", "1001");
  out.Status();
  out.Open("STMTRS");
  out.Element("CURDEF", "USD");
  out.Open("BANKACCTFROM");
  out.Element("BANKID", "121000000");
  out.Element("ACCTID", "000123456789");
  out.Element("ACCTTYPE", "CHECKING");
  out.Close("BANKACCTFROM");
  out.Open("BANKTRANLIST");
  out.Element("DTSTART", "20250101");
  out.Element("DTEND", "20251231");
  for (int i = 0; i < transactions; ++i) out.Transaction(i);
  out.Close("BANKTRANLIST");
  out.Open("LEDGERBAL");
  out.Element("BALAMT", "5250.75");
  out.Element("DTASOF", "20251231");
  out.Close("LEDGERBAL");
  out.Close("STMTRS");
  out.Close("STMTTRNRS");
  out.Close("BANKMSGSRSV1");
  out.Close("OFX");
  return out.Take();
}

}  // namespace

std::string OfxStatement(int transactions) {
  return "OFXHEADER:100\r\nDATA:OFXSGML\r\nVERSION:102\r\nSECURITY:NONE\r\nENCODING:USASCII\r\n"
         "CHARSET:1252\r\nCOMPRESSION:NONE\r\nOLDFILEUID:NONE\r\nNEWFILEUID:NONE\r\n\r\n" +
         Body(transactions, false);
}

std::string XmlStatement(int transactions) {
  return "<?xml version=\"1.0\"?>\n" + Body(transactions, true);
}

}  // namespace bench
