// Branding: the directory of institutions and the marketing tiers.

#include "krofx/extensions/branding.h"

#include <gtest/gtest.h>

#include "krofx/core/thread.h"
#include "krofx/messages/signon/signon.h"
#include "krofx/model/factory.h"
#include "krofx/values/keywords.h"
#include "support/aggregate_table.h"
#include "support/ofx_text.h"

namespace krofx::testing {
namespace {

TEST(BrandingTables, Software) {
  ExpectTable<KRNorvSoftware>("NORV.SW", R"(
    NORV.SWPRODCD    text5    required
    NORV.SWVER       text4    required
    NORV.SWOSCD      text10   required
    NORV.DISTMETHOD  word=FI
  )");
}

TEST(BrandingTables, Brand) {
  ExpectTable<KRNorvBIDInfo>("NORV.BIDINFO", R"(
    NORV.BID       u32   required
    NORV.DTUPDATE  date  required
  )");
}

TEST(BrandingTables, Selection) {
  ExpectTable<KRNorvSelectByBID>("NORV.SELECTBYBID", R"(
    NORV.BIDINFO  children  required
  )");
}

TEST(BrandingTables, Services) {
  ExpectTable<KRNorvServiceList>("NORV.SVCLIST", R"(
    NORV.SVC   words=BPSVC,BANKSVC
    NORV.SVC2  words=PRESSVC,CCSVC
  )");
}

TEST(BrandingTables, ProviderAddresses) {
  ExpectTable<KRNorvSPURLList>("NORV.SPURLLIST", R"(
    NORV.SPURL   repeated=one,two  V1
    NORV.SPURL2  repeated=one,two  V2+
  )");
}

TEST(BrandingTables, ProviderChange) {
  ExpectTable<KRNorvSPChange>("NORV.SPCHANGE", R"(
    NORV.SPPROFILEURL        text255    required  V1
    NORV.SPPROFILEURL2       text1024   required  V2+
    NORV.SPCLEANMSG          text10000
    NORV.SPDIRTYMSG          text10000
    NORV.DTDIRTYMSG          date
    NORV.RETAINMERCHANTADDR  boolean
    NORV.SPHALTSESSION       boolean
  )");
}

TEST(BrandingTables, BrowserFeature) {
  ExpectTable<KRNorvBrowserCentric>("NORV.BROWSERCENTRIC", R"(
    NORV.WEBFEATURENM  text32    required
    NORV.ACCESSMETHOD  word=ANY  required
    NORV.LOGINURL      text255   required  V1
    NORV.LOGINURL2     text1024  required  V2+
  )");
}

TEST(BrandingTables, DirectoryEntry) {
  ExpectTable<KRNorvBrandDetails>("NORV.BRANDDETAILS", R"(
    NORV.BRANDNAME           text64            required
    NORV.DISTNAME            repeated=one,two
    NORV.FISHORTNM           text12
    NORV.STATUS              word=INACTIVE     required
    NORV.NPCFLAG             word=JACOFX       required
    NORV.MKTTIERTYPE         word=INVESTMENT   required
    NORV.MKTTIERCD           text2             required
    NORV.MKTDISTMETHOD       word=FI
    NORV.BIDREF1             u32
    FI                       child
    ADDR1                    text32            required
    ADDR2                    text32
    CITY                     text32            required
    STATE                    text32            required
    POSTALCODE               text11            required
    COUNTRY                  text32            required
    CSPHONE                  text32            required
    TSPHONE                  text32
    FAXPHONE                 text32
    URL                      text255           required  V1
    URL2                     text1024          required  V2+
    EMAIL                    text80
    NORV.BRANDCATEGORY       word=BROKERAGE
    NORV.PROFCERTID          repeated=one,two
    NORV.FIPROFILEURL        text255           required  V1
    NORV.FIPROFILEURL2       text1024          required  V2+
    NORV.FIMKTINDEXFILEURL   text255                     V1
    NORV.FIMKTINDEXFILEURL2  text1024                    V2+
    NORV.TRADINGURL          text255                     V1
    NORV.TRADINGURL2         text1024                    V2+
    NORV.SVCLIST             child             required
    NORV.SPURLLIST           child             required
    NORV.USERSPECIFICPROF    boolean
    NORV.ENROLLURL           text255                     V1
    NORV.ENROLLURL2          text1024                    V2+
    NORV.FIMESSAGE           text255                     V1
    NORV.FIMESSAGE2          text2000                    V2+
    NORV.NEWPROFILEURL       text255                     V1
    NORV.NEWPROFILEURL2      text1024                    V2+
    NORV.SPCHANGE            child
    NORV.BROWSERCENTRIC      children
  )");
}

TEST(BrandingTables, BrandAndEntry) {
  ExpectTable<KRNorvBrandData>("NORV.BRANDDATA", R"(
    NORV.BIDINFO       child  required
    NORV.BRANDDETAILS  child
  )");
}

TEST(BrandingTables, Directory) {
  ExpectTable<KRNorvBrandDataList>("NORV.BRANDDATALIST", R"(
    NORV.BRANDDATA  children  required
  )");
}

TEST(BrandingTables, Request) {
  ExpectTable<KRNorvBrandRq>("NORV.BRANDRQ", R"(
    NORV.SW           child  required
    NORV.SELECTBYBID  child  required
  )");
}

TEST(BrandingTables, Response) {
  ExpectTable<KRNorvBrandRs>("NORV.BRANDRS", R"(
    NORV.SW             child  required
    NORV.BRANDDATALIST  child  required
  )");
}

TEST(BrandingTables, Tier) {
  ExpectTable<KRNorvTierDef>("NORV.TIERDEF", R"(
    NORV.TIERTYPE    word=INVESTMENT   required
    NORV.TIERCD      text2             required
    NORV.DISTMETHOD  word=FI
    NORV.FEATURENM   repeated=one,two
  )");
}

TEST(BrandingTables, TierRequest) {
  ExpectTable<KRNorvMktTierRq>("NORV.MKTTIERRQ", R"(
    NORV.TIERDTUPDATE  date  required
  )");
}

TEST(BrandingTables, TierResponse) {
  ExpectTable<KRNorvMktTierRs>("NORV.MKTTIERRS", R"(
    NORV.TIERDTUPDATE  date      required
    NORV.TIERDEF       children
  )");
}

/// The required part of a directory entry, except its addresses on the net.
const std::string kEntry =
    "<NORV.BRANDNAME>Millbrook Savings<NORV.STATUS>ACTIVE<NORV.NPCFLAG>OFX"
    "<NORV.MKTTIERTYPE>BANKING<NORV.MKTTIERCD>A1<ADDR1>1 Main St<CITY>Millbrook<STATE>NY"
    "<POSTALCODE>12545<COUNTRY>USA<CSPHONE>8455550142" +
    Aggregate("NORV.SVCLIST", "") + Aggregate("NORV.SPURLLIST", "");

TEST(KRNorvBrandDetails, AsksForTheAddressesOfItsVersion) {
  const Parsed<KRNorvBrandDetails> first(kEntry + "<URL>a<NORV.FIPROFILEURL>b", 1);
  ASSERT_EQ(first.Status(), KRParseStatus_Accepted);
  EXPECT_EQ(first->AllRequiredPresent(), 1);
  const Parsed<KRNorvBrandDetails> second(kEntry + "<URL2>a<NORV.FIPROFILEURL2>b", 2);
  ASSERT_EQ(second.Status(), KRParseStatus_Accepted);
  EXPECT_EQ(second->AllRequiredPresent(), 1);
}

TEST(KRNorvBrandDetails, RefusesTheAddressesOfTheOtherVersion) {
  const Parsed<KRNorvBrandDetails> first(kEntry + "<URL2>a<NORV.FIPROFILEURL>b", 1);
  EXPECT_EQ(first.Status(), KRParseStatus_Warnings);
  EXPECT_EQ(first->GetFirstMissingRequiredTag(KRTag_None), KRTag_URL);
  EXPECT_EQ(first->SetURL2(KRString("a")), 0);
  const Parsed<KRNorvBrandDetails> second(kEntry + "<URL>a<NORV.FIPROFILEURL2>b", 2);
  EXPECT_EQ(second.Status(), KRParseStatus_Warnings);
  EXPECT_EQ(second->GetFirstMissingRequiredTag(KRTag_None), KRTag_URL2);
}

TEST(KRNorvBrandDetails, WritesAChangeOfProviderBetweenAddressesAndBrowserEntries) {
  const Parsed<KRNorvBrandDetails> parsed(
      Aggregate("NORV.BROWSERCENTRIC", "<NORV.WEBFEATURENM>Statements") +
      Aggregate("NORV.SPCHANGE", "<NORV.SPHALTSESSION>N") +
      Aggregate("NORV.BROWSERCENTRIC", "<NORV.WEBFEATURENM>Payments") +
      "<NORV.NEWPROFILEURL>b<NORV.ENROLLURL>a");
  ASSERT_EQ(parsed.Status(), KRParseStatus_Accepted);
  EXPECT_EQ(TextOf(*parsed),
            InLines("<NORV.ENROLLURL>a<NORV.NEWPROFILEURL>b" +
                    Aggregate("NORV.SPCHANGE", "<NORV.SPHALTSESSION>N") +
                    Aggregate("NORV.BROWSERCENTRIC", "<NORV.WEBFEATURENM>Statements") +
                    Aggregate("NORV.BROWSERCENTRIC", "<NORV.WEBFEATURENM>Payments")));
}

TEST(KRNorvBrandDetails, ReadsAndWritesCategoriesWithBlanks) {
  for (const char* category : {"BANKING", "CREDIT CARD", "BILL PAYMENT", "BROKERAGE"}) {
    const std::string text = std::string("<NORV.BRANDCATEGORY>") + category;
    const Parsed<KRNorvBrandDetails> parsed(text);
    EXPECT_EQ(parsed.Status(), KRParseStatus_Accepted);
    EXPECT_EQ(TextOf(*parsed), text + "\n");
  }
  const Parsed<KRNorvBrandDetails> parsed("<NORV.BRANDCATEGORY>CREDIT CARD");
  EXPECT_EQ(parsed->GetNorvBrandCategory(), KRNorvBrandCategory_CREDIT_CARD);
}

TEST(KRNorvBrandDetails, KeepsATextOverItsLimitAndSaysSo) {
  auto entry = Make<KRNorvBrandDetails>();
  TakeWarnings();
  EXPECT_EQ(entry->SetNorvFIShortNm(KRString("Thirteen char")), 1);
  EXPECT_EQ(TakeWarnings(),
            Lines({"TOOLONG " + TagNumber(KRTag_NORV_FISHORTNM) + " \"Thirteen char\""}));
  EXPECT_EQ(Build(*entry).status, KRBuildStatus_TooLong);
  EXPECT_EQ(Build(*entry, KRBuildStringOpt_Lenient).text, "<NORV.FISHORTNM>Thirteen cha\n");
}

TEST(KRNorvServiceList, KnowsPresentmentInItsSecondListOnly) {
  const Parsed<KRNorvServiceList> second("<NORV.SVC2>PRESSVC");
  EXPECT_EQ(second.Status(), KRParseStatus_Accepted);
  const Parsed<KRNorvServiceList> first("<NORV.SVC>PRESSVC");
  EXPECT_EQ(first.Status(), KRParseStatus_Invalid);
  auto list = Make<KRNorvServiceList>();
  EXPECT_EQ(list->AppendNorvSvc(KRString("PRESSVC")), 0);
  EXPECT_EQ(list->AppendNorvSvc2(KRString("PRESSVC")), 1);
  EXPECT_EQ(TextOf(*list), "<NORV.SVC2>PRESSVC\n");
}

TEST(KRNorvServiceList, WritesBothListsInEitherVersion) {
  for (const u16 version : {u16{1}, u16{2}}) {
    const Parsed<KRNorvServiceList> parsed("<NORV.SVC2>CCSVC<NORV.SVC>BANKSVC<NORV.SVC>BPSVC",
                                           version);
    ASSERT_EQ(parsed.Status(), KRParseStatus_Accepted);
    EXPECT_EQ(TextOf(*parsed), "<NORV.SVC>BANKSVC\n<NORV.SVC>BPSVC\n<NORV.SVC2>CCSVC\n");
  }
}

TEST(KRNorvBrandDataList, NeedsAnEntry) {
  EXPECT_EQ(Make<KRNorvBrandDataList>()->AllRequiredPresent(), 0);
  EXPECT_EQ(Make<KRNorvSelectByBID>()->AllRequiredPresent(), 0);
  auto list = Make<KRNorvBrandDataList>();
  EXPECT_EQ(list->AppendNorvBrandData(new KRNorvBrandData), 1);
  EXPECT_EQ(list->AllRequiredPresent(), 1);
}

TEST(BrandingServices, WarnOfAValueThatCannotBeStored) {
  class Poor : public KRDataObjFactory {
   public:
    u16* NewUShort() override { return nullptr; }
  };
  KRNorvServiceList list;
  list.SetMsgSetVersion(1);
  Poor factory;
  KRDataObj::SetFactory(&factory);
  TakeWarnings();
  const std::string warning = "NULLPOINTER " + TagNumber(KRTag_NORV_SVC);
  EXPECT_EQ(list.AppendNorvSvc(static_cast<KRNorvService>(0)), 0);
  EXPECT_EQ(TakeWarnings(), Lines{warning});
  EXPECT_EQ(list.AppendNorvSvc(KRString("BANKSVC")), 0);
  EXPECT_EQ(TakeWarnings(), Lines{warning + " \"BANKSVC\""});
  const KRTagDictionaryEntry service = {KRTag_NORV_SVC, "NORV.SVC"};
  EXPECT_EQ(list.HandleTagElement(&service, KRString("BANKSVC")), KRParseStatus_Fatal);
  EXPECT_EQ(TakeWarnings(), Lines{warning + " \"BANKSVC\""});
  EXPECT_EQ(list.ValidateTag(KRTag_NORV_SVC), 0);
  KRDataObj::SetFactory(nullptr);
  KRSetFireAlarm(KRFireAlarm_None);
}

}  // namespace
}  // namespace krofx::testing
