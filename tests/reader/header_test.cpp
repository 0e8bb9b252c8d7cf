// Headers as they really come: each gives the tree of the text with its header in order.

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "krofx/reader/reading.h"
#include "support/readings.h"

namespace krofx::testing {
namespace {

const std::string kWhole = BankStatementFile("");
const std::string kBody = kWhole.substr(kWhole.find('<'));
// The body with a private tag, so that the parser does not read it cleanly whatever the header is.
const std::string kMarked = "<OFX><ACME.X>1" + kBody.substr(5);
constexpr const char* kFields[] = {"OFXHEADER:100",    "DATA:OFXSGML",     "VERSION:102",
                                   "SECURITY:NONE",    "ENCODING:USASCII", "CHARSET:1252",
                                   "COMPRESSION:NONE", "OLDFILEUID:NONE",  "NEWFILEUID:NONE"};

std::string Fields(std::string_view between) {
  std::string text;
  for (const char* const field : kFields) text.append(field).append(between);
  return text;
}

// Expects the tree of the whole text, header included, and the mendings.
Reading ExpectWhole(const std::string& text, const Lines& kinds) {
  Reading reading = Read(text);
  EXPECT_EQ(Written(reading.root), Written(Read(kWhole).root)) << text;
  EXPECT_EQ(MendingNames(reading), kinds) << text;
  return reading;
}

TEST(Header, MayBeMissing) { ExpectWhole(kBody, {"header-missing"}); }

TEST(Header, MayStandOnOneLine) {
  ExpectWhole(Fields("") + kBody, {"header-layout"});
  ExpectWhole(Fields(" ") + kBody, {"header-layout"});
  ExpectWhole(Fields("\t") + "\n" + kBody, {"header-layout"});
}

TEST(Header, MayHaveBlankLinesInFrontAndAmongItsFields) {
  ExpectWhole("\r\n\r\n \r\n" + Fields("\r\n") + "\r\n" + kBody, {"header-layout"});
  ExpectWhole("   " + Fields("\n\n") + kBody, {"header-layout", "header-layout"});
}

TEST(Header, MayEndInCarriageReturns) {
  ExpectWhole(Fields("\r") + "\r" + kMarked, {"private-tag"});
}

TEST(Header, MayLackTheBlankLineAfterIt) {
  ExpectWhole(Fields("\n") + "<!-- comment -->" + kMarked, {"header-layout", "private-tag"});
  ExpectWhole(Fields("\n").substr(0, Fields("\n").size() - 1) + kBody, {"header-layout"});
}

TEST(Header, MayHaveItsFieldsInAnyOrderAndCase) {
  std::string text;
  for (std::size_t index = std::size(kFields); index > 0; --index) {
    text.append(kFields[index - 1]).append("\r\n");
  }
  ExpectWhole(text + "\r\n" + kMarked, {"private-tag"});
  std::string small = Fields("\r\n\r\n");
  for (char& c : small) c = static_cast<char>(c >= 'A' && c <= 'Z' ? c + 32 : c);
  const Reading reading = Read(small + kBody);
  EXPECT_EQ(WrittenBody(reading.root), WrittenBody(Read(kWhole).root));
}

TEST(Header, MayHaveBlanksAroundColons) {
  std::string text;
  for (const std::string field : kFields) {
    const std::size_t colon = field.find(':');
    text += field.substr(0, colon) + " : " + field.substr(colon + 1) + "\n\n";
  }
  ExpectWhole(text + kBody, {"header-layout"});
}

TEST(Header, TakesUsualValuesForFieldsThatAreMissing) {
  std::string text = Fields("\r\n") + "\r\n";
  text.erase(text.find("SECURITY"), 15);
  const Reading reading = ExpectWhole(text + kBody, {"header-field-missing"});
  EXPECT_EQ(Str(reading.mendings[0].tag), "SECURITY");
  EXPECT_EQ(Str(reading.mendings[0].taken), "NONE");
}

TEST(Header, LeavesFieldsOutThatOfxDoesNotHave) {
  std::string text = Fields("\r\n") + "\r\n";
  text.insert(text.find("SECURITY"), "VENDOR:Acme Bank\r\n");
  const Reading reading = ExpectWhole(text + kBody, {"header-field-unknown"});
  EXPECT_EQ(Str(reading.mendings[0].tag), "VENDOR");
  EXPECT_EQ(reading.mendings[0].place.line, 4u);
}

TEST(Header, TakesVersionsThatTheLibraryDoesNotKnow) {
  for (const char* const version : {"103", "151x", "160", "202", "300"}) {
    std::string text = kWhole;
    text.replace(text.find("102"), 3, version);
    const Reading reading = ExpectWhole(text, {"header-value"});
    EXPECT_EQ(Str(reading.texts[0].version), version);
    EXPECT_EQ(Str(reading.mendings[0].was), version);
    EXPECT_EQ(reading.mendings[0].place.column, 9u);
  }
}

TEST(Header, SaysWhichFieldIsTooLongInEitherForm) {
  const std::string id(KRString::kMaxLength + 1, 'a');
  std::string text = kWhole;
  text.replace(text.find("OLDFILEUID:NONE") + 11, 4, id);
  ExpectWhole(text, {"header-value"});
  const Reading reading =
      Read("<?OFX OFXHEADER=\"200\" VERSION=\"203\" SECURITY=\"NONE\" OLDFILEUID=\"" + id +
           "\" NEWFILEUID=\"NONE\"?>" + kBody);
  EXPECT_EQ(MendingNames(reading), Lines{"header-value"});
  EXPECT_EQ(Str(reading.mendings[0].tag), "OLDFILEUID");
}

TEST(Header, PassesOverWhatStandsInFrontOfIt) {
  ExpectWhole(
      "HTTP/1.1 200 OK\r\nContent-Type: application/x-ofx\r\nContent-Encoding: none\r\n"
      "MIME-Version: 1.0\r\n\r\n" +
          kWhole,
      {"text-in-front"});
  ExpectWhole("From: Bank <mail@bank.example>\r\n\r\n" + kBody,
              {"text-in-front", "header-missing"});
  ExpectWhole("\xEF\xBB\xBF" + kWhole, {"byte-order-mark"});
}

TEST(Header, OfOfx2MayHaveEitherQuotesAnyOrderAndCase) {
  for (const char* const header :
       {"<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"no\"?>\n<?OFX OFXHEADER=\"200\" "
        "VERSION=\"203\" SECURITY=\"NONE\" OLDFILEUID=\"NONE\" NEWFILEUID=\"NONE\"?>\n",
        "<?XML version='1.0'?><?ofx newfileuid='NONE' oldfileuid='NONE' version = '203' "
        "ofxheader='200' security='NONE' ?>",
        "\xEF\xBB\xBF<?xml version=\"1.0\"?><!-- made by --><?OFX VERSION=203 OFXHEADER=200?>"}) {
    const Reading reading = ExpectWhole(header + kBody, {});
    EXPECT_EQ(reading.texts[0].form, TextForm::kOfx2);
    EXPECT_EQ(Str(reading.texts[0].version), "203");
    EXPECT_EQ(reading.status, KRParseStatus_Accepted);
  }
}

TEST(Header, MayBeThatOfTheOtherForm) {
  ExpectWhole("<?xml version=\"1.0\"?>\n" + kWhole, {"header-form"});
}

TEST(Header, OfOfx2MayHaveAttributesWithoutValuesAndOtherInstructions) {
  const Reading reading = Read(
      "<?OFXES VERSION=\"9\"?><?OFX OFXHEADER=\"200\"VERSION=\"203\" SECURITYLEVEL=\"9\" SECURITY "
      "OLDFILEUID = \"2026-01.A_b\" NEWFILEUID=?>" +
      kMarked);
  EXPECT_EQ(MendingNames(reading), Lines{"private-tag"});
  EXPECT_EQ(Str(reading.texts[0].version), "203");
  EXPECT_EQ(*reading.root->GetHeader(KRHeaderTag_OLDFILEUID), KRString("2026-01.A_b"));
  EXPECT_EQ(*reading.root->GetHeader(KRHeaderTag_SECURITY), KRString("NONE"));
  ExpectWhole("<?OFX OFXHEADER=\"200\" VERSION=\"203\" NEWFILEUID= ?>" + kBody, {});
  for (const char* const front : {"Dear customer, ", "x"}) {
    const Reading greeted =
        ExpectWhole(front + std::string("<?OFX OFXHEADER=\"200\" VERSION=\"203\"?>") + kBody,
                    {"text-in-front"});
    EXPECT_TRUE(std::string(front).starts_with(Str(greeted.mendings[0].was)));
  }
  for (const char* const other :
       {"OFXa", "ofxz", "OFXA", "OFXZ", "OFX0", "OFX9", "OFX-", "OFX_", "OFX."}) {
    const Reading two =
        ExpectWhole("<?" + std::string(other) +
                        " VERSION=\"9\"?><?OFX OFXHEADER=\"200\" VERSION=\"203\"?>" + kBody,
                    {});
    EXPECT_EQ(Str(two.texts[0].version), "203") << other;
  }
}

TEST(Header, TakesNoFieldOfAnotherNameForItsOwn) {
  ExpectWhole("X-VERSION:300\r\nMY_CHARSET:850\r\n" + kWhole, {"text-in-front"});
  ExpectWhole(Fields("\r\n") + "and so on\r\n\r\n" + kBody, {"header-field-unknown"});
  ExpectWhole("VERSION\r\n\r\n" + kBody, {"text-in-front", "header-missing"});
}

TEST(Header, TakesTheLastOfTwoFieldsOfOneNameAsTheParserDoes) {
  const std::string fields = "SECURITY:NONE\r\nVERSION:151\r\nVERSION:\r\n";
  for (const std::string& body : {kBody, kMarked}) {
    std::string text = kWhole.substr(0, kWhole.find('<')) + body;
    text.replace(text.find("SECURITY"), 15, fields);
    EXPECT_EQ(*Read(text).root->GetHeader(KRHeaderTag_VERSION), KRString("151"));
  }
}

TEST(Header, KeepsItsFileIdentifiers) {
  std::string text = kWhole;
  text.replace(text.find("NEWFILEUID:NONE"), 15, "NEWFILEUID:2026-01-05.A");
  text.erase(text.find("SECURITY:NONE\r\n"), 15);
  const Reading reading = Read(text);
  EXPECT_EQ(*reading.root->GetHeader(KRHeaderTag_NEWFILEUID), KRString("2026-01-05.A"));
}

}  // namespace
}  // namespace krofx::testing
