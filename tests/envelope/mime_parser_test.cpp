// Multipart text: parts become subfiles, OFX parts become trees.

#include "krofx/envelope/mime_parser.h"

#include <gtest/gtest.h>

#include <thread>

#include "krofx/core/memory.h"
#include "krofx/core/thread.h"
#include "krofx/envelope/file_rq_rs.h"
#include "krofx/model/factory.h"
#include "krofx/parse/engine.h"
#include "support/parse_text.h"
#include "support/vtable_places.h"

namespace {

using krofx::internal::AllocationFailure;
using krofx::testing::Lines;
using krofx::testing::Str;
using krofx::testing::TextBuffer;
using krofx::testing::Warnings;

constexpr char kMultipart[] = "Content-Type: multipart/mixed; boundary=b0\n\n";
constexpr char kOFXType[] = "Content-Type: application/x-ofx\n";
// Without a byte between it and what follows, so that the sign-on is found early enough.
constexpr char kOFXHeaders[] =
    "OFXHEADER:100\nDATA:OFXSGML\nVERSION:102\nSECURITY:NONE\nENCODING:USASCII\nCHARSET:1252\n"
    "COMPRESSION:NONE\nOLDFILEUID:NONE\nNEWFILEUID:NONE\n\n";
// An empty response: the tags that identify it are in a comment, where they are not parsed.
constexpr char kResponse[] = "<!-- SONRS --><OFX></OFX>\n";

// With the colon, everything before it can be headers, so that blank lines end their blocks.
constexpr char kClosing[] = "--b0--\nepilogue: none\n";

class MimeParser : public testing::Test {
 protected:
  ~MimeParser() override { AllocationFailure::FailAt(0); }

  KRParseStatus Parse(const std::string& text, bool plain = true) {
    TextBuffer buffer(text, plain);
    return m_parser.Parse(buffer.Get(), &m_file, 0);
  }
  static std::string Plain(const std::string& text) {
    return "--b0\nContent-Type: text/plain\nX-Kept: yes\n\n" + text + "\n";
  }
  static std::string OFX(const std::string& body = kResponse) {
    return std::string("--b0\n") + kOFXType + "\n" + kOFXHeaders + body;
  }
  std::string Body(u16 index) { return Str(m_file.GetSubfile(index)->GetMIMEBody()); }
  std::string Header(KRFile& file, const char* name) {
    KRString wanted(name);
    const KRMIMEHeader* header = file.GetMIMEHeader(&wanted);
    return header == nullptr ? "none" : Str(header->value);
  }

