// Answers in the wrong message set or wrapper, several in one wrapper, and accounts of the wrong
// kind: each is read, and is where it belongs.

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "krofx/reader/reading.h"
#include "reader/ended_readings.h"
#include "support/readings.h"

namespace krofx::testing {
namespace {

const std::string kList =
    "<BANKTRANLIST><DTSTART>20260101<DTEND>20260131<STMTTRN><TRNTYPE>DEBIT<DTPOSTED>20260105"
    "<TRNAMT>-1.50<FITID>a<NAME>Grocer</STMTTRN></BANKTRANLIST>"
    "<LEDGERBAL><BALAMT>10.00<DTASOF>20260131</LEDGERBAL>";

std::string Account(const std::string& number) {
  return "<BANKACCTFROM><BANKID>1<ACCTID>" + number + "<ACCTTYPE>CHECKING</BANKACCTFROM>";
}
std::string Statement(const std::string& number) {
  return "<STMTRS><CURDEF>USD" + Account(number) + kList + "</STMTRS>";
}
const std::string kCardStatement =
    "<CCSTMTRS><CURDEF>USD<CCACCTFROM><ACCTID>4111</CCACCTFROM>" + kList + "</CCSTMTRS>";

// A response with these message sets beside the sign-on.
std::string Whole(const std::string& sets) { return File(SignOnResponseSet(1) + sets, 1); }

const std::string kBank = Aggregate("BANKMSGSRSV1", ResponseWrapper("STMTTRNRS", Statement("1")));
const std::string kCard =
    Aggregate("CREDITCARDMSGSRSV1", ResponseWrapper("CCSTMTTRNRS", kCardStatement));

// Expects the tree of a whole text, and the kinds of mendings, none of which is done when it must
// not be.
void ExpectAs(const std::string& text, const std::string& whole, const Lines& kinds) {
  const Reading reading = Read(text);
  const Reading expected = Read(whole);
  EXPECT_EQ(expected.mendings.size(), 0u);
  EXPECT_EQ(Written(reading.root), Written(expected.root)) << text;
  EXPECT_EQ(MendingNames(reading), kinds) << text;
  EXPECT_EQ(WarningLines(reading), WarningLines(expected)) << text;
  ExpectEndsAtEachKind(text);
}

TEST(Moves, ReadsACardStatementAmongThoseOfBanks) {
  const std::string wrapper = ResponseWrapper("CCSTMTTRNRS", kCardStatement);
  ExpectAs(Whole(Aggregate("BANKMSGSRSV1", wrapper)), Whole(kCard), {"moved"});
  ExpectAs(Whole(Aggregate("BANKMSGSRSV1", ResponseWrapper("STMTTRNRS", Statement("1")) + wrapper)),
           Whole(kBank + kCard), {"moved"});
  ExpectAs(Whole(Aggregate("BANKMSGSRSV1", wrapper + ResponseWrapper("STMTTRNRS", Statement("1")))),
           Whole(kBank + kCard), {"moved", "moved"});
}

TEST(Moves, ReadsABankStatementAmongThoseOfCards) {
  ExpectAs(Whole(Aggregate("CREDITCARDMSGSRSV1", ResponseWrapper("STMTTRNRS", Statement("1")))),
           Whole(kBank), {"moved"});
}

TEST(Moves, ReadsAStatementInTheWrapperOfAnotherKind) {
  ExpectAs(Whole(Aggregate("BANKMSGSRSV1", ResponseWrapper("STMTTRNRS", kCardStatement))),
           Whole(kCard), {"moved"});
  ExpectAs(Whole(Aggregate("CREDITCARDMSGSRSV1", ResponseWrapper("CCSTMTTRNRS", Statement("1")))),
           Whole(kBank), {"moved"});
  ExpectAs(Whole(Aggregate("BANKMSGSRSV1", kCardStatement)),
           Whole(Aggregate("CREDITCARDMSGSRSV1", Aggregate("CCSTMTTRNRS", kCardStatement))),
           {"moved"});
}

TEST(Moves, LeavesNoWrapperPresentThatBecameAnother) {
  const std::string statement = ResponseWrapper("STMTTRNRS", Statement("1"));
  const std::string closing =
      ResponseWrapper("STMTTRNRS", Aggregate("STMTENDRS", "<CURDEF>USD" + Account("1")));
  const auto presentAfter = [](const std::string& wrappers) {
    const Reading reading = Read(File(Aggregate("BANKMSGSRSV1", wrappers), 1));
    const auto* const set = FindIn<KRMessageSetRs>(reading.root);
    std::string present;
    if (set != nullptr && set->ValidateTag(KRTag_STMTTRNRS) != 0) present += "statements ";
    if (set != nullptr && set->ValidateTag(KRTag_STMTENDTRNRS) != 0) present += "closings";
    return present;
  };
  EXPECT_EQ(presentAfter(closing + closing), "closings");
  EXPECT_EQ(presentAfter(statement + closing + closing), "statements closings");
  EXPECT_EQ(presentAfter(closing + statement + closing), "statements closings");
}

TEST(Moves, LeavesASignOnWhatItIs) {
  const std::string text = File(Aggregate("SIGNONMSGSRSV1", Aggregate("SONRS", Statement("1"))), 1);
  ExpectEndsAtEachKind(text);
  const Reading reading = Read(text);
  EXPECT_EQ(MendingNames(reading), (Lines{"moved", "missing-end", "stray-end"}));
  auto* const signOn = FindIn<KRSignOnRs>(reading.root);
  ASSERT_NE(signOn, nullptr);
  EXPECT_EQ(signOn->GetType(), KRTag_SONRS);
  auto* const wrapper = FindIn<KRTransRs>(reading.root);
  ASSERT_NE(wrapper, nullptr);
  EXPECT_EQ(wrapper->GetType(), KRTag_STMTTRNRS);
  EXPECT_NE(wrapper->GetActualTrans(), nullptr);
}

TEST(Moves, ReadsBothStatementsOfOneWrapper) {
  const std::string both = ResponseWrapper("STMTTRNRS", Statement("1") + kCardStatement);
  ExpectAs(Whole(Aggregate("BANKMSGSRSV1", both)), Whole(kBank + kCard), {"moved"});
}

TEST(Moves, ReadsAMisplacedStatementWhoseWrapperDoesNotEnd) {
  const std::string open = "<CCSTMTTRNRS><TRNUID>1001" + GoodStatus() + kCardStatement;
  const std::string bank = ResponseWrapper("STMTTRNRS", Statement("1"));
  ExpectAs(Whole(Aggregate("BANKMSGSRSV1", bank + open)), Whole(kBank + kCard),
           {"moved", "missing-end"});
  ExpectAs(Whole(Aggregate("BANKMSGSRSV1", open + bank)), Whole(kCard + kBank),
           {"moved", "moved", "missing-end"});
  const std::string unended = "<STMTTRNRS><TRNUID>1001" + GoodStatus() + Statement("1");
  ExpectAs(Whole(Aggregate("BANKMSGSRSV1", unended + kCardStatement)), Whole(kBank + kCard),
           {"moved"});
}

TEST(Moves, ReadsASecurityListAmongTheStatements) {
  const std::string list = Aggregate(
      "SECLIST",
      Aggregate("STOCKINFO",
                Aggregate("SECINFO", Aggregate("SECID", "<UNIQUEID>123<UNIQUEIDTYPE>CUSIP") +
                                         "<SECNAME>Mills")));
  const std::string error =
      Aggregate("INVSTMTTRNRS", "<TRNUID>7<STATUS><CODE>2000<SEVERITY>ERROR</STATUS>");
  ExpectAs(Whole(Aggregate("INVSTMTMSGSRSV1", error + list)),
           Whole(Aggregate("INVSTMTMSGSRSV1", error) + Aggregate("SECLISTMSGSRSV1", list)),
           {"moved"});
}

TEST(Moves, GivesEachStatementOfOneWrapperItsOwn) {
  // The strict parser keeps the last one, without a warning.
  const std::string text = Whole(
      Aggregate("BANKMSGSRSV1", ResponseWrapper("STMTTRNRS", Statement("1") + Statement("2"))));
  const std::string whole =
      Whole(Aggregate("BANKMSGSRSV1", ResponseWrapper("STMTTRNRS", Statement("1")) +
                                          ResponseWrapper("STMTTRNRS", Statement("2"))));
  ExpectAs(text, whole, {"own-wrapper"});
  ReadOptions strict;
  strict.strict = true;
  EXPECT_EQ(Read(text, strict).status, KRParseStatus_Accepted);
}

TEST(Moves, KeepsTheFirstStatementOfAWrapperWhenTheSecondMustNotHaveItsOwn) {
  ReadOptions options;
  options.mend.Remove(MendingKind::kOwnWrapper);
  const Reading reading =
      Read(Whole(Aggregate("BANKMSGSRSV1",
                           ResponseWrapper("STMTTRNRS", Statement("1") + Statement("2")))),
           options);
  EXPECT_EQ(reading.status, KRParseStatus_Invalid);
  EXPECT_EQ(Written(reading.root), Written(Read(Whole(kBank)).root));
}

TEST(Moves, GivesASecondStatementTheIdentifierOfTheFirstWithoutAStatusToo) {
  const auto wrapped = [](const std::string& content) {
    return Aggregate("STMTTRNRS", "<TRNUID>1001" + content);
  };
  ExpectAs(Whole(Aggregate("BANKMSGSRSV1", wrapped(Statement("1") + Statement("2")))),
           Whole(Aggregate("BANKMSGSRSV1", wrapped(Statement("1")) + wrapped(Statement("2")))),
           {"own-wrapper"});
}

TEST(Moves, WarnsOfAnIdentifierThatIsTooLongOnceHoweverManyAnswersHaveIt) {
  const std::string without = "<CURDEF>USD" + Account("3") + kList;
  const std::string answers = Statement("1") + Statement("2") + without + kCardStatement;
  const Reading reading = Read(Whole(
      Aggregate("BANKMSGSRSV1",
                Aggregate("STMTTRNRS", "<TRNUID>" + std::string(40, '7') +
                                           "<STATUS><CODE>0<SEVERITY>INFO</STATUS>" + answers))));
  EXPECT_EQ(MendingNames(reading), (Lines{"own-wrapper", "missing-start", "own-wrapper", "moved"}));
  ASSERT_EQ(reading.warnings.size(), 1u);
  EXPECT_EQ(reading.warnings[0].warning, KRPW_TOOLONG);
  EXPECT_STREQ(reading.warnings[0].path, "OFX/BANKMSGSRSV1/STMTTRNRS[1]");
}

// A request with these message sets beside the sign-on.
std::string Asking(const std::string& sets) { return File(SignOnRequestSet(1) + sets, 1); }
std::string Question(const std::string& number) {
  return Aggregate("STMTRQ", Account(number) + "<INCTRAN><INCLUDE>Y</INCTRAN>");
}
const std::string kCardQuestion =
    Aggregate("CCSTMTRQ", "<CCACCTFROM><ACCTID>4111</CCACCTFROM><INCTRAN><INCLUDE>Y</INCTRAN>");
const std::string kBankAsked =
    Aggregate("BANKMSGSRQV1", RequestWrapper("STMTTRNRQ", Question("1")));
const std::string kCardAsked =
    Aggregate("CREDITCARDMSGSRQV1", RequestWrapper("CCSTMTTRNRQ", kCardQuestion));

TEST(Moves, ReadsRequestsAmongThoseOfOtherSets) {
  const std::string wrapper = RequestWrapper("CCSTMTTRNRQ", kCardQuestion);
  ExpectAs(Asking(Aggregate("BANKMSGSRQV1", wrapper)), Asking(kCardAsked), {"moved"});
  ExpectAs(Asking(Aggregate("BANKMSGSRQV1", RequestWrapper("STMTTRNRQ", Question("1")) + wrapper)),
           Asking(kBankAsked + kCardAsked), {"moved"});
  ExpectAs(Asking(Aggregate("BANKMSGSRQV1", RequestWrapper("STMTTRNRQ", kCardQuestion))),
           Asking(kCardAsked), {"moved"});
  ExpectAs(Asking(kBankAsked +
                  Aggregate("CREDITCARDMSGSRQV1", RequestWrapper("STMTTRNRQ", Question("2")))),
           Asking(Aggregate("BANKMSGSRQV1", RequestWrapper("STMTTRNRQ", Question("1")) +
                                                RequestWrapper("STMTTRNRQ", Question("2"))) +
                  Aggregate("CREDITCARDMSGSRQV1", "")),
           {"moved"});
}

TEST(Moves, GivesEachRequestOfOneWrapperItsOwn) {
  ExpectAs(
      Asking(Aggregate("BANKMSGSRQV1", RequestWrapper("STMTTRNRQ", Question("1") + Question("2")))),
      Asking(Aggregate("BANKMSGSRQV1", RequestWrapper("STMTTRNRQ", Question("1")) +
                                           RequestWrapper("STMTTRNRQ", Question("2")))),
      {"own-wrapper"});
  ExpectAs(
      Asking(Aggregate("BANKMSGSRQV1", RequestWrapper("STMTTRNRQ", Question("1") + kCardQuestion))),
      Asking(kBankAsked + kCardAsked), {"moved"});
}

TEST(Moves, ReadsAStatementWithoutItsOwnTag) {
  const std::string inside = "<CURDEF>USD" + Account("1") + kList;
  ExpectAs(Whole(Aggregate("BANKMSGSRSV1", ResponseWrapper("STMTTRNRS", inside))), Whole(kBank),
           {"missing-start"});
}

TEST(Moves, TakesAnAccountOfAnotherKind) {
  const std::string inside =
      "<CURDEF>USD" + Aggregate("CCACCTFROM", "<BANKID>1<ACCTID>1<ACCTTYPE>CHECKING") + kList;
  ExpectAs(
      Whole(Aggregate("BANKMSGSRSV1", ResponseWrapper("STMTTRNRS", Aggregate("STMTRS", inside)))),
      Whole(kBank), {"account-kind"});
  const std::string card = "<CURDEF>USD" + Aggregate("BANKACCTFROM", "<ACCTID>4111") + kList;
  ExpectAs(Whole(Aggregate("CREDITCARDMSGSRSV1",
                           ResponseWrapper("CCSTMTTRNRS", Aggregate("CCSTMTRS", card)))),
           Whole(kCard), {"account-kind"});
}

TEST(Moves, LeavesWhatAnAccountOfAnotherKindCannotHold) {
  const std::string card =
      "<CURDEF>USD" + Aggregate("BANKACCTFROM", "<BANKID>1<ACCTID>4111") + kList;
  ExpectAs(Whole(Aggregate("CREDITCARDMSGSRSV1",
                           ResponseWrapper("CCSTMTTRNRS", Aggregate("CCSTMTRS", card)))),
           Whole(kCard), {"account-kind", "misplaced"});
}

TEST(Moves, EndWithoutMemoryAsFatalOrLoseNothing) {
  const std::string card = ResponseWrapper("CCSTMTTRNRS", kCardStatement);
  ExpectFatalOrWhole(Whole(Aggregate(
      "BANKMSGSRSV1", ResponseWrapper("STMTTRNRS", Statement("1") + Statement("2")) + card)));
  ExpectFatalOrWhole(Whole(
      Aggregate("BANKMSGSRSV1", ResponseWrapper("STMTTRNRS", Statement("1") + kCardStatement))));
  ExpectFatalOrWhole(Whole(Aggregate("BANKMSGSRSV1", kCardStatement + card)));
}

}  // namespace
}  // namespace krofx::testing
