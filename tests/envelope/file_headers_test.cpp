// The OFX header block of a file: defaults, tests, text; and the other headers beside it.

#include <gtest/gtest.h>

#include <string>

#include "krofx/envelope/file_rq_rs.h"
#include "support/failing_allocation.h"
#include "support/ofx_text.h"

namespace {

using namespace krofx::testing;

constexpr KRHeaderTag kTags[] = {
    KRHeaderTag_OFXHEADER,   KRHeaderTag_DATA,       KRHeaderTag_VERSION,
    KRHeaderTag_SECURITY,    KRHeaderTag_ENCODING,   KRHeaderTag_CHARSET,
    KRHeaderTag_COMPRESSION, KRHeaderTag_OLDFILEUID, KRHeaderTag_NEWFILEUID,
};
const char* const kNames[] = {"OFXHEADER", "DATA",        "VERSION",    "SECURITY",  "ENCODING",
                              "CHARSET",   "COMPRESSION", "OLDFILEUID", "NEWFILEUID"};
const char* const kDefaults[] = {"100",  "OFXSGML", "102",  "NONE", "USASCII",
                                 "1252", "NONE",    "NONE", "NONE"};

std::string HeaderOf(const KRFile& file, KRHeaderTag tag) {
  const KRString* value = file.GetHeader(tag);
  return value == nullptr ? "(none)" : Str(*value);
}

// The header block with one value changed; a null value leaves the line out.
std::string With(std::string_view name, const char* value) {
  std::string text;
  for (std::size_t i = 0; i < std::size(kNames); ++i) {
    const char* own = kNames[i] == name ? value : kDefaults[i];
    if (own != nullptr) text += std::string(kNames[i]) + ":" + own + "\r\n";
  }
  return text + "\r\n" + Aggregate("OFX", SignOnResponseSet());
}

TEST(KRFileOFX, BuildsTheWholeDefaultBlock) {
  const KRFileRq file;
  EXPECT_EQ(TextOf(file), HeaderBlock());
  const KRFileRs response;
  EXPECT_EQ(TextOf(response), HeaderBlock());
}

TEST(KRFileOFX, BuildsStoredHeadersInPlaceOfDefaults) {
  KRFileRq file;
  for (std::size_t i = 0; i < std::size(kTags); ++i) {
    EXPECT_EQ(file.SetHeader(kTags[i], KRString(("v" + std::to_string(i)).c_str())), 1);
  }
  std::string expected;
  for (std::size_t i = 0; i < std::size(kTags); ++i) {
    expected += std::string(kNames[i]) + ":v" + std::to_string(i) + "\r\n";
  }
  EXPECT_EQ(TextOf(file), expected + "\r\n");
}

TEST(KRFileOFX, AddsTheDefaultsOfAbsentHeaders) {
  KRFileRq file;
  file.SetHeader(KRHeaderTag_SECURITY, KRString("TYPE1"));
  EXPECT_EQ(file.AddDefaultOFXHeaders(1), 1);
  for (std::size_t i = 0; i < std::size(kTags); ++i) {
    const char* expected = kTags[i] == KRHeaderTag_SECURITY ? "TYPE1" : kDefaults[i];
    EXPECT_EQ(HeaderOf(file, kTags[i]), expected);
  }
}

TEST(KRFileOFX, AddsTheVersionOfItsMessageSets) {
  // Version asked for, version of the file, VERSION.
  const struct {
    u16 asked, own;
    const char* version;
  } cases[] = {{2, 1, "151"}, {1, 2, "102"},      {0, 2, "151"}, {0, 1, "102"},
               {0, 0, "102"}, {0, 0xffff, "102"}, {3, 2, "102"}};
  for (const auto& test : cases) {
    KRFileRq file;
    file.SetMsgSetVersion(test.own);
    EXPECT_EQ(file.AddDefaultOFXHeaders(test.asked), 1);
    EXPECT_EQ(HeaderOf(file, KRHeaderTag_VERSION), test.version) << test.asked << " " << test.own;
  }
}

TEST(KRFileOFX, KeepsAVersionThatIsThereAndWrites102WithoutOne) {
  KRFileRq file;
  file.SetHeader(KRHeaderTag_VERSION, KRString("102"));
  file.AddDefaultOFXHeaders(2);
  EXPECT_EQ(HeaderOf(file, KRHeaderTag_VERSION), "102");
  KRFileRq bare;
  bare.SetMsgSetVersion(2);
  EXPECT_EQ(TextOf(bare), HeaderBlock(1));
}

TEST(KRFileOFX, StoresOnlyItsOwnHeadersWithAText) {
  KRFileRq file;
  EXPECT_EQ(file.SetHeader(KRHeaderTag_None, KRString("x")), 0);
  EXPECT_EQ(file.SetHeader(static_cast<KRHeaderTag>(1), KRString("x")), 0);
  EXPECT_EQ(file.SetHeader(static_cast<KRHeaderTag>(11), KRString("x")), 0);
  EXPECT_EQ(file.SetHeader(KRHeaderTag_DATA, KRString(" \t")), 0);
  EXPECT_EQ(file.SetHeader(KRHeaderTag_DATA, KRString()), 0);
  EXPECT_EQ(file.ValidateHeader(KRHeaderTag_DATA), 0);
  EXPECT_EQ(file.GetHeader(KRHeaderTag_None), nullptr);
  EXPECT_EQ(file.GetHeader(static_cast<KRHeaderTag>(11)), nullptr);
  EXPECT_EQ(file.SetHeader(KRHeaderTag_DATA, KRString("OFXSGML")), 1);
  EXPECT_EQ(file.ValidateHeader(KRHeaderTag_DATA), 1);
}

TEST(KRFileOFX, NeedsItsHeaderToBeComplete) {
  KRFileRq file;
  file.AppendRequest(new KRRequest);
  EXPECT_EQ(file.AllRequiredPresent(), 0);
  file.SetHeader(KRHeaderTag_OFXHEADER, KRString("100"));
  EXPECT_EQ(file.AllRequiredPresent(), 1);
  KRFileRs empty;
  empty.SetHeader(KRHeaderTag_OFXHEADER, KRString("100"));
  EXPECT_EQ(empty.AllRequiredPresent(), 0) << "no body";
}

// How a file with one header changed is read.
struct HeaderCase {
  const char* name;
  const char* value;
  KRParseStatus status;
  const char* warning;
};
class HeaderBlockCase : public ::testing::TestWithParam<HeaderCase> {};

TEST_P(HeaderBlockCase, IsJudgedByItsOwnRule) {
  const HeaderCase& test = GetParam();
  const Parsed<KRFileRs> file(With(test.name, test.value));
  EXPECT_EQ(file.Status(), test.status);
  Lines expected;
  if (test.warning != nullptr) {
    const std::string type = " <" + std::string(test.name) + "> " + TagNumber(KRTag_OFXFILERS);
    expected.push_back(test.warning + type);
    if (test.value != nullptr && std::string(test.warning) == "BADFORMAT") {
      std::string upper(test.value);
      for (char& c : upper) c = static_cast<char>(std::toupper(c));
      expected.back() += " \"" + upper + "\"";
      // The conversion also warns about an unknown keyword.
      const std::string name(test.name);
      if (name != "OFXHEADER" && name != "VERSION") {
        expected.insert(expected.begin(), "BADFORMAT \"" + upper + "\"");
      }
    }
  }
  EXPECT_EQ(file.Warnings(), expected);
}

constexpr HeaderCase kHeaderCases[] = {
    {"OFXHEADER", "100", KRParseStatus_Accepted, nullptr},
    {"OFXHEADER", "103", KRParseStatus_Warnings, "BADFORMAT"},
    {"OFXHEADER", nullptr, KRParseStatus_Invalid, "MISSINGTAG"},
    {"OFXHEADER", "  ", KRParseStatus_Invalid, "MISSINGTAG"},
    {"DATA", "ofxsgml", KRParseStatus_Accepted, nullptr},
    {"DATA", "xml", KRParseStatus_Invalid, "BADFORMAT"},
    {"DATA", nullptr, KRParseStatus_Invalid, "MISSINGTAG"},
    {"VERSION", "102", KRParseStatus_Accepted, nullptr},
    {"VERSION", "151", KRParseStatus_Accepted, nullptr},
    {"VERSION", "160", KRParseStatus_Warnings, "BADFORMAT"},
    {"VERSION", nullptr, KRParseStatus_Invalid, "MISSINGTAG"},
    {"SECURITY", "TYPE1", KRParseStatus_Accepted, nullptr},
    {"SECURITY", "anything", KRParseStatus_Accepted, nullptr},
    {"SECURITY", nullptr, KRParseStatus_Invalid, "MISSINGTAG"},
    {"ENCODING", "usascii", KRParseStatus_Accepted, nullptr},
    {"ENCODING", "utf-8", KRParseStatus_Accepted, nullptr},
    {"ENCODING", "x", KRParseStatus_Invalid, "BADFORMAT"},
    {"ENCODING", nullptr, KRParseStatus_Invalid, "MISSINGTAG"},
    {"CHARSET", "1252", KRParseStatus_Accepted, nullptr},
    {"CHARSET", "x", KRParseStatus_Warnings, "BADFORMAT"},
    {"CHARSET", nullptr, KRParseStatus_Invalid, "MISSINGTAG"},
    {"COMPRESSION", "none", KRParseStatus_Accepted, nullptr},
    {"COMPRESSION", "X", KRParseStatus_Invalid, "BADFORMAT"},
    {"COMPRESSION", nullptr, KRParseStatus_Invalid, "MISSINGTAG"},
    {"OLDFILEUID", "anything", KRParseStatus_Accepted, nullptr},
    {"OLDFILEUID", nullptr, KRParseStatus_Invalid, "MISSINGTAG"},
    {"NEWFILEUID", "anything", KRParseStatus_Accepted, nullptr},
    {"NEWFILEUID", nullptr, KRParseStatus_Invalid, "MISSINGTAG"},
};
INSTANTIATE_TEST_SUITE_P(Headers, HeaderBlockCase, ::testing::ValuesIn(kHeaderCases),
                         [](const auto& test) {
                           return std::string(test.param.name) + std::to_string(test.index);
                         });

TEST(KRFileOFX, WarnsOfEachDoubtfulHeaderUpToTheFirstThatIsAbsent) {
  KRFileRs file;
  file.SetHeader(KRHeaderTag_OFXHEADER, KRString("99"));
  file.SetHeader(KRHeaderTag_DATA, KRString("xml"));
  file.SetHeader(KRHeaderTag_SECURITY, KRString("NONE"));
  file.SetHeader(KRHeaderTag_COMPRESSION, KRString("X"));
  TakeWarnings();
  EXPECT_EQ(file.ValidateHeaders(), 0);
  const std::string type = " " + TagNumber(KRTag_OFXFILERS);
  EXPECT_EQ(TakeWarnings(),
            (Lines{"BADFORMAT <OFXHEADER>" + type + " \"99\"", "BADFORMAT \"XML\"",
                   "BADFORMAT <DATA>" + type + " \"XML\"", "MISSINGTAG <VERSION>" + type}));
  file.AddDefaultOFXHeaders(1);
  EXPECT_EQ(file.ValidateHeaders(), 0);
  EXPECT_EQ(TakeWarnings().size(), 5u) << "the walk goes on to COMPRESSION now";
}

TEST(KRFileOFX, MatchesHeaderNamesWithoutRegardToCase) {
  std::string text = With("", nullptr);
  text.replace(text.find("VERSION"), 7, "version");
  const Parsed<KRFileRs> file(text);
  EXPECT_EQ(file.Status(), KRParseStatus_Accepted);
  EXPECT_EQ(HeaderOf(*file, KRHeaderTag_VERSION), "102");
}

TEST(KRFile, KeepsHeadersByNameAndTheLastValueOfEach) {
  KRFile file;
  KRString name("Content-Type");
  EXPECT_EQ(file.HandleHeader(KRHeaderTag_None, KRString("a"), &name), KRParseStatus_Accepted);
  KRString other("X-Other");
  EXPECT_EQ(file.HandleHeader(KRHeaderTag_None, KRString("o"), &other), KRParseStatus_Accepted);
  KRString again("CONTENT-TYPE");
  EXPECT_EQ(file.HandleHeader(KRHeaderTag_None, KRString("b"), &again), KRParseStatus_Accepted);
  ASSERT_EQ(file.GetNumberMIMEHeaders(), 2);
  KRString wanted("content-type");
  const KRMIMEHeader* header = file.GetMIMEHeader(&wanted);
  ASSERT_NE(header, nullptr);
  EXPECT_EQ(header, file.GetMIMEHeader(u16{0}));
  EXPECT_EQ(header, file.GetMIMEHeader(0));
  EXPECT_EQ(file.GetMIMEHeader(-1), nullptr);
  EXPECT_EQ(Str(header->name), "CONTENT-TYPE");
  EXPECT_EQ(Str(header->value), "b");
  EXPECT_EQ(file.GetMIMEHeader(u16{2}), nullptr);
  KRString unknown("none");
  EXPECT_EQ(file.GetMIMEHeader(&unknown), nullptr);
  EXPECT_EQ(file.GetMIMEHeader(nullptr), nullptr);
}

TEST(KRFile, DropsWhiteValuesAndStopsAtAHeaderWithoutName) {
  KRFile file;
  KRString empty;
  EXPECT_EQ(file.HandleHeader(KRHeaderTag_DATA, KRString("  "), nullptr), KRParseStatus_Accepted);
  EXPECT_EQ(file.ValidateHeader(KRHeaderTag_DATA), 0);
  EXPECT_EQ(file.HandleHeader(KRHeaderTag_None, KRString("a"), nullptr), KRParseStatus_Fatal);
  EXPECT_EQ(file.HandleHeader(KRHeaderTag_None, KRString("a"), &empty), KRParseStatus_Fatal);
  EXPECT_EQ(file.HandleHeader(KRHeaderTag_DATA, KRString("a"), nullptr), KRParseStatus_Accepted);
  EXPECT_EQ(file.ValidateHeader(KRHeaderTag_DATA), 1);
  EXPECT_EQ(file.GetNumberMIMEHeaders(), 0);
}

TEST(KRFile, StopsTheParseAtAnUnknownHeaderOfTheSecondBlock) {
  const Parsed<KRFileRs> file("Content-Type: application/x-ofx\r\n\r\nX-Odd: 1\r\n" +
                              With("", nullptr));
  EXPECT_EQ(file.Status(), KRParseStatus_Fatal);
}

TEST(KRFile, WritesItsHeadersOneALine) {
  KRFile file;
  KRString name("X-One");
  file.HandleHeader(KRHeaderTag_None, KRString("1"), &name);
  name = KRString("X-Two");
  file.HandleHeader(KRHeaderTag_None, KRString("2"), &name);
  EXPECT_EQ(TextOf(file), "X-One: 1\r\nX-Two: 2\r\n");
}

TEST(KRFileOFX, WritesABlankLineInPlaceOfOtherHeaders) {
  KRFileRq file;
  KRString name("X-One");
  file.HandleHeader(KRHeaderTag_None, KRString("1"), &name);
  const std::string whole = "\r\n" + HeaderBlock();
  EXPECT_EQ(TextOf(file), whole);
  KRBuilder withoutBuffer;
  EXPECT_EQ(file.BuildHeaders(&withoutBuffer), KRBuildStatus_NullArgument);
  for (std::size_t nth = 1;; ++nth) {
    const FailingAllocation failing(nth);
    const Built built = Build(file);
    if (krofx::internal::AllocationFailure::Count() < nth) break;
    // Nothing is missing in silence.
    EXPECT_TRUE(built.status == KRBuildStatus_Fatal || built.text == whole) << nth << built;
  }
}

}  // namespace
