// Large numbers of headers: the work grows linearly with the text, each header is kept, and
// exhausted memory is distinguished from a bad file.

#include <gtest/gtest.h>

#include <string>

#include "krofx/envelope/file_rq_rs.h"
#include "krofx/envelope/internal/header_index.h"
#include "support/failing_allocation.h"
#include "support/ofx_text.h"

namespace krofx::testing {
namespace {

std::string Headers(int count) {
  std::string text;
  for (int i = 0; i < count; ++i) {
    text += "X-Header-" + std::to_string(i) + ": value " + std::to_string(i) + "\r\n";
  }
  return text + "\r\n" + File(SignOnResponseSet());
}

// The number of names compared while reading `count` different headers.
std::uint64_t ComparisonsFor(int count) {
  const std::uint64_t before = internal::HeaderIndex::Comparisons();
  const Parsed<KRFileRs> file(Headers(count));
  EXPECT_EQ(file.Status(), KRParseStatus_Warnings) << "of names that OFX does not have";
  EXPECT_EQ(file->GetNumberMIMEHeaders(), count);
  return internal::HeaderIndex::Comparisons() - before;
}

TEST(ManyHeaders, AreComparedAsOftenAsThereAreHeaders) {
  for (const int count : {5000, 10000, 20000}) {
    EXPECT_LT(ComparisonsFor(count), static_cast<std::uint64_t>(count) * 4) << count;
  }
}

KRMIMEHeader* NewHeader(const std::string& name) {
  auto* const header = new KRMIMEHeader;
  header->name = KRString(name.c_str());
  return header;
}

TEST(ManyHeaders, AreFoundUpToTheFirstGapOfTheirList) {
  KRDynamicArrayMIMEHeader headers(1, 1);
  for (u16 i = 0; i < 40; ++i) {
    if (i != 30) headers.Set(i, NewHeader("X-" + std::to_string(i)));
  }
  internal::HeaderIndex index;
  EXPECT_EQ(index.Find(headers, KRString("X-29")), headers.Get(29));
  EXPECT_EQ(index.Find(headers, KRString("X-31")), nullptr);
}

TEST(ManyHeaders, AreNotFoundInAListThatHasBecomeShorter) {
  KRDynamicArrayMIMEHeader headers(1, 1);
  for (u16 i = 0; i < 40; ++i) headers.Set(i, NewHeader("X-" + std::to_string(i)));
  internal::HeaderIndex index;
  EXPECT_EQ(index.Find(headers, KRString("X-20")), headers.Get(20));
  headers.DeleteAll();
  EXPECT_EQ(index.Find(headers, KRString("X-20")), nullptr);
  headers.Set(0, NewHeader("X-20"));
  EXPECT_EQ(index.Find(headers, KRString("X-20")), headers.Get(0));
}

TEST(ManyHeaders, AreFoundByNameWithoutRegardToCase) {
  const Parsed<KRFileRs> file(Headers(1000));
  for (const int i : {0, 1, 15, 16, 17, 500, 999}) {
    KRString name(("x-HEADER-" + std::to_string(i)).c_str());
    const KRMIMEHeader* header = file->GetMIMEHeader(&name);
    ASSERT_NE(header, nullptr) << i;
    EXPECT_EQ(Str(header->value), "value " + std::to_string(i));
  }
  KRString unknown("x-header-1000");
  EXPECT_EQ(file->GetMIMEHeader(&unknown), nullptr);
}

TEST(ManyHeaders, KeepTheLastValueOfAName) {
  KRFileRs file;
  for (int round = 0; round < 3; ++round) {
    for (int i = 0; i < 100; ++i) {
      KRString name(((round == 1 ? "NAME-" : "name-") + std::to_string(i)).c_str());
      EXPECT_EQ(file.HandleHeader(KRHeaderTag_None, KRString(std::to_string(round).c_str()), &name),
                KRParseStatus_Accepted);
    }
  }
  EXPECT_EQ(file.GetNumberMIMEHeaders(), 100);
  EXPECT_EQ(Str(file.GetMIMEHeader(u16{99})->value), "2");
}

TEST(ManyHeaders, AreFoundInCopies) {
  const Parsed<KRFileRs> file(Headers(100));
  KRString name("X-Header-77");
  KRFileRs shallow(*file);
  ASSERT_NE(shallow.GetMIMEHeader(&name), nullptr);
  KRFileRs deep;
  KRString other("Other");
  deep.HandleHeader(KRHeaderTag_None, KRString("1"), &other);
  ASSERT_EQ(deep.DeepCopyFrom(file.Get()), 1);
  EXPECT_NE(deep.GetMIMEHeader(&name), nullptr);
  EXPECT_EQ(deep.GetMIMEHeader(&other), nullptr);
}

TEST(ManyHeaders, AreFoundWithoutMemoryForTheirIndex) {
  KRFileRs file;
  for (int i = 0; i < 40; ++i) {
    KRString name(("name-" + std::to_string(i)).c_str());
    file.HandleHeader(KRHeaderTag_None, KRString("1"), &name);
  }
  KRFileRs copy(file);
  KRString name("NAME-39");
  const FailingAllocation failure(1, true);
  EXPECT_NE(copy.GetMIMEHeader(&name), nullptr);
}

TEST(ManyHeaders, AreRefusedBeyondWhatAFileHolds) {
  KRFileRs file;
  for (u32 i = 0; i < 65537; ++i) {
    KRString name(("n" + std::to_string(i)).c_str());
    const KRParseStatus status = file.HandleHeader(KRHeaderTag_None, KRString("1"), &name);
    EXPECT_EQ(status, i < 65535 ? KRParseStatus_Accepted : KRParseStatus_Fatal) << i;
  }
  EXPECT_EQ(file.GetNumberMIMEHeaders(), 65535);
  KRString last("N65534");
  EXPECT_NE(file.GetMIMEHeader(&last), nullptr);
}

// Whichever allocation fails, alone or with all later ones, the parse never reports a bad file.
TEST(Headers, WithoutMemoryEndAParseAsFatal) {
  const std::string text = BankStatementFile(
      "<STMTTRN><TRNTYPE>DEBIT<DTPOSTED>20260115"
      "<TRNAMT>-5.25<FITID>1</STMTTRN>");
  for (const bool andAllLater : {false, true}) {
    for (std::size_t nth = 1;; ++nth) {
      ASSERT_LT(nth, 5000u);
      KRFileRs file;
      TextBuffer buffer(text);
      KRSimpleParser parser;
      KRParseStatus status;
      {
        const FailingAllocation failure(nth, andAllLater);
        status = parser.Parse(buffer.Get(), &file, 0);
      }
      KRSetFireAlarm(KRFireAlarm_None);
      if (status == KRParseStatus_Accepted) break;
      ASSERT_EQ(status, KRParseStatus_Fatal) << "allocation " << nth << " " << andAllLater;
    }
  }
}

TEST(Headers, RaiseTheAlarmWithoutMemoryForTheirBlock) {
  for (std::size_t nth = 1; nth < 4; ++nth) {
    KRFileRs file;
    KRString name("OFXHEADER");
    const KRString value("100");
    KRParseStatus status;
    {
      const FailingAllocation failure(nth);
      status = file.HandleHeader(KRHeaderTag_OFXHEADER, value, &name);
    }
    EXPECT_EQ(file.GetNumberMIMEHeaders(), 0) << "no header of OFX's is a MIME header";
    const KRString* held = file.GetHeader(KRHeaderTag_OFXHEADER);
    if (held == nullptr || Str(*held) != "100") {
      EXPECT_NE(KRGetFireAlarm(), KRFireAlarm_None) << nth;
    }
    EXPECT_TRUE(status == KRParseStatus_Accepted || status == KRParseStatus_Fatal) << status;
    KRSetFireAlarm(KRFireAlarm_None);
  }
}

}  // namespace
}  // namespace krofx::testing
