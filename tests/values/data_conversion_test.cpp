// Conversions between element values and their text: keywords, booleans, dates, numbers.

#include "krofx/values/data_conversion.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "krofx/core/parse_logger.h"
#include "krofx/core/thread.h"

namespace {

using Words = std::vector<const char*>;

class DataConversion : public ::testing::Test {
 protected:
  DataConversion() { Log().DeleteAll(); }

  static KRParseLogger& Log() { return *KRParseLogger::TheKRParseLogger(); }

  // Removes the log's only warning and returns its name and value, as "KRPW_BADFORMAT text".
  static std::string OnlyWarning() {
    if (Log().Entries() != 1) return std::to_string(Log().Entries()) + " warnings";
    const KRParseException& warning = *Log().Get(0);
    KRString name;
    warning.WarningString(name);
    std::string text = std::string(name) + " " + static_cast<const char*>(warning.m_valueText);
    EXPECT_TRUE(warning.m_tagText.IsEmpty());
    EXPECT_EQ(warning.m_tag, KRTag_None);
    Log().DeleteAll();
    return text;
  }

  // One whole enumeration: every keyword in both directions, and values beyond the last.
  template <class E>
  static void Check(u16 (*toString)(E, KRString&), u16 (*fromString)(const KRString&, E&),
                    const Words& words, bool warnsBeyond = false) {
    ASSERT_EQ(krofx::internal::KeywordTraits<E>::kCount, words.size());
    for (u32 value = 0; value < words.size(); ++value) {
      SCOPED_TRACE(words[value]);
      KRString text;
      EXPECT_EQ(toString(static_cast<E>(value), text), 1);
      EXPECT_STREQ(text, words[value]);
      text.MakeLower();
      E found = static_cast<E>(value == 0 ? 1 : 0);
      EXPECT_EQ(fromString(text, found), 1);
      EXPECT_EQ(static_cast<u32>(found), value);
    }
    EXPECT_EQ(Log().Entries(), 0);

    KRString kept("kept");
    EXPECT_EQ(toString(static_cast<E>(words.size()), kept), 0);
    EXPECT_STREQ(kept, "kept");
    if (warnsBeyond) {
      EXPECT_EQ(OnlyWarning(), "KRPW_BADFORMAT " + std::to_string(words.size()));
    } else {
      EXPECT_EQ(Log().Entries(), 0);
    }

    E unchanged = static_cast<E>(words.size() - 1);
    EXPECT_EQ(fromString("NOSUCHWORD", unchanged), 0);
    EXPECT_EQ(static_cast<u32>(unchanged), words.size() - 1);
    EXPECT_EQ(OnlyWarning(), "KRPW_BADFORMAT NOSUCHWORD");
  }
};

using C = KRDataConversion;

TEST_F(DataConversion, KnowsTheKeywordsOfTheEnvelope) {
  Check(C::CharacterTypeToString, C::StringToCharacterType,
        {"ALPHAONLY", "NUMERICONLY", "ALPHAORNUMERIC", "ALPHAANDNUMERIC"});
  Check(C::StatusSeverityToString, C::StringToStatusSeverity, {"INFO", "WARN", "ERROR"});
  Check(C::ServiceToString, C::StringToService, {"BANKSVC", "BPSVC", "INVSVC"});
  Check(C::Service2ToString, C::StringToService2, {"BANKSVC", "BPSVC", "INVSVC", "PRESSVC"});
  Check(C::ServiceStatusToString, C::StringToServiceStatus, {"AVAIL", "PEND", "ACTIVE"});
  Check(C::ServiceStatus2ToString, C::StringToServiceStatus2,
        {"AVAIL", "PEND", "ACTIVE", "REJECTED"});
  Check(C::ClientRoutingToString, C::StringToClientRouting, {"NONE", "SERVICE", "MSGSET"});
  Check(C::SyncModeToString, C::StringToSyncMode, {"FULL", "LITE"});
  Check(C::OFXSecurityToString, C::StringToOFXSecurity, {"NONE", "TYPE1"});
}

TEST_F(DataConversion, KnowsTheKeywordsOfTheHeaderBlock) {
  Check(C::OFXCompressionToString, C::StringToOFXCompression, {"NONE"});
  Check(C::OFXFileUIDToString, C::StringToOFXFileUID, {"NONE"});
  Check(C::OFXCharSetToString, C::StringToOFXCharSet, {"1252"});
  Check(C::OFXDataToString, C::StringToOFXData, {"OFXSGML"});
  Check(C::OFXEncodingToString, C::StringToOFXEncoding, {"USASCII", "UTF-8"});
}

TEST_F(DataConversion, KnowsTheKeywordsOfBanking) {
  Check(C::BankAccountToString, C::StringToBankAccount,
        {"UNKNOWN", "CHECKING", "SAVINGS", "CREDIT", "MONEYMRKT", "CREDITLINE"});
  Check(C::BankAccount2ToString, C::StringToBankAccount2,
        {"CHECKING", "SAVINGS", "MONEYMRKT", "CREDITLINE", "CMA"});
  Check(C::BankTxToString, C::StringToBankTx,
        {"CREDIT", "DEBIT", "INT", "DIV", "FEE", "SRVCHG", "DEP", "ATM", "POS", "XFER", "CHECK",
         "PAYMENT", "CASH", "DIRECTDEP", "DIRECTDEBIT", "REPEATPMT", "OTHER"});
  Check(C::BankActionToString, C::StringToBankAction, {"REPLACE", "DELETE"});
  Check(C::FrequencyToString, C::StringToFrequency,
        {"WEEKLY", "BIWEEKLY", "TWICEMONTHLY", "MONTHLY", "FOURWEEKS", "BIMONTHLY", "QUARTERLY",
         "SEMIANNUALLY", "ANNUALLY"});
  Check(C::ProcCodeToString, C::StringToProcCode,
        {"WILLPROCESSON", "POSTEDON", "PROCESSEDON", "NOFUNDSON", "FAILEDON", "CANCELEDON"});
  Check(C::DayOfWeekToString, C::StringToDayOfWeek,
        {"MONDAY", "TUESDAY", "WEDNESDAY", "THURSDAY", "FRIDAY", "SATURDAY", "SUNDAY"});
  Check(C::BalTypeToString, C::StringToBalType, {"DOLLAR", "PERCENT", "NUMBER"});
}

TEST_F(DataConversion, KnowsTheKeywordsOfSecurities) {
  Check(C::USProductTypeToString, C::StringToUSProductType,
        {"401K", "403B", "IRA", "KEOGH", "OTHER", "SARSEP", "SIMPLE", "NORMAL", "TDA", "TRUST",
         "UGMA"});
  Check(C::InvAcctTypeToString, C::StringToInvAcctType,
        {"INDIVIDUAL", "JOINT", "TRUST", "CORPORATE"});
  Check(C::DebtTypeToString, C::StringToDebtType, {"COUPON", "ZERO"});
  Check(C::DebtClassToString, C::StringToDebtClass,
        {"TREASURY", "MUNICIPAL", "CORPORATE", "OTHER"});
  Check(C::CallTypeToString, C::StringToCallType, {"CALL", "PUT", "PREFUND", "MATURITY"});
  Check(C::MFTypeToString, C::StringToMFType, {"OPENEND", "CLOSEEND", "OTHER"});
  Check(C::OptTypeToString, C::StringToOptType, {"PUT", "CALL", "OTHER"});
  Check(C::StockTypeToString, C::StringToStockType,
        {"COMMON", "PREFERRED", "CONVERTIBLE", "OTHER"});
  Check(
      C::AssetClassToString, C::StringToAssetClass,
      {"DOMESTICBOND", "INTLBOND", "LARGESTOCK", "SMALLSTOCK", "INTLSTOCK", "MONEYMRKT", "OTHER"});
  Check(C::CouponFreqToString, C::StringToCouponFreq,
        {"MONTHLY", "QUARTERLY", "SEMIANNUAL", "ANNUAL", "OTHER"});
}

TEST_F(DataConversion, KnowsTheKeywordsOfInvestmentTransactions) {
  Check(C::BuyTypeToString, C::StringToBuyType, {"BUY", "BUYTOCOVER"});
  Check(C::DebtActionToString, C::StringToDebtAction, {"CALLED", "MATURED"});
  Check(C::IncomeTypeToString, C::StringToIncomeType,
        {"CGLONG", "CGSHORT", "DIV", "INTEREST", "MISC"});
  Check(C::OptActionToString, C::StringToOptAction, {"EXERCISE", "ASSIGN", "EXPIRE"});
  Check(C::OptBuyTypeToString, C::StringToOptBuyType, {"BUYTOOPEN", "BUYTOCLOSE"});
  Check(C::OptSellTypeToString, C::StringToOptSellType, {"SELLTOOPEN", "SELLTOCLOSE"});
  Check(C::FidelityOptBuyTypeToString, C::StringToFidelityOptBuyType, {"BUY"});
  Check(C::FidelityOptSellTypeToString, C::StringToFidelityOptSellType, {"SELL"});
  Check(C::PosTypeToString, C::StringToPosType, {"LONG", "SHORT"});
  Check(C::RelTypeToString, C::StringToRelType, {"SPREAD", "STRADDLE", "NONE", "OTHER"});
  Check(C::SecuredToString, C::StringToSecured, {"NAKED", "COVERED"});
  Check(C::SellReasonToString, C::StringToSellReason, {"CALL", "SELL", "MATURITY"});
  Check(C::SellTypeToString, C::StringToSellType, {"SELL", "SELLSHORT"});
  Check(C::SubAcctToString, C::StringToSubAcct, {"CASH", "MARGIN", "SHORT", "OTHER"});
  Check(C::TferActionToString, C::StringToTferAction, {"IN", "OUT"});
  Check(C::UnitTypeToString, C::StringToUnitType, {"SHARES", "CURRENCY"});
  Check(C::DurationToString, C::StringToDuration, {"DAY", "GOODTILCANCEL", "IMMEDIATE"});
  Check(C::RestrictionToString, C::StringToRestriction, {"ALLORNONE", "MINUNITS", "NONE"});
}

TEST_F(DataConversion, KnowsTheKeywordsOfBillPayment) {
  Check(C::PayeeIDScopeToString, C::StringToPayeeIDScope, {"GLOBAL", "USER"});
  Check(C::ExtdPmtForToString, C::StringToExtdPmtFor, {"INDIVIDUAL", "BUSINESS"});
}

TEST_F(DataConversion, KnowsTheKeywordsOfTheExtensionsAndWarnsBeyondThem) {
  Check(KRPwTypeDataConversion::PwTypeToString, KRPwTypeDataConversion::StringToPwType,
        {"FIXED", "ONETIME", "HWTOKEN"}, true);
  Check(KRNorvDateModelDataConversion::NorvDateModelToString,
        KRNorvDateModelDataConversion::StringToNorvDateModel,
        {"DELDATE", "PROCDATE1", "PROCDATE2", "MIXED", "PROCDATE3"}, true);
  Check(KRNorvCommDataConversion::NorvDistMethodToString,
        KRNorvCommDataConversion::StringToNorvDistMethod, {"RETAIL", "FI"}, true);
  Check(KRNorvWebAccessDataConversion::NorvWebAccessToString,
        KRNorvWebAccessDataConversion::StringToNorvWebAccess, {"WEBONLY", "ANY"}, true);
  using Brand = KRNorvBrandDataConversion;
  Check(Brand::NorvBrandStatusToString, Brand::StringToNorvBrandStatus, {"ACTIVE", "INACTIVE"},
        true);
  Check(Brand::NorvNPCFlagToString, Brand::StringToNorvNPCFlag,
        {"OFX", "NPC", "NPCOFX", "JAC", "JACOFX"}, true);
  Check(Brand::NorvTierTypeToString, Brand::StringToNorvTierType, {"BANKING", "INVESTMENT"}, true);
  Check(Brand::NorvServiceToString, Brand::StringToNorvService,
        {"BANKSVC", "CCSVC", "BPSVC", "INVSTMTDLSVC"}, true);
  Check(Brand::NorvService2ToString, Brand::StringToNorvService2,
        {"BANKSVC", "CCSVC", "BPSVC", "INVSTMTDLSVC", "PRESSVC"}, true);
  Check(Brand::NorvBrandCategoryToString, Brand::StringToNorvBrandCategory,
        {"BANKING", "CREDIT CARD", "BILL PAYMENT", "BROKERAGE"}, true);
  Check(KRNorvCISDataConversion::NorvCustTypeToString,
        KRNorvCISDataConversion::StringToNorvCustType, {"UNKNOWN", "INDIVIDUAL", "SMALLBUSINESS"},
        true);
}

TEST_F(DataConversion, NamesEnumeratorsAfterTheirKeywords) {
  EXPECT_EQ(KRBankAccountType_UNKNOWN, 0u);
  EXPECT_EQ(KRBankTxType_OTHER, 16u);
  EXPECT_EQ(KRUSProductType_401K, 0u);
  EXPECT_EQ(KROFXEncoding_UTF_8, 1u);
  EXPECT_EQ(KRNorvBrandCategory_BILL_PAYMENT, 2u);
  EXPECT_EQ(KRHeaderTag_CONTENT_TYPE, 0);
  EXPECT_EQ(KRHeaderTag_NEWFILEUID, 10);
  EXPECT_EQ(KRHeaderTag_None, -1);
}

TEST_F(DataConversion, NumbersAccountTypesByVersion) {
  KRBankAccountType first = KRBankAccountType_UNKNOWN;
  KRBankAccountType2 second = KRBankAccountType2_CMA;
  EXPECT_EQ(C::StringToBankAccount("checking", first), 1);
  EXPECT_EQ(first, 1u);
  EXPECT_EQ(C::StringToBankAccount2("checking", second), 1);
  EXPECT_EQ(second, 0u);
}

TEST_F(DataConversion, TakesNoPartOfAKeywordForIt) {
  KRBankTxType type = KRBankTxType_OTHER;
  for (const char* text : {"", "DI", "DIVIDEND", "DIV ", " DIV", "D\xc9P"}) {
    EXPECT_EQ(C::StringToBankTx(text, type), 0) << text;
    EXPECT_EQ(OnlyWarning(), std::string("KRPW_BADFORMAT ") + text);
  }
  EXPECT_EQ(type, KRBankTxType_OTHER);
}

TEST_F(DataConversion, WritesEveryHeaderTagButReadsOnlyThoseOfTheHeaderBlock) {
  const Words words = {"CONTENT-TYPE", "CONTENT-LENGTH", "OFXHEADER", "DATA",
                       "VERSION",      "SECURITY",       "ENCODING",  "CHARSET",
                       "COMPRESSION",  "OLDFILEUID",     "NEWFILEUID"};
  for (s32 value = 0; value < 11; ++value) {
    SCOPED_TRACE(words[static_cast<size_t>(value)]);
    KRString text;
    EXPECT_EQ(C::HeaderTagToString(static_cast<KRHeaderTag>(value), text), 1);
    EXPECT_STREQ(text, words[static_cast<size_t>(value)]);
    text.MakeLower();
    KRHeaderTag tag = KRHeaderTag_DATA;
    const u16 result = C::StringToHeaderTag(text, tag);
    if (value < 2) {
      EXPECT_EQ(result, 0);
      EXPECT_EQ(tag, KRHeaderTag_None);
      EXPECT_EQ(OnlyWarning(), std::string("KRPW_BADFORMAT ") + static_cast<const char*>(text));
    } else {
      EXPECT_EQ(result, 1);
      EXPECT_EQ(tag, value);
    }
  }
  KRString kept("kept");
  EXPECT_EQ(C::HeaderTagToString(KRHeaderTag_None, kept), 0);
  EXPECT_STREQ(kept, "kept");
}

TEST_F(DataConversion, KeepsSpecLengthAndEncodingOfTheTarget) {
  KRString32 text;
  EXPECT_EQ(C::BankTxToString(KRBankTxType_FEE, text), 1);
  EXPECT_EQ(text.SpecLength(), 32);
}

TEST_F(DataConversion, ConvertsOverACallersTable) {
  const char* table[] = {"ZERO", "One", "TWO", "THREE"};
  KRString text("kept");
  EXPECT_EQ(C::EnumToString(1, text, 1, 2, table), 1);
  EXPECT_STREQ(text, "One");
  EXPECT_EQ(C::EnumToString(2, text, 1, 2, table), 1);
  EXPECT_STREQ(text, "TWO");
  EXPECT_EQ(C::EnumToString(3, text, 1, 2, table), 0);
  EXPECT_EQ(OnlyWarning(), "KRPW_BADFORMAT 3");
  EXPECT_EQ(C::EnumToString(0, text, 1, 2, table), 0);
  EXPECT_EQ(OnlyWarning(), "KRPW_BADFORMAT 0");
  EXPECT_STREQ(text, "TWO");

  u16 value = 77;
  EXPECT_EQ(C::StringToEnum("oNE", value, 1, 2, table), 1);
  EXPECT_EQ(value, 1);
  EXPECT_EQ(C::StringToEnum("zero", value, 1, 2, table), 0);
  EXPECT_EQ(OnlyWarning(), "KRPW_BADFORMAT zero");
  EXPECT_EQ(C::StringToEnum("three", value, 1, 2, table), 0);
  EXPECT_EQ(OnlyWarning(), "KRPW_BADFORMAT three");
  EXPECT_EQ(value, 1);
}

TEST_F(DataConversion, RefusesACallersTableOrKeywordThatIsNotThere) {
  KRString text("kept");
  u16 value = 7;
  EXPECT_EQ(C::EnumToString(0, text, 0, 65535, nullptr), 0);
  EXPECT_EQ(OnlyWarning(), "KRPW_BADFORMAT 0");
  EXPECT_EQ(C::StringToEnum("ONE", value, 0, 65535, nullptr), 0);
  EXPECT_EQ(OnlyWarning(), "KRPW_BADFORMAT ONE");
  const char* holed[] = {nullptr};
  EXPECT_EQ(C::EnumToString(0, text, 0, 0, holed), 0);
  EXPECT_EQ(OnlyWarning(), "KRPW_BADFORMAT 0");
  EXPECT_EQ(C::StringToEnum("", value, 0, 0, holed), 0);
  EXPECT_EQ(OnlyWarning(), "KRPW_BADFORMAT ");
  EXPECT_STREQ(text, "kept");
  EXPECT_EQ(value, 7);
}

TEST_F(DataConversion, BooleansAreOneCapitalLetter) {
  KRString text;
  EXPECT_EQ(C::BooleanToString(0, text), 1);
  EXPECT_STREQ(text, "N");
  EXPECT_EQ(C::BooleanToString(1, text), 1);
  EXPECT_STREQ(text, "Y");
  EXPECT_EQ(C::BooleanToString(512, text), 1);
  EXPECT_STREQ(text, "Y");

  u16 value = 5;
  EXPECT_EQ(C::StringToBoolean("Y", value), 1);
  EXPECT_EQ(value, 1);
  EXPECT_EQ(C::StringToBoolean("N", value), 1);
  EXPECT_EQ(value, 0);
  value = 5;
  for (const char* bad : {"y", "n", "", "YES", "1"}) {
    EXPECT_EQ(C::StringToBoolean(bad, value), 0) << bad;
    EXPECT_EQ(OnlyWarning(), std::string("KRPW_BADFORMAT ") + bad);
  }
  EXPECT_EQ(value, 5);
}

TEST_F(DataConversion, DatesAndTimesGoTheirOwnWay) {
  KRDateTime date;
  KRString text;
  EXPECT_EQ(C::StringToDateTime("19991231120000", date), 1);
  EXPECT_EQ(date.GetYear(), 1999);
  EXPECT_EQ(C::DateTimeToString(date, text), 1);
  EXPECT_STREQ(text, "19991231120000");
  EXPECT_EQ(C::StringToDateTime("1999", date), 0);
  EXPECT_EQ(C::DateTimeToString(KRDateTime(), text), 0);

  KRTime time;
  EXPECT_EQ(C::StringToTime("1545", time), 1);
  EXPECT_EQ(C::TimeToString(time, text), 1);
  EXPECT_STREQ(text, "154500");
  EXPECT_EQ(C::StringToTime("2545", time), 0);
}

TEST_F(DataConversion, AmountsFollowTheRuleOfTheTarget) {
  KRPrecisionInteger plain;
  KRPosPrecisionInteger positive;
  KRPercent percent;
  EXPECT_EQ(C::StringToAmount("-12.50", plain), 1);
  EXPECT_STREQ(plain, "-12.5");
  EXPECT_EQ(C::StringToAmount("-12.50", positive), 0);
  EXPECT_EQ(C::StringToRate("99.5", percent), 1);
  EXPECT_STREQ(percent, "99.5");
  EXPECT_EQ(C::StringToRate("100.01", percent), 0);
}

// Reads `text` and returns the number, or the warning when there is one.
template <class Number>
std::string Read(u16 (*convert)(const KRString&, Number&), const char* text) {
  KRParseLogger& log = *KRParseLogger::TheKRParseLogger();
  log.DeleteAll();
  Number value = 99;
  if (convert(text, value)) return std::to_string(value);
  EXPECT_EQ(value, 99) << "changed by " << text;
  KRString name("no warning");
  if (log.Entries() == 1) log.Get(0)->WarningString(name);
  return static_cast<const char*>(name);
}

TEST_F(DataConversion, ReadsUnsignedNumbersByMagnitude) {
  EXPECT_EQ(Read(C::StringToUShort, "0"), "0");
  EXPECT_EQ(Read(C::StringToUShort, "65535"), "65535");
  EXPECT_EQ(Read(C::StringToUShort, "65536"), "KRPW_OUTOFRANGE");
  EXPECT_EQ(Read(C::StringToUShort, "1.0"), "1");
  EXPECT_EQ(Read(C::StringToUShort, "1.5"), "KRPW_BADFORMAT");
  EXPECT_EQ(Read(C::StringToUShort, "-5"), "5");
  EXPECT_EQ(Read(C::StringToUShort, "1,000"), "1000");
  EXPECT_EQ(Read(C::StringToUShort, ""), "KRPW_BADFORMAT");
  EXPECT_EQ(Read(C::StringToUShort, "12a"), "KRPW_BADFORMAT");
  EXPECT_EQ(Read(C::StringToUShort, "00000000000000000000000000001"), "KRPW_TOOLONG");

  EXPECT_EQ(Read(C::StringToULong, "4294967295"), "4294967295");
  EXPECT_EQ(Read(C::StringToULong, "4294967296"), "KRPW_OUTOFRANGE");
  EXPECT_EQ(Read(C::StringToULong, "79228162514264337593543950336"), "KRPW_TOOLONG");
  EXPECT_EQ(Read(C::StringToULong, "-1"), "1");
  EXPECT_EQ(Read(C::StringToULong, "7.00"), "7");
  EXPECT_EQ(Read(C::StringToULong, ".5"), "KRPW_BADFORMAT");
}

TEST_F(DataConversion, ReadsSignedNumbers) {
  EXPECT_EQ(Read(C::StringToSShort, "32767"), "32767");
  EXPECT_EQ(Read(C::StringToSShort, "32768"), "KRPW_OUTOFRANGE");
  EXPECT_EQ(Read(C::StringToSShort, "40000"), "KRPW_OUTOFRANGE");
  EXPECT_EQ(Read(C::StringToSShort, "70000"), "KRPW_OUTOFRANGE");
  EXPECT_EQ(Read(C::StringToSShort, "-32768"), "-32768");
  EXPECT_EQ(Read(C::StringToSShort, "-32768.0"), "-32768");
  EXPECT_EQ(Read(C::StringToSShort, "-32769"), "KRPW_OUTOFRANGE");
  EXPECT_EQ(Read(C::StringToSShort, "-1.0"), "-1");
  EXPECT_EQ(Read(C::StringToSShort, "-0"), "0");
  EXPECT_EQ(Read(C::StringToSShort, "-0.0"), "0");
  EXPECT_EQ(Read(C::StringToSShort, "-0.5"), "KRPW_BADFORMAT");

  EXPECT_EQ(Read(C::StringToSLong, "2147483647"), "2147483647");
  EXPECT_EQ(Read(C::StringToSLong, "2147483648"), "KRPW_OUTOFRANGE");
  EXPECT_EQ(Read(C::StringToSLong, "-2147483647"), "-2147483647");
  EXPECT_EQ(Read(C::StringToSLong, "-2147483648"), "KRPW_OUTOFRANGE");
  EXPECT_EQ(Read(C::StringToSLong, "x"), "KRPW_BADFORMAT");
}

TEST_F(DataConversion, NumberWarningsCarryTheWholeText) {
  u16 value = 0;
  C::StringToUShort("70000.0", value);
  EXPECT_EQ(OnlyWarning(), "KRPW_OUTOFRANGE 70000.0");
  C::StringToUShort("7.25", value);
  EXPECT_EQ(OnlyWarning(), "KRPW_BADFORMAT 7.25");
}

TEST_F(DataConversion, LanguagesAreTakenAsTheyCome) {
  KRLanguage language;
  KRString text;
  EXPECT_EQ(C::StringToLanguage("ENG", language), 1);
  EXPECT_STREQ(language.GetString(), "ENG");
  EXPECT_EQ(language.IsValid(), 1);
  EXPECT_EQ(C::LanguageToString(language, text), 1);
  EXPECT_STREQ(text, "ENG");

  EXPECT_EQ(C::StringToLanguage("ENGLISH", language), 1);
  EXPECT_STREQ(language.GetString(), "ENGLISH");
  EXPECT_EQ(language.IsValid(), 0);
  EXPECT_EQ(language.GetString().SpecLength(), 3);

  const KRLanguage copy = language;
  EXPECT_TRUE(copy == language);
  language = KRString("FRA");
  EXPECT_TRUE(copy != language);
  EXPECT_TRUE(KRLanguage(KRString("FRA")) == language);
}

TEST_F(DataConversion, PayeeIdentifiersHaveTwelveCharacters) {
  KRString12 payee;
  KRString text;
  EXPECT_EQ(C::StringToPayeeID("123456789012", payee), 1);
  EXPECT_STREQ(payee, "123456789012");
  EXPECT_EQ(C::PayeeIDToString(payee, text), 1);
  EXPECT_STREQ(text, "123456789012");
  EXPECT_EQ(Log().Entries(), 0);

  EXPECT_EQ(C::StringToPayeeID("1234567890123", payee), 0);
  EXPECT_EQ(OnlyWarning(), "KRPW_TOOLONG 1234567890123");
  EXPECT_STREQ(payee, "123456789012");
  payee = KRString("1234567890123");
  EXPECT_EQ(C::PayeeIDToString(payee, text), 0);
  EXPECT_EQ(OnlyWarning(), "KRPW_TOOLONG 1234567890123");
  EXPECT_STREQ(text, "123456789012");
}

TEST_F(DataConversion, WorksWithoutAWarningOnAThreadThatHasNoLog) {
  KRBankTxType type = KRBankTxType_FEE;
  u16 result = 1;
  KRDetachThread(KRCurrentThreadId());
  result = C::StringToBankTx("NOSUCHWORD", type);
  KRAttachThread(KRCurrentThreadId());
  EXPECT_EQ(result, 0);
  EXPECT_EQ(type, KRBankTxType_FEE);
}

TEST(KeywordTraits, CarryTheTableToOtherCode) {
  using Traits = krofx::internal::KeywordTraits<KRDebtType>;
  static_assert(Traits::kCount == 2);
  static_assert(Traits::kTexts[1] == "ZERO");
  static_assert(Traits::kWriter == krofx::internal::KeywordWriter::Text && Traits::kTagged);
  static_assert(krofx::internal::KeywordEnum<KRDebtType>);
  static_assert(!krofx::internal::KeywordEnum<KRStringEncode>);
  EXPECT_EQ(krofx::internal::FindKeyword(Traits::kTable, "zero"), 1);
  EXPECT_EQ(krofx::internal::FindKeyword(Traits::kTable, "zer"), -1);
}

}  // namespace
