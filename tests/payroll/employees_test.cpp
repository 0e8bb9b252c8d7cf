// Employees: their tables, blank dates, the county that is read and never written, and the
// modification that carries only what changed.

#include "krofx/payroll/employees.h"

#include <gtest/gtest.h>

#include "payroll/requiring.h"
#include "support/aggregate_table.h"
#include "support/ofx_text.h"

namespace krofx::testing {
namespace {

TEST(EmployeeTables, EmployeeAndItsModification) {
  constexpr char kEmployee[] = R"(
    lenient
    N.EMPID         text          required
    N.ADDRINFO      child         required
    N.SSN           text          required
    N.DTHIRE        paydate       required
    N.DTRELEASE     paydate
    N.PAYROLL       child
    N.EMPTAX        child
    N.SICK          child
    N.VAC           child
    N.EMPDD         child
    N.INACTIVE      boolean       required
    N.EMPNAME       text
    N.BILLPAYACCT   text
    N.HASCUSTOMFLD  boolean
    N.EMPTYPE       word=REG      required
    N.EMPGENDER     word=UNKNOWN
    N.CUSTOMFLD     children
  )";
  ExpectTable<KREmployee>("N.EMP", kEmployee);
  ExpectTable<KREmployeeMod>("N.EMPMOD", Requiring("N.EMPID", kEmployee));
}

TEST(EmployeeTables, AddrInfo) {
  ExpectTable<KRAddrInfo>("N.ADDRINFO", R"(
    lenient
    N.TITLE        text  required
    N.FIRST        text  required
    N.MI           text  required
    N.LAST         text  required
    N.ADDR1        text  required
    N.ADDR2        text  required
    N.CITY         text  required
    N.STATE        text  required
    N.STATEWORKED  text
    N.STATELIVED   text
    N.POSTALCODE   text  required
    N.PHONE        text  required
    N.ALTPHONE     text  required
    N.INITIALS     text
    N.PRINTASNAME  text
    N.EMAIL        text
  )");
}

TEST(EmployeeTables, CustomField) {
  ExpectTable<KRCustomField>("N.CUSTOMFLD", R"(
    lenient
    N.FLDNAME   text  required
    N.FLDVALUE  text  required
  )");
}

TEST(EmployeeTables, EmployeeTaxInfo) {
  ExpectTable<KREmployeeTaxInfo>("N.EMPTAX", R"(
    lenient
    N.SUBJTOFIT    boolean   required
    N.SUBJTOSS     boolean   required
    N.SUBJTOFUTA   boolean   required
    N.SUBJTOMCARE  boolean   required
    N.QUALFORAEIC  boolean   required
    N.DECEASED     boolean   required
    N.OFFICER      boolean
    N.EMPFIT       child
    N.EMPSIT       child
    N.EMPSUI       child
    N.EMPSDI       child
    N.EMPOTHERTAX  children
    N.HEALTHCARE   child
    N.STATUTORY    boolean
  )");
}

TEST(EmployeeTables, EmployeeFit) {
  ExpectTable<KREmployeeFit>("N.EMPFIT", R"(
    lenient
    N.TAXLAWVER       u32
    N.TAXTBLMISCDATA  repeated=one,two,one
    N.FEDFILESTATUS   word=MARRIED          required
    N.ALLOWANCES      u16                   required
    N.EXTRAWITHHOLD   payamount             required
  )");
}

TEST(EmployeeTables, EmployeeSit) {
  ExpectTable<KREmployeeSit>("N.EMPSIT", R"(
    lenient
    N.TAXLAWVER        u32
    N.TAXTBLMISCDATA   repeated=one,two,one
    N.STATE            text                  required
    N.STATEFILESTATUS  u32                   required
    N.ALLOWANCES       u16                   required
    N.EXTRAWITHHOLD    payamount             required
  )");
}

TEST(EmployeeTables, StateInsurances) {
  constexpr char kInsurance[] = R"(
    lenient
    N.TAXLAWVER       u32
    N.TAXTBLMISCDATA  repeated=one,two,one
    N.STATE           text                  required
  )";
  ExpectTable<KREmployeeSui>("N.EMPSUI", kInsurance);
  ExpectTable<KREmployeeSdi>("N.EMPSDI", kInsurance);
}

