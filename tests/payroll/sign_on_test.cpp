// The sign-on of payroll requests: its two texts, its version and what makes it complete.

#include "krofx/payroll/sign_on.h"

#include <gtest/gtest.h>

#include "support/aggregate_table.h"
#include "support/ofx_text.h"

namespace krofx::testing {
namespace {

// A sign-on without the elements that name the application, in the order of writing.
constexpr char kPlain[] = "<DTCLIENT>20260105120000<USERID>ada<USERPASS>secret<LANGUAGE>ENG";

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
  // Elements of an ordinary sign-on that a host sets are written in their ordinary places.
  EXPECT_EQ(signOn->SetAppId(KRString("KROFX")), 1);
  EXPECT_EQ(signOn->SetAppVer(u16{100}), 1);
  EXPECT_EQ(TextOf(*signOn),
            InLines(std::string(kPlain) + "<APPID>KROFX<APPVER>0100"
                                          "<APPVER>12.5 R3<APPID>com.example.books"));
}

TEST(PayrollSignOnRq, ReadsBackWhatItWroteOfTheApplication) {
  const std::string text = std::string(kPlain) + "<APPVER>5.0 R2<APPID>com.example.books";
  const Parsed<PayrollSignOnRq> signOn(text);
  EXPECT_EQ(signOn.Status(), KRParseStatus_Accepted);
  EXPECT_EQ(signOn->AllRequiredPresent(), 1);
  EXPECT_EQ(Str(signOn->GetAppVerString()), "5.0 R2");
  EXPECT_EQ(Str(signOn->GetAppIdString()), "com.example.books");
  EXPECT_EQ(signOn->ValidateTag(KRTag_N_PAYROLL), 1);
  EXPECT_EQ(signOn->ValidateTag(KRTag_N_ONSERVICE), 1);
  EXPECT_EQ(signOn->ValidateTag(KRTag_APPVER), 0);
  EXPECT_EQ(TextOf(*signOn), InLines(text));
}

TEST(PayrollSignOnRq, PassesOverValuesThatItCannotRead) {
  const Parsed<PayrollSignOnRq> signOn("<APPVER>12.3.4<DTCLIENT>soon<GENUSERKEY>maybe<USERID>ada");
  EXPECT_EQ(signOn.Status(), KRParseStatus_Warnings);
  EXPECT_EQ(signOn.Warnings(), (Lines{"BADFORMAT " + TagNumber(KRTag_DTCLIENT) + " \"soon\"",
                                      "BADFORMAT " + TagNumber(KRTag_GENUSERKEY) + " \"maybe\""}));
  EXPECT_EQ(signOn->ValidateTag(KRTag_DTCLIENT), 0);
  EXPECT_EQ(TextOf(*signOn), InLines("<USERID>ada<APPVER>12.3.4"));
}

TEST(PayrollSignOnRq, SetsWhatItInheritsButDoesNotList) {
  PayrollSignOnRq signOn;
  EXPECT_EQ(signOn.SetCountry(KRString("USA")), 0);
  EXPECT_EQ(Str(signOn.GetCountry()), "USA");
  EXPECT_EQ(signOn.SetCountry(KRString()), 3);
  EXPECT_EQ(signOn.GetCountry().IsEmpty(), 1);
  EXPECT_EQ(signOn.SetOneTimePass(KRString()), 3);
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
