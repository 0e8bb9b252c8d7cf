// Payroll items: their tables, the children that can be present together, and kinds of rates.

#include "krofx/payroll/items.h"

#include <gtest/gtest.h>

#include "payroll/requiring.h"
#include "support/aggregate_table.h"
#include "support/ofx_text.h"

namespace krofx::testing {
namespace {

TEST(ItemTables, ItemAndItsModification) {
  constexpr char kItem[] = R"(
    lenient
    N.PITEMID      text          required
    N.PITEMNAME    text          required
    N.INACTIVE     boolean       required
    N.ISEMP        boolean       required
    N.SPECIALTYPE  word=COMCARE
    N.SALARYITEM   child
    N.HRLYITEM     child
    N.ADDITEM      child
    N.DEDUCTITEM   child
    N.CONTRIBITEM  child
    N.COMMITEM     child
    N.TAXITEM      child
    N.DDITEM       child
  )";
  ExpectTable<KRPayrollItem>("N.PITEM", kItem);
  ExpectTable<KRPayrollItemMod>("N.PITEMMOD", Requiring("N.PITEMID", kItem));
}

TEST(ItemTables, SalaryAndHourlyWage) {
  constexpr char kWage[] = R"(
    lenient
    N.EXPACCT  text      required
    N.PAYTYPE  word=REG  required
  )";
  ExpectTable<KRSalaryItem>("N.SALARYITEM", kWage);
  ExpectTable<KRHourlyItem>("N.HRLYITEM", kWage);
}

TEST(ItemTables, AdditionItem) {
  ExpectTable<KRAdditionItem>("N.ADDITEM", R"(
    lenient
    N.CALCTYPE     word=FLATRATE
    N.ADJGROSS     boolean
    N.BASEDONQTY   boolean
    N.TAXAFFECTED  text
    N.EXPACCT      text              required
    N.DEFRATE      payamount         required
    N.DEFLIMIT     payamount         required
    N.EXPBYJOB     boolean           required
    N.TAXFORMLINE  word=125_MEDCARE  required
  )");
}

TEST(ItemTables, DeductionItem) {
  ExpectTable<KRDeductionItem>("N.DEDUCTITEM", R"(
    lenient
    N.CALCTYPE     word=FLATRATE
    N.ADJGROSS     boolean
    N.BASEDONQTY   boolean
    N.TAXAFFECTED  text
    N.LIABACCT     text              required
    N.LIABAGENCY   text              required
    N.ONSERVICE    boolean           required
    N.COMPID       text
    N.DEFRATE      payamount         required
    N.DEFLIMIT     payamount         required
    N.TAXFORMLINE  word=125_MEDCARE  required
  )");
}

TEST(ItemTables, ContributionItem) {
  ExpectTable<KRContributionItem>("N.CONTRIBITEM", R"(
    lenient
    N.CALCTYPE     word=FLATRATE
    N.ADJGROSS     boolean
    N.BASEDONQTY   boolean
    N.TAXAFFECTED  text
    N.EXPACCT      text              required
    N.LIABACCT     text              required
    N.LIABAGENCY   text              required
    N.COMPID       text
    N.DEFRATE      payamount         required
    N.DEFLIMIT     payamount         required
    N.EXPBYJOB     boolean           required
    N.ONSERVICE    boolean           required
    N.TAXFORMLINE  word=125_MEDCARE  required
  )");
}

TEST(ItemTables, CommissionItem) {
  ExpectTable<KRCommissionItem>("N.COMMITEM", R"(
    lenient
    N.CALCTYPE    word=FLATRATE
    N.ADJGROSS    boolean
    N.BASEDONQTY  boolean
    N.EXPACCT     text           required
    N.DEFRATE     payamount      required
    N.EXPBYJOB    boolean        required
  )");
}

TEST(ItemTables, TaxItem) {
  ExpectTable<KRTaxItem>("N.TAXITEM", R"(
    lenient
    N.CALCTYPE      word=FLATRATE
    N.ADJGROSS      boolean
    N.BASEDONQTY    boolean
    N.ONSERVICE     boolean           required
    N.LIABACCT      text              required
    N.LIABAGENCY    text              required
    N.COMPID        text
    N.FEDTAX        word=FIT
    N.STATETAXDESC  child
    N.OTHERTAX      u32
    N.EXPACCT       text
    N.RATE          payamount
    N.RATECHANGE    children
    N.DEFLIMIT      payamount
    N.TAXFORMLINE   word=125_MEDCARE
  )");
}

TEST(ItemTables, RateChange) {
  ExpectTable<KRRateChange>("N.RATECHANGE", R"(
    lenient
    N.RATE      payamount  required
    N.DTSUNSET  paydate    required
  )");
}

TEST(ItemTables, DirectDepositItem) {
  ExpectTable<KRDirectDepositItem>("N.DDITEM", R"(
    lenient
    N.LIABACCT    text  required
    N.LIABAGENCY  text  required
    N.COMPID      text
  )");
}

