// Texts of investment aggregates with everything that they may hold: securities, positions,
// transactions and orders, one of each kind, in the order in which lists write them.

#ifndef KROFX_TESTS_MESSAGES_INVESTMENT_TEXTS_H_
#define KROFX_TESTS_MESSAGES_INVESTMENT_TEXTS_H_

#include <string>
#include <utility>
#include <vector>

#include "support/ofx_text.h"

namespace krofx::testing {

/// An aggregate of a list: its tag, and its text without that tag.
struct Entry {
  std::string tag;
  std::string content;

  std::string Text() const { return Aggregate(tag, content); }
};

using Entries = std::vector<Entry>;

/// The entries as text.
inline std::string TextOf(const Entries& entries) {
  std::string text;
  for (const Entry& entry : entries) text += entry.Text();
  return text;
}

/// The entries as text, last first.
inline std::string ReversedTextOf(const Entries& entries) {
  return TextOf(Entries(entries.rbegin(), entries.rend()));
}

inline constexpr u16 kVersions[] = {1, 2};

/// One of two texts, by version.
inline std::string ByVersion(u16 version, const char* first, const char* second) {
  return version == 2 ? second : first;
}

inline std::string SecIdText(const std::string& id = "931142103") {
  return Aggregate("SECID", "<UNIQUEID>" + id + "<UNIQUEIDTYPE>CUSIP");
}

inline std::string CurrencyText(const char* tag = "CURRENCY") {
  return Aggregate(tag, "<CURRATE>1.0825<CURSYM>EUR");
}

inline std::string BothCurrencies() { return CurrencyText() + CurrencyText("ORIGCURRENCY"); }

inline std::string MemoText(u16 version) {
  return ByVersion(version, "<MEMO>first", "<MEMO2>second");
}

inline std::string ServerIdText(u16 version) {
  return ByVersion(version, "<SRVRTID>s-1", "<SRVRTID2>s-2");
}

inline std::string InvAcctText() {
  return Aggregate("INVACCTFROM", "<BROKERID>broker.example<ACCTID>7-4401");
}

/// A complete request of a statement.
inline std::string StatementRequestText() {
  return InvAcctText() + Aggregate("INCTRAN", "<INCLUDE>Y") + "<INCOO>Y" +
         Aggregate("INCPOS", "<INCLUDE>Y") + "<INCBAL>N";
}

inline std::string SecInfoText(u16 version) {
  return Aggregate("SECINFO", SecIdText() +
                                  "<SECNAME>Green Mills<TICKER>GRML<FIID>1042<RATING>AA"
                                  "<UNITPRICE>27.25<DTASOF>20260130" +
                                  CurrencyText() + MemoText(version));
}

/// The five kinds of securities.
inline Entries SecurityTexts(u16 version) {
  const std::string info = SecInfoText(version);
  return {
      {"DEBTINFO", info + "<PARVALUE>1000<DEBTTYPE>COUPON<DEBTCLASS>TREASURY<COUPONRT>4.125"
                          "<DTCOUPON>20260515<COUPONFREQ>SEMIANNUAL<CALLPRICE>1010"
                          "<YIELDTOCALL>4.2<DTCALL>20290515<CALLTYPE>CALL<YIELDTOMAT>4.3"
                          "<DTMAT>20360515<ASSETCLASS>DOMESTICBOND<FIASSETCLASS>Bonds"},
      {"MFINFO",
       info + "<MFTYPE>OPENEND<YIELD>3.1<DTYIELDASOF>20260130" +
           Aggregate("MFASSETCLASS", Aggregate("PORTION", "<ASSETCLASS>LARGESTOCK<PERCENT>60") +
                                         Aggregate("PORTION", "<ASSETCLASS>MONEYMRKT<PERCENT>40")) +
           Aggregate("FIMFASSETCLASS",
                     Aggregate("FIPORTION", "<FIASSETCLASS>Alpine<PERCENT>33.3") +
                         Aggregate("FIPORTION", "<FIASSETCLASS>Coastal<PERCENT>66.7"))},
      {"OPTINFO", info + "<OPTTYPE>CALL<STRIKEPRICE>30<DTEXPIRE>20260619<SHPERCTRCT>100" +
                      SecIdText("500000007") + "<ASSETCLASS>OTHER<FIASSETCLASS>Options"},
      {"OTHERINFO", info + "<TYPEDESC>Warrant<ASSETCLASS>OTHER<FIASSETCLASS>Warrants"},
      {"STOCKINFO", info + "<STOCKTYPE>COMMON<YIELD>1.8<DTYIELDASOF>20260130"
                           "<ASSETCLASS>SMALLSTOCK<FIASSETCLASS>Mills"},
  };
}

/// The five kinds of positions.
inline Entries PositionTexts(u16 version) {
  const std::string position = Aggregate(
      "INVPOS", SecIdText() +
                    "<HELDINACCT>CASH<POSTYPE>LONG<UNITS>120.5<UNITPRICE>27.25<MKTVAL>3283.625"
                    "<DTPRICEASOF>20260130160000.000[-5:EST]" +
                    CurrencyText() + MemoText(version));
  return {
      {"POSDEBT", position},
      {"POSMF", position + "<UNITSSTREET>100<UNITSUSER>20.5<REINVDIV>Y<REINVCG>N"},
      {"POSOPT", position + "<SECURED>COVERED"},
      {"POSOTHER", position},
      {"POSSTOCK", position + "<UNITSSTREET>100<UNITSUSER>20.5<REINVDIV>N"},
  };
}

inline std::string InvTranText(u16 version) {
  return Aggregate("INVTRAN", "<FITID>t-1" + ServerIdText(version) +
                                  "<DTTRADE>20260112<DTSETTLE>20260114" + MemoText(version));
}

inline std::string ReversalText(u16 version) {
  return ByVersion(version, "", "<REVERSALFEES>1.5<REVERSALFITID>t-0");
}

/// The 21 kinds of transactions.
inline Entries TransactionTexts(u16 version) {
  const std::string head = InvTranText(version);
  const std::string security = head + SecIdText();
  const std::string buy = Aggregate(
      "INVBUY", security +
                    "<UNITS>100<UNITPRICE>27.25<MARKUP>.05<COMMISSION>9.95<TAXES>.3<FEES>.02"
                    "<LOAD>0<TOTAL>-2735.32" +
                    ReversalText(version) + BothCurrencies() +
                    "<SUBACCTSEC>CASH<SUBACCTFUND>MARGIN");
  const std::string sell = Aggregate(
      "INVSELL",
      security +
          "<UNITS>-100<UNITPRICE>31.5<MARKDOWN>.05<COMMISSION>9.95<TAXES>.3<FEES>.02<LOAD>0"
          "<WITHHOLDING>12<TAXEXEMPT>N<TOTAL>3127.73" +
          ReversalText(version) + "<GAIN>392.41" + BothCurrencies() +
          "<SUBACCTSEC>CASH<SUBACCTFUND>SHORT");
  const std::string buyType = "<BUYTYPE>BUYTOCOVER";
  const std::string sellType = "<SELLTYPE>SELLSHORT";
  const std::string bankTransaction =
      Aggregate("STMTTRN", "<TRNTYPE>DEP<DTPOSTED>20260105<TRNAMT>5000<FITID>b-1<NAME>Deposit");
  return {
      {"BUYDEBT", buy + "<ACCRDINT>12.4"},
      {"BUYMF", buy + buyType + "<RELFITID>t-9"},
      {"BUYOPT", buy + "<OPTBUYTYPE>BUYTOOPEN<FIDELITY.OPTBUYTYPE>BUY<SHPERCTRCT>100"},
      {"BUYOTHER", buy + (version == 2 ? buyType : "")},
      {"BUYSTOCK", buy + buyType},
      {"CLOSUREOPT", security + "<OPTACTION>EXERCISE<UNITS>2<SHPERCTRCT>100<SUBACCTSEC>OTHER"
                                "<RELFITID>t-8<GAIN>-14.5"},
      {"INCOME", security +
                     "<INCOMETYPE>DIV<TOTAL>25<SUBACCTSEC>CASH<SUBACCTFUND>CASH<TAXEXEMPT>Y"
                     "<WITHHOLDING>3.75" +
                     BothCurrencies()},
      {"INVEXPENSE", security + "<TOTAL>-4.5<SUBACCTSEC>CASH<SUBACCTFUND>CASH" + BothCurrencies()},
      {"JRNLFUND", head + "<SUBACCTTO>MARGIN<SUBACCTFROM>CASH<TOTAL>750"},
      {"JRNLSEC", security + "<SUBACCTTO>SHORT<SUBACCTFROM>MARGIN<UNITS>15"},
      {"MARGININTEREST", head + "<TOTAL>-8.15<SUBACCTFUND>MARGIN" + BothCurrencies()},
      {"REINVEST", security +
                       "<INCOMETYPE>CGLONG<TOTAL>-60<SUBACCTSEC>CASH<UNITS>2.2018"
                       "<UNITPRICE>27.25<COMMISSION>0<TAXES>0<FEES>0<LOAD>0<TAXEXEMPT>N" +
                       BothCurrencies()},
      {"RETOFCAP", security + "<TOTAL>31<SUBACCTSEC>CASH<SUBACCTFUND>CASH" + BothCurrencies()},
      {"SELLDEBT", sell + "<SELLREASON>MATURITY<ACCRDINT>3.3"},
      {"SELLMF", sell + sellType + "<AVGCOSTBASIS>24.1<RELFITID>t-7"},
      {"SELLOPT", sell + "<OPTSELLTYPE>SELLTOOPEN<FIDELITY.OPTSELLTYPE>SELL<SHPERCTRCT>100"
                         "<RELFITID>t-6<RELTYPE>SPREAD<SECURED>NAKED"},
      {"SELLOTHER", sell + (version == 2 ? sellType : "")},
      {"SELLSTOCK", sell + sellType},
      {"SPLIT", security + "<SUBACCTSEC>CASH<OLDUNITS>100<NEWUNITS>150<NUMERATOR>3<DENOMINATOR>2" +
                    BothCurrencies() + "<FRACCASH>1.12<SUBACCTFUND>CASH"},
      {"TRANSFER", security + "<SUBACCTSEC>CASH<UNITS>40<TFERACTION>IN<POSTYPE>LONG" +
                       InvAcctText() + "<AVGCOSTBASIS>20.05<UNITPRICE>26<DTPURCHASE>20191104"},
      {"INVBANKTRAN", bankTransaction + "<SUBACCTFUND>CASH"},
  };
}

/// The eleven kinds of open orders.
inline Entries OrderTexts(u16 version) {
  const std::string order = Aggregate(
      "OO", "<FITID>o-1" + ServerIdText(version) + SecIdText() +
                "<DTPLACED>20260129093000.000[-5:EST]<UNITS>50<SUBACCT>MARGIN"
                "<DURATION>GOODTILCANCEL<RESTRICTION>ALLORNONE<MINUNITS>10<LIMITPRICE>26.5"
                "<STOPPRICE>31" +
                MemoText(version) + CurrencyText());
  const std::string unitType = "<UNITTYPE>SHARES";
  return {
      {"OOBUYDEBT", order + "<AUCTION>Y<DTAUCTION>20260210"},
      {"OOBUYMF", order + "<BUYTYPE>BUY" + unitType},
      {"OOBUYOPT", order + "<OPTBUYTYPE>BUYTOCLOSE"},
      {"OOBUYOTHER", order + unitType},
      {"OOBUYSTOCK", order + "<BUYTYPE>BUY"},
      {"OOSELLDEBT", order},
      {"OOSELLMF", order + "<SELLTYPE>SELL" + unitType + "<SELLALL>N"},
      {"OOSELLOPT", order + "<OPTSELLTYPE>SELLTOCLOSE"},
      {"OOSELLOTHER", order + unitType},
      {"OOSELLSTOCK", order + "<SELLTYPE>SELL"},
      {"OOSWITCHMF", order + SecIdText("500000007") + unitType + "<SWITCHALL>Y"},
  };
}

/// `text` with the first occurrence of the element or aggregate `piece` removed.
inline std::string Without(std::string text, const std::string& piece) {
  const std::size_t at = text.find(piece);
  if (at == std::string::npos) {
    ADD_FAILURE() << piece << " is not in " << text;
  } else {
    text.erase(at, piece.size());
  }
  return text;
}

/// Whether an aggregate with such content is complete, its children included.
template <class T>
u16 IsComplete(const std::string& content, u16 version) {
  const Parsed<T> parsed(content, version);
  EXPECT_EQ(parsed.Status(), KRParseStatus_Accepted);
  EXPECT_EQ(parsed.Warnings(), Lines());
  return parsed->AllRequiredPresent();
}

/// Reads each entry of a list's table as a list of its own, makes a deep copy, and compares the
/// texts of the original and the copy with what was read.
template <class List>
void ExpectEachCopied(const Entries& entries, const std::string& before, u16 version) {
  for (const Entry& entry : entries) {
    SCOPED_TRACE(entry.tag);
    auto parsed = std::make_unique<Parsed<List>>(before + entry.Text(), version);
    ASSERT_EQ(parsed->Status(), KRParseStatus_Accepted);
    const std::string expected = InLines(before + entry.Text());
    EXPECT_EQ(TextOf(**parsed), expected);
    EXPECT_EQ((*parsed)->AllRequiredPresent(), 1);
    KRDataObj* object = (*parsed)->GetChild(0);
    ASSERT_NE(object, nullptr);
    EXPECT_EQ(object->AllRequiredPresent(), 1);
    EXPECT_EQ(object->GetMsgSetVersion(), version);
    List copy;
    ASSERT_EQ(copy.DeepCopyFrom(parsed->Get()), 1);
    ASSERT_NE(copy.GetChild(0), nullptr);
    EXPECT_NE(copy.GetChild(0), object);
    parsed.reset();
    EXPECT_EQ(TextOf(copy), expected);
  }
}

/// Reads the entries last first, twice, and expects them written kind by kind in the order of the
/// table, those of one kind in the order of reading.
template <class List>
void ExpectWrittenByKind(const Entries& entries, const std::string& before, u16 version) {
  const Parsed<List> parsed(before + ReversedTextOf(entries) + ReversedTextOf(entries), version);
  ASSERT_EQ(parsed.Status(), KRParseStatus_Accepted);
  std::string expected = before;
  for (const Entry& entry : entries) expected += entry.Text() + entry.Text();
  EXPECT_EQ(TextOf(*parsed), InLines(expected));
  ASSERT_EQ(parsed->GetNumberOfChildren(), entries.size() * 2);
  for (u16 i = 0; i < parsed->GetNumberOfChildren(); ++i) {
    const char* tag =
        KRTagDictionary::TheKRTagDictionary()->GetTagString(parsed->GetChild(i)->GetType());
    EXPECT_EQ(tag, entries[i / 2].tag);
  }
}

}  // namespace krofx::testing

#endif  // KROFX_TESTS_MESSAGES_INVESTMENT_TEXTS_H_
