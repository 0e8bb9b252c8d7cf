// The company and its contact: their tables, and a modification that requires nothing.

#include "krofx/payroll/company.h"

#include <gtest/gtest.h>

#include "krofx/messages/banking/accounts.h"
#include "payroll/requiring.h"
#include "support/aggregate_table.h"
#include "support/ofx_text.h"

namespace krofx::testing {
namespace {

TEST(CompanyTables, CompanyAndItsModification) {
  constexpr char kCompany[] = R"(
    lenient
    N.BANKNAME        text        required
    N.ACCTNAME        text        required
    N.REGNUM          text        required
    N.LEGALNAME       text        required
    N.FEIN            text        required
    N.ADDR1           text        required
    N.ADDR2           text
    N.CITY            text        required
    N.STATE           text        required
    N.POSTALCODE      text        required
    N.Q3TAXLIABAMT    payamount
    N.Q4TAXLIABAMT    payamount
    N.PRINCFIRSTNAME  text        required
    N.PRINCLASTNAME   text        required
    N.PRINCMIDINI     text
    N.PRINCTITLE      text
    BANKACCTFROM      child       required
    N.CONTACT         child       required
    N.PAYROLLTYPE     word=REG
    N.FEDPMTFREQ      word=QTRLY
    N.LEADDAYS        u16
    N.SEASONAL        boolean
    N.TAXREADY        boolean
    N.DTFILEQTRSTART  paydate
    N.TESTING         word=ACH
    N.MAILADDR1       text
    N.MAILADDR2       text
    N.MAILCITY        text
    N.MAILSTATE       text
    N.MAILPCODE       text
    N.STRTADDR1       text
    N.STRTADDR2       text
    N.STRTCITY        text
    N.STRTSTATE       text
    N.STRTPCODE       text
  )";
  ExpectTable<KRCompanyInfo>("N.COINFO", kCompany);
  ExpectTable<KRCompanyInfoMod>("N.COINFOMOD", Requiring("", kCompany));
}

TEST(CompanyTables, Contact) {
  ExpectTable<KRContact>("N.CONTACT", R"(
    lenient
    N.CONFIRSTNAME  text  required
    N.CONLASTNAME   text  required
    N.CONMIDINI     text
    N.CONTITLE      text
    N.PHONE         text  required
    N.FAX           text
    N.EMAIL         text
  )");
}

TEST(KRCompanyInfoMod, IsCompleteWithNothingSet) {
  auto change = Make<KRCompanyInfoMod>();
  EXPECT_EQ(change->AllRequiredPresent(), 1);
  EXPECT_EQ(change->GetFirstMissingRequiredTag(KRTag_None), KRTag_None);
  EXPECT_EQ(TextOf(*change), "");
  KRCompanyInfo& company = *change;
  EXPECT_EQ(company.SetLegalName(KRString("Lind & Co")), 1);
  EXPECT_EQ(change->AllRequiredPresent(), 1);
}

TEST(KRCompanyInfoMod, BlankClearsAndAbsentLeaves) {
  auto change = Make<KRCompanyInfoMod>();
  EXPECT_EQ(change->SetQ3TaxLiabilityAmount("^@~*"), 1);
  EXPECT_EQ(change->GetQ3TaxLiabilityAmount().IsEmpty(), 1);
  EXPECT_EQ(change->ValidateTag(KRTag_N_Q4TAXLIABAMT), 0);
  EXPECT_EQ(TextOf(*change), "<N.Q3TAXLIABAMT>^@~*\n");
}

TEST(KRCompanyInfo, HoldsTheAccountAndTheContactAsChildren) {
  const std::string text = BankAccountText("BANKACCTFROM") +
                           Aggregate("N.CONTACT", "<N.CONFIRSTNAME>Bo<N.PHONE>5550142");
  const Parsed<KRCompanyInfo> parsed(text);
  ASSERT_EQ(parsed.Status(), KRParseStatus_Accepted);
  EXPECT_EQ(Str(parsed->GetBankAcctFrom()->GetBankID()), "011000015");
  EXPECT_EQ(Str(parsed->GetContact()->GetFirstName()), "Bo");
  EXPECT_EQ(TextOf(*parsed), InLines(text));
}

TEST(KRCompanyInfo, ASecondContactTakesThePlaceOfTheFirst) {
  const Parsed<KRCompanyInfo> parsed(Aggregate("N.CONTACT", "<N.FAX>1") +
                                     Aggregate("N.CONTACT", "<N.EMAIL>bo@example.org"));
  EXPECT_EQ(parsed.Warnings(), Lines{"EXTRAAGG " + TagNumber(KRTag_N_CONTACT)});
  EXPECT_EQ(TextOf(*parsed), InLines(Aggregate("N.CONTACT", "<N.EMAIL>bo@example.org")));
}

}  // namespace
}  // namespace krofx::testing
