// Header lines in front of the body.

#include "support/engine_probe.h"

namespace {

using krofx::testing::EngineTest;
using krofx::testing::Lines;
using krofx::testing::Repeat;
using krofx::testing::Str;
using krofx::testing::Warnings;

class HeaderLines : public EngineTest {
 protected:
  // The next header line as "tag name=value", or "none" with the cursor's position.
  std::string Header() {
    KRHeaderTag tag = KRHeaderTag_DATA;
    KRString value;
    KRString name("held");
    if (Engine().GetHeader(tag, value, &name) == 0) {
      EXPECT_EQ(Str(name), "");
      return "none " + std::to_string(Engine().GetHeaderPos());
    }
    return std::to_string(tag) + " " + Str(name) + "=" + Str(value);
  }
  // All header lines of a block, and how it ended.
  Lines Block(std::string_view text) {
    Read(text);
    return Block();
  }
  Lines Block() {
    Lines lines;
    do lines.push_back(Header());
    while (lines.back().substr(0, 4) != "none");
    return lines;
  }
};
KROFX_FOR_BOTH_BUFFERS(HeaderLines);

TEST_P(HeaderLines, ReadsTheOFXBlock) {
  EXPECT_EQ(Block("OFXHEADER:100\r\nDATA:OFXSGML\r\nVERSION:102\r\nSECURITY:NONE\r\n"
                  "ENCODING:USASCII\r\nCHARSET:1252\r\nCOMPRESSION:NONE\r\nOLDFILEUID:NONE\r\n"
                  "NEWFILEUID:NONE\r\n\r\n<OFX>a:b"),
            (Lines{"2 OFXHEADER=100", "3 DATA=OFXSGML", "4 VERSION=102", "5 SECURITY=NONE",
                   "6 ENCODING=USASCII", "7 CHARSET=1252", "8 COMPRESSION=NONE",
                   "9 OLDFILEUID=NONE", "10 NEWFILEUID=NONE", "none 143"}));
  EXPECT_EQ(Warnings(), Lines{});
}

TEST_P(HeaderLines, NamesMatchInAnyCase) {
  EXPECT_EQ(Block("version: 151 \n<OFX>"), (Lines{"4 version=151", "none 14"}));
}

TEST_P(HeaderLines, OtherHeadersAreWarnedAbout) {
  EXPECT_EQ(Block("Content-Type: application/x-ofx\nContent-Length:10\n<OFX>"),
            (Lines{"-1 Content-Type=application/x-ofx", "-1 Content-Length=10", "none 50"}));
  EXPECT_EQ(Warnings(), (Lines{"BADFORMAT \"Content-Type\"", "BADFORMAT \"Content-Length\""}));
}

TEST_P(HeaderLines, NameIsOptional) {
  Read("DATA:OFXSGML\n<OFX>");
  KRHeaderTag tag = KRHeaderTag_None;
  KRString value;
  EXPECT_EQ(Engine().GetHeader(tag, value, nullptr), 1);
  EXPECT_EQ(tag, KRHeaderTag_DATA);
  EXPECT_EQ(Str(value), "OFXSGML");
  EXPECT_EQ(Engine().GetHeader(tag, value, nullptr), 0);
}

TEST_P(HeaderLines, TrimsWhiteSpaceAroundNameAndValue) {
  EXPECT_EQ(Block(" \t DATA \t : \t two words \t \r\n<OFX>"),
            (Lines{"3 DATA=two words", "none 28"}));
  EXPECT_EQ(Block("DATA:\n<OFX>"), (Lines{"3 DATA=", "none 6"}));
  EXPECT_EQ(Block("DATA: \t\r\n<OFX>"), (Lines{"3 DATA=", "none 9"}));
  EXPECT_EQ(Block(":x\n<OFX>"), (Lines{"-1 =x", "none 3"}));
}

TEST_P(HeaderLines, ValueMayHoldColons) {
  EXPECT_EQ(Block("DATA:a:b\n<OFX>"), (Lines{"3 DATA=a:b", "none 9"}));
}

TEST_P(HeaderLines, BodyEndsTheHeadersInPlace) {
  EXPECT_EQ(Block("<OFX>a:b\n"), Lines{"none 0"});
  EXPECT_EQ(Block("DATA:x<OFX>\n"), Lines{"none 0"}) << "a header line with the body on it";
  EXPECT_EQ(Block("junk <OFX>\na:b\n"), Lines{"none 0"});
}

TEST_P(HeaderLines, BlankLineEndsABlock) {
  Read("DATA:1\n \t\r\nVERSION:102\n\nSECURITY:NONE\n<OFX>");
  EXPECT_EQ(Block(), (Lines{"3 DATA=1", "none 11"}));
  EXPECT_EQ(Block(), (Lines{"4 VERSION=102", "none 24"}));
  EXPECT_EQ(Block(), (Lines{"5 SECURITY=NONE", "none 38"}));
  EXPECT_EQ(Block(), Lines{"none 38"});
}

TEST_P(HeaderLines, LinesWithoutAColonArePassedOver) {
  EXPECT_EQ(Block("HTTP/1.1 200 OK\nDATA:1\njunk\nVERSION:102\n<OFX>"),
            (Lines{"3 DATA=1", "4 VERSION=102", "none 40"}));
}

TEST_P(HeaderLines, CommentsBeforeTheColonArePassedOver) {
  EXPECT_EQ(Block("<!-- a:b --> DATA <!-- c:d --> VERSION:102\n<OFX>"),
            (Lines{"4 VERSION=102", "none 43"}))
      << "text before a comment is skipped with it";
  EXPECT_EQ(Block("<!-- a\n b:c\n --> DATA:1\n<OFX>"), (Lines{"3 DATA=1", "none 24"}))
      << "a comment may span lines";
  EXPECT_EQ(Block("<!-- a -->\nDATA:1\n<OFX>"), Lines{"none 11"})
      << "the rest of the line is blank, and so ends the block";
}

TEST_P(HeaderLines, CommentBehindTheColonEndsTheValue) {
  EXPECT_EQ(Block("DATA: 1 <!-- a -->\nVERSION:102\n<OFX>"),
            (Lines{"3 DATA=1", "4 VERSION=102", "none 31"}));
  EXPECT_EQ(Block("DATA:1<!-- a\nb -->VERSION:102\n<OFX>"),
            (Lines{"3 DATA=1", "4 VERSION=102", "none 30"}))
      << "a comment that continues after the line is skipped with it";
}

TEST_P(HeaderLines, CommentWithoutEndBeginsTheBody) {
  EXPECT_EQ(Block("DATA:1\n<!-- a\nVERSION:102\n"), (Lines{"3 DATA=1", "none 7"}));
}

TEST_P(HeaderLines, CarriageReturnsEndLinesInATextWithoutLineFeeds) {
  EXPECT_EQ(Block("DATA:1\rVERSION:102\r\r<OFX>a:b"),
            (Lines{"3 DATA=1", "4 VERSION=102", "none 20"}));
}

TEST_P(HeaderLines, BlankLineIsPassedOnlyWhileAColonFollows) {
  EXPECT_EQ(Block("DATA:1\n\n<OFX>"), (Lines{"3 DATA=1", "none 7"}));
  EXPECT_EQ(Block("DATA:1\n\n<OFX>a:b"), (Lines{"3 DATA=1", "none 8"}));
}

TEST_P(HeaderLines, LineWithoutEndIsNone) {
  EXPECT_EQ(Block("DATA:1"), Lines{"none 0"});
  EXPECT_EQ(Block("nothing here\n"), Lines{"none 0"}) << "no colon in the whole text";
}

TEST_P(HeaderLines, TextEndsAtANul) {
  EXPECT_EQ(Block(std::string_view("DATA:1\n\0VERSION:102\n", 20)), (Lines{"3 DATA=1", "none 7"}));
}

TEST_P(HeaderLines, OverlongLineIsLeftOutWithAWarning) {
  EXPECT_EQ(Block("DATA:" + std::string(70000, 'x') + "\nVERSION:102\n<OFX>"),
            (Lines{"4 VERSION=102", "none 70018"}));
  EXPECT_EQ(Block(std::string(70000, 'x') + ":DATA\nVERSION:102\n<OFX>"),
            (Lines{"4 VERSION=102", "none 70018"}));
  EXPECT_EQ(Warnings(), (Lines{"TOOLONG", "TOOLONG"}));
}

TEST_P(HeaderLines, TellsWhereTheLineBegins) {
  Read("\nDATA:1\n  VERSION:102\n");
  EXPECT_EQ(Header(), "none 1");
  EXPECT_EQ(Header(), "3 DATA=1");
  EXPECT_EQ(Engine().GetItemPosition(), 1);
  EXPECT_EQ(Header(), "4 VERSION=102");
  EXPECT_EQ(Engine().GetItemPosition(), 10);
}

// In each of these some search would run to the end of the text for every line if the engine did
// not remember what it found.
TEST_P(HeaderLines, ManyLinesTakeLinearTime) {
  KRParseLogger::TheKRParseLogger()->EnableLogging(0);
  EXPECT_EQ(Block(Repeat("A:\n", 20000)).size(), 20001u);
  ExpectLinearTime();
  EXPECT_EQ(Block(Repeat("A:\r", 20000)).size(), 20001u);
  ExpectLinearTime();
  EXPECT_EQ(Block(Repeat("A\n", 20000) + "B:\n").size(), 2u);
  ExpectLinearTime();
  EXPECT_EQ(Block(Repeat("<!-->", 20000) + "B:\n").size(), 2u);
  ExpectLinearTime();
  EXPECT_EQ(Block(Repeat("A:<!\n", 20000)).size(), 1u);
  ExpectLinearTime();
}

}  // namespace