TEST(EmployeeTables, EmployeeOtherTax) {
  ExpectTable<KREmployeeOtherTax>("N.EMPOTHERTAX", R"(
    lenient
    N.TAXLAWVER       u32
    N.TAXTBLMISCDATA  repeated=one,two,one
    N.PITEMID         text                  required
    N.W2NAME          text                  required
  )");
}

TEST(EmployeeTables, HealthCare) {
  ExpectTable<KRHealthCare>("N.HEALTHCARE", R"(
    lenient
    N.PROVIDER  word=EMPLOYEE  required
    N.LEVEL     word=EMPLOYEE  required
  )");
}

TEST(EmployeeTables, SickLeaveAndVacation) {
  constexpr char kHours[] = R"(
    lenient
    N.HRS         payamount    required
    N.ACCRUALPD   word=YEARLY
    N.HRSPERPD    payamount
    N.MAXHRS      payamount
    N.NEWYRRESET  boolean
  )";
  ExpectTable<KRSick>("N.SICK", kHours);
  ExpectTable<KRVacation>("N.VAC", kHours);
}

TEST(EmployeeTables, EmployeeDirectDepositInfo) {
  ExpectTable<KREmployeeDirectDepositInfo>("N.EMPDD", R"(
    lenient
    N.USEDD   boolean   required
    N.DDACCT  children
  )");
}

TEST(EmployeeTables, DirectDepositAccount) {
  ExpectTable<KRDirectDepositAccount>("N.DDACCT", R"(
    lenient
    N.ACCTNAME  text       required
    N.AMT       payamount
    BANKACCTTO  child      required
  )");
}

TEST(EmployeeTables, Payroll) {
  ExpectTable<KRPayroll>("N.PAYROLL", R"(
    lenient
    N.PAYPD          word=DAILY  required
    N.CLASS          text
    N.USETIME        boolean     required
    N.PPLANOVERRIDE  boolean
    N.WAGE           children
    N.ADJ            children
  )");
}

TEST(EmployeeTables, Wage) {
  ExpectTable<KRWage>("N.WAGE", R"(
    lenient
    N.PITEMID    text       required
    N.RATE       payamount  required
    N.PITEMNAME  text
  )");
}

TEST(EmployeeTables, PayrollAdjustment) {
  ExpectTable<KRPayrollAdjustment>("N.ADJ", R"(
    lenient
    N.PITEMID    text       required
    N.AMT        payamount  required
    N.PITEMNAME  text
    N.LIMIT      payamount
  )");
}

TEST(KREmployee, BlankReleaseDateIsPresentAndWrittenBack) {
  for (const char* const blank : {"^@~*", "__OFX_EMPTY_STRING__"}) {
    const Parsed<KREmployee> parsed(std::string("<N.DTRELEASE>") + blank);
    EXPECT_EQ(parsed.Status(), KRParseStatus_Accepted);
    EXPECT_EQ(parsed->ValidateTag(KRTag_N_DTRELEASE), 1);
    EXPECT_EQ(parsed->GetDateRelease().IsEmpty(), 1);
    EXPECT_EQ(TextOf(*parsed), "<N.DTRELEASE>^@~*\n");
  }
}

TEST(KREmployee, SetsDatesAndFlagsFromText) {
  auto employee = Make<KREmployee>();
  EXPECT_EQ(employee->SetDateHire("20260105"), 1);
  EXPECT_EQ(employee->SetDateRelease("^@~*"), 1);
  EXPECT_EQ(employee->SetInactive("N"), 1);
  EXPECT_EQ(employee->SetHasCustomField("Y"), 1);
  EXPECT_EQ(employee->GetHasCustomField(), 1);
  EXPECT_EQ(employee->GetDateHire().IsEmpty(), 0);
  EXPECT_EQ(TextOf(*employee),
            "<N.DTHIRE>20260105\n<N.DTRELEASE>^@~*\n<N.INACTIVE>N\n<N.HASCUSTOMFLD>Y\n");
}

TEST(KREmployee, ATextThatIsNoValueNotesNothing) {
  auto employee = Make<KREmployee>();
  EXPECT_EQ(employee->SetDateHire("soon"), 0);
  EXPECT_EQ(employee->SetInactive("perhaps"), 0);
  EXPECT_EQ(employee->SetEmployeeType(KRString("BOSS")), 0);
  EXPECT_EQ(employee->AnyValidPresent(), 0);
  TakeWarnings();
}

