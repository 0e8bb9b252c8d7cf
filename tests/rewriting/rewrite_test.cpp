// Writing what was read, in either form.

#include "krofx/rewriting/rewrite.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "support/example_texts.h"
#include "support/failing_allocation.h"
#include "support/readings.h"

namespace krofx::testing {
namespace {

std::string Statement(std::string_view name) {
  return BankStatementFile("<STMTTRN><TRNTYPE>DEBIT<DTPOSTED>20260105<TRNAMT>-1.50<FITID>a<NAME>" +
                           std::string(name) + "</STMTTRN>");
}

std::string Rewritten(const Reading& reading, const RewriteOptions& options = {}) {
  KRBuffer out(0, 0);
  const KRBuildStatus status = Rewrite(reading.texts[0], out, options);
  if (status != KRBuildStatus_Done) return "status " + std::to_string(status);
  return ContentOf(out);
}

RewriteOptions Ofx2(u16 version) { return {TextForm::kOfx2, version, false}; }

std::string NameLine(const std::string& text) {
  const std::size_t at = text.find("<NAME>");
  return text.substr(at, text.find_first_of("\r\n", at) - at);
}

TEST(Rewrite, WritesOfx1AsTheBuilderDoes) {
  const Reading reading = Read(Statement("Grocer & Sons"));
  EXPECT_EQ(Rewritten(reading), Written(reading.root));
}

TEST(Rewrite, WritesOfx2WithAllTagsClosed) {
  const std::string text = Rewritten(Read(Statement("A < B & C")), Ofx2(220));
  EXPECT_TRUE(
      text.starts_with("<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"no\"?>\r\n"
                       "<?OFX OFXHEADER=\"200\" VERSION=\"220\" SECURITY=\"NONE\" "
                       "OLDFILEUID=\"NONE\" NEWFILEUID=\"NONE\"?>\r\n<OFX>\r\n"))
      << text;
  EXPECT_EQ(NameLine(text), "<NAME>A &lt; B &amp; C</NAME>");
  EXPECT_TRUE(text.ends_with("</OFX>\r\n")) << text;
}

TEST(Rewrite, WritesHeaderFieldsOfAnyTextAsAttributes) {
  const Reading reading = Read(Statement("Grocer"));
  ASSERT_EQ(reading.root->SetHeader(KRHeaderTag_NEWFILEUID, KRString("a\"b&c<d>\xE9")), 1);
  const std::string text = Rewritten(reading, Ofx2(203));
  EXPECT_NE(text.find(" NEWFILEUID=\"a&quot;b&amp;c&lt;d&gt;\u00e9\"?>"), std::string::npos)
      << text.substr(0, 300);
}

TEST(Rewrite, WritesHeaderFieldsInTheCharacterSetOfTheText) {
  const auto withId = [](std::string text, const std::string& id) {
    return text.replace(text.find("OLDFILEUID:NONE") + 11, 4, id);
  };
  // 200 characters that take two bytes each in UTF-8.
  const std::string id(200, '\xE9');
  const std::string windows = Rewritten(Read(withId(Statement("Grocer"), id)));
  EXPECT_NE(windows.find("CHARSET:1252\r\n"), std::string::npos) << windows;
  EXPECT_NE(windows.find("OLDFILEUID:" + id + "\r\n"), std::string::npos) << windows;

  const Reading both = Read(withId(Statement("Grocer &#321;<SIC/>"), id));
  for (const RewriteOptions& options : {RewriteOptions(), Ofx2(203)}) {
    const std::string text = Rewritten(both, options);
    EXPECT_EQ(text.find('\xE9'), std::string::npos) << text;
    const Reading again = Read(text);
    EXPECT_EQ(MendingLines(again), Lines());
    EXPECT_EQ(Str(again.texts[0].ToUtf8(*again.root->GetHeader(KRHeaderTag_OLDFILEUID))),
              Str(both.texts[0].ToUtf8(KRString(id.c_str()))));
    EXPECT_EQ(Rewritten(again, options), text);
  }
}

TEST(Rewrite, RefusesTextsThatAreTooLongInUtf8) {
  const Reading reading = Read(Statement(std::string(40000, '\xE9')));
  EXPECT_EQ(Rewritten(reading), "status 5");
  const Reading header = Read(Statement("Grocer"));
  ASSERT_EQ(
      header.root->SetHeader(KRHeaderTag_NEWFILEUID, KRString(std::string(40000, '\xE9').c_str())),
      1);
  EXPECT_EQ(Rewritten(header, Ofx2(203)), "status 5");
}

TEST(Rewrite, WritesTheSameTreeInBothForms) {
  for (const auto& [name, text] : ExampleTexts()) {
    const Reading reading = Read(text);
    const std::string first = Rewritten(reading);
    for (const u16 version : {u16{203}, u16{220}}) {
      const Reading again = Read(Rewritten(reading, Ofx2(version)));
      EXPECT_EQ(MendingLines(again), Lines()) << name;
      EXPECT_EQ(Rewritten(again), first) << name;
      EXPECT_EQ(again.texts[0].kind, reading.texts[0].kind);
    }
    EXPECT_EQ(Rewritten(Read(first)), first) << name;
  }
}

TEST(Rewrite, NamesTheCharacterSetThatItWrites) {
  std::string text = Rewritten(Read(Statement("Caf\xC3\xA9")));
  EXPECT_NE(text.find("ENCODING:USASCII\r\nCHARSET:1252\r\n"), std::string::npos) << text;
  EXPECT_EQ(NameLine(text), "<NAME>Caf\xE9");
  text =
      Rewritten(Read(Statement("\xC5\x81\xC3\xB3"
                               "d\xC5\xBA")));
  EXPECT_NE(text.find("ENCODING:UTF-8\r\nCHARSET:NONE\r\n"), std::string::npos) << text;
  EXPECT_EQ(NameLine(text),
            "<NAME>\xC5\x81\xC3\xB3"
            "d\xC5\xBA");
  EXPECT_EQ(MendingLines(Read(text)), Lines());
  text = Rewritten(Read(Statement("Caf\xE9")), Ofx2(203));
  EXPECT_EQ(NameLine(text), "<NAME>Caf\xC3\xA9</NAME>");
}

// What a file said of its own characters is not written, whatever is in it.
TEST(Rewrite, ChoosesTheCharacterSetWithoutTheFieldsThatNameIt) {
  Reading reading = Read(Statement("Grocer"));
  reading.texts[0].charset = "UTF-8";
  // A Polish letter, which 1252 does not have.
  ASSERT_EQ(reading.root->SetHeader(KRHeaderTag_CHARSET, "\xC5\x81"), 1);
  const std::string text = Rewritten(reading);
  EXPECT_NE(text.find("ENCODING:USASCII\r\nCHARSET:1252\r\n"), std::string::npos) << text;
  EXPECT_EQ(Rewritten(Read(text)), text);
}

TEST(Rewrite, WritesNothingThatWouldBeTakenForAnotherCharacterSet) {
  // Two characters whose bytes in 1252 are one character of UTF-8; the third shows that they are
  // not.
  const Reading reading = Read(Statement("\xC3\xA9 \xE9"));
  ASSERT_EQ(Str(reading.texts[0].charset), "WINDOWS-1252");
  std::string text = Rewritten(Read(Statement("&#195;&#169;<SIC/>")));
  EXPECT_EQ(NameLine(text), "<NAME>\xC3\x83\xC2\xA9");
  EXPECT_EQ(Rewritten(Read(text)), text);
}

TEST(Rewrite, CutsNothingThatIsOverItsLength) {
  const std::string name = "A name of more than thirty-two characters & more";
  const std::string text = Rewritten(Read(Statement(name)));
  EXPECT_EQ(NameLine(text), "<NAME>A name of more than thirty-two characters &amp; more");
  RewriteOptions strict;
  strict.strict = true;
  EXPECT_EQ(Rewritten(Read(Statement(name)), strict), "status 5");
}

TEST(Rewrite, LeavesPasswordsAsTheyAre) {
  std::string text = RequestFile("BANKMSGSRQ", "");
  text.replace(text.find("<USERPASS>secret"), 16, "<USERPASS>&amp;eacute;");
  const std::string written = Rewritten(Read(text));
  EXPECT_NE(written.find("<USERPASS>&amp;eacute;\n"), std::string::npos) << written;
}

// A file of a host that writes texts itself.
class OwnFile : public KRFileRs {
 public:
  KRBuildStatus Build(KRBuilder* builder) const override {
    builder->AddTagElement(KRTag_MEMO);
    builder->AddString(KRString("A & "), KRBuildStringMacroOpt_Escape, KRBuildStringCrLfOpt_None);
    builder->AddString(KRString("caf\xE9"), KRBuildStringMacroOpt_AsIs, KRBuildStringCrLfOpt_None);
    return builder->AddString(KREMailMsgBody(), KRBuildStringMacroOpt_Escape,
                              KRBuildStringCrLfOpt_NewLine);
  }
};

TEST(Rewrite, WritesTheTextsOfAHostsOwnClass) {
  OfxText text;
  text.kind = TextKind::kResponse;
  text.charset = "WINDOWS-1252";
  text.root.reset(new OwnFile);
  KRBuffer out(0, 0);
  ASSERT_EQ(Rewrite(text, out, Ofx2(203)), KRBuildStatus_Done);
  EXPECT_NE(ContentOf(out).find("<MEMO>A &amp; caf\u00e9</MEMO>\r\n"), std::string::npos)
      << ContentOf(out);
  // An empty message is no valid one.
  RewriteOptions strict;
  strict.strict = true;
  EXPECT_EQ(Rewrite(text, out, strict), KRBuildStatus_NotValid);
}

TEST(Rewrite, RefusesMultipartTexts) {
  OfxText text;
  text.kind = TextKind::kMultipart;
  text.root.reset(new KRFile);
  KRBuffer out(0, 0);
  EXPECT_EQ(Rewrite(text, out), KRBuildStatus_TreeNotAllowed);
  text.root.reset();
  EXPECT_EQ(Rewrite(text, out), KRBuildStatus_NullArgument);
}

TEST(Rewrite, SaysWhereMemoryIsExhausted) {
  const Reading reading = Read(Statement("Caf\xE9 &eacute;"));
  const std::string whole = Rewritten(reading, Ofx2(203));
  bool failed = true;
  for (std::size_t nth = 1; failed && nth < 10000; ++nth) {
    KRBuffer out(0, 0);
    KRBuildStatus status;
    {
      const FailingAllocation failing(nth);
      status = Rewrite(reading.texts[0], out, Ofx2(203));
      failed = krofx::internal::AllocationFailure::Count() >= nth;
    }
    if (status == KRBuildStatus_Done) {
      EXPECT_EQ(ContentOf(out), whole);
    }
  }
  EXPECT_FALSE(failed);
}

}  // namespace
}  // namespace krofx::testing
