// What a client reports: logs of its platform, surveys, and logs of sessions.

#include <gtest/gtest.h>

#include <type_traits>

#include "krofx/extensions/client_logs.h"
#include "krofx/extensions/surveys.h"
#include "krofx/extensions/usage.h"
#include "support/aggregate_table.h"
#include "support/ofx_text.h"

namespace krofx::testing {
namespace {

TEST(ReportTables, Software) {
  ExpectTable<KRNorvSwInfo>("NORV.SWINFO", R"(
    NORV.PDTCODE      text32
    NORV.PDTPKGCODE   text32
    NORV.MEDIA        text32
    NORV.SWVERSION    text32
    NORV.SWPLATFORM   text32
    NORV.OEM          text32
    NORV.MACSPDTCODE  text32
  )");
}

TEST(ReportTables, Machine) {
  ExpectTable<KRNorvHwInfo>("NORV.HWINFO", R"(
    NORV.HWPLATFORM        text32
    NORV.MFG               text32
    NORV.COLOR             text32
    NORV.MODEMSPD          text32
    NORV.CPU               text32
    NORV.RAM               text10
    NORV.SCREENRESOLUTION  text32
  )");
}

TEST(ReportTables, OperatingSystem) {
  ExpectTable<KRNorvOsInfo>("NORV.OSINFO", R"(
    NORV.OS         text32
    NORV.OSVERSION  text6
    NORV.OSRELEASE  text32
  )");
}

TEST(ReportTables, Connection) {
  ExpectTable<KRNorvIntConfig>("NORV.INTERNETCONFIG", R"(
    NORV.BROWSER                 text255
    NORV.HTTPSKEYSIZE            text255
    NORV.HTTPPROXY               text255
    NORV.SERVERURL               text255   V1
    NORV.SERVERURL2              text1024  V2+
    NORV.SERVERCN                text255
    NORV.SERVERCA                text255
    NORV.EXPIREDCERTIFICATE      text255
    NORV.INVALIDCERTIFICATE      text255
    NORV.INVALIDCERTIFICATEAUTH  text255
  )");
}

TEST(ReportTables, Platform) {
  ExpectTable<KRNorvPlatformInfo>("NORV.PLATFORMINFO", R"(
    NORV.SWINFO          child  required
    NORV.HWINFO          child
    NORV.OSINFO          child
    NORV.INTERNETCONFIG  child
  )");
}

TEST(ReportTables, ClientLog) {
  ExpectTable<KRNorvClientLogRq>("NORV.CLIENTLOGRQ", R"(
    NORV.REGID         text36    required
    NORV.PLATFORMINFO  children  required
  )");
}

TEST(ReportTables, Answer) {
  ExpectTable<KRNorvSurveyItem>("NORV.SURVEYITEM", R"(
    NORV.QSTLABEL  text4     required
    NORV.ASWLABEL  text4     required
    NORV.ADDASW    text1000
  )");
}

TEST(ReportTables, Answers) {
  ExpectTable<KRNorvSurveyInfo>("NORV.SURVEYINFO", R"(
    NORV.SURVEYID    text10    required
    NORV.SURVEYITEM  children  required
  )");
}

TEST(ReportTables, Survey) {
  ExpectTable<KRNorvSurveyRq>("NORV.SURVEYRQ", R"(
    NORV.REGID       text36  required
    NORV.SURVEYINFO  child   required
  )");
}

TEST(ReportTables, Customer) {
  ExpectTable<KRNorvCustInfo>("NORV.CUSTINFO", R"(
    NORV.CUSTTYPE    word=SMALLBUSINESS  required
    FIRSTNAME        text32              required
    LASTNAME         text32              required
    MIDDLENAME       text32
    DAYPHONE         text32
    EVEPHONE         text32
    ADDR1            text32              required
    ADDR2            text32
    ADDR3            text32
    CITY             text32              required
    STATE            text5               required
    POSTALCODE       text11              required
    COUNTRY          text3               required
    NORV.BIRTHYEAR   u16
    NORV.SEX         text32
    NORV.EMAIL       text255
    LANGUAGE         language
    NORV.CANSELL     boolean
    NORV.DTREGISTER  date
  )");
}

TEST(ReportTables, SmallBusiness) {
  ExpectTable<KRNorvSBusinessInfo>("NORV.SBUSINESSINFO", R"(
    NORV.CUSTINFO       child    required
    NORV.COMPANYNAME    text32
    NORV.BUSINESSPHONE  text32
    NORV.BUSINESSTYPE   text32
    NORV.BUSINESSCAT    text32
    NORV.TAXEXEMPT      boolean
    NORV.BUSINESSFAX    text32
  )");
}

TEST(ReportTables, Message) {
  ExpectTable<KRNorvOfxMessage>("NORV.OFXMESSAGE", R"(
    NORV.MESSAGE    text64    required  V1
    NORV.MESSAGE2   text2000  required  V2+
    NORV.MSGSTATUS  s32       required
  )");
}

TEST(ReportTables, MessageSet) {
  ExpectTable<KRNorvOfxMsgSetInfo>("NORV.OFXMSGSETINFO", R"(
    NORV.OFXMSGSET   text64    required
    NORV.VERSION     text5     required
    NORV.OFXMESSAGE  children  required
  )");
}

TEST(ReportTables, InstitutionSession) {
  ExpectTable<KRNorvFiUsage>("NORV.FIUSAGE", R"(
    NORV.UID2           text36    required
    NORV.BID            u32       required
    URL                 text255   required  V1
    URL2                text1024  required  V2+
    NORV.SP             text32
    NORV.HTTPSTATUS     s32       required
    POSTALCODE          text11
    DTSTART             date      required
    DTEND               date      required
    NORV.SESSIONID      text36    required
    NORV.PLATFORMINFO   child
    NORV.OFXMSGSETINFO  children  required
  )");
}

TEST(ReportTables, ClientSession) {
  ExpectTable<KRNorvCuUsage>("NORV.CUUSAGE", R"(
    NORV.REGID          text36    required
    NORV.PLATFORMINFO   child
    NORV.SESSIONID      text36    required
    DTSTART             date      required
    DTEND               date      required
    NORV.HTTPSTATUS     s32       required
    NORV.CUSTINFO       child
    NORV.OFXMSGSETINFO  children  required
  )");
}

TEST(ReportTables, InstitutionLog) {
  ExpectTable<KRNorvFiUsageLogRQ>("NORV.FIUSAGELOGRQ", R"(
    NORV.FIUSAGE  children
  )");
}

TEST(ReportTables, CustomerLog) {
  ExpectTable<KRNorvCuUsageLogRQ>("NORV.CUUSAGELOGRQ", R"(
    NORV.CUUSAGE  children
  )");
}

TEST(KRNorvIntConfig, IsCompleteAndWrittenWhenItHoldsNothing) {
  auto platform = Make<KRNorvPlatformInfo>();
  EXPECT_EQ(platform->SetNorvInternetConfig(new KRNorvIntConfig), 1);
  platform->SetMsgSetVersion(1);
  EXPECT_EQ(platform->GetNorvInternetConfig()->AllRequiredPresent(), 1);
  EXPECT_EQ(TextOf(*platform), "<NORV.INTERNETCONFIG>\n</NORV.INTERNETCONFIG>\n");
}

TEST(KRNorvIntConfig, NamesTheServerByTheTagOfItsVersion) {
  for (const u16 version : {u16{1}, u16{2}}) {
    auto connection = Make<KRNorvIntConfig>(version);
    EXPECT_EQ(connection->SetNorvServerURL(KRString("a")), version == 1);
    EXPECT_EQ(connection->SetNorvServerURL2(KRString("b")), version == 2);
    EXPECT_EQ(TextOf(*connection), version == 1 ? "<NORV.SERVERURL>a\n" : "<NORV.SERVERURL2>b\n");
  }
}

TEST(KRNorvFiUsage, NeedsAMessageSet) {
  const std::string session =
      "<NORV.UID2>u<NORV.BID>7<URL>a<NORV.HTTPSTATUS>-1<DTSTART>20260101<DTEND>20260101"
      "<NORV.SESSIONID>s";
  const Parsed<KRNorvFiUsage> without(session);
  ASSERT_EQ(without.Status(), KRParseStatus_Accepted);
  EXPECT_EQ(without->AllRequiredPresent(), 0);
  EXPECT_EQ(without->GetFirstMissingRequiredTag(KRTag_None), KRTag_NORV_OFXMSGSETINFO);
  const Parsed<KRNorvFiUsage> with(session + Aggregate("NORV.OFXMSGSETINFO", ""));
  EXPECT_EQ(with->AllRequiredPresent(), 1);
  EXPECT_EQ(with->GetNorvHttpStatus(), -1);
}

TEST(KRNorvSBusinessInfo, HoldsTheCustomerAsAChild) {
  static_assert(!std::is_base_of_v<KRNorvCustInfo, KRNorvSBusinessInfo>);
  const Parsed<KRNorvSBusinessInfo> parsed(
      "<NORV.COMPANYNAME>Lovelace Looms" +
      Aggregate("NORV.CUSTINFO", "<NORV.CUSTTYPE>SMALLBUSINESS<LANGUAGE>ENG"));
  ASSERT_EQ(parsed.Status(), KRParseStatus_Accepted);
  ASSERT_NE(parsed->GetNorvCustInfo(), nullptr);
  EXPECT_EQ(parsed->GetNorvCustInfo()->GetNorvCustType(), KRNorvCustType_SMALLBUSINESS);
  EXPECT_EQ(parsed->AllRequiredPresent(), 1);
  EXPECT_EQ(TextOf(*parsed),
            InLines("<NORV.CUSTINFO><NORV.CUSTTYPE>SMALLBUSINESS<LANGUAGE>ENG</NORV.CUSTINFO>"
                    "<NORV.COMPANYNAME>Lovelace Looms"));
}

TEST(KRNorvSurveyInfo, KeepsAnswersInOrder) {
  const std::string text =
      "<NORV.SURVEYID>1999" + Aggregate("NORV.SURVEYITEM", "<NORV.QSTLABEL>Q1<NORV.ASWLABEL>B") +
      Aggregate("NORV.SURVEYITEM", "<NORV.QSTLABEL>Q2<NORV.ASWLABEL>A<NORV.ADDASW>mostly");
  const Parsed<KRNorvSurveyInfo> parsed(text);
  ASSERT_EQ(parsed.Status(), KRParseStatus_Accepted);
  EXPECT_EQ(parsed->GetNumNorvSurveyItem(), 2);
  EXPECT_EQ(TextOf(*parsed), InLines(text));
}

}  // namespace
}  // namespace krofx::testing
