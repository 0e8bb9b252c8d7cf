// The profile aggregates: their tables, the fixed order of message sets, and the versions that one
// set may hold side by side.

#include "krofx/messages/profile/profile.h"

#include <gtest/gtest.h>

#include "krofx/messages/banking/statements.h"
#include "krofx/messages/signon/message_sets.h"
#include "support/aggregate_table.h"
#include "support/ofx_text.h"

namespace krofx::testing {
namespace {

TEST(ProfileTables, Request) {
  ExpectTable<KRProfileRq>("PROFRQ", R"(
    CLIENTROUTING  word=MSGSET  required
    DTPROFUP       date         required
  )");
}

TEST(ProfileTables, Response) {
  ExpectTable<KRProfileRs>("PROFRS", R"(
    MSGSETLIST      child     required
    SIGNONINFOLIST  child     required
    DTPROFUP        date      required
    FINAME          text32    required
    ADDR1           text32    required
    ADDR2           text32
    ADDR3           text32
    CITY            text32    required
    STATE           text5     required
    POSTALCODE      text11    required
    COUNTRY         text3     required
    CSPHONE         text32
    TSPHONE         text32
    FAXPHONE        text32
    URL             text255   V1
    URL2            text1024  V2+
    URLGETREDIRECT  boolean   V2+
    EMAIL           text80
    NORV.RTN        repeated=211370545,211370558
    NORV.BROKERID   text22
    NORV.NPC        boolean
    NORV.JAC        boolean
  )");
}

TEST(ProfileTables, MessageSetList) {
  ExpectTable<KRMessageSetList>("MSGSETLIST", R"(
    SIGNONMSGSET      children  required
    SIGNUPMSGSET      children
    BANKMSGSET        children
    CREDITCARDMSGSET  children
    INVSTMTMSGSET     children
    INTERXFERMSGSET   children
    WIREXFERMSGSET    children
    BILLPAYMSGSET     children
    EMAILMSGSET       children
    SECLISTMSGSET     children
    PROFMSGSET        children  required
  )");
}

TEST(ProfileTables, MessageSetVersionsOfTheProfileAndTheSignOn) {
  constexpr char kCoreOnly[] = "MSGSETCORE child required";
  ExpectTable<KRMessageSetVersion>("", kCoreOnly);
  ExpectTable<KRProfileMessageSetV1>("PROFMSGSETV1", kCoreOnly);
  ExpectTable<KRProfileMessageSetV2>("PROFMSGSETV2", kCoreOnly, 2);
  ExpectTable<KRSignOnMessageSetV1>("SIGNONMSGSETV1", kCoreOnly);
  ExpectTable<KRSignOnMessageSetV2>("SIGNONMSGSETV2", kCoreOnly, 2);
}

TEST(ProfileTables, MessageSetCore) {
  ExpectTable<KRMessageSetCore>("MSGSETCORE", R"(
    VER               s32               required
    URL               text255           required  V1
    URL2              text1024          required  V2+
    OFXSEC            word=TYPE1        required
    TRANSPSEC         boolean           required
    SIGNONREALM       text32            required
    LANGUAGE          repeated=ENG,FRA  required
    COUNTRY           repeated=USA,CHE  V2+
    SYNCMODE          word=LITE         required
    RESPFILEER        boolean           required
    SPNAME            text32
    NORV.TIMEOUT      u16
    NORV.MSSCERTID    repeated=one,two
    NORV.TYPE1CERTID  repeated=three
  )");
}

TEST(ProfileTables, SignOnRules) {
  ExpectTable<KRSignOnInfoList>("SIGNONINFOLIST", "SIGNONINFO children");
  ExpectTable<KRSignOnInfo>("SIGNONINFO", R"(
    SIGNONREALM  text32                required
    MIN          u16                   required
    MAX          u16                   required
    CHARTYPE     word=ALPHAANDNUMERIC  required
    CASESEN      boolean               required
    SPECIAL      boolean               required
    SPACES       boolean               required
    PINCH        boolean               required
    CHGPINFIRST  boolean               required
    PWTYPE       word=HWTOKEN          V2+
  )");
}

TEST(ProfileTables, RulesOfTransfersStopChecksAndMail) {
  ExpectTable<KRXferProfile>("XFERPROF", R"(
    PROCDAYSOFF      words=SATURDAY,SUNDAY
    PROCENDTM        time     required
    CANSCHED         boolean  required
    CANRECUR         boolean  required
    CANMODXFERS      boolean  required
    CANMODMDLS       boolean  required
    MODELWND         u16      required
    DAYSWITH         s16      required
    DFLTDAYSTOPAY    u16      required
    NEEDTANTRANSFER  boolean  V2+
    SUPPORTDTAVAIL   boolean  V2+
  )");
  ExpectTable<KRStopCheckProfile>("STPCHKPROF", R"(
    PROCDAYSOFF  words=MONDAY
    PROCENDTM    time     required
    CANUSERANGE  boolean  required
    CANUSEDESC   boolean  required
    STPCHKFEE    amount   required
  )");
  ExpectTable<KREMailProfile>("EMAILPROF", R"(
    CANEMAIL   boolean  required
    CANNOTIFY  boolean  required
  )");
}

/// The families of message sets, in the order in which a list is written.
constexpr const char* kFamilies[] = {"SIGNONMSGSET",     "SIGNUPMSGSET",  "BANKMSGSET",
                                     "CREDITCARDMSGSET", "INVSTMTMSGSET", "INTERXFERMSGSET",
                                     "WIREXFERMSGSET",   "BILLPAYMSGSET", "EMAILMSGSET",
                                     "SECLISTMSGSET",    "PROFMSGSET"};

// The table of a family is tested by hand: a tag of another domain may have no class yet.
TEST(KRMessageSetProfile, ListsBothVersionsOfEveryFamily) {
  Lines expected;
  for (const char* family : kFamilies) {
    expected.push_back(std::string(family) + "V1 65535");
    expected.push_back(std::string(family) + "V2 65534");
  }
  std::sort(expected.begin(), expected.end());
  const KRMessageSetProfile profile;
  KRArrayOfTags tags;
  EXPECT_EQ(profile.GetArrayOfValidTags(tags), 1);
  Lines listed = TableLines(tags);
  std::sort(listed.begin(), listed.end());
  EXPECT_EQ(listed, expected);
  EXPECT_EQ(profile.GetArrayOfRequiredTags(tags), 1);
  EXPECT_EQ(tags.count, 0);
  EXPECT_EQ(Make<KRMessageSetProfile>()->AllRequiredPresent(), 1);
  EXPECT_EQ(KRMessageSetProfile().GetType(), KRTag_PROFMSGSET);
}

TEST(KRMessageSetProfile, HoldsBothVersionsInTheOrderOfTheText) {
  const std::string both =
      Aggregate("BANKMSGSETV1", "<CLOSINGAVAIL>Y") + Aggregate("BANKMSGSETV2", "<CLOSINGAVAIL>N");
  const Parsed<KRMessageSetProfile> forth(both, 2);
  ASSERT_EQ(forth.Status(), KRParseStatus_Accepted);
  ASSERT_EQ(forth->GetNumMessageSetVersion(), 2);
  EXPECT_EQ(forth->GetMessageSetVersion(0)->GetType(), KRTag_BANKMSGSETV1);
  EXPECT_EQ(forth->GetMessageSetVersion(1)->GetType(), KRTag_BANKMSGSETV2);
  EXPECT_NE(dynamic_cast<KRBankMessageSetV2*>(forth->GetMessageSetVersion(1)), nullptr);
  EXPECT_EQ(TextOf(*forth), InLines(both));

  const std::string turned =
      Aggregate("BANKMSGSETV2", "<CLOSINGAVAIL>N") + Aggregate("BANKMSGSETV1", "<CLOSINGAVAIL>Y");
  EXPECT_EQ(TextOf(*Parsed<KRMessageSetProfile>(turned, 2)), InLines(turned));
}

TEST(KRMessageSetProfile, SecondVersionIsNotKnownInAFirstVersionTree) {
  const std::string text = Aggregate("PROFMSGSETV1", "") + Aggregate("PROFMSGSETV2", "");
  const Parsed<KRMessageSetProfile> profile(text, 1);
  EXPECT_EQ(profile.Status(), KRParseStatus_Warnings);
  EXPECT_EQ(profile.Warnings(),
            Lines({"INVALIDAGG <PROFMSGSETV2> " + TagNumber(KRTag_PROFMSGSETV2)}));
  EXPECT_EQ(TextOf(*profile), InLines("<PROFMSGSETV1></PROFMSGSETV1>"));
}

TEST(KRMessageSetProfile, RefusesATagThatIsNoVersion) {
  // At the root of a parse the object is called without a check of its table.
  KRMessageSetProfile profile;
  profile.SetMsgSetVersion(1);
  TextBuffer buffer(Aggregate("BANKMSGSET", ""));
  KRSimpleParser parser;
  EXPECT_EQ(parser.Parse(buffer.Get(), &profile, 0), KRParseStatus_Invalid);
}

TEST(KRMessageSetList, WritesFamiliesInTheirOrderWhateverOrderTheyCameIn) {
  std::string read;
  std::string written;
  for (const char* family : kFamilies) {
    const std::string one = Aggregate(family, "");
    read = one + read;
    written += one;
  }
  const Parsed<KRMessageSetList> list(read);
  ASSERT_EQ(list.Status(), KRParseStatus_Accepted);
  EXPECT_EQ(TextOf(*list), InLines(written));
  EXPECT_EQ(list->GetMessageSetProfile(0)->GetType(), KRTag_PROFMSGSET);
}

TEST(KRMessageSetList, NeedsTheSignOnAndTheProfile) {
  const std::string signOn = Aggregate("SIGNONMSGSET", "");
  const std::string profile = Aggregate("PROFMSGSET", "");
  EXPECT_EQ(Parsed<KRMessageSetList>(signOn + Aggregate("BANKMSGSET", ""))->AllRequiredPresent(),
            0);
  EXPECT_EQ(Parsed<KRMessageSetList>(profile)->AllRequiredPresent(), 0);
  EXPECT_EQ(Parsed<KRMessageSetList>(signOn + profile)->AllRequiredPresent(), 1);
}

TEST(KRMessageSetList, RefusesATagThatIsNoFamily) {
  KRMessageSetList list;
  list.SetMsgSetVersion(1);
  TextBuffer buffer(Aggregate("MSGSETCORE", ""));
  KRSimpleParser parser;
  EXPECT_EQ(parser.Parse(buffer.Get(), &list, 0), KRParseStatus_Invalid);
}

TEST(KRMessageSetList, MakesNothingOutsideAParse) {
  auto list = Make<KRMessageSetList>();
  for (const KRTagDictionaryEntry& entry :
       {KRTagDictionaryEntry{KRTag_BANKMSGSET, "BANKMSGSET"}, {KRTag_MEMO, "MEMO"}}) {
    EXPECT_EQ(list->HandleTagStart(&entry), KRParseStatus_Fatal);
  }
  EXPECT_EQ(list->GetNumMessageSetProfile(), 0);
  EXPECT_EQ(list->AnyValidPresent(), 0);
}

TEST(KRMessageSetVersion, SecondVersionDerivesFromTheFirst) {
  const KRSignOnMessageSetV2 signOn;
  EXPECT_NE(dynamic_cast<const KRSignOnMessageSetV1*>(&signOn), nullptr);
  EXPECT_EQ(signOn.GetMsgSetVersion(), 2);
  EXPECT_EQ(KRProfileMessageSetV2().GetMsgSetVersion(), 2);
  EXPECT_EQ(KRProfileMessageSetV1().GetMsgSetVersion(), 0);
}

constexpr char kCore[] =
    "<VER>1<URL>https://ofx.example/<OFXSEC>NONE<TRANSPSEC>Y<SIGNONREALM>MAIN<LANGUAGE>ENG"
    "<SYNCMODE>FULL<RESPFILEER>N";

TEST(KRMessageSetCore, NeedsALanguage) {
  EXPECT_EQ(Parsed<KRMessageSetCore>(kCore)->AllRequiredPresent(), 1);
  std::string without = kCore;
  without.replace(without.find("<LANGUAGE>ENG"), 13, "");
  const Parsed<KRMessageSetCore> core(without);
  EXPECT_EQ(core->AllRequiredPresent(), 0);
  EXPECT_EQ(core->GetFirstMissingRequiredTag(KRTag_None), KRTag_LANGUAGE);
}

TEST(KRMessageSetCore, HoldsLanguagesInOrder) {
  auto core = Make<KRMessageSetCore>(2);
  EXPECT_EQ(core->AppendLanguage(KRString("ENG")), 1);
  EXPECT_EQ(core->AppendLanguage(KRString("FRA")), 1);
  EXPECT_EQ(core->AppendCountry(KRString("CHE")), 1);
  ASSERT_EQ(core->GetNumLanguage(), 2);
  EXPECT_EQ(TextOf(*core), "<LANGUAGE>ENG\n<LANGUAGE>FRA\n<COUNTRY>CHE\n");
}

TEST(KRMessageSetCore, VersionIsSigned) {
  const Parsed<KRMessageSetCore> core("<VER>-2");
  EXPECT_EQ(core->GetVer(), -2);
}

TEST(KRSignOnInfo, IsIncompleteWithoutTheChangeOfPins) {
  std::string all =
      "<SIGNONREALM>MAIN<MIN>6<MAX>32<CHARTYPE>ALPHAONLY<CASESEN>Y<SPECIAL>Y<SPACES>N<PINCH>Y"
      "<CHGPINFIRST>N";
  EXPECT_EQ(Parsed<KRSignOnInfo>(all)->AllRequiredPresent(), 1);
  all.replace(all.find("<PINCH>Y"), 8, "");
  EXPECT_EQ(Parsed<KRSignOnInfo>(all)->AllRequiredPresent(), 0);
}

TEST(KRSignOnInfo, HoldsThePasswordTypeAsANumber) {
  const Parsed<KRSignOnInfo> info("<PWTYPE>ONETIME", 2);
  EXPECT_EQ(info->GetPwType(), 1);
  EXPECT_EQ(TextOf(*info), "<PWTYPE>ONETIME\n");
}

TEST(KRProfileRs, HoldsRoutingNumbers) {
  auto profile = Make<KRProfileRs>();
  EXPECT_EQ(profile->AppendNorvRoutingNumber(KRString("211370545")), 1);
  EXPECT_EQ(profile->AppendNorvRoutingNumber(KRString("211370558")), 1);
  EXPECT_EQ(TextOf(*profile), "<NORV.RTN>211370545\n<NORV.RTN>211370558\n");
  profile->DeleteAllNorvRoutingNumber();
  EXPECT_EQ(profile->GetNumNorvRoutingNumber(), 0);
}

TEST(KRMessageSetCore, TreatsATextInAListAsOtherTexts) {
  KRMessageSetCore core;
  core.SetMsgSetVersion(2);
  TakeWarnings();
  EXPECT_EQ(core.SetCountry(0, KRString("")), 3);
  EXPECT_EQ(core.GetNumCountry(), 0);
  EXPECT_EQ(core.HasCountry(), 0);
  EXPECT_EQ(core.SetCountry(0, KRString("TOOLONG")), 1);
  EXPECT_EQ(TakeWarnings(), Lines{"TOOLONG " + TagNumber(KRTag_COUNTRY) + " \"TOOLONG\""});
}

}  // namespace
}  // namespace krofx::testing
