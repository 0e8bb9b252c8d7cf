// Accounts and statements in whole files.

#include <gtest/gtest.h>

#include "krofx/envelope/file_rq_rs.h"
#include "krofx/messages/banking/accounts.h"
#include "krofx/messages/banking/statements.h"
#include "krofx/messages/billpay/payees.h"
#include "krofx/messages/signon/signon.h"
#include "krofx/model/factory.h"
#include "support/ofx_text.h"

namespace krofx::testing {
namespace {

constexpr char kTransaction[] = "<TRNTYPE>DEBIT<DTPOSTED>20260105<TRNAMT>-12.50<FITID>1";

TEST(KRBankAccount, AccountTypeOfTheOtherVersionIsNotAccepted) {
  const auto parse = [](const char* type, u16 version) {
    const Parsed<KRFileRs> file(ResponseFile(
        "BANKMSGSRS",
        ResponseWrapper("STMTTRNRS",
                        Aggregate("STMTRS", Aggregate("BANKACCTFROM", std::string(type)))),
        version));
    EXPECT_EQ(file.Status(), KRParseStatus_Warnings);
    EXPECT_EQ(TextOf(*file).find("ACCTTYPE"), std::string::npos);
    return file.Warnings();
  };
  EXPECT_EQ(parse("<ACCTTYPE>CHECKING", 2),
            Lines({"INVALIDELEM <ACCTTYPE> " + TagNumber(KRTag_ACCTTYPE) + " \"CHECKING\""}));
  EXPECT_EQ(parse("<ACCTTYPE2>CHECKING", 1),
            Lines({"INVALIDELEM <ACCTTYPE2> " + TagNumber(KRTag_ACCTTYPE2) + " \"CHECKING\""}));
}

TEST(KRBankStatementTx, MemoOfTheOtherVersionIsDroppedFromAFile) {
  const std::string both =
      Aggregate("STMTTRN", std::string(kTransaction) + "<MEMO>first<MEMO2>second");
  for (const u16 version : {u16{1}, u16{2}}) {
    const Parsed<KRFileRs> file(BankStatementFile(both, version));
    EXPECT_EQ(file.Status(), KRParseStatus_Warnings);
    const std::string text = TextOf(*file);
    EXPECT_EQ(text.find("<MEMO>first") != std::string::npos, version == 1);
    EXPECT_EQ(text.find("<MEMO2>second") != std::string::npos, version == 2);
  }
}

TEST(KRBankStatementRs, TellsWhatItHolds) {
  const Parsed<KRFileRs> file(BankStatementFile(Aggregate("STMTTRN", kTransaction)));
  ASSERT_EQ(file.Status(), KRParseStatus_Accepted);
  const auto* statement = FindIn<KRBankStatementRs>(file.Get());
  ASSERT_NE(statement, nullptr);
  EXPECT_EQ(Str(statement->GetCurrencyDefault()), "USD");
  ASSERT_NE(statement->GetAccount(), nullptr);
  EXPECT_EQ(Str(statement->GetAccount()->GetAccountID()), "1029384756");
  EXPECT_EQ(Str(statement->GetBankAcctFrom()->GetBankID()), "011000015");
  EXPECT_EQ(statement->GetBankTranList()->GetNumStatementTx(), 1);
  KRPrecisionInteger balance(statement->GetLedgerBal()->GetBalAmt());
  EXPECT_STREQ(static_cast<const char*>(balance), "1523.75");
  EXPECT_EQ(statement->GetAvailBal(), nullptr);
}

TEST(KRCCStatementRs, UsesTheTransactionListOfBanks) {
  const Parsed<KRFileRs> file(ResponseFile(
      "CREDITCARDMSGSRS",
      ResponseWrapper(
          "CCSTMTTRNRS",
          Aggregate("CCSTMTRS",
                    "<CURDEF>USD" + Aggregate("CCACCTFROM", "<ACCTID>4410") +
                        Aggregate("BANKTRANLIST", "<DTSTART>20260101<DTEND>20260131" +
                                                      Aggregate("STMTTRN", kTransaction)) +
                        Aggregate("LEDGERBAL", "<BALAMT>1<DTASOF>20260131")))));
  ASSERT_EQ(file.Status(), KRParseStatus_Accepted);
  const auto* statement = FindIn<KRCCStatementRs>(file.Get());
  ASSERT_NE(statement, nullptr);
  EXPECT_EQ(Str(statement->GetCCAcctFrom()->GetAccountID()), "4410");
  EXPECT_EQ(statement->GetBankTranList()->GetNumStatementTx(), 1);
}

}  // namespace
}  // namespace krofx::testing
