// Tax liabilities, quarterly totals and the state of the services: their tables, and the address
// that a summary holds as a part of itself.

#include "krofx/payroll/taxes.h"

#include <gtest/gtest.h>

#include "support/aggregate_table.h"
#include "support/ofx_text.h"

namespace krofx::testing {
namespace {

TEST(TaxTables, TaxLiability) {
  ExpectTable<KRTaxLiability>("N.TAXLIAB", R"(
    lenient
    N.CURAMT        payamount  required
    N.QTRAMT        payamount  required
    N.YTDAMT        payamount  required
    N.CURWB         payamount  required
    N.QTRWB         payamount  required
    N.YTDWB         payamount  required
    N.TAXPMTTYPE    word=LIAB  required
    N.PITEMID       text       required
    N.FEDTAX        word=FIT
    N.STATETAXDESC  child
    N.OTHERTAX      u32
    N.PITEMNAME     text
  )");
}

TEST(TaxTables, StateTaxDesc) {
  ExpectTable<KRStateTaxDesc>("N.STATETAXDESC", R"(
    lenient
    N.STATE     text      required
    N.STATETAX  word=SIT  required
  )");
}

TEST(TaxTables, EmployeeQtrTotals) {
  ExpectTable<KREmployeeQtrTotals>("N.EMPQTRTOTALS", R"(
    lenient
    N.QTR            u16       required
    N.YR             u16       required
    N.INTERVIEWDONE  boolean   required
    N.EMPTAXSUMMARY  children  required
  )");
}

TEST(TaxTables, EmployeeTaxSummary) {
  ExpectTable<KREmployeeTaxSummary>("N.EMPTAXSUMMARY", R"(
    lenient
    N.EMPID         text       required
    N.STATE         text       required
    N.ADDRINFO      child      required
    N.SSN           text       required
    N.DTHIRE        paydate    required
    N.DTRELEASE     paydate    required
    N.OFFICER       boolean    required
    N.DECEASED      boolean    required
    N.STATUTORY     boolean    required
    N.DEFRDCOMP     boolean    required
    N.PENSIONPLAN   boolean    required
    N.MONTH1        boolean    required
    N.MONTH2        boolean    required
    N.MONTH3        boolean    required
    N.HRSWORKED     payamount  required
    N.WKSWORKED     payamount  required
    N.SUITAXID      text       required
    N.TOTALWAGE     payamount  required
    N.TOTALWAGEYTD  payamount  required
    N.EMPTAXQTD     children
    N.EMPTAXYTD     children
    N.EMPRPTQTD     children
    N.EMPRPTYTD     children
    N.W2OTHER       children
  )");
}

TEST(TaxTables, TaxOfQuarterAndYear) {
  constexpr char kTax[] = R"(
    lenient
    N.TAXAMT       payamount  required
    N.TAXABLEWAGE  payamount
    N.WAGEBASE     payamount  required
    N.FEDTAX       word=FIT
    N.STATETAX     word=SIT
    N.OTHERTAX     u32
    N.W2NAME       text
  )";
  ExpectTable<KREmployeeTaxQtd>("N.EMPTAXQTD", kTax);
  ExpectTable<KREmployeeTaxYtd>("N.EMPTAXYTD", kTax);
}

TEST(TaxTables, FormLineOfQuarterAndYear) {
  constexpr char kFormLine[] = R"(
    lenient
    N.TAXFORMLINE  word=125_MEDCARE  required
    N.AMT          payamount         required
  )";
  ExpectTable<KREmployeeReportingQtd>("N.EMPRPTQTD", kFormLine);
  ExpectTable<KREmployeeReportingYtd>("N.EMPRPTYTD", kFormLine);
}

TEST(TaxTables, W2Other) {
  ExpectTable<KRW2Other>("N.W2OTHER", R"(
    lenient
    N.PITEMID    text       required
    N.PITEMNAME  text       required
    N.AMT        payamount  required
  )");
}

TEST(TaxTables, TaxServiceStatus) {
  ExpectTable<KRTaxServiceStatus>("N.TAXSERVSTATUS", R"(
    lenient
    N.TAXSERVMODE  word=NO  required
    N.REASONTEXT   text
    N.DTACTIVE     paydate
    N.TERMINFO     child
  )");
}

TEST(TaxTables, TaxServiceQuit) {
  ExpectTable<KRTaxServiceQuit>("N.TAXSERVQUIT", R"(
    lenient
    N.REASONTEXT  text   required
    N.TERMINFO    child  required
  )");
}

