// However a text is cut into pieces, what comes out is the same, and it is what a parse gives.

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "krofx/parse/simple_parser.h"
#include "stream/streamed.h"

namespace {

using krofx::StreamOptions;
using namespace krofx::testing;

// Short texts with all that makes the parser look ahead.
std::vector<std::string> OddTexts() {
  const std::string first = "<STMTTRN><TRNTYPE>DEBIT<TRNAMT>-1<FITID>1</STMTTRN>";
  const std::string header =
      "OFXHEADER:100\r\nDATA:OFXSGML\r\nVERSION:102\r\nSECURITY:NONE\r\nENCODING:USASCII\r\n"
      "CHARSET:1252\r\nCOMPRESSION:NONE\r\nOLDFILEUID:NONE\r\nNEWFILEUID:NONE\r\n\r\n";
  const auto around = [](const std::string& transactions) {
    return "<OFX><BANKMSGSRSV1><STMTTRNRS><STMTRS><BANKTRANLIST>" + transactions +
           "</BANKTRANLIST></STMTRS></STMTTRNRS></BANKMSGSRSV1></OFX>";
  };
  std::vector<std::string> texts;
  for (const std::string& middle : {
           std::string("<UNKNOWN>1"),
           std::string("<UNKNOWN><A>1</UNKNOWN>"),
           std::string("<UNKNOWN><A>1<B>2"),
           std::string("<LEDGERBAL><BALAMT>1</LEDGERBAL>"),
           std::string("<LEDGERBAL><BALAMT>1"),
           std::string("<!-- a comment > with more -->"),
           std::string("<!-- no end "),
           std::string("<stmttrn><trntype>DEBIT<trnamt>-2</stmttrn>"),
           std::string("<STMTTRN><TRNTYPE>DEBIT<MEMO><![CDATA[a<b]]></STMTTRN>"),
           std::string("<STMTTRN><TRNTYPE>DEBIT<MEMO><![CDATA[a<b</STMTTRN>"),
           std::string("<STMTTRN><MEMO>a &amp; b &lt; c</MEMO></STMTTRN>"),
           std::string("<STMTTRN><MEMO> a  </STMTTRN   >"),
           std::string("<STMTTRN><MEMO></STMTTRN>"),
           std::string("<STMTTRN><TRNAMT>x</STMTTRN>"),
           std::string("<>"),
           std::string("< STMTTRN ><TRNAMT>3</ STMTTRN>"),
           std::string("</STMTRS>"),
           std::string("text between"),
           std::string("<STMTTRN/>"),
           std::string("<MEMO>J < K"),
       }) {
    texts.push_back(header + around(first + middle + first));
    texts.push_back(around(first + middle));
  }
  // Several complete ones in a row are read ahead.
  const std::string fields = "<TRNTYPE>DEBIT<DTPOSTED>20250203<TRNAMT>-1<FITID>1<NAME>n";
  const std::string complete = "<STMTTRN>" + fields + "</STMTTRN>";
  for (const std::string& middle : {
           std::string("<STMTTRN><TRNTYPE>DEBIT</STMTTRN>"),
           "<STMTTRN>" + fields + "<TRNAMT>2</STMTTRN>",
           "<STMTTRN>" + fields +
               "<CURRENCY><CURSYM>USD</CURRENCY><CURRENCY><CURRATE>1</CURRENCY></STMTTRN>",
           "<STMTTRN>" + fields + "<CURRENCY><CURSYM>USD<CURRATE>1</CURRENCY><UNKNOWN>1</STMTTRN>",
           "<STMTTRN>" + fields + "<TRNAMT>x</STMTTRN>",
           "<STMTTRN><UNKNOWN>1" + fields + "<MEMO>a &amp; b</STMTTRN>",
           std::string("<DTSTART>20250101"),
           std::string("<DTSTART>x"),
           std::string("<STMTTRN>"),
           std::string("<UNKNOWN>"),
       }) {
    texts.push_back(header + around(complete + complete + complete + middle + complete + complete));
  }
  texts.push_back("");
  texts.push_back("nothing");
  texts.push_back("no colon\n" + around(first));
  texts.push_back("OFXHEADER:100\rDATA:OFXSGML\r\r" + around(first));
  texts.push_back("OFXHEADER:100 <!-- c --> \nDATA:OFXSGML\n<!-- c:\n-->\n" + around(first));
  texts.push_back("OFXHEADER:100\nX <Y>: 2\n" + around(first));
  texts.push_back(header + header + "junk\n" + around(first) + "behind: it");
  texts.push_back(around(first).substr(0, 60) + std::string(1, '\0') + around(first));
  texts.push_back(around(first + first) + around(first));
  return texts;
}

// Larger than the texts, and small since the sanitizers make memory that is not used dear.
StreamOptions SmallWindow() {
  StreamOptions options;
  options.window = 4096;
  return options;
}

TEST(StreamPieces, OfEverySizeGiveTheSame) {
  std::size_t elements = 0;
  for (const std::string& text : OddTexts()) {
    const Streamed whole = StreamText(text);
    elements += whole.elements.size();
    for (std::size_t size = 1; size <= std::min<std::size_t>(text.size(), 64); ++size) {
      const Streamed pieces = StreamText(text, size, SmallWindow());
      ASSERT_EQ(pieces.elements, whole.elements) << size << "\n" << text;
      ASSERT_EQ(pieces.warnings, whole.warnings) << size << "\n" << text;
      ASSERT_EQ(pieces.status, whole.status) << size << "\n" << text;
      ASSERT_EQ(pieces.rest, whole.rest) << size << "\n" << text;
    }
  }
  EXPECT_GT(elements, OddTexts().size());
}

TEST(StreamPieces, AreNotReadAfterTheStreamHasEnded) {
  const std::string text = BankStatementFile(NumberedTransaction(1));
  for (const bool mends : {false, true}) {
    for (const bool stops : {false, true}) {
      for (const std::string more : {"\n", "\n<OFX>"}) {
        StreamOptions options;
        options.mends = mends;
        options.window = 256;
        krofx::Stream stream(options);
        WantMuch(stream);
        std::string piece = text + Repeat("\n", 1000) + more;
        ASSERT_TRUE(stream.Feed(piece));
        const krofx::StreamElement* element = nullptr;
        do {
          element = stream.Next();
        } while (element != nullptr && !stops);
        if (stops) stream.Stop();
        if (stream.Feed("")) stream.Finish();
        EXPECT_EQ(stream.Next(), nullptr);
        // The host uses its memory again.
        const bool hasMore = more.size() > 1;
        std::fill(piece.begin(), piece.end(), hasMore ? '\n' : '<');
        EXPECT_EQ(stream.HasMoreTags(), hasMore || stops) << mends << stops;
      }
    }
  }
}

TEST(StreamPieces, CutAnywhereGiveTheSame) {
  for (const std::string& text : OddTexts()) {
    const Streamed whole = StreamText(text);
    for (std::size_t cut = 1; cut < text.size(); ++cut) {
      krofx::Stream stream(SmallWindow());
      WantMuch(stream);
      Streamed two;
      stream.Feed(std::string_view(text).substr(0, cut));
      TakeAll(stream, two);
      if (stream.Feed(std::string_view(text).substr(cut))) TakeAll(stream, two);
      stream.Finish();
      TakeAll(stream, two);
      TakeEnd(stream, two);
      ASSERT_EQ(two, whole) << cut << "\n" << text;
    }
  }
}

TEST(StreamPieces, GiveTheSameAsABuffer) {
  for (const std::string& text : OddTexts()) {
    ASSERT_EQ(StreamBuffer(text), StreamText(text)) << text;
  }
  for (const auto& [name, text] : ExampleTexts()) ASSERT_EQ(StreamBuffer(text), StreamText(text));
}

TEST(StreamPieces, AreReadAsAParseReadsThem) {
  for (const std::string& text : OddTexts()) {
    StreamOptions options;
    options.checkRequired = false;
    const Streamed streamed = StreamText(text, 7, options);
    TextBuffer buffer(text);
    KRFileRs file;
    KRSimpleParser parser;
    const KRParseStatus status = parser.Parse(buffer.Get(), &file, 0);
    EXPECT_EQ(streamed.status, status) << text;
    EXPECT_EQ(streamed.warnings.size(), parser.GetNumberParseExceptions()) << text;
  }
}

TEST(StreamPieces, OfExamplesGiveTheSame) {
  for (const auto& [name, text] : ExampleTexts()) {
    const Streamed whole = StreamText(text);
    for (const std::size_t size : {std::size_t{1}, std::size_t{7}, std::size_t{100}}) {
      if (size == 1 && text.size() > 4000) continue;
      ASSERT_EQ(StreamText(text, size), whole) << size << "\n" << text.substr(0, 300);
    }
  }
}

TEST(StreamPieces, OfDamagedExamplesGiveTheSame) {
  constexpr char kCharacters[] = {'<', '>', '&', '/', '!', ' ', '\n', 'x', '9', ';', '[', '\0'};
  std::size_t next = 0;
  for (const auto& [name, text] : ExampleTexts()) {
    for (std::size_t at = 0; at < text.size(); at += text.size() / 12 + 1) {
      std::string changed = text;
      changed[at] = kCharacters[next++ % std::size(kCharacters)];
      ASSERT_EQ(StreamText(changed, 61), StreamText(changed)) << changed;
    }
  }
}

}  // namespace
