// MIME in the engine: content types, boundaries, bodies.

#include "support/engine_probe.h"

namespace {

using krofx::testing::EngineTest;
using krofx::testing::Repeat;
using krofx::testing::Str;

class MimeBoundary : public EngineTest {
 protected:
  // Searches from the header cursor; gives the result and then the cursor.
  std::string Find(const char* boundary) {
    const KRBoundStatus status = Engine().FindMIMEBoundary(boundary);
    return std::to_string(status) + " " + std::to_string(Engine().GetHeaderPos());
  }
  std::string Find(std::string_view text, const char* boundary) {
    Read(text);
    return Find(boundary);
  }
  // The boundary of a content type, "none" when it has none.
  std::string Boundary(const char* contentType) {
    KRString boundary("held");
    if (Read("").GetMIMEBoundary(contentType, boundary) == 0) {
      EXPECT_EQ(Str(boundary), "held");
      return "none";
    }
    return Str(boundary);
  }
  // The body up to a boundary, "none" when there is none.
  std::string Body(std::string_view text, const char* boundary) {
    Read(text);
    return Body(boundary);
  }
  std::string Body(const char* boundary) {
    const s32 before = Engine().GetHeaderPos();
    KRString body("held");
    const bool found = Engine().GetMIMEBody(boundary, body) != 0;
    EXPECT_EQ(Engine().GetHeaderPos(), before);
    if (found) return Str(body);
    EXPECT_EQ(Str(body), "held");
    return "none";
  }
};
KROFX_FOR_BOTH_BUFFERS(MimeBoundary);

TEST_P(MimeBoundary, FindsBoundaryLines) {
  Read("preamble\n--abc\nbody\n--abc--\nrest\n");
  EXPECT_EQ(Find("abc"), "1 15");
  EXPECT_EQ(Find("abc"), "2 28");
  EXPECT_EQ(Find("abc"), "0 28");
}

TEST_P(MimeBoundary, SearchesFromAGivenPosition) {
  Read("--abc\nx\n--abc--\n");
  s32 position = 6;
  EXPECT_EQ(Engine().FindMIMEBoundary("abc", position), KRBoundStatus_Closing);
  EXPECT_EQ(position, 16);
  EXPECT_EQ(Engine().GetHeaderPos(), 0);
}

TEST_P(MimeBoundary, RespectsCase) { EXPECT_EQ(Find("--ABC\n", "abc"), "0 6"); }

TEST_P(MimeBoundary, HyphensNeedNotBeginTheLine) {
  EXPECT_EQ(Find("x --abc y\nz", "abc"), "1 10");
  EXPECT_EQ(Find("x-y\n--abc\n", "abc"), "1 10") << "a single hyphen is passed with its line";
  EXPECT_EQ(Find("x-y --abc\n--abc\n", "abc"), "1 16") << "and hides what follows it on the line";
}

TEST_P(MimeBoundary, LongerBoundaryMatchesByItsBeginning) {
  EXPECT_EQ(Find("--abcdef\n", "abc"), "1 9");
  EXPECT_EQ(Find("--ab\n", "abc"), "0 5");
}

TEST_P(MimeBoundary, LineFeedIsNeededToBeginWith) {
  EXPECT_EQ(Find("--abc", "abc"), "0 0");
  EXPECT_EQ(Find("x\n--abc--", "abc"), "2 9") << "but none after the boundary";
}

TEST_P(MimeBoundary, EmptyBoundaryMatchesAnyTwoHyphens) {
  EXPECT_EQ(Find("text\na--b\nc\n", ""), "1 10");
  EXPECT_EQ(Find("text\n----\n", ""), "2 10");
  EXPECT_EQ(Find("text\n", ""), "0 0");
}

TEST_P(MimeBoundary, NothingBehindTheHyphensEndsTheSearch) {
  EXPECT_EQ(Find("\n--", "abc"), "0 0");
  EXPECT_EQ(Find("no hyphens\n", "abc"), "0 0");
}

TEST_P(MimeBoundary, ManyLinesTakeLinearTime) {
  EXPECT_EQ(Find(Repeat("\n", 100000) + "-", "abc"), "0 100000");
  ExpectLinearTime();
  EXPECT_EQ(Find(Repeat("\n", 100000) + "--abd\n", "abc"), "0 100006");
  ExpectLinearTime();
}

TEST_P(MimeBoundary, TakesTheBoundaryOutOfAContentType) {
  EXPECT_EQ(Boundary("multipart/mixed; boundary=abc"), "abc");
  EXPECT_EQ(Boundary("Multipart/x-mixed-replace; BOUNDARY=\"A b\""), "a") << "in small letters";
  EXPECT_EQ(Boundary("multipart/mixed; boundary=abc def"), "abc");
  EXPECT_EQ(Boundary("multipart/mixed; boundary=abc;x=y"), "abc;x=y");
  EXPECT_EQ(Boundary("multipart/mixed; charset=u; boundary=abc"), "u;") << "the first '=' counts";
  EXPECT_EQ(Boundary(("multipart/mixed; boundary=" + std::string(80, 'x')).c_str()),
            std::string(71, 'x'));
  EXPECT_EQ(Boundary("multipart/mixed; boundary="), "");
}

TEST_P(MimeBoundary, OtherContentTypesHaveNoBoundary) {
  EXPECT_EQ(Boundary("text/plain; boundary=abc"), "none");
  EXPECT_EQ(Boundary(" multipart/mixed; boundary=abc"), "none");
  EXPECT_EQ(Boundary("multipart/mixed; bound=abc"), "none");
  EXPECT_EQ(Boundary("multipart/mixed; boundary"), "none");
  EXPECT_EQ(Boundary(""), "none");
}

TEST_P(MimeBoundary, TakesTheBodyWithTheLineEndBeforeTheBoundary) {
  EXPECT_EQ(Body("one\r\ntwo\r\n--abc\r\nx", "abc"), "one\r\ntwo\r\n");
  EXPECT_EQ(Body("one\n--abc--\nx", "abc"), "one\n");
  EXPECT_EQ(Body("one\n--abc--", "abc"), "one\n");
  EXPECT_EQ(Body("--abc\n", "abc"), "");
  EXPECT_EQ(Body("one\ntwo\n", "abc"), "none");
}

TEST_P(MimeBoundary, BodyBeyondSixteenBitsComesOutWrong) {
  const std::string filler(65000, 'x');
  EXPECT_EQ(Body(filler + "\n--abc\n", "abc"), filler + "\n");
  EXPECT_EQ(Body(filler + filler + "\n--abc\n", "abc").size(), 130001u % 65536)
      << "positions are counted in 16 bits";
  Read(filler + filler + "\n--abc\nbody\n--abc--\n");
  EXPECT_EQ(Engine().FindMIMEBoundary("abc"), KRBoundStatus_Boundary);
  EXPECT_EQ(Body("abc"), "");
}

TEST_P(MimeBoundary, TellsOFXByTypeAndContent) {
  KRString ofx("Application/X-OFX");
  KRString plain("text/plain");
  EXPECT_EQ(Read("<SIGNONMSGSRSV1><SONRS>").GetFileType(&ofx), KRMIMEType_OFXResponse);
  EXPECT_EQ(Read("<signonmsgsrqv1><sonrq>").GetFileType(&ofx), KRMIMEType_OFXRequest);
  EXPECT_EQ(Read("<SONRQ><SONRS>").GetFileType(&ofx), KRMIMEType_OFXResponse)
      << "a response wins over a request";
  EXPECT_EQ(Read("<SONRS>").GetFileType(&plain), KRMIMEType_Other);
  EXPECT_EQ(Read("<SONRS>").GetFileType(nullptr), KRMIMEType_Other);
  EXPECT_EQ(Read("<OFX>").GetFileType(&ofx), KRMIMEType_Other);
  EXPECT_EQ(Read("").GetFileType(&ofx), KRMIMEType_Other);
}

TEST_P(MimeBoundary, LooksForTheSignOnInTwoHundredCharacters) {
  KRString ofx("application/x-ofx");
  EXPECT_EQ(Read(std::string(195, ' ') + "SONRS").GetFileType(&ofx), KRMIMEType_OFXResponse);
  EXPECT_EQ(Read(std::string(196, ' ') + "SONRS").GetFileType(&ofx), KRMIMEType_Other);
  Read("SONRS:x\n" + std::string(300, ' '));
  KRHeaderTag tag = KRHeaderTag_None;
  KRString value;
  EXPECT_EQ(Engine().GetHeader(tag, value, nullptr), 1);
  EXPECT_EQ(Engine().GetFileType(&ofx), KRMIMEType_Other) << "counted from the header cursor";
}

}  // namespace
