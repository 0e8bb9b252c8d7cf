// Kinds of texts that a careless reader takes long for, at any length: what must not take more work
// for each byte of a long one than of a short one.

#ifndef KROFX_TESTS_SUPPORT_COSTLY_TEXTS_H_
#define KROFX_TESTS_SUPPORT_COSTLY_TEXTS_H_

#include <string>
#include <string_view>

namespace krofx::testing {

/// A kind of text: `text(n)` has n of what makes it costly.
struct CostlyKind {
  const char* name;
  std::string (*text)(int count);
  bool isMultipart = false;
};

/// `part(i)` for each i below `count`, one after the other.
template <class Part>
std::string Parts(int count, Part part) {
  std::string text;
  for (int i = 0; i < count; ++i) text += part(i);
  return text;
}

/// `part` as often as `count` says.
inline std::string Times(int count, std::string_view part) {
  return Parts(count, [part](int) { return part; });
}

/// The headers of a file.
inline std::string CostlyHead() {
  return "OFXHEADER:100\r\nDATA:OFXSGML\r\nVERSION:102\r\nSECURITY:NONE\r\nENCODING:USASCII\r\n"
         "CHARSET:1252\r\nCOMPRESSION:NONE\r\nOLDFILEUID:NONE\r\nNEWFILEUID:NONE\r\n\r\n";
}

/// A text after the headers and <OFX>, which nothing need end.
inline std::string InOfx(const std::string& body) { return CostlyHead() + "<OFX>" + body; }

/// A text in the list of transactions of a statement.
inline std::string InStatement(const std::string& list) {
  return InOfx(
      "<SIGNONMSGSRSV1><SONRS><STATUS><CODE>0<SEVERITY>INFO</STATUS><DTSERVER>20260105120000"
      "<LANGUAGE>ENG</SONRS></SIGNONMSGSRSV1><BANKMSGSRSV1><STMTTRNRS><TRNUID>1<STATUS><CODE>0"
      "<SEVERITY>INFO</STATUS><STMTRS><CURDEF>USD<BANKACCTFROM><BANKID>1<ACCTID>2"
      "<ACCTTYPE>CHECKING</BANKACCTFROM><BANKTRANLIST><DTSTART>20260101<DTEND>20260131" +
      list +
      "</BANKTRANLIST><LEDGERBAL><BALAMT>1<DTASOF>20260131</LEDGERBAL></STMTRS></STMTTRNRS>"
      "</BANKMSGSRSV1></OFX>");
}

/// A transaction with something more in it.
inline std::string TransactionWith(const std::string& more) {
  return "<STMTTRN><TRNTYPE>DEBIT<DTPOSTED>20260115<TRNAMT>-5.25<FITID>1" + more + "</STMTTRN>";
}

/// A whole small file, for texts whose cost is before it.
inline std::string SmallFile() { return InStatement(TransactionWith("")); }

// clang-format off
/// The kinds.
inline constexpr CostlyKind kCostlyKinds[] = {
    {"unterminated CDATA", [](int n) { return InOfx(Times(n, "<MEMO><![CDATA[x")); }},
    {"CDATA", [](int n) { return InStatement(TransactionWith(Times(n, "<MEMO><![CDATA[a<b]]>"))); }},
    {"unterminated comments", [](int n) { return InOfx(Times(n, "<!-- x")); }},
    {"comments", [](int n) { return InOfx(Times(n, "<!-- x -->")); }},
    {"unterminated instructions", [](int n) { return InStatement(Times(n, "x<?x ")); }},
    {"unterminated declarations", [](int n) { return InStatement(Times(n, "x<!DOCTYPE ")); }},
    {"macros", [](int n) {
       return InOfx("<MEMO>" + Times(n % 10000, "&amp;") + Times(n, "<MEMO>&lt;&am")); }},
    {"references to characters", [](int n) {
       return InStatement(TransactionWith("<MEMO>" + Times(n, "&#233;&#x41;"))); }},
    {"ampersands", [](int n) { return InOfx("<MEMO>" + Times(n, "&&&&")); }},
    {"angle brackets", [](int n) { return InOfx(Times(n, "<<<<")); }},
    {"closing angle brackets", [](int n) { return InOfx(Times(n, ">>>>")); }},
    {"unknown tags", [](int n) {
       return InOfx(Parts(n, [](int i) { return "<X." + std::to_string(i) + ">"; })); }},
    {"unknown tags with ends", [](int n) {
       return InOfx(Parts(n, [](int i) { return "<X." + std::to_string(i) + ">"; }) +
                    Parts(n, [n](int i) { return "</X." + std::to_string(n - 1 - i) + ">"; })); }},
    {"unknown elements", [](int n) {
       return InStatement(TransactionWith(Parts(n, [](int i) {
         return "<X." + std::to_string(i) + ">value"; }))); }},
    {"one unknown tag over and over", [](int n) { return InOfx(Times(n, "<NO.SUCH>")); }},
    {"tags without end", [](int n) { return InOfx(Times(n, "<STMTTRN")); }},
    {"a long tag", [](int n) { return InOfx("<" + Times(n, "LONGTAG.") + ">"); }},
    {"end tags", [](int n) { return InOfx(Times(n, "</STMTTRN>")); }},
    {"aggregates without ends", [](int n) {
       return InOfx("<BANKMSGSRSV1>" + Times(n, "<STMTTRNRS>")); }},
    {"repeated sets", [](int n) { return InOfx(Times(n, "<BANKMSGSRSV1></BANKMSGSRSV1>")); }},
    {"repeated elements", [](int n) {
       return InStatement(TransactionWith(Times(n, "<MEMO>one more"))); }},
    {"elements in the wrong place", [](int n) { return InStatement(Times(n, "<BALAMT>1")); }},
    {"transactions", [](int n) { return InStatement(Times(n, TransactionWith("<MEMO>x"))); }},
    {"transactions with end tags", [](int n) {
       return InStatement(Times(n, TransactionWith("<NAME>x</NAME><MEMO>y</MEMO>"))); }},
    {"incomplete transactions", [](int n) {
       return InStatement(Times(n, "<STMTTRN><TRNTYPE>DEBIT</STMTTRN>")); }},
    {"values that are none", [](int n) {
       return InStatement(Times(n, "<STMTTRN><DTPOSTED>31.1.26<TRNAMT>1.234,50 EUR</STMTTRN>")); }},
    {"a long value", [](int n) {
       return InStatement(TransactionWith("<MEMO>" + Times(n, "12345678"))); }},
    {"header lines", [](int n) {
       return Parts(n, [](int i) { return "H" + std::to_string(i) + ": x\r\n"; }) + SmallFile(); }},
    {"header lines without a colon", [](int n) { return Times(n, "no header\r\n") + SmallFile(); }},
    {"header comments", [](int n) { return Times(n, "<!-- x --> A: b\r\n") + SmallFile(); }},
    {"a long header line", [](int n) { return "A: " + Times(n, "12345678") + "\r\n" + SmallFile(); }},
    {"white space", [](int n) { return InOfx(Times(n, "        ")); }},
    {"several files in one", [](int n) { return Times(n, InOfx("<SIGNONMSGSRSV1></SIGNONMSGSRSV1></OFX>\r\n")); }},
    {"boundary lines", [](int n) {
       return "Content-Type: multipart/mixed; boundary=\"b\"\r\n\r\n" +
              Times(n, "--b\r\nContent-Type: text/plain\r\n\r\nx\r\n") + "--b--\r\n"; }, true},
    {"lines like boundaries", [](int n) {
       return "Content-Type: multipart/mixed; boundary=\"bbbb\"\r\n\r\n--bbbb\r\n\r\n" +
              Times(n, "--bbb\r\n-----\r\n"); }, true},
};
// clang-format on

}  // namespace krofx::testing

#endif  // KROFX_TESTS_SUPPORT_COSTLY_TEXTS_H_