TEST(KREmployee, FlagOfCustomFieldsSaysNothingOfTheirNumber) {
  const Parsed<KREmployee> parsed("<N.HASCUSTOMFLD>N" +
                                  Aggregate("N.CUSTOMFLD", "<N.FLDNAME>Shoe size<N.FLDVALUE>44"));
  EXPECT_EQ(parsed->GetHasCustomField(), 0);
  EXPECT_EQ(parsed->GetNumCustomField(), 1);
  auto employee = Make<KREmployee>();
  EXPECT_EQ(employee->SetHasCustomField(static_cast<u16>(1)), 1);
  EXPECT_EQ(employee->GetNumCustomField(), 0);
  EXPECT_EQ(TextOf(*employee), "<N.HASCUSTOMFLD>Y\n");
}

TEST(KREmployee, UnknownKeywordLeavesTheRestToBeRead) {
  const Parsed<KREmployee> parsed("<N.EMPID>7<N.EMPTYPE>BOSS<N.EMPGENDER>FEMALE");
  EXPECT_EQ(parsed.Status(), KRParseStatus_Warnings);
  EXPECT_EQ(parsed->ValidateTag(KRTag_N_EMPTYPE), 0);
  EXPECT_EQ(parsed->GetEmployeeGender(), KREmployeeGender_FEMALE);
  EXPECT_EQ(TextOf(*parsed), "<N.EMPID>7\n<N.EMPGENDER>FEMALE\n");
}

TEST(KREmployeeMod, IsCompleteWithItsIdAlone) {
  auto change = Make<KREmployeeMod>();
  EXPECT_EQ(change->AllRequiredPresent(), 0);
  EXPECT_EQ(change->SetEmployeeID(KRString("7")), 1);
  EXPECT_EQ(change->AllRequiredPresent(), 1);
  EXPECT_EQ(TextOf(*change), "<N.EMPID>7\n");
}

TEST(KREmployeeMod, IsAnEmployee) {
  auto change = Make<KREmployeeMod>();
  KREmployee& employee = *change;
  EXPECT_EQ(employee.SetEmployeeName(KRString("Ada Lind")), 1);
  EXPECT_EQ(change->GetType(), KRTag_N_EMPMOD);
  EXPECT_EQ(employee.AllRequiredPresent(), 0);
  EXPECT_EQ(employee.GetFirstMissingRequiredTag(KRTag_None), KRTag_N_EMPID);
  EXPECT_EQ(employee.GetFirstMissingRequiredTag(KRTag_N_EMPID), KRTag_None);
}

TEST(KRAddrInfo, CountyIsHeldAndNeverPresentNorWritten) {
  auto address = Make<KRAddrInfo>();
  EXPECT_EQ(address->SetCity(KRString("Millbrook")), 1);
  EXPECT_EQ(address->SetCounty(KRString("Dutchess")), 0);
  EXPECT_EQ(address->SetTag(KRTag_N_COUNTY), 0);
  EXPECT_EQ(address->IsValidTag(KRTag_N_COUNTY), 0);
  EXPECT_EQ(Str(address->GetCounty()), "Dutchess");
  EXPECT_EQ(TextOf(*address), "<N.CITY>Millbrook\n");
  KRAddrInfo copy;
  EXPECT_EQ(copy.DeepCopyFrom(address.get()), 1);
  EXPECT_EQ(Str(copy.GetCounty()), "Dutchess");
}

TEST(KRAddrInfo, CountyIsPassedOverInAText) {
  const Parsed<KRAddrInfo> parsed("<N.COUNTY>Dutchess<N.CITY>Millbrook");
  EXPECT_EQ(parsed.Status(), KRParseStatus_Warnings);
  EXPECT_EQ(TextOf(*parsed), "<N.CITY>Millbrook\n");
}

TEST(KRAddrInfo, HandlerReadsTheCountyThatTheParserHoldsBack) {
  auto address = Make<KRAddrInfo>();
  const KRTagDictionaryEntry county = {KRTag_N_COUNTY, "N.COUNTY"};
  EXPECT_EQ(address->HandleTagElement(&county, KRString("Dutchess")), KRParseStatus_Accepted);
  EXPECT_EQ(Str(address->GetCounty()), "Dutchess");
  EXPECT_EQ(address->AnyValidPresent(), 0);
}

