// The keywords of the payroll tags: the text of every value, and back.

#include <gtest/gtest.h>

#include <string>

#include "krofx/payroll/payroll_data_conversion.h"
#include "support/aggregate_table.h"
#include "support/ofx_text.h"

namespace krofx::testing {
namespace {

/// Compares the conversions of an enumeration with its keywords, from value 0.
template <class Enumeration>
void ExpectKeywords(u16 (*toText)(Enumeration, KRString&),
                    u16 (*fromText)(const KRString&, Enumeration&), const std::string& keywords) {
  const std::vector<std::string> all = SplitAt(keywords, ' ');
  for (std::size_t i = 0; i < all.size(); ++i) {
    SCOPED_TRACE(all[i]);
    const auto value = static_cast<Enumeration>(i);
    KRString text;
    EXPECT_EQ(toText(value, text), 1);
    EXPECT_EQ(Str(text), all[i]);
    auto read = static_cast<Enumeration>(all.size());
    EXPECT_EQ(fromText(KRString(all[i].c_str()), read), 1);
    EXPECT_EQ(read, value);
    std::string small = all[i];
    for (char& c : small) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    EXPECT_EQ(fromText(KRString(small.c_str()), read), 1);
    EXPECT_EQ(read, value);
  }
  EXPECT_EQ(TakeWarnings(), Lines());
  KRString text("kept");
  EXPECT_EQ(toText(static_cast<Enumeration>(all.size()), text), 0);
  EXPECT_EQ(Str(text), "kept");
  EXPECT_EQ(TakeWarnings().size(), 1u);
  auto read = static_cast<Enumeration>(1);
  EXPECT_EQ(fromText(KRString("NOSUCHWORD"), read), 0);
  EXPECT_EQ(read, static_cast<Enumeration>(1));
  EXPECT_EQ(TakeWarnings().size(), 1u);
}

TEST(KRPayrollDataConversion, KnowsTheKeywordsOfEveryEnumeration) {
  TakeWarnings();
  ExpectKeywords<KRPayrollTestingType>(&KRPayrollDataConversion::PayrollTestingTypeToString,
                                       &KRPayrollDataConversion::StringToPayrollTestingType,
                                       "ACH TAX Y");
  ExpectKeywords<KREmployeeType>(&KRPayrollDataConversion::EmployeeTypeToString,
                                 &KRPayrollDataConversion::StringToEmployeeType,
                                 "REG OFFICER STATUTORY OWNER REP");
  ExpectKeywords<KREmployeeGender>(&KRPayrollDataConversion::EmployeeGenderToString,
                                   &KRPayrollDataConversion::StringToEmployeeGender,
                                   "UNKNOWN FEMALE MALE");
  ExpectKeywords<KRPayrollFrequency>(&KRPayrollDataConversion::PayrollFrequencyToString,
                                     &KRPayrollDataConversion::StringToPayrollFrequency,
                                     "DAILY WEEKLY BIWEEKLY SEMIMONTHLY MONTHLY QUARTERLY YEARLY");
  ExpectKeywords<KRPayrollTxType>(&KRPayrollDataConversion::PayrollTxTypeToString,
                                  &KRPayrollDataConversion::StringToPayrollTxType,
                                  "CARRYOVER PRIORPMT LIABADJ LIABCHK REFUND DDRETURN DDREVERSAL");
  ExpectKeywords<KRHealthCareProvider>(&KRPayrollDataConversion::HealthCareProviderToString,
                                       &KRPayrollDataConversion::StringToHealthCareProvider,
                                       "EMPLOYEE COMPANY");
  ExpectKeywords<KRHealthCareLevel>(&KRPayrollDataConversion::HealthCareLevelToString,
                                    &KRPayrollDataConversion::StringToHealthCareLevel,
                                    "EMPLOYEE SPOUSE DEPENDENTS");
  ExpectKeywords<KRFederalFilingStatus>(&KRPayrollDataConversion::FederalFilingStatusToString,
                                        &KRPayrollDataConversion::StringToFederalFilingStatus,
                                        "SINGLE MARRIED HEADOFHOUSE");
  ExpectKeywords<KRAccrualPeriod>(&KRPayrollDataConversion::AccrualPeriodToString,
                                  &KRPayrollDataConversion::StringToAccrualPeriod,
                                  "YEARLY PAYROLL HOURLY");
  ExpectKeywords<KRPayCheckType>(&KRPayrollDataConversion::PayCheckTypeToString,
                                 &KRPayrollDataConversion::StringToPayCheckType, "PAYCHK YTDADJ");
  ExpectKeywords<KRPayType>(&KRPayrollDataConversion::PayTypeToString,
                            &KRPayrollDataConversion::StringToPayType, "REG SICK VAC");
  ExpectKeywords<KRTaxPaymentType>(&KRPayrollDataConversion::TaxPaymentTypeToString,
                                   &KRPayrollDataConversion::StringToTaxPaymentType, "LIAB PMT");
  ExpectKeywords<KRFederalTax>(
      &KRPayrollDataConversion::FederalTaxToString, &KRPayrollDataConversion::StringToFederalTax,
      "FIT SS_ER SS_EE MED_ER MED_EE FUTA AEIC SS_ER_TIPS SS_EE_TIPS MED_ER_TIPS MED_EE_TIPS");
  ExpectKeywords<KRStateTax>(&KRPayrollDataConversion::StateTaxToString,
                             &KRPayrollDataConversion::StringToStateTax,
                             "SIT SUI_ER SUI_EE SDI_ER SDI_EE");
  ExpectKeywords<KRPayrollType>(&KRPayrollDataConversion::PayrollTypeToString,
                                &KRPayrollDataConversion::StringToPayrollType,
                                "REG AGRI MSQE HOUSEHOLD");
  ExpectKeywords<KRFederalTaxPaymentFrequency>(
      &KRPayrollDataConversion::FederalTaxPaymentFrequencyToString,
      &KRPayrollDataConversion::StringToFederalTaxPaymentFrequency, "QTRLY MONTHLY SEMIWKLY DAILY");
  ExpectKeywords<KRTaxServiceMode>(&KRPayrollDataConversion::TaxServiceModeToString,
                                   &KRPayrollDataConversion::StringToTaxServiceMode,
                                   "NO APPLIED ACTIVE TERMINATED");
  ExpectKeywords<KRDirectDepositMode>(&KRPayrollDataConversion::DirectDepositModeToString,
                                      &KRPayrollDataConversion::StringToDirectDepositMode,
                                      "NO APPLIED ACTIVE TERMINATED");
  ExpectKeywords<KRCalculationType>(&KRPayrollDataConversion::CalculationTypeToString,
                                    &KRPayrollDataConversion::StringToCalculationType,
                                    "FLATRATE PCTGROSS PCTNET QTY PCTQTY TAXTABLE");
  ExpectKeywords<KRPayrollItemSpecialType>(&KRPayrollDataConversion::PayrollItemSpecialTypeToString,
                                           &KRPayrollDataConversion::StringToPayrollItemSpecialType,
                                           "COMCARE COSSEC EEMCARE EESSEC FEDTAX FUTA SALARY "
                                           "SICK_SALARY VAC_SALARY SICK_HRLY VAC_HRLY AEIC DIRDEP");
  ExpectKeywords<KRTaxFormLine>(
      &KRPayrollDataConversion::TaxFormLineToString, &KRPayrollDataConversion::StringToTaxFormLine,
      "NONE COMP NONTAXSICK OTHER TIPS DPDNTCARE SEC457 NONQUALPLAN FRNGBNFTS OTHMVEXP 401K 403B "
      "408K 457B 501C LTAX1 LTAX2 QUALMVEX MEDSAVING SIMPLE ADOPTION DPDNTCARE_CO LTAX_CO "
      "GROUPTERMLIFE ALLOCTIPS 125_MEDCARE 125_POP TTT1 TTT2 TTT3 TTT4 TTT5 TTT6 TTT7 TTT8 TTT9 "
      "TTT10 TTT11 TTT12 TTT13 TTT14 TTT15 TTT16 TTT17 TTT18 TTT19 TTT20");
}

TEST(KRPayrollDataConversion, NamesItsValuesAfterTheirTexts) {
  EXPECT_EQ(KRPayrollTxType_DDRETURN, 5u);
  EXPECT_EQ(KRPayrollTxType_DDREVERSAL, 6u);
  EXPECT_EQ(KRFederalTax_MED_EE_TIPS, 10u);
  EXPECT_EQ(KRTaxFormLine_401K, 10u);
  EXPECT_EQ(KRTaxFormLine_125_POP, 26u);
  EXPECT_EQ(KRTaxFormLine_TTT20, 46u);
}

}  // namespace
}  // namespace krofx::testing
