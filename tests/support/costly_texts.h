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

/// A whole small file, for texts whose cost is beside it.
inline std::string SmallFile() { return InStatement(TransactionWith("")); }

/// A wrapper with a payload.
inline std::string Wrapped(const std::string& wrapper, const std::string& payload) {
  return "<" + wrapper + "><TRNUID>1<STATUS><CODE>0<SEVERITY>INFO</STATUS>" + payload + "</" +
         wrapper + ">";
}

/// A statement without transactions.
inline std::string EmptyStatement() {
  return "<STMTRS><CURDEF>USD<BANKACCTFROM><BANKID>1<ACCTID>2<ACCTTYPE>CHECKING</BANKACCTFROM>"
         "<LEDGERBAL><BALAMT>1<DTASOF>20260131</LEDGERBAL></STMTRS>";
}

/// The identifier of a security.
inline std::string SecurityId(int number) {
  return "<SECID><UNIQUEID>" + std::to_string(number) + "<UNIQUEIDTYPE>CUSIP</SECID>";
}

/// A multipart text of parts between the lines of its boundary.
inline std::string InParts(const std::string& parts) {
  return "Content-Type: multipart/mixed; boundary=\"b\"\r\n\r\n" + parts + "--b--\r\n";
}

/// A part.
inline std::string Part(const std::string& type, const std::string& body) {
  return "--b\r\nContent-Type: " + type + "\r\n" + body + "\r\n";
}