TEST(TaxTables, TerminationInfo) {
  ExpectTable<KRTerminationInfo>("N.TERMINFO", R"(
    lenient
    N.DTTERM         paydate  required
    N.DISBURSEFUNDS  boolean  required
    N.FILEYREND      boolean  required
  )");
}

TEST(TaxTables, DirectDepositStatus) {
  ExpectTable<KRDirectDepositStatus>("N.DDSTATUS", R"(
    lenient
    N.DDMODE      word=NO    required
    N.LIMIT       payamount
    N.REASONTEXT  text
  )");
}

TEST(TaxTables, DirectDepositQuit) {
  ExpectTable<KRDirectDepositQuit>("N.DDQUIT", R"(
    lenient
    N.REASONTEXT  text     required
    N.DTTERM      paydate  required
  )");
}

TEST(KREmployeeTaxSummary, PassesWithABlankReleaseDateOnly) {
  const std::string address = Aggregate("N.ADDRINFO", "<N.TITLE>Ms");
  const std::string before =
      "<N.EMPID>7<N.STATE>NY" + address + "<N.SSN>123456789<N.DTHIRE>20260105";
  const std::string after =
      "<N.OFFICER>N<N.DECEASED>N<N.STATUTORY>N<N.DEFRDCOMP>N<N.PENSIONPLAN>N<N.MONTH1>Y<N.MONTH2>Y"
      "<N.MONTH3>Y<N.HRSWORKED>480<N.WKSWORKED>13<N.SUITAXID>55<N.TOTALWAGE>$9000.00"
      "<N.TOTALWAGEYTD>$9000.00";
  const Parsed<KREmployeeTaxSummary> none(before + after);
  EXPECT_EQ(none->AllRequiredPresent(), 0);
  EXPECT_EQ(none->GetFirstMissingRequiredTag(KRTag_None), KRTag_N_DTRELEASE);
  const std::string text = before + "<N.DTRELEASE>^@~*" + after;
  const Parsed<KREmployeeTaxSummary> blank(text);
  EXPECT_EQ(blank->AllRequiredPresent(), 1);
  EXPECT_EQ(TextOf(*blank), InLines(text));
}

TEST(KREmployeeTaxSummary, HoldsItsAddressAsAPartOfItself) {
  auto summary = Make<KREmployeeTaxSummary>(2);
  EXPECT_EQ(summary->GetAddrInfo().GetMsgSetVersion(), 2);
  EXPECT_EQ(summary->GetAddrInfo().GetType(), KRTag_N_ADDRINFO);
  EXPECT_EQ(summary->GetChild(0), nullptr);
  EXPECT_EQ(TextOf(*summary), "");
  auto address = Make<KRAddrInfo>();
  address->SetCity(KRString("Millbrook"));
  EXPECT_EQ(summary->SetAddrInfo(address.release()), 1);
  EXPECT_EQ(summary->GetAddrInfo().GetMsgSetVersion(), 2);
  EXPECT_EQ(summary->GetChild(0), &summary->GetAddrInfo());
  EXPECT_EQ(TextOf(*summary), InLines(Aggregate("N.ADDRINFO", "<N.CITY>Millbrook")));
  EXPECT_EQ(summary->SetAddrInfo(&summary->GetAddrInfo()), 1) << "its own part stays in place";
  EXPECT_EQ(Str(summary->GetAddrInfo().GetCity()), "Millbrook");
  EXPECT_EQ(summary->SetAddrInfo(nullptr), 0);
  EXPECT_EQ(summary->ClearAddrInfo(), 1);
  EXPECT_EQ(TextOf(*summary), "");
}

TEST(KREmployeeTaxSummary, ASecondAddressIsReadOverTheFirst) {
  const Parsed<KREmployeeTaxSummary> parsed(
      Aggregate("N.ADDRINFO", "<N.FIRST>Ada<N.CITY>Millbrook") +
      Aggregate("N.ADDRINFO", "<N.CITY>Amenia"));
  EXPECT_EQ(parsed.Status(), KRParseStatus_Accepted);
  EXPECT_EQ(TextOf(*parsed), InLines(Aggregate("N.ADDRINFO", "<N.FIRST>Ada<N.CITY>Amenia")));
}

TEST(KREmployeeTaxSummary, TakesNoAddressThatItsVersionDoesNotKnow) {
  KREmployeeTaxSummary summary;
  auto address = Make<KRAddrInfo>();
  EXPECT_EQ(summary.SetAddrInfo(address.release()), 0);
}