  KRFile m_file;
  KRMIMEParser m_parser;
};

TEST_F(MimeParser, MakesASubfileForEachPart) {
  EXPECT_EQ(Parse(kMultipart + Plain("first") + Plain("second") + kClosing),
            KRParseStatus_Accepted);
  EXPECT_EQ(Str(m_file.GetBoundary()), "b0");
  EXPECT_EQ(Header(m_file, "content-type"), "multipart/mixed; boundary=b0");
  ASSERT_EQ(m_file.GetNumberOfSubfiles(), 2);
  EXPECT_EQ(Body(0), "first\n");
  EXPECT_EQ(Body(1), "second\n");
  KRFile& part = *m_file.GetSubfile(0);
  EXPECT_EQ(part.GetType(), KRTag_MIME);
  EXPECT_EQ(part.GetParent(), &m_file);
  EXPECT_EQ(Header(part, "Content-Type"), "text/plain");
  EXPECT_EQ(Header(part, "X-Kept"), "yes");
}

TEST_F(MimeParser, ReadsADerivedBufferAlike) {
  EXPECT_EQ(Parse(kMultipart + Plain("first") + kClosing, false), KRParseStatus_Accepted);
  EXPECT_EQ(Body(0), "first\n");
}

TEST_F(MimeParser, OFXPartBecomesATree) {
  EXPECT_EQ(Parse(kMultipart + Plain("text") + kClosing), KRParseStatus_Accepted);
  KRFile file;
  // The sign-on must be found within 200 characters, so the header block is short.
  const std::string text = std::string(kMultipart) + Plain("text") + "--b0\n" + kOFXType +
                           "\nOFXHEADER:100\nDATA:OFXSGML\n\n" + kResponse + kClosing;
  TextBuffer buffer(text);
  EXPECT_EQ(m_parser.Parse(buffer.Get(), &file, 0), KRParseStatus_Invalid)
      << "for the headers that are missing";
  ASSERT_EQ(file.GetNumberOfSubfiles(), 2);
  EXPECT_EQ(file.GetSubfile(1)->GetType(), KRTag_OFXFILERS);
  EXPECT_EQ(Str(*file.GetSubfile(1)->GetHeader(KRHeaderTag_DATA)), "OFXSGML");
  EXPECT_EQ(m_parser.GetObjectWithError(), file.GetSubfile(1));
}

TEST_F(MimeParser, WholeOFXPartIsParsed) {
  const KRParseStatus status = Parse(kMultipart + OFX() + Plain("text") + kClosing);
  ASSERT_GE(m_file.GetNumberOfSubfiles(), 1);
  auto* response = dynamic_cast<KRFileRs*>(m_file.GetSubfile(0));
  ASSERT_NE(response, nullptr);
  EXPECT_EQ(response->GetNumberOfResponse(), 1);
  EXPECT_EQ(response->GetParent(), &m_file);
  // An empty response logs what it lacks, and a part with warnings is the last one.
  EXPECT_EQ(status, KRParseStatus_Warnings) << ::testing::PrintToString(Warnings());
  EXPECT_EQ(m_file.GetNumberOfSubfiles(), 1);
}

TEST_F(MimeParser, RequestBecomesARequestFile) {
  Parse(kMultipart + OFX("<!-- SONRQ --><OFX></OFX>\n") + kClosing);
  ASSERT_EQ(m_file.GetNumberOfSubfiles(), 1);
  EXPECT_NE(dynamic_cast<KRFileRq*>(m_file.GetSubfile(0)), nullptr);
}

TEST_F(MimeParser, ResponseWinsOverRequest) {
  Parse(kMultipart + OFX("<!-- SONRQ SONRS --><OFX></OFX>\n") + kClosing);
  ASSERT_EQ(m_file.GetNumberOfSubfiles(), 1);
  EXPECT_NE(dynamic_cast<KRFileRs*>(m_file.GetSubfile(0)), nullptr);
}

TEST_F(MimeParser, OFXTypeWithoutSignOnIsAPlainFile) {
  EXPECT_EQ(Parse(kMultipart + OFX("<OFX></OFX>\n") + kClosing), KRParseStatus_Accepted);
  ASSERT_EQ(m_file.GetNumberOfSubfiles(), 1);
  EXPECT_EQ(m_file.GetSubfile(0)->GetType(), KRTag_MIME);
  EXPECT_EQ(Body(0).substr(0, 14), "OFXHEADER:100\n") << "its text is its body";
}

TEST_F(MimeParser, FatalPartIsPassedOver) {
  // A header that is not of the OFX block, in the second block, has no name to be stored under.
  const std::string fatal = std::string("--b0\n") + kOFXType + "\nX-Odd:1\n<!-- SONRS --><OFX>\n";
  EXPECT_EQ(Parse(kMultipart + fatal + Plain("text") + kClosing), KRParseStatus_Accepted);
  ASSERT_EQ(m_file.GetNumberOfSubfiles(), 2);
  EXPECT_EQ(m_file.GetSubfile(0)->GetType(), KRTag_OFXFILERS);
  EXPECT_EQ(Body(1), "text\n");
}

TEST_F(MimeParser, PartWithoutHeadersIsAPlainFile) {
  EXPECT_EQ(Parse(std::string(kMultipart) + "--b0\n\njust text\n--b0--\n"), KRParseStatus_Accepted);
  ASSERT_EQ(m_file.GetNumberOfSubfiles(), 1);
  EXPECT_EQ(m_file.GetSubfile(0)->GetNumberMIMEHeaders(), 0);
  EXPECT_EQ(Str(m_file.GetSubfile(0)->GetMIMEBody()).find("just text") != std::string::npos, true);
}

TEST_F(MimeParser, PartWithoutHeadersIsToldThatItIsPlainTextWithoutAName) {
  class Noting : public KRFile {
   public:
    KRParseStatus HandleHeader(KRHeaderTag tag, const KRString& value, KRString* name) override {
      Seen() = std::to_string(tag) + " " + Str(value) + (name == nullptr ? "" : " with a name");
      return KRParseStatus_Fatal;
    }
    static std::string& Seen() {
      static std::string seen;
      return seen;
    }
  };
  class TellingFiles : public KRDataObjFactory {
   public:
    KRFile* NewFile(u16) override { return new Noting; }
  };
  TellingFiles factory;
  KRDataObj::SetFactory(&factory);
  EXPECT_EQ(Parse(std::string(kMultipart) + "--b0\n\njust text\n--b0--\n"), KRParseStatus_Accepted)
      << "the answer is not looked at";
  KRDataObj::SetFactory(nullptr);
  EXPECT_EQ(Noting::Seen(), "-1 text/plain");
  EXPECT_EQ(m_file.GetNumberOfSubfiles(), 1);
}

TEST_F(MimeParser, BlankLineBelongsToABodyWithNoColonBehindIt) {
  EXPECT_EQ(Parse(kMultipart + Plain("text") + "--b0--\n"), KRParseStatus_Accepted);
  EXPECT_EQ(Body(0), "\ntext\n") << "no header can follow, so no line is looked at any more";
}

TEST_F(MimeParser, PartThatBeginsWithAnotherHeaderMakesNoSubfile) {
  EXPECT_EQ(Parse(std::string(kMultipart) + "--b0\nX-Other: here\nContent-Type: text/plain\n\nx\n" +
                  Plain("text") + kClosing),
            KRParseStatus_Accepted);
  EXPECT_EQ(Header(m_file, "X-Other"), "here") << "the header is the parent's";
  ASSERT_EQ(m_file.GetNumberOfSubfiles(), 1);
  EXPECT_EQ(Body(0), "text\n");
}

TEST_F(MimeParser, OnlyTheFirstHeaderOfTheEntityIsRead) {
  EXPECT_EQ(Parse("X-First: 1\nContent-Type: multipart/mixed; boundary=b0\n\n" + Plain("text")),
            KRParseStatus_Invalid);
  EXPECT_EQ(Header(m_file, "X-First"), "1");
  EXPECT_EQ(Header(m_file, "Content-Type"), "none");
  EXPECT_EQ(Str(m_file.GetBoundary()), "");
}

TEST_F(MimeParser, TextWithoutABoundaryIsInvalid) {
  EXPECT_EQ(Parse(std::string(kMultipart) + "no parts\n"), KRParseStatus_Invalid);
  EXPECT_EQ(m_file.GetNumberOfSubfiles(), 0);
  EXPECT_EQ(Parse(""), KRParseStatus_Invalid);
}

TEST_F(MimeParser, TextWithoutTheClosingBoundaryKeepsItsParts) {
  EXPECT_EQ(Parse(kMultipart + Plain("first") + Plain("second")), KRParseStatus_Invalid);
  EXPECT_EQ(m_file.GetNumberOfSubfiles(), 2);
}

TEST_F(MimeParser, BoundaryWithCapitalLettersIsNotFound) {
  EXPECT_EQ(Parse("Content-Type: multipart/mixed; boundary=B0\n\n--B0\n\nx\n--B0--\n"),
            KRParseStatus_Invalid);
  EXPECT_EQ(Str(m_file.GetBoundary()), "b0");
}

TEST_F(MimeParser, WithoutABoundaryAnyTwoHyphensAreOne) {
  EXPECT_EQ(Parse("Content-Type: text/plain\n\npreamble\n--\nContent-Type: "
                  "text/plain\n\nx\n----\nepilogue: none\n"),
            KRParseStatus_Accepted);
  ASSERT_EQ(m_file.GetNumberOfSubfiles(), 1);
  EXPECT_EQ(Body(0), "x\n");
}

TEST_F(MimeParser, ReadsFromTheEngineItIsGivenAndKeepsIt) {
  TextBuffer text(kMultipart + OFX());
  TextBuffer other("nothing\n");
  KRParseEngine engine(*text);
  m_parser.SetParseEngine(&engine);
  EXPECT_EQ(m_parser.Parse(other.Get(), &m_file, 0), KRParseStatus_Warnings);
  EXPECT_EQ(m_file.GetNumberOfSubfiles(), 1);
  EXPECT_EQ(m_parser.Parse(other.Get(), &m_file, 0), KRParseStatus_Invalid)
      << "it continues at the engine's position";
}

TEST_F(MimeParser, InheritedParseIsCallable) {
  TextBuffer text(std::string(kOFXHeaders) + "<OFX></OFX>");
  KRFileRs file;
  KRDataObj* root = &file;
  EXPECT_EQ(m_parser.Parse(text.Get(), root, 0), KRParseStatus_Accepted);
  EXPECT_EQ(file.GetNumberOfResponse(), 1);
}

TEST_F(MimeParser, OnlyTheLastOFXPartsWarningsRemain) {
  Parse(kMultipart + OFX("<!-- SONRS --><OFX><XYZ>1</OFX>\n") + kClosing);
  const Lines warnings = Warnings();
  ASSERT_FALSE(warnings.empty());
  for (const std::string& line : warnings) EXPECT_EQ(line.find("Content-Type"), std::string::npos);
}

TEST_F(MimeParser, AlarmAndWarningsFromBeforeDoNotCount) {
  KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
  KRParseLogger::TheKRParseLogger()->AppendParseException(KRPW_BADFORMAT, "old", "", KRTag_None,
                                                          nullptr);
  EXPECT_EQ(Parse("OFXHEADER:100\n" + std::string("--\n")), KRParseStatus_Invalid);
  EXPECT_EQ(KRGetFireAlarm(), KRFireAlarm_None);
  for (const std::string& line : Warnings()) EXPECT_EQ(line.find("old"), std::string::npos);
}

TEST_F(MimeParser, MisuseIsFatal) {
  TextBuffer text("x");
  EXPECT_EQ(m_parser.Parse(nullptr, &m_file, 0), KRParseStatus_Fatal);
  EXPECT_EQ(m_parser.Parse(text.Get(), static_cast<KRFile*>(nullptr), 0), KRParseStatus_Fatal);
  std::thread thread([] {
    KRDetachThread(KRCurrentThreadId());
    TextBuffer buffer("x");
    KRFile file;
    KRMIMEParser parser;
    EXPECT_EQ(parser.Parse(buffer.Get(), &file, 0), KRParseStatus_Fatal);
  });
  thread.join();
}

class NoFiles : public KRDataObjFactory {
 public:
  KRFile* NewFile(u16) override { return nullptr; }
};

TEST_F(MimeParser, FactoryThatGivesNothingIsFatal) {
  NoFiles factory;
  KRDataObj::SetFactory(&factory);
  EXPECT_EQ(Parse(kMultipart + Plain("text") + kClosing), KRParseStatus_Fatal);
  EXPECT_EQ(KRGetFireAlarm(), KRFireAlarm_MemoryExhausted);
  KRDataObj::SetFactory(nullptr);
}

TEST_F(MimeParser, SurvivesEveryFailingAllocation) {
  const std::string text = kMultipart + Plain("a body long enough to need memory") + OFX();
  KRParseStatus status;
  std::size_t nth = 0;
  do {
    KRFile file;
    TextBuffer buffer(text);
    KRMIMEParser parser;
    AllocationFailure::FailAt(++nth);
    status = parser.Parse(buffer.Get(), &file, 0);
    const bool failed = AllocationFailure::Count() >= nth;
    AllocationFailure::FailAt(0);
    if (!failed) break;
    EXPECT_NE(status, KRParseStatus_Unused) << nth;
    if (status == KRParseStatus_Fatal) {
      EXPECT_EQ(KRGetFireAlarm(), KRFireAlarm_MemoryExhausted) << nth;
    }
  } while (nth < 100000);
  EXPECT_EQ(status, KRParseStatus_Warnings);
  EXPECT_GT(nth, 10u);
}

TEST_F(MimeParser, LosesNoHeaderAndNoBodySilently) {
  const std::string text = kMultipart + Plain("a body long enough to need memory") + kClosing;
  std::size_t nth = 0;
  bool failed = true;
  while (failed) {
    KRFile file;
    TextBuffer buffer(text);
    KRMIMEParser parser;
    AllocationFailure::FailAt(++nth);
    const KRParseStatus status = parser.Parse(buffer.Get(), &file, 0);
    failed = AllocationFailure::Count() >= nth;
    AllocationFailure::FailAt(0);
    if (status != KRParseStatus_Accepted) continue;
    ASSERT_EQ(file.GetNumberOfSubfiles(), 1) << nth;
    KRString name("X-Kept");
    EXPECT_NE(file.GetSubfile(0)->GetMIMEHeader(&name), nullptr) << nth;
    EXPECT_EQ(Str(file.GetSubfile(0)->GetMIMEBody()), "a body long enough to need memory\n") << nth;
  }
  EXPECT_GT(nth, 10u);
}

#ifdef KROFX_TESTS_KNOW_VTABLES
TEST(VtablePlaces, OfMIMEParsers) {
  using S = KRSimpleParser;
  using ParseFile = KRParseStatus (KRMIMEParser::*)(KRBuffer*, KRFile*, u16);
  EXPECT_EQ(VtablePlaceOf(static_cast<ParseFile>(&KRMIMEParser::Parse)),
            VtablePlaceOf(&S::SetParseEngine) + 1);
}
#endif

}  // namespace