/// A text of ASCII in UTF-16.
inline std::string Wide(const std::string& text) {
  std::string wide = "\xFF\xFE";
  for (const char character : text) {
    wide += character;
    wide += '\0';
  }
  return wide;
}

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
    {"a long tag", [](int n) { return InOfx("<" + Times(n, "A.LONG.TAG.WITH.MANY.WORDS.IN.IT.") + ">"); }},
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
       return InStatement(TransactionWith("<MEMO>" + Times(n, "12345678901234567890123456789012"))); }},
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
    {"CDATA sections with one end", [](int n) {
       return InStatement(TransactionWith(Times(n, "<MEMO><![CDATA[x") + "]]>")); }},
    {"instructions", [](int n) { return InStatement(Times(n, "<?x y?>")); }},
    {"declarations", [](int n) { return InStatement(Times(n, "<!X y>")); }},
    {"names in angle brackets", [](int n) {
       return InStatement(TransactionWith("<MEMO>" + Times(n, "among <b> words "))); }},
    {"elements with names in angle brackets", [](int n) {
       return InStatement(TransactionWith(Times(n, "<MEMO>a <b> c"))); }},
    {"angle brackets in values that are none", [](int n) {
       return InStatement("<X>" + Times(n, "<STMTTRN><DTPOSTED>1 < 2</STMTTRN>")); }},
    {"tags in small letters", [](int n) {
       return InStatement(Times(n, "<stmttrn><trntype>debit<memo>x</stmttrn>")); }},
    {"tags with attributes", [](int n) {
       return InStatement(Times(n, "<STMTTRN A=\"b\"><MEMO C='d'>x</STMTTRN>")); }},
    {"tags with white space", [](int n) {
       return InStatement(Times(n, "< STMTTRN  >< MEMO  >x</ STMTTRN  >")); }},
    {"tags that end themselves", [](int n) { return InStatement(Times(n, "<STMTTRN/><MEMO/>")); }},
    {"tags that end with their line", [](int n) {
       return InStatement(Times(n, "<STMTTRN\n<MEMO>x\n</STMTTRN\n")); }},
    {"long unknown tags", [](int n) {
       return InOfx(Parts(n, [](int i) {
         return "<" + std::string(64, 'X') + std::to_string(i) + ">"; })); }},
    {"unknown tags with ends and elements", [](int n) {
       return InOfx(Parts(n, [](int i) { return "<X." + std::to_string(i) + "><Y>1</Y>"; }) +
                    Parts(n, [n](int i) { return "</X." + std::to_string(n - 1 - i) + ">"; })); }},
    {"unknown tags among transactions", [](int n) {
       return InStatement(Parts(n, [](int i) {
         return "<X." + std::to_string(i) + ">" + TransactionWith(""); })); }},
    {"aggregates in the wrong place", [](int n) {
       return InStatement(Times(n, "<SECINFO>" + TransactionWith(""))); }},
    {"transactions without ends", [](int n) {
       return InStatement(Times(n, "<STMTTRN><TRNTYPE>DEBIT<DTPOSTED>20260115<TRNAMT>-1<FITID>1")); }},
    {"transactions without starts", [](int n) {
       return InStatement(Times(n, "<TRNTYPE>DEBIT<DTPOSTED>20260115<TRNAMT>-1<FITID>1</STMTTRN>")); }},
    {"end tags that cross", [](int n) {
       return InStatement(Times(n, "<STMTTRN><CURRENCY></STMTTRN></CURRENCY>")); }},
    {"lists that begin again", [](int n) {
       return InStatement(Times(n, "<STMTTRN><MEMO>x</STMTTRN></BANKTRANLIST><BANKTRANLIST>")); }},
    {"balances over and over", [](int n) {
       return InStatement("</BANKTRANLIST>" +
                          Times(n, "<LEDGERBAL><BALAMT>1<DTASOF>20260131</LEDGERBAL>")); }},
    {"amounts over and over", [](int n) {
       return InStatement(TransactionWith(Parts(n, [](int i) {
         return "<TRNAMT>" + std::to_string(i); }))); }},
    {"amounts with commas", [](int n) {
       return InStatement(Times(n, "<STMTTRN><TRNAMT>-1.234,50</STMTTRN>")); }},
    {"amounts that mean two things", [](int n) {
       return InStatement(Times(n, "<STMTTRN><TRNAMT>1,234</STMTTRN>")); }},
    {"dates that mean two things", [](int n) {
       return InStatement(Times(n, "<STMTTRN><DTPOSTED>01/02/2026</STMTTRN>")); }},
    {"a long number", [](int n) { return InStatement("<STMTTRN><TRNAMT>" + Times(n, "1,234.")); }},
    {"a long date", [](int n) { return InStatement("<STMTTRN><DTPOSTED>" + Times(n, "01/02/")); }},
    {"a long keyword", [](int n) { return InStatement("<STMTTRN><TRNTYPE>" + Times(n, "DEBIT ")); }},
    {"currencies", [](int n) {
       return InStatement(Times(n, TransactionWith("<CURRENCY><CURRATE>1.1<CURSYM>EUR</CURRENCY>"))); }},
    {"payees that are texts", [](int n) {
       return InStatement(Times(n, "<STMTTRN><PAYEE>Grocer</STMTTRN>")); }},
    {"statements", [](int n) {
       return InOfx("<BANKMSGSRSV1>" + Times(n, Wrapped("STMTTRNRS", EmptyStatement()))); }},
    {"statements in one wrapper", [](int n) {
       return InOfx("<BANKMSGSRSV1>" + Wrapped("STMTTRNRS", Times(n, EmptyStatement()))); }},
    {"wrappers in the wrong message set", [](int n) {
       return InOfx("<CREDITCARDMSGSRSV1>" + Times(n, Wrapped("STMTTRNRS", ""))); }},
    {"answers in the wrong wrapper", [](int n) {
       return InOfx("<BANKMSGSRSV1>" + Times(n, Wrapped("STMTTRNRS", "<INTRARS></INTRARS>"))); }},
    {"message sets in turn", [](int n) {
       return InOfx(Times(n, "<BANKMSGSRSV1></BANKMSGSRSV1><CREDITCARDMSGSRSV1></CREDITCARDMSGSRSV1>")); }},
    {"accounts", [](int n) {
       return InOfx("<SIGNUPMSGSRSV1><ACCTINFOTRNRS><ACCTINFORS>" + Parts(n, [](int i) {
         return "<ACCTINFO><BANKACCTINFO><BANKACCTFROM><BANKID>1<ACCTID>" + std::to_string(i) +
                "<ACCTTYPE>CHECKING</BANKACCTFROM></BANKACCTINFO></ACCTINFO>"; })); }},
    {"positions and securities", [](int n) {
       return InOfx("<INVSTMTMSGSRSV1><INVSTMTTRNRS><INVSTMTRS><INVPOSLIST>" + Parts(n, [](int i) {
                      return "<POSSTOCK><INVPOS>" + SecurityId(i) + "</INVPOS></POSSTOCK>"; }) +
                    "</INVPOSLIST></INVSTMTRS></INVSTMTTRNRS></INVSTMTMSGSRSV1><SECLISTMSGSRSV1>"
                    "<SECLIST>" + Parts(n, [](int i) {
                      return "<STOCKINFO><SECINFO>" + SecurityId(i) + "</SECINFO></STOCKINFO>"; })); }},
    {"investment statements and securities", [](int n) {
       return InOfx("<INVSTMTMSGSRSV1>" + Parts(n, [](int i) {
                      return "<INVSTMTTRNRS><INVSTMTRS><INVPOSLIST><POSSTOCK><INVPOS>" + SecurityId(i) +
                             "</INVPOS></POSSTOCK></INVPOSLIST></INVSTMTRS></INVSTMTTRNRS>"; }) +
                    "</INVSTMTMSGSRSV1><SECLISTMSGSRSV1><SECLIST>" + Parts(n, [](int i) {
                      return "<STOCKINFO><SECINFO>" + SecurityId(-i) + "</SECINFO></STOCKINFO>"; })); }},
    {"requests", [](int n) {
       return InOfx("<BANKMSGSRQV1>" + Times(n, "<STMTTRNRQ><TRNUID>1<STMTRQ></STMTRQ></STMTTRNRQ>")); }},
    {"passwords", [](int n) {
       return InOfx("<SIGNONMSGSRQV1><SONRQ>" + Times(n, "<USERPASS>x<y>z")); }},
    {"characters of two sets", [](int n) {
       return InStatement(Times(n, "<STMTTRN><MEMO>\xE9 \xC3\xA9</STMTTRN>")); }},
    {"references that change the set", [](int n) {
       return InStatement(Times(n, "<STMTTRN><MEMO>\xE9&alpha;</STMTTRN>")); }},
    {"control characters", [](int n) {
       return InStatement(Times(n, "<STMTTRN><MEMO>\1x</STMTTRN>")); }},
    {"wide characters", [](int n) {
       return Wide(InStatement(Times(n, "<STMTTRN><MEMO>x</STMTTRN>"))); }},
    {"damage on each line", [](int n) {
       return InStatement(Times(n, "<STMTTRN>\r\n<DTPOSTED>31.1.26\r\n<X>\r\n</STMTTRN>\r\n")); }},
    {"texts after words, without a '>'", [](int n) {
       return Times(n, "words ") + Times(n, "<OFX\n<STATUS\n"); }},
    {"empty texts", [](int n) { return Times(n, "<OFX></OFX>"); }},
    {"headers without a text", [](int n) { return Times(n, "OFXHEADER:100\r\nVERSION:102\r\n\r\n"); }},
    {"words between texts", [](int n) { return Times(n, "<OFX></OFX> some words\r\n"); }},
    {"words before a text", [](int n) { return Times(n, "words ") + SmallFile(); }},
    {"tags after a text", [](int n) { return SmallFile() + Times(n, "words <b>"); }},
    {"a web page", [](int n) { return "<html><body>" + Times(n, "<p>Sign in</p>"); }},
    {"header fields over and over", [](int n) {
       return Times(n, "NEWFILEUID:0123456789012345678901234567890123456789\r\n") + SmallFile(); }},
    {"colons", [](int n) { return Times(n, ": more ") + SmallFile(); }},
    {"attributes of a header", [](int n) {
       return "<?OFX " + Times(n, "A=\"b\" ") + "OFXHEADER=\"200\" VERSION=\"203\"?>" + SmallFile(); }},
    {"instructions before a text", [](int n) { return Times(n, "<?x?>") + SmallFile(); }},
    {"header lines of a part", [](int n) {
       return InParts(Part("text/plain", Parts(n, [](int i) {
         return "H" + std::to_string(i) + ": x\r\n"; }) + "\r\nx")); }, true},
    {"a header line that goes on", [](int n) {
       return InParts(Part("text/plain", "A: x\r\n" + Times(n, " and it goes on here\r\n") + "\r\nx")); }, true},
    {"base64", [](int n) {
       return InParts(Part("image/png", "\r\n" + Times(n, "iVBORw0KGgoAAAANSUhEUgAAAAEAAA\r\n"))); }, true},
    {"parts of OFX", [](int n) {
       return InParts(Times(n, Part("application/x-ofx", "\r\n" + CostlyHead() +
                                    "<OFX><SIGNONMSGSRSV1><SONRS></SONRS></OFX>"))); }, true},
    {"parts with unknown tags", [](int n) {
       return InParts(Times(n, Part("application/x-ofx", "\r\n" + CostlyHead() +
                                    "<OFX><SIGNONMSGSRSV1><SONRS></SONRS><NO.SUCH></OFX>"))); }, true},
    {"parts in parts", [](int n) {
       return InParts(Parts(n, [](int i) {
         return Part("multipart/mixed; boundary=\"b" + std::to_string(i) + "\"", "\r\nx"); })); }, true},
};
// clang-format on

}  // namespace krofx::testing

#endif  // KROFX_TESTS_SUPPORT_COSTLY_TEXTS_H_
