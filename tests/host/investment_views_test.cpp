// Views of investments, with every element of every kind of transaction and position: each getter
// gives what the text says, and nothing when the text does not say it.

#include <gtest/gtest.h>

#include <regex>
#include <string>
#include <string_view>
#include <vector>

#include "krofx/host/amounts.h"
#include "krofx/host/dates.h"
#include "krofx/host/investment_transaction_view.h"
#include "krofx/host/position_view.h"
#include "krofx/host/statement_view.h"
#include "krofx/messages/investment/statement.h"
#include "krofx/messages/investment/transactions.h"
#include "krofx/reader/reading.h"
#include "messages/investment_texts.h"
#include "support/failing_allocation.h"

namespace krofx::testing {
namespace {

using OptionalNumber = std::optional<KRPrecisionInteger>;

// What a getter gives, as a text in the form of OFX; empty for nothing.
std::string Shown(std::string_view text) { return std::string(text); }
std::string Shown(const OptionalNumber& number) {
  return std::string(std::string_view(ToText(number, 0)));
}
std::string Shown(const KRDateTime& date) {
  return std::regex_replace(std::string(std::string_view(ToText(ToDay(date)))), std::regex("-"),
                            "");
}
std::string Shown(std::optional<bool> answer) { return !answer ? "" : *answer ? "Y" : "N"; }
std::string Shown(std::optional<s16> number) { return number ? std::to_string(*number) : ""; }

// A getter, and the elements that it looks for: each may be after the tag of the aggregate that it
// must be in, and a slash.
template <class View>
struct Getter {
  const char* name;
  std::vector<std::string> elements;
  std::string (*get)(const View& view);
};

// The value of an element in a text; empty when it is not there. Numbers and days are in the form
// in which they are shown.
std::string Value(const std::string& text, const std::string& element) {
  const std::size_t slash = element.find('/');
  std::size_t at = 0;
  if (slash != std::string::npos) at = text.find("<" + element.substr(0, slash) + ">");
  const std::string tag = "<" + element.substr(slash + 1) + ">";
  at = at == std::string::npos ? at : text.find(tag, at);
  if (at == std::string::npos) return "";
  at += tag.size();
  std::string value = text.substr(at, text.find('<', at) - at);
  if (tag.starts_with("<DT")) return value.substr(0, 8);
  if (tag == "<UNIQUEID>") return value;
  const auto number = ToAmount(value);
  return number ? Shown(number) : value;
}

#define KROFX_GETTER(Name, ...)                                                \
  {                                                                            \
#Name, {__VA_ARGS__ }, [](const auto& view) { return Shown(view.Name()); } \
  }

const std::vector<Getter<InvestmentTransactionView>> kOfTransactions = {
    KROFX_GETTER(Traded, "DTTRADE", "DTPOSTED"),
    KROFX_GETTER(Settled, "DTSETTLE"),
    KROFX_GETTER(Detail, "BUYTYPE", "SELLTYPE", "OPTBUYTYPE", "OPTSELLTYPE", "SELLREASON",
                 "INCOMETYPE", "OPTACTION", "TFERACTION", "TRNTYPE"),
    KROFX_GETTER(SecurityId, "UNIQUEID"),
    KROFX_GETTER(SecurityIdType, "UNIQUEIDTYPE"),
    KROFX_GETTER(Units, "UNITS", "NEWUNITS"),
    KROFX_GETTER(Price, "UNITPRICE"),
    KROFX_GETTER(Total, "TOTAL", "TRNAMT", "FRACCASH"),
    KROFX_GETTER(Currency, "CURRENCY/CURSYM", "CURDEF"),
    KROFX_GETTER(Rate, "CURRENCY/CURRATE"),
    KROFX_GETTER(OriginalCurrency, "ORIGCURRENCY/CURSYM"),
    KROFX_GETTER(OriginalRate, "ORIGCURRENCY/CURRATE"),
    KROFX_GETTER(SecuritySubAccount, "SUBACCTSEC"),
    KROFX_GETTER(MoneySubAccount, "SUBACCTFUND"),
    KROFX_GETTER(FromSubAccount, "SUBACCTFROM"),
    KROFX_GETTER(ToSubAccount, "SUBACCTTO"),
    KROFX_GETTER(Commission, "COMMISSION"),
    KROFX_GETTER(Fees, "FEES"),
    KROFX_GETTER(Taxes, "TAXES"),
    KROFX_GETTER(Load, "LOAD"),
    KROFX_GETTER(Markup, "MARKUP"),
    KROFX_GETTER(Markdown, "MARKDOWN"),
    KROFX_GETTER(Withholding, "WITHHOLDING"),
    KROFX_GETTER(IsTaxExempt, "TAXEXEMPT"),
    KROFX_GETTER(AccruedInterest, "ACCRDINT"),
    KROFX_GETTER(Gain, "GAIN"),
    KROFX_GETTER(CostBasis, "AVGCOSTBASIS"),
    KROFX_GETTER(OldUnits, "OLDUNITS"),
    KROFX_GETTER(SplitNumerator, "NUMERATOR"),
    KROFX_GETTER(SplitDenominator, "DENOMINATOR"),
    KROFX_GETTER(Direction, "POSTYPE"),
    KROFX_GETTER(SharesPerContract, "SHPERCTRCT"),
    KROFX_GETTER(Party, "NAME"),
    KROFX_GETTER(Memo, "MEMO", "MEMO2"),
    KROFX_GETTER(Id, "FITID"),
    KROFX_GETTER(RelatedId, "RELFITID"),
    KROFX_GETTER(ServerId, "SRVRTID", "SRVRTID2"),
    // The file has no security list.
    KROFX_GETTER(Security),
    KROFX_GETTER(Ticker),
};

const std::vector<Getter<PositionView>> kOfPositions = {
    KROFX_GETTER(SecurityId, "UNIQUEID"),
    KROFX_GETTER(SecurityIdType, "UNIQUEIDTYPE"),
    KROFX_GETTER(Direction, "POSTYPE"),
    KROFX_GETTER(SubAccount, "HELDINACCT"),
    KROFX_GETTER(Units, "UNITS"),
    KROFX_GETTER(Price, "UNITPRICE"),
    KROFX_GETTER(Value, "MKTVAL"),
    KROFX_GETTER(PriceDate, "DTPRICEASOF"),
    KROFX_GETTER(Currency, "CURRENCY/CURSYM", "CURDEF"),
    KROFX_GETTER(Rate, "CURRENCY/CURRATE"),
    KROFX_GETTER(Memo, "MEMO", "MEMO2"),
    KROFX_GETTER(UnitsStreet, "UNITSSTREET"),
    KROFX_GETTER(UnitsUser, "UNITSUSER"),
    KROFX_GETTER(ReinvestDividends, "REINVDIV"),
    KROFX_GETTER(ReinvestGains, "REINVCG"),
    KROFX_GETTER(Secured, "SECURED"),
    KROFX_GETTER(Security),
    KROFX_GETTER(Ticker),
};

#undef KROFX_GETTER

// Expects of each getter the value of the first of its elements that is in the text.
template <class View>
void ExpectSays(const View& view, const std::vector<Getter<View>>& getters,
                const std::string& text) {
  for (const Getter<View>& getter : getters) {
    std::string expected;
    for (const std::string& element : getter.elements) {
      if (expected.empty()) expected = Value(text, element);
    }
    EXPECT_EQ(getter.get(view), expected) << getter.name << " of " << text;
  }
}

// An entry with amounts converted from another currency than they are in.
std::string WithTwoCurrencies(const Entry& entry) {
  return std::regex_replace(entry.Text(), std::regex(CurrencyText("ORIGCURRENCY")),
                            Aggregate("ORIGCURRENCY", "<CURRATE>0.85<CURSYM>GBP"));
}

// A text without its values: the aggregates are there, with nothing in them.
std::string WithoutValues(const std::string& text) {
  return std::regex_replace(text, std::regex("<[^/>]+>[^<]+"), "");
}

// Parses a statement with one entry in a list, and expects the only view to say what the text says.
template <class View, class Object>
void ExpectShown(ViewRange<View, Object> (*range)(const KRDataObj&), const char* list,
                 const std::vector<Getter<View>>& getters, const std::string& kind,
                 const std::string& before, const std::string& entry, u16 version) {
  const std::string text = before + Aggregate(list, entry);
  const Parsed<KRInvStmtRs> statement(text, version);
  ASSERT_EQ(statement.Status(), KRParseStatus_Accepted) << text;
  ASSERT_EQ(statement.Warnings(), Lines()) << text;
  int count = 0;
  for (const View view : range(*statement)) {
    ++count;
    EXPECT_EQ(view.Kind(), kind);
    ExpectSays(view, getters, text);
  }
  EXPECT_EQ(count, 1) << text;
}

void ExpectTransactionShown(const std::string& kind, const std::string& before,
                            const std::string& entry, u16 version) {
  ExpectShown<InvestmentTransactionView, KRDataObj>(
      [](const KRDataObj& root) { return InvestmentTransactions(root); }, "INVTRANLIST",
      kOfTransactions, kind, before, entry, version);
}

void ExpectPositionShown(const std::string& kind, const std::string& before,
                         const std::string& entry, u16 version) {
  ExpectShown<PositionView, KRInvPos>([](const KRDataObj& root) { return Positions(root); },
                                      "INVPOSLIST", kOfPositions, kind, before, entry, version);
}

TEST(InvestmentTransactionViews, SayWhatEachKindSays) {
  for (const u16 version : kVersions) {
    for (const Entry& entry : TransactionTexts(version)) {
      ExpectTransactionShown(entry.tag, "<CURDEF>USD", WithTwoCurrencies(entry), version);
    }
  }
}

TEST(InvestmentTransactionViews, SayNothingOfKindsWithoutElements) {
  for (const Entry& entry : TransactionTexts(1)) {
    ExpectTransactionShown(entry.tag, "", Aggregate(entry.tag, ""), 1);
    ExpectTransactionShown(entry.tag, "", WithoutValues(entry.Text()), 1);
  }
}

TEST(PositionViews, SayWhatEachKindSays) {
  for (const u16 version : kVersions) {
    for (const Entry& entry : PositionTexts(version)) {
      ExpectPositionShown(entry.tag, "<CURDEF>USD", entry.Text(), version);
    }
  }
}

TEST(PositionViews, SayNothingOfKindsWithoutElements) {
  for (const Entry& entry : PositionTexts(1)) {
    ExpectPositionShown(entry.tag, "", Aggregate(entry.tag, "<INVPOS></INVPOS>"), 1);
    ExpectPositionShown(entry.tag, "", WithoutValues(entry.Text()), 1);
  }
}

TEST(PositionViews, ShowAPositionThatIsInNoTree) {
  const Parsed<KRInvPos> alone("<POSTYPE>SHORT<UNITS>-5" + CurrencyText());
  int count = 0;
  for (const PositionView position : Positions(*alone)) {
    ++count;
    EXPECT_EQ(position.Kind(), "");
    ExpectSays(position, kOfPositions, "<POSTYPE>SHORT<UNITS>-5" + CurrencyText());
  }
  EXPECT_EQ(count, 1);
}

// A response with positions and securities of these IDs; the names of the latter count from 0.
std::string Portfolio(const std::vector<std::string>& positions,
                      const std::vector<std::string>& securities) {
  const auto id = [](const std::string& text) {
    return "<SECID><UNIQUEID>" + text + "<UNIQUEIDTYPE>CUSIP</SECID>";
  };
  std::string text = "<OFX><INVSTMTMSGSRSV1><INVSTMTTRNRS><INVSTMTRS><INVPOSLIST>";
  for (const std::string& each : positions) {
    text += "<POSSTOCK><INVPOS>" + id(each) + "</INVPOS></POSSTOCK>";
  }
  text +=
      "</INVPOSLIST></INVSTMTRS></INVSTMTTRNRS></INVSTMTMSGSRSV1><SECLISTMSGSRSV1>"
      "<SECLIST>";
  int number = 0;
  for (const std::string& each : securities) {
    text += "<STOCKINFO><SECINFO>" + id(each) + "<SECNAME>" + std::to_string(number++) +
            "</SECINFO></STOCKINFO>";
  }
  return text + "</SECLIST></SECLISTMSGSRSV1></OFX>";
}

std::vector<std::string> NamesIn(const Reading& reading) {
  std::vector<std::string> names;
  for (const PositionView& position : Positions(reading)) {
    names.push_back(Shown(position.Security()));
  }
  return names;
}

TEST(PositionView, TakesTheFirstSecurityOfItsId) {
  const Reading reading =
      Read(Portfolio({"c", "a", "b", "d", "ab", ""}, {"b", "a", "c", "a", "b", "aa"}));
  EXPECT_EQ(NamesIn(reading), (std::vector<std::string>{"2", "1", "0", "", "", ""}));
}

TEST(PositionView, NamesItsSecurityWithoutMemoryForAListOfThem) {
  const Reading reading = Read(Portfolio({"c", "a"}, {"a", "b", "c"}));
  for (const std::size_t nth : {1U, 2U}) {
    const FailingAllocation failing(nth, true);
    EXPECT_EQ(NamesIn(reading), (std::vector<std::string>{"2", "0"}));
  }
}

TEST(StatementView, NamesTheSecuritiesOfTheOneThatItWasAssigned) {
  const Reading first = Read(Portfolio({"b"}, {"a", "b"}));
  const Reading second = Read(Portfolio({"b"}, {"b", "a"}));
  std::vector<StatementView> views;
  for (const Reading* const reading : {&first, &second}) {
    for (const StatementView& statement : Statements(*reading)) views.push_back(statement);
  }
  ASSERT_EQ(views.size(), 2u);
  views[0] = views[1];
  for (const PositionView& position : views[0].Positions()) EXPECT_EQ(position.Security(), "0");
}

TEST(StatementView, NamesSecuritiesAfterTheRangeThatItIsFrom) {
  const Reading reading = Read(Portfolio({"b"}, {"a", "b"}));
  std::vector<StatementView> kept;
  for (const StatementView& statement : Statements(reading)) kept.push_back(statement);
  ASSERT_EQ(kept.size(), 1u);
  for (const PositionView& position : kept[0].Positions()) EXPECT_EQ(position.Security(), "1");
}

}  // namespace
}  // namespace krofx::testing