TEST(KRPayrollItem, WritesEveryChildThatIsSet) {
  auto item = Make<KRPayrollItem>();
  EXPECT_EQ(item->SetTaxItem(new KRTaxItem), 1);
  EXPECT_EQ(item->SetSalaryItem(new KRSalaryItem), 1);
  EXPECT_EQ(item->OneValidPresent(), 0);
  EXPECT_EQ(TextOf(*item), InLines("<N.SALARYITEM></N.SALARYITEM><N.TAXITEM></N.TAXITEM>"));
  EXPECT_EQ(item->GetHourlyItem(), nullptr);
}

TEST(KRPayrollItem, HasASetterForEachKind) {
  auto item = Make<KRPayrollItem>();
  EXPECT_EQ(item->SetPayrollItemID(KRString("4")), 1);
  EXPECT_EQ(item->SetPayrollItemName(KRString("Pension")), 1);
  EXPECT_EQ(item->SetInactive("N"), 1);
  EXPECT_EQ(item->SetIsEmployeePayrollItem("Y"), 1);
  EXPECT_EQ(item->SetPayrollItemSpecialType(KRPayrollItemSpecialType_DIRDEP), 1);
  EXPECT_EQ(item->SetDirectDepositItem(new KRDirectDepositItem), 1);
  EXPECT_EQ(item->SetCommissionItem(new KRCommissionItem), 1);
  EXPECT_EQ(item->SetContributionItem(new KRContributionItem), 1);
  EXPECT_EQ(item->SetDeductionItem(new KRDeductionItem), 1);
  EXPECT_EQ(item->SetAdditionItem(new KRAdditionItem), 1);
  EXPECT_EQ(item->SetHourlyItem(new KRHourlyItem), 1);
  EXPECT_EQ(item->AllRequiredPresent(), 1);
  EXPECT_EQ(item->GetNumberOfChildren(), 8);
  EXPECT_EQ(TextOf(*item),
            InLines("<N.PITEMID>4<N.PITEMNAME>Pension<N.INACTIVE>N<N.ISEMP>Y<N.SPECIALTYPE>DIRDEP"
                    "<N.HRLYITEM></N.HRLYITEM><N.ADDITEM></N.ADDITEM><N.DEDUCTITEM></N.DEDUCTITEM>"
                    "<N.CONTRIBITEM></N.CONTRIBITEM><N.COMMITEM></N.COMMITEM>"
                    "<N.DDITEM></N.DDITEM>"));
}

TEST(KRPayrollItemMod, IsCompleteWithItsIdAlone) {
  const Parsed<KRPayrollItemMod> parsed("<N.PITEMID>4");
  EXPECT_EQ(parsed->AllRequiredPresent(), 1);
  EXPECT_EQ(Make<KRPayrollItemMod>()->GetFirstMissingRequiredTag(KRTag_None), KRTag_N_PITEMID);
}

TEST(KRAdditionItem, RatesKeepTheirKindAndDoNotAddUp) {
  const Parsed<KRAdditionItem> parsed("<N.DEFRATE>5%<N.DEFLIMIT>$5");
  EXPECT_EQ(parsed->GetDefaultRate().IsPercent(), 1);
  EXPECT_EQ(parsed->GetDefaultLimit().IsDollarKind(), 1);
  KRPayrollAmount sum = parsed->GetDefaultRate();
  sum += parsed->GetDefaultLimit();
  EXPECT_EQ(sum, parsed->GetDefaultRate());
  EXPECT_EQ(TextOf(*parsed), "<N.DEFRATE>5%\n<N.DEFLIMIT>$5.00\n");
}

TEST(KRAdditionItem, UnknownCalculationStaysAbsent) {
  const Parsed<KRAdditionItem> parsed("<N.CALCTYPE>GUESS<N.EXPACCT>Bonus");
  EXPECT_EQ(parsed->ValidateTag(KRTag_N_CALCTYPE), 0);
  EXPECT_EQ(TextOf(*parsed), "<N.EXPACCT>Bonus\n");
}

TEST(KRTaxItem, NamesItsTaxInAnyOfThreeWaysOrInAll) {
  const std::string stateTax = Aggregate("N.STATETAXDESC", "<N.STATE>NY<N.STATETAX>SUI_ER");
  for (const std::string& text :
       {std::string("<N.FEDTAX>FUTA"), stateTax, std::string("<N.OTHERTAX>4294967295"),
        "<N.FEDTAX>AEIC" + stateTax + "<N.OTHERTAX>0"}) {
    const Parsed<KRTaxItem> parsed("<N.ONSERVICE>Y<N.LIABACCT>Taxes<N.LIABAGENCY>State" + text);
    EXPECT_EQ(parsed->AllRequiredPresent(), 1);
    EXPECT_EQ(TextOf(*parsed),
              InLines("<N.ONSERVICE>Y<N.LIABACCT>Taxes<N.LIABAGENCY>State" + text));
  }
}

}  // namespace
}  // namespace krofx::testing
