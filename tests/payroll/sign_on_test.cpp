// The sign-on of payroll requests: its two texts, its version and what makes it complete.

#include "krofx/payroll/sign_on.h"

#include <gtest/gtest.h>

#include "support/aggregate_table.h"
#include "support/ofx_text.h"

namespace krofx::testing {
namespace {

// DTCLIENT to APPVER of a sign-on, in the order of writing.
constexpr char kPlain[] =
    "<DTCLIENT>20260105120000<USERID>ada<USERPASS>secret<LANGUAGE>ENG<APPID>KROFX<APPVER>0100";

Lines Tags(const KRArrayOfTags& tags) {
  Lines lines = TableLines(tags);
  for (std::string& line : lines) line.resize(line.find(' '));
  return lines;
}

TEST(PayrollSignOnRq, KnowsTwoTagsThatStandForItsTexts) {
  PayrollSignOnRq signOn;
  EXPECT_EQ(signOn.GetType(), KRTag_SONRQ);
  KRArrayOfTags tags;
  signOn.GetArrayOfValidTags(tags);
  Lines valid = Tags(tags);
  std::sort(valid.begin(), valid.end());
  EXPECT_EQ(valid,
            (Lines{"APPID", "APPVER", "DTCLIENT", "FI", "GENUSERKEY", "LANGUAGE", "N.ONSERVICE",
                   "N.PAYROLL", "SESSCOOKIE", "USERID", "USERKEY", "USERPASS"}));
  signOn.GetArrayOfRequiredTags(tags);
  EXPECT_EQ(Tags(tags), (Lines{"DTCLIENT", "LANGUAGE", "N.PAYROLL", "N.ONSERVICE"}));
}

TEST(PayrollSignOnRq, WritesItsTextsBehindTheSignOn) {
  const Parsed<PayrollSignOnRq> signOn(kPlain);
  EXPECT_EQ(signOn.Status(), KRParseStatus_Accepted);
  EXPECT_EQ(TextOf(*signOn), InLines(kPlain));
  EXPECT_EQ(signOn->SetAppIdString("com.example.books"), 1);
  EXPECT_EQ(signOn->SetAppVerString("12.5 R3"), 1);
  EXPECT_EQ(signOn->ValidateTag(KRTag_N_PAYROLL), 1);
  EXPECT_EQ(signOn->ValidateTag(KRTag_N_ONSERVICE), 1);
  EXPECT_EQ(Str(signOn->GetAppVerString()), "12.5 R3");
  EXPECT_EQ(Str(signOn->GetAppIdString()), "com.example.books");
  EXPECT_EQ(TextOf(*signOn),
            InLines(std::string(kPlain) + "<APPVER>12.5 R3<APPID>com.example.books"));
  signOn->ClearAppId();
  signOn->ClearAppVer();
  EXPECT_EQ(TextOf(*signOn),
            InLines("<DTCLIENT>20260105120000<USERID>ada<USERPASS>secret<LANGUAGE>ENG"
                    "<APPVER>12.5 R3<APPID>com.example.books"));
}

TEST(PayrollSignOnRq, MissesItsVersionUnderATagThatIsNeverWritten) {
  const Parsed<PayrollSignOnRq> signOn(kPlain);
  signOn->SetAppIdString("books");
  EXPECT_EQ(signOn->AllRequiredPresent(), 0);
  EXPECT_EQ(signOn->GetFirstMissingRequiredTag(KRTag_None), KRTag_N_PAYROLL);
  signOn->SetAppVerString("12");
  EXPECT_EQ(signOn->AllRequiredPresent(), 1);
  signOn->ClearAppIdString();
  EXPECT_EQ(signOn->AllRequiredPresent(), 0);
  EXPECT_EQ(signOn->GetFirstMissingRequiredTag(KRTag_None), KRTag_N_ONSERVICE);
}

TEST(PayrollSignOnRq, NeedsAUserWithAPasswordOrAKey) {
  const Parsed<PayrollSignOnRq> signOn("<DTCLIENT>20260105120000<USERID>ada<LANGUAGE>ENG");
  signOn->SetAppIdString("books");
  signOn->SetAppVerString("12");
  EXPECT_EQ(signOn->AllRequiredPresent(), 0);
  signOn->SetUserKey(KRString("key"));
  EXPECT_EQ(signOn->AllRequiredPresent(), 1);
}

TEST(PayrollSignOnRq, IsAlwaysOfTheFirstVersion) {
  PayrollSignOnRq signOn;
  EXPECT_EQ(signOn.GetMsgSetVersion(), 1);
  signOn.SetMsgSetVersion(2);
  EXPECT_EQ(signOn.GetMsgSetVersion(), 1);
}

TEST(PayrollSignOnRq, DoesNotReadTheTagsThatStandForItsTexts) {
  for (const char* text : {"<N.PAYROLL>1", "<N.ONSERVICE>1"}) {
    const Parsed<PayrollSignOnRq> signOn(text);
    EXPECT_EQ(signOn.Status(), KRParseStatus_Invalid);
    EXPECT_EQ(signOn->AnyValidPresent(), 0);
  }
}

TEST(PayrollSignOnRq, IsCopiedWithItsTexts) {
  const Parsed<PayrollSignOnRq> signOn(kPlain);
  signOn->SetAppIdString("books");
  signOn->SetAppVerString("12");
  PayrollSignOnRq copy;
  ASSERT_EQ(copy.DeepCopyFrom(signOn.Get()), 1);
  EXPECT_EQ(TextOf(copy), TextOf(*signOn));
}

}  // namespace
}  // namespace krofx::testing