TEST(KRAddrInfo, WritesItsRowsInOneOrderWhateverTheOrderOfSetting) {
  auto address = Make<KRAddrInfo>();
  address->SetEMail(KRString("ada@example.org"));
  address->SetAltPhone(KRString("8455550143"));
  address->SetPhone(KRString("8455550142"));
  address->SetPostalCode(KRString("12545"));
  address->SetState(KRString("NY"));
  address->SetCity(KRString("Millbrook"));
  address->SetAddress2(KRString("Floor 2"));
  address->SetAddress1(KRString("1 Main St"));
  address->SetLastName(KRString("Lind"));
  address->SetMiddleInitial(KRString("B"));
  address->SetFirstName(KRString("Ada"));
  address->SetTitle(KRString("Ms"));
  EXPECT_EQ(address->AllRequiredPresent(), 1);
  EXPECT_EQ(TextOf(*address),
            InLines("<N.TITLE>Ms<N.FIRST>Ada<N.MI>B<N.LAST>Lind<N.ADDR1>1 Main St<N.ADDR2>Floor 2"
                    "<N.CITY>Millbrook<N.STATE>NY<N.POSTALCODE>12545<N.PHONE>8455550142"
                    "<N.ALTPHONE>8455550143<N.EMAIL>ada@example.org"));
}

TEST(KRHours, SickLeaveAndVacationDifferOnlyInTheirTag) {
  const std::string hours = "<N.HRS>12.5<N.ACCRUALPD>PAYROLL<N.HRSPERPD>2<N.NEWYRRESET>Y";
  const std::string text = Aggregate("N.SICK", hours) + Aggregate("N.VAC", hours);
  const Parsed<KREmployee> parsed(text);
  ASSERT_EQ(parsed.Status(), KRParseStatus_Accepted);
  EXPECT_EQ(TextOf(*parsed), InLines(text));
  EXPECT_EQ(TextOf(*parsed->GetSick()), TextOf(*parsed->GetVacation()));
  const KRHours& sick = *parsed->GetSick();
  EXPECT_EQ(sick.GetAccrualPeriod(), KRAccrualPeriod_PAYROLL);
  EXPECT_EQ(sick.GetHours(), KRPayrollAmount("12.5"));
}

TEST(KRHours, AmountsMayBeBlank) {
  auto vacation = Make<KRVacation>();
  EXPECT_EQ(vacation->SetHoursPerPeriod("^@~*"), 1);
  EXPECT_EQ(vacation->SetMaxHours(KRPayrollAmount(KRPayrollAmountType_Empty)), 1);
  EXPECT_EQ(vacation->GetHoursPerPeriod().IsEmpty(), 1);
  EXPECT_EQ(TextOf(*vacation), "<N.HRSPERPD>^@~*\n<N.MAXHRS>^@~*\n");
}

TEST(KREmployeeTaxBase, EveryTaxTellsTheLawFirst) {
  const std::string law = "<N.TAXLAWVER>3<N.TAXTBLMISCDATA>a<N.TAXTBLMISCDATA>b";
  const Parsed<KREmployeeSit> parsed("<N.STATE>NY" + law + "<N.STATEFILESTATUS>2");
  EXPECT_EQ(TextOf(*parsed), InLines(law + "<N.STATE>NY<N.STATEFILESTATUS>2"));
  KREmployeeTaxBase& base = *parsed;
  EXPECT_EQ(base.GetTaxLawVersion(), 3u);
  EXPECT_EQ(base.GetNumTaxTableMiscData(), 2);
  KREmployeeStateTaxBase& stateTax = *parsed;
  EXPECT_EQ(Str(stateTax.GetState()), "NY");
}

TEST(BlankValues, StayBlankWhenADateIsSetByText) {
  KREmployee employee;
  employee.SetMsgSetVersion(1);
  EXPECT_EQ(employee.SetDateRelease("^@~*"), 1);
  EXPECT_EQ(employee.SetDateRelease("20260131"), 1);
  EXPECT_EQ(employee.GetDateRelease().IsEmpty(), 1);
  EXPECT_EQ(TextOf(employee), "<N.DTRELEASE>^@~*\n");
  EXPECT_EQ(employee.SetDateRelease(KRPayrollDateTime("20260131")), 1);
  EXPECT_EQ(TextOf(employee), "<N.DTRELEASE>20260131\n");
}

