// Sign-on, profile and payroll sign-on in whole files.

#include <gtest/gtest.h>

#include "krofx/envelope/file_rq_rs.h"
#include "krofx/envelope/message_set.h"
#include "krofx/envelope/request_response.h"
#include "krofx/messages/banking/statements.h"
#include "krofx/messages/profile/profile.h"
#include "krofx/messages/signon/message_sets.h"
#include "krofx/messages/signon/signon.h"
#include "krofx/payroll/sign_on.h"
#include "support/ofx_text.h"

namespace krofx::testing {
namespace {

constexpr char kAnonymous[] = "<DTCLIENT>20260105<LANGUAGE>ENG<APPID>KROFX<APPVER>100";
constexpr char kPayrollSignOn[] =
    "<DTCLIENT>20260105120000<USERID>ada<USERPASS>secret<LANGUAGE>ENG<APPID>KROFX<APPVER>0100";

TEST(KRSignOnRq, FirstVersionKnowsNoOneTimePasswordAndNoCountry) {
  const std::string set =
      Aggregate("SONRQ", std::string(kAnonymous) + "<USERKEY>k1<ONETIMEPASS>442190<COUNTRY>CHE");
  const Parsed<KRFileRq> first(File(Aggregate("SIGNONMSGSRQV1", set)));
  EXPECT_EQ(first.Status(), KRParseStatus_Warnings);
  EXPECT_EQ(first.Warnings(),
            Lines({"INVALIDELEM <ONETIMEPASS> " + TagNumber(KRTag_ONETIMEPASS) + " \"********\"",
                   "INVALIDELEM <COUNTRY> " + TagNumber(KRTag_COUNTRY) + " \"CHE\""}));
  EXPECT_EQ(TextOf(*first).find("ONETIMEPASS"), std::string::npos);
  EXPECT_EQ(TextOf(*first).find("COUNTRY"), std::string::npos);

  const Parsed<KRFileRq> second(File(Aggregate("SIGNONMSGSRQV2", set)));
  EXPECT_EQ(second.Status(), KRParseStatus_Accepted);
  EXPECT_NE(TextOf(*second).find("<ONETIMEPASS>442190\n"), std::string::npos);
  EXPECT_NE(TextOf(*second).find("<COUNTRY>CHE\n"), std::string::npos);
}

TEST(SignOnExchanges, TravelInTheSignOnSet) {
  const Parsed<KRFileRq> request(File(Aggregate(
      "SIGNONMSGSRQV1",
      Aggregate("SONRQ", std::string(kAnonymous) + "<USERKEY>k1") +
          RequestWrapper("CHALLENGETRNRQ", Aggregate("CHALLENGERQ", "<USERID>ada")) +
          RequestWrapper("PINCHTRNRQ", Aggregate("PINCHRQ", "<USERID>ada<NEWUSERPASS>n3w")))));
  ASSERT_EQ(request.Status(), KRParseStatus_Accepted);
  EXPECT_NE(FindIn<KRChallengeRq>(request.Get()), nullptr);
  ASSERT_NE(FindIn<KRPinChangeRq>(request.Get()), nullptr);
  EXPECT_EQ(Str(FindIn<KRPinChangeRq>(request.Get())->GetNewUserPass()), "n3w");
  // The sign-on comes first, and the change of the password before the challenge.
  const std::string text = TextOf(*request);
  EXPECT_LT(text.find("<SONRQ>"), text.find("<PINCHTRNRQ>"));
  EXPECT_LT(text.find("<PINCHTRNRQ>"), text.find("<CHALLENGETRNRQ>"));
}

TEST(KRMessageSetList, WritesSecuritiesBehindMailAsAResponseDoes) {
  const std::string securities = Aggregate("SECLISTMSGSET", "");
  const std::string mail = Aggregate("EMAILMSGSET", "");
  EXPECT_EQ(TextOf(*Parsed<KRMessageSetList>(securities + mail)), InLines(mail + securities));

  KRFileRs file;
  auto* response = new KRResponse;
  for (const KRTagID tag : {KRTag_SECLISTMSGSRSV1, KRTag_EMAILMSGSRSV1}) {
    auto* set = new KRMessageSetRs;
    set->SetType(tag);
    response->SetMsgSetVersion(1);
    ASSERT_EQ(response->AppendMessageSet(set), 1);
  }
  ASSERT_EQ(file.AppendResponse(response), 1);
  const std::string text = TextOf(file);
  ASSERT_NE(text.find("<SECLISTMSGSRSV1>"), std::string::npos);
  EXPECT_LT(text.find("<EMAILMSGSRSV1>"), text.find("<SECLISTMSGSRSV1>"));
}

TEST(KRProfileRs, PassesItsVersionDownToTheCore) {
  const std::string list = Aggregate(
      "MSGSETLIST",
      Aggregate("SIGNONMSGSET",
                Aggregate("SIGNONMSGSETV2",
                          Aggregate("MSGSETCORE", "<VER>2<URL2>https://ofx.example/v2"))));
  const Parsed<KRFileRs> file(
      ResponseFile("PROFMSGSRS", ResponseWrapper("PROFTRNRS", Aggregate("PROFRS", list)), 2));
  ASSERT_EQ(file.Status(), KRParseStatus_Accepted);
  const auto* core = FindIn<KRMessageSetCore>(file.Get());
  ASSERT_NE(core, nullptr);
  EXPECT_EQ(core->GetMsgSetVersion(), 2);
  EXPECT_EQ(Str(core->GetURL2()), "https://ofx.example/v2");
}

TEST(PayrollSignOnRq, OpensARequest) {
  const Parsed<PayrollSignOnRq> parsed(kPayrollSignOn);
  auto signOn = std::make_unique<PayrollSignOnRq>();
  ASSERT_EQ(signOn->DeepCopyFrom(parsed.Get()), 1);
  signOn->SetAppIdString("books");
  signOn->SetAppVerString("12");
  const std::string text = TextOf(*signOn);
  KRMessageSetRq set;
  set.SetMsgSetVersion(1);
  set.SetType(KRTag_SIGNONMSGSRQV1);
  EXPECT_EQ(set.SetSignOnRq(signOn.release()), 1);
  EXPECT_EQ(set.AllRequiredPresent(), 1);
  EXPECT_EQ(TextOf(set), InLines(Aggregate("SONRQ", "\n" + text)));
  KRMessageSetRq copy;
  ASSERT_EQ(copy.DeepCopyFrom(&set), 1);
  EXPECT_EQ(TextOf(copy), TextOf(set));
}

}  // namespace
}  // namespace krofx::testing
