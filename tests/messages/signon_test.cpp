// The sign-on aggregates: their tables, and what makes a sign-on complete.

#include "krofx/messages/signon/signon.h"

#include <gtest/gtest.h>

#include "krofx/messages/signon/status.h"
#include "support/aggregate_table.h"
#include "support/ofx_text.h"

namespace krofx::testing {
namespace {

constexpr char kUserInfo[] = R"(
    USERID      text32  V2+
    FIRSTNAME   text32
    MIDDLENAME  text32
    LASTNAME    text32
    ADDR1       text32
    ADDR2       text32
    ADDR3       text32
    CITY        text32
    STATE       text5
    POSTALCODE  text11
    COUNTRY     text3
    DAYPHONE    text32
    EVEPHONE    text32
    EMAIL       text80
)";

TEST(SignOnTables, SignOnRequest) {
  ExpectTable<KRSignOnRq>("SONRQ", R"(
    DTCLIENT     date      required
    USERID       text32
    USERPASS     text171
    ONETIMEPASS  text32    V2+
    USERKEY      text64
    GENUSERKEY   boolean
    LANGUAGE     language  required
    COUNTRY      text3     V2+
    FI           child
    SESSCOOKIE   text1000
    APPID        text5     required
    APPVER       u16       required  pad4
  )");
}

TEST(SignOnTables, Institution) {
  ExpectTable<KRFI>("FI", R"(
    ORG  text32  required
    FID  text32
  )");
}

TEST(SignOnTables, SignOnResponse) {
  ExpectTable<KRSignOnRs>("SONRS", R"(
    STATUS          child     required
    DTSERVER        date      required
    USERKEY         text64
    TSKEYEXPIRE     date
    LANGUAGE        language  required
    COUNTRY         text3     V2+
    DTPROFUP        date
    DTACCTUP        date
    FI              child
    SESSCOOKIE      text1000
    NORV.MKTCOOKIE  text80
    NORV.BID        u32
    NORV.USERID     text32
  )");
}

TEST(SignOnTables, Challenge) {
  ExpectTable<KRChallengeRq>("CHALLENGERQ", R"(
    USERID    text32  required
    FICERTID  text64
  )");
  ExpectTable<KRChallengeRs>("CHALLENGERS", R"(
    USERID    text32  required
    NONCE     text16  required
    FICERTID  text64  required
  )");
}

TEST(SignOnTables, PinChange) {
  ExpectTable<KRPinChangeRq>("PINCHRQ", R"(
    USERID       text32   required
    NEWUSERPASS  text171  required
  )");
  ExpectTable<KRPinChangeRs>("PINCHRS", R"(
    USERID     text32  required
    DTCHANGED  date
  )");
}

TEST(SignOnTables, ChangeOfUserInformation) {
  ExpectTable<KRChangeUserInfoBase>("", kUserInfo);
  ExpectTable<KRChangeUserInfoRq>("CHGUSERINFORQ", kUserInfo);
  ExpectTable<KRChangeUserInfoRs>("CHGUSERINFORS",
                                  std::string(kUserInfo) + "DTINFOCHG date required");
}

TEST(SignOnTables, Currency) {
  ExpectTable<KRCurrency>("", R"(
    CURRATE  amount  required
    CURSYM   text3   required
  )");
}

// The four required elements of a sign-on request, without the identity of the user.
constexpr char kAnonymous[] = "<DTCLIENT>20260105<LANGUAGE>ENG<APPID>KROFX<APPVER>100";

u16 IsComplete(const std::string& identity) {
  const Parsed<KRSignOnRq> parsed(kAnonymous + identity);
  EXPECT_EQ(parsed.Status(), KRParseStatus_Accepted);
  return parsed->AllRequiredPresent();
}

TEST(KRSignOnRq, NeedsUserAndPasswordOrKey) {
  EXPECT_EQ(IsComplete(""), 0);
  EXPECT_EQ(IsComplete("<USERID>ada"), 0);
  EXPECT_EQ(IsComplete("<USERPASS>secret"), 0);
  EXPECT_EQ(IsComplete("<USERID>ada<USERPASS>secret"), 1);
  EXPECT_EQ(IsComplete("<USERID>ada<USERKEY>k1"), 1);
  EXPECT_EQ(IsComplete("<USERID>ada<USERPASS>secret<USERKEY>k1"), 1);
}

TEST(KRSignOnRq, IsCompleteWithKeyAndNoUser) { EXPECT_EQ(IsComplete("<USERKEY>k1"), 1); }

TEST(KRSignOnRq, IsIncompleteWithUserOnlyThoughNoRequiredRowSaysSo) {
  const Parsed<KRSignOnRq> parsed(std::string(kAnonymous) + "<USERID>ada");
  EXPECT_EQ(parsed->AllRequiredPresent(), 0);
  EXPECT_EQ(parsed->GetFirstMissingRequiredTag(KRTag_None), KRTag_None);
}

TEST(KRSignOnRq, KeyDoesNotExcuseRequiredRows) {
  const Parsed<KRSignOnRq> parsed("<DTCLIENT>20260105<USERKEY>k1<LANGUAGE>ENG<APPID>KROFX");
  EXPECT_EQ(parsed->AllRequiredPresent(), 0);
  EXPECT_EQ(parsed->GetFirstMissingRequiredTag(KRTag_None), KRTag_APPVER);
}

TEST(KRSignOnRq, WritesApplicationVersionInFourDigits) {
  auto signOn = Make<KRSignOnRq>();
  EXPECT_EQ(signOn->SetAppVer(static_cast<u16>(5)), 1);
  EXPECT_EQ(TextOf(*signOn), "<APPVER>0005\n");
  EXPECT_EQ(signOn->SetAppVer(static_cast<u16>(800)), 1);
  EXPECT_EQ(TextOf(*signOn), "<APPVER>0800\n");
  EXPECT_EQ(signOn->SetAppVer(static_cast<u16>(12345)), 1);
  EXPECT_EQ(TextOf(*signOn), "<APPVER>12345\n");
}

TEST(KRSignOnRq, KeepsOverLongPasswordAndSaysSo) {
  auto signOn = Make<KRSignOnRq>();
  TakeWarnings();
  EXPECT_EQ(signOn->SetUserPass(KRString(Letters(171).c_str())), 1);
  EXPECT_EQ(TakeWarnings(), Lines());
  EXPECT_EQ(signOn->SetUserPass(KRString(Letters(172).c_str())), 1);
  EXPECT_EQ(TakeWarnings(),
            Lines({"TOOLONG " + TagNumber(KRTag_USERPASS) + " \"Password too long\""}));
  EXPECT_EQ(signOn->ValidateTag(KRTag_USERPASS), 1);
  EXPECT_EQ(Str(signOn->GetUserPass()), Letters(172));
}

TEST(KRSignOnRq, WarningOfOverLongPasswordNamesTheObject) {
  auto signOn = Make<KRSignOnRq>();
  TakeWarnings();
  signOn->SetUserPass(KRString(Letters(172).c_str()));
  const KRParseLogger* log = KRParseLogger::TheKRParseLogger();
  ASSERT_EQ(log->Entries(), 1);
  EXPECT_EQ(log->Get(0)->m_object, signOn.get());
  TakeWarnings();
}

TEST(KRSignOnRq, ReadsAnOverLongPasswordAsItIsSet) {
  const Parsed<KRSignOnRq> parsed("<USERID>ada<USERPASS>" + Letters(172));
  EXPECT_EQ(parsed.Status(), KRParseStatus_Warnings);
  EXPECT_EQ(parsed.Warnings(),
            Lines({"TOOLONG " + TagNumber(KRTag_USERPASS) + " \"Password too long\""}));
  EXPECT_EQ(Str(parsed->GetUserPass()), Letters(172));
  EXPECT_EQ(parsed->ValidateTag(KRTag_USERPASS), 1);
}

TEST(KRSignOnRq, PasswordIsRefusedBeforeThereIsAVersion) {
  KRSignOnRq signOn;
  EXPECT_EQ(signOn.SetUserPass(KRString("secret")), 0);
  EXPECT_EQ(signOn.ValidateTag(KRTag_USERPASS), 0);
}

TEST(KRSignOnRq, PasswordWithoutMemoryLeavesTheTagAbsent) {
  auto signOn = Make<KRSignOnRq>();
  const KRString password("secret");
  {
    FailingAllocation failure(1, true);
    EXPECT_EQ(signOn->SetUserPass(password), 3);
  }
  KRSetFireAlarm(KRFireAlarm_None);
  EXPECT_EQ(signOn->ValidateTag(KRTag_USERPASS), 0);
}

TEST(KRUserPassword, TakesItsLimitAsTold) {
  KRUserPassword password;
  password = KRString(Letters(33).c_str());
  EXPECT_EQ(password.ExceedsSpecLength(), 0);
  password.SetSpecLength32();
  EXPECT_EQ(password.ExceedsSpecLength(), 1);
  EXPECT_EQ(Str(password), Letters(33));
  password.SetSpecLength171();
  EXPECT_EQ(password.ExceedsSpecLength(), 0);
}

TEST(KRSignOnRq, ValuesOfTheSecondVersionAreHeldButNotWrittenInTheFirst) {
  auto signOn = Make<KRSignOnRq>(1);
  EXPECT_EQ(signOn->SetOneTimePass(KRString("442190")), 0);
  EXPECT_EQ(signOn->SetCountry(KRString("CHE")), 0);
  EXPECT_EQ(Str(signOn->GetOneTimePass()), "442190");
  EXPECT_EQ(TextOf(*signOn), "");
}

TEST(KRSignOnRq, HasAccessorsFromTextAndFromValues) {
  auto signOn = Make<KRSignOnRq>(2);
  KRDateTime date;
  ASSERT_EQ(date.ConvertStringToKRDateTime(KRString("20260105")), 1);
  EXPECT_EQ(signOn->SetDtClient(date), 1);
  EXPECT_EQ(signOn->SetDtClient(KRString("20260106")), 1);
  EXPECT_EQ(signOn->SetUserId(KRString("ada")), 1);
  EXPECT_EQ(signOn->SetUserKey(KRString("k1")), 1);
  EXPECT_EQ(signOn->SetGenUserKey(static_cast<u16>(1)), 1);
  EXPECT_EQ(signOn->SetGenUserKey(KRString("N")), 1);
  EXPECT_EQ(signOn->SetLanguage(KRLanguage(KRString("FRA"))), 1);
  EXPECT_EQ(signOn->SetLanguage(KRString("ENG")), 1);
  EXPECT_EQ(signOn->SetLanguage(KRLanguage()), 0) << "no text";
  EXPECT_EQ(signOn->SetLanguage(KRLanguage(KRString("ENGL"))), 0) << "too long";
  EXPECT_EQ(signOn->SetLanguage(KRString("")), 3);
  EXPECT_EQ(signOn->SetSessCookie(KRString("c")), 1);
  EXPECT_EQ(signOn->SetAppId(KRString("KROFX")), 1);
  EXPECT_EQ(signOn->SetAppVer(KRString("0010")), 1);
  EXPECT_EQ(signOn->GetDtClient().GetDay(), 6);
  EXPECT_EQ(signOn->GetGenUserKey(), 0);
  EXPECT_EQ(Str(signOn->GetLanguage().GetString()), "ENG");
  EXPECT_EQ(signOn->GetAppVer(), 10);
  EXPECT_EQ(TextOf(*signOn).substr(0, 19), "<DTCLIENT>20260106\n");
  EXPECT_EQ(signOn->ClearUserKey(), 1);
  EXPECT_EQ(signOn->ClearDtClient(), 1);
  EXPECT_EQ(TextOf(*signOn), InLines("<USERID>ada<GENUSERKEY>N<LANGUAGE>ENG<SESSCOOKIE>c"
                                     "<APPID>KROFX<APPVER>0010"));
}

TEST(KRSignOnRq, SettersRefuseWhatIsNoValue) {
  auto signOn = Make<KRSignOnRq>();
  EXPECT_EQ(signOn->SetDtClient(KRString("soon")), 0);
  EXPECT_EQ(signOn->SetAppVer(KRString("1.5")), 0);
  EXPECT_EQ(signOn->SetGenUserKey(KRString("yes")), 0);
  EXPECT_EQ(signOn->SetUserId(KRString("")), 3);
  EXPECT_EQ(signOn->SetUserPass(KRString("")), 1);
  EXPECT_EQ(signOn->ValidateTag(KRTag_DTCLIENT), 0);
  EXPECT_EQ(signOn->ValidateTag(KRTag_APPVER), 0);
  EXPECT_EQ(signOn->ValidateTag(KRTag_GENUSERKEY), 0);
  EXPECT_EQ(signOn->ValidateTag(KRTag_USERID), 0);
  EXPECT_EQ(signOn->ValidateTag(KRTag_USERPASS), 1);
  TakeWarnings();
}

TEST(KRSignOnRq, LastInstitutionWins) {
  const Parsed<KRSignOnRq> parsed(Aggregate("FI", "<ORG>FIRST<FID>1") +
                                  Aggregate("FI", "<ORG>SECOND"));
  EXPECT_EQ(parsed.Status(), KRParseStatus_Warnings);
  EXPECT_EQ(parsed.Warnings(), Lines({"EXTRAAGG " + TagNumber(KRTag_FI)}));
  ASSERT_NE(parsed->GetFI(), nullptr);
  EXPECT_EQ(Str(parsed->GetFI()->GetOrg()), "SECOND");
  EXPECT_EQ(TextOf(*parsed), "<FI>\n<ORG>SECOND\n</FI>\n");
}

TEST(KRSignOnRq, SetInstitutionTakesItAndDeletesTheOneBefore) {
  auto signOn = Make<KRSignOnRq>();
  EXPECT_EQ(signOn->SetFI(Make<KRFI>().release()), 1);
  KRFI* second = Make<KRFI>().release();
  second->SetOrg(KRString("ORG"));
  EXPECT_EQ(signOn->SetFI(second), 1);
  EXPECT_EQ(signOn->GetFI(), second);
  EXPECT_EQ(TextOf(*signOn), "<FI>\n<ORG>ORG\n</FI>\n");
  // Setting null leaves the tag present without a child.
  EXPECT_EQ(signOn->SetFI(nullptr), 1);
  EXPECT_EQ(signOn->GetFI(), nullptr);
  EXPECT_EQ(signOn->ValidateTag(KRTag_FI), 1);
}

TEST(KRSignOnRs, AnswersUsdAsLanguageUntilThereIsOne) {
  const auto signOn = Make<KRSignOnRs>();
  EXPECT_EQ(Str(signOn->GetLanguage().GetString()), "USD");
  EXPECT_EQ(signOn->ValidateTag(KRTag_LANGUAGE), 0);
  EXPECT_EQ(TextOf(*signOn), "");
  const Parsed<KRSignOnRs> parsed(Aggregate("STATUS", "<CODE>0") + "<DTSERVER>20260105");
  EXPECT_EQ(Str(parsed->GetLanguage().GetString()), "USD");
  EXPECT_EQ(parsed->GetFirstMissingRequiredTag(KRTag_None), KRTag_LANGUAGE);
}

TEST(KRSignOnRs, LastStatusWins) {
  const Parsed<KRSignOnRs> parsed(Aggregate("STATUS", "<CODE>15500<SEVERITY>ERROR") + GoodStatus());
  EXPECT_EQ(parsed.Warnings(), Lines({"EXTRAAGG " + TagNumber(KRTag_STATUS)}));
  ASSERT_NE(parsed->GetStatus(), nullptr);
  EXPECT_EQ(parsed->GetStatus()->GetCode(), 0);
}

TEST(KRSignOnRs, ReadsEveryMemberOfAResponse) {
  const Parsed<KRSignOnRs> parsed(
      GoodStatus() +
          "<DTSERVER>20260105120000<USERKEY>k2<TSKEYEXPIRE>20260106<LANGUAGE>FRA<COUNTRY>CHE"
          "<DTPROFUP>20250101<DTACCTUP>20250102" +
          Aggregate("FI", "<ORG>HARBORFED") +
          "<SESSCOOKIE>s<NORV.MKTCOOKIE>m<NORV.BID>4000000000<NORV.USERID>u",
      2);
  ASSERT_EQ(parsed.Status(), KRParseStatus_Accepted);
  EXPECT_EQ(parsed->AllRequiredPresent(), 1);
  EXPECT_EQ(parsed->GetDtServer().GetHour(), 12);
  EXPECT_EQ(Str(parsed->GetUserKey()), "k2");
  EXPECT_EQ(parsed->GetTsKeyExpire().GetDay(), 6);
  EXPECT_EQ(Str(parsed->GetLanguage().GetString()), "FRA");
  EXPECT_EQ(Str(parsed->GetCountry()), "CHE");
  EXPECT_EQ(parsed->GetDtProfUp().GetDay(), 1);
  EXPECT_EQ(parsed->GetDtAcctUp().GetDay(), 2);
  EXPECT_EQ(Str(parsed->GetFI()->GetOrg()), "HARBORFED");
  EXPECT_EQ(Str(parsed->GetSessCookie()), "s");
  EXPECT_EQ(Str(parsed->GetNorvMktCookie()), "m");
  EXPECT_EQ(parsed->GetNorvBid(), 4000000000u);
  EXPECT_EQ(Str(parsed->GetNorvUserId()), "u");
}

TEST(KRChangeUserInfo, AsksForNothingInTheRequestAndForTheDateInTheResponse) {
  EXPECT_EQ(Make<KRChangeUserInfoRq>()->AllRequiredPresent(), 1);
  EXPECT_EQ(Make<KRChangeUserInfoRs>()->AllRequiredPresent(), 0);
  const Parsed<KRChangeUserInfoRs> parsed("<DTINFOCHG>20260105");
  EXPECT_EQ(parsed->AllRequiredPresent(), 1);
  EXPECT_EQ(parsed->GetDateTimeInfoChange().GetMonth(), 1);
}

TEST(KRChangeUserInfo, CopiesNothingOfAnotherClass) {
  auto request = Make<KRChangeUserInfoRq>();
  KRPinChangeRq other;
  EXPECT_EQ(static_cast<KRTransBase*>(request.get())->DeepCopyFrom(&other), 0);
}

TEST(KRChallengeRs, NonceHasSixteenCharacters) {
  auto challenge = Make<KRChallengeRs>();
  TakeWarnings();
  EXPECT_EQ(challenge->SetNonce(KRString(Letters(16).c_str())), 1);
  EXPECT_EQ(TakeWarnings(), Lines());
  EXPECT_EQ(challenge->SetNonce(KRString(Letters(17).c_str())), 1);
  EXPECT_EQ(TakeWarnings().size(), 1u);
  EXPECT_EQ(Str(challenge->GetNonce()), Letters(17));
}

}  // namespace
}  // namespace krofx::testing