TEST(BlankValues, KeepTheAmountBelowTheBlank) {
  KRSick sick;
  sick.SetMsgSetVersion(1);
  EXPECT_EQ(sick.SetHours("$12.50"), 1);
  EXPECT_EQ(sick.SetHours("^@~*"), 1);
  KRPayrollAmount hours = sick.GetHours();
  EXPECT_EQ(hours.IsEmpty(), 1);
  hours.SetEmpty(0);
  EXPECT_STREQ(hours, "$12.50");
  EXPECT_EQ(sick.SetHours("12x"), 0);
  EXPECT_EQ(sick.GetHours().IsEmpty(), 1) << "a text that is no amount changes nothing";
  EXPECT_EQ(sick.SetHours("7"), 1);
  EXPECT_EQ(TextOf(sick), "<N.HRS>7\n");
  KRParseLogger::TheKRParseLogger()->DeleteAll();
}

TEST(BlankValues, AreTakenWhateverNumberIsBelow) {
  KRSick sick;
  sick.SetMsgSetVersion(1);
  KRPayrollAmount hours(KRPrecisionInteger(1, 40), 0, 0);
  EXPECT_EQ(sick.SetHours(hours), 0);
  hours.SetEmpty(1);
  EXPECT_EQ(sick.SetHours(hours), 1);
  EXPECT_EQ(TextOf(sick), "<N.HRS>^@~*\n");
}

// A host's own tax, which writes the law first and then its own elements.
class OwnTax : public KREmployeeTaxBase {
 public:
  u16 GetArrayOfValidTags(KRArrayOfTags& tags) const override {
    static constexpr KRTagTableEntry kRows[] = {
        {KRTag_N_TAXTBLMISCDATA, 0xffff}, {KRTag_N_W2NAME, 0xffff}, {KRTag_N_TAXLAWVER, 0xffff}};
    tags = {kRows, 3};
    return 1;
  }
  KRBuildStatus Build(KRBuilder* builder) const override {
    const KRBuildStatus status = KREmployeeTaxBase::Build(builder);
    return status != KRBuildStatus_Done ? status
                                        : builder->AddTagKRString(KRTag_N_W2NAME, KRString("own"));
  }
};

TEST(KREmployeeTaxBase, SetsAndWritesItsTagsInAHostsClass) {
  OwnTax tax;
  tax.SetMsgSetVersion(1);
  EXPECT_EQ(tax.SetTaxLawVersion(KRString("2026")), 1);
  EXPECT_EQ(tax.SetTaxLawVersion(KRString("late")), 0);
  EXPECT_EQ(tax.GetTaxLawVersion(), 2026u);
  EXPECT_EQ(tax.AppendTaxTableMiscData(KRString("A")), 1);
  EXPECT_EQ(tax.AppendTaxTableMiscData(KRString("B")), 1);
  EXPECT_EQ(tax.AppendTaxTableMiscData(KRString()), 3);
  EXPECT_EQ(TextOf(tax),
            InLines("<N.TAXLAWVER>2026<N.TAXTBLMISCDATA>A<N.TAXTBLMISCDATA>B<N.W2NAME>own"));
  KRParseLogger::TheKRParseLogger()->DeleteAll();
}

TEST(KREmployee, WarnsOnceOfADateThatIsBadInSeveralWays) {
  for (const char* text : {"20261301[-05:P", "20260101[99:XX]", "20260101[99:XX", "soon"}) {
    const Parsed<KREmployee> parsed(std::string("<N.DTHIRE>") + text);
    const Lines one = {"BADFORMAT " + TagNumber(KRTag_N_DTHIRE) + " \"" + text + "\""};
    EXPECT_EQ(parsed.Warnings(), one);
    auto employee = Make<KREmployee>();
    TakeWarnings();
    EXPECT_EQ(employee->SetDateHire(text), 0);
    EXPECT_EQ(TakeWarnings(), one) << "of a setter too";
  }
}

TEST(KREmployee, TakesNoDateThatDoesNotExist) {
  auto employee = Make<KREmployee>();
  EXPECT_EQ(employee->SetDateHire(KRPayrollDateTime(2026, 13, 45, 0, 0, 0, 0)), 0);
  EXPECT_EQ(employee->ValidateTag(KRTag_N_DTHIRE), 0);
  KRPayrollDateTime blank;
  blank.SetEmpty(1);
  EXPECT_EQ(employee->SetDateHire(blank), 1);
}

}  // namespace
}  // namespace krofx::testing