TEST(KREmployeeTaxSummary, TakesOwnershipOfAnAddressWhateverBecomesOfIt) {
  struct Counted : KRAddrInfo {
    explicit Counted(int& alive) : m_alive(alive) { ++m_alive; }
    ~Counted() override { --m_alive; }
    int& m_alive;
  };
  int alive = 0;
  KREmployeeTaxSummary summary;
  EXPECT_EQ(summary.SetAddrInfo(new Counted(alive)), 0);
  EXPECT_EQ(alive, 0);
  summary.SetMsgSetVersion(1);
  EXPECT_EQ(summary.SetAddrInfo(new Counted(alive)), 1);
  EXPECT_EQ(alive, 0);
}

TEST(KREmployeeTaxSummary, HasNoElementOfItsAddress) {
  KREmployeeTaxSummary summary;
  summary.SetMsgSetVersion(1);
  KRParseLogger::TheKRParseLogger()->DeleteAll();
  const KRTagDictionaryEntry entry{KRTag_N_ADDRINFO, "N.ADDRINFO"};
  EXPECT_EQ(summary.HandleTagElement(&entry, KRString("12 Main St")), KRParseStatus_Invalid);
  EXPECT_EQ(TakeWarnings(), Lines());
  EXPECT_EQ(summary.ValidateTag(KRTag_N_ADDRINFO), 0);
}

TEST(KREmployeeQtrTotals, CopiesTheAddressesOfItsSummaries) {
  const std::string text =
      "<N.QTR>1<N.YR>2026" +
      Aggregate("N.EMPTAXSUMMARY", Aggregate("N.ADDRINFO", "<N.CITY>Millbrook") +
                                       Aggregate("N.W2OTHER", "<N.PITEMID>4"));
  KREmployeeQtrTotals copy;
  {
    const Parsed<KREmployeeQtrTotals> parsed(text);
    EXPECT_EQ(parsed->GetQuarter(), 1);
    EXPECT_EQ(parsed->GetYear(), 2026);
    EXPECT_EQ(copy.DeepCopyFrom(parsed.Get()), 1);
  }
  EXPECT_EQ(TextOf(copy), InLines(text));
}

TEST(KREmployeeQtrTotals, QuarterAndYearAreNumbersOfSixteenBits) {
  const Parsed<KREmployeeQtrTotals> parsed("<N.QTR>65535<N.YR>65536");
  EXPECT_EQ(parsed->GetQuarter(), 65535);
  EXPECT_EQ(parsed->ValidateTag(KRTag_N_YR), 0);
}

TEST(KREmployeeReportingYtd, IsTheSameAsForTheQuarterUnderItsOwnTag) {
  const std::string line = "<N.TAXFORMLINE>TTT20<N.AMT>$5.00";
  const std::string text = Aggregate("N.EMPRPTQTD", line) + Aggregate("N.EMPRPTYTD", line);
  const Parsed<KREmployeeTaxSummary> parsed(text);
  EXPECT_EQ(TextOf(*parsed), InLines(text));
  KREmployeeReportingQtd& year = *parsed->GetEmployeeReportingYtd(0);
  EXPECT_EQ(TextOf(year), TextOf(*parsed->GetEmployeeReportingQtd(0)));
  EXPECT_EQ(year.GetTaxFormLine(), KRTaxFormLine_TTT20);
}

TEST(KRTaxLiability, NamesItsTaxInAnyOfThreeWaysOrInNone) {
  const std::string amounts =
      "<N.CURAMT>$1.00<N.QTRAMT>$2.00<N.YTDAMT>$3.00<N.CURWB>$4.00<N.QTRWB>$5.00<N.YTDWB>$6.00"
      "<N.TAXPMTTYPE>LIAB<N.PITEMID>4";
  for (const std::string& tax :
       {std::string(), std::string("<N.FEDTAX>MED_ER_TIPS"),
        Aggregate("N.STATETAXDESC", "<N.STATE>NY<N.STATETAX>SIT"), std::string("<N.OTHERTAX>12")}) {
    const Parsed<KRTaxLiability> parsed(amounts + tax);
    EXPECT_EQ(parsed->AllRequiredPresent(), 1);
    EXPECT_EQ(TextOf(*parsed), InLines(amounts + tax));
  }
}

TEST(KRDirectDepositStatus, LimitMayBeBlank) {
  const Parsed<KRDirectDepositStatus> parsed("<N.DDMODE>ACTIVE<N.LIMIT>^@~*");
  EXPECT_EQ(parsed->GetLimit().IsEmpty(), 1);
  EXPECT_EQ(TextOf(*parsed), "<N.DDMODE>ACTIVE\n<N.LIMIT>^@~*\n");
}

}  // namespace
}  // namespace krofx::testing
