// Payroll: batches with their runs, what a server says has changed, and enrolments.
//
// A batch is too deep for one section: every run, paycheck, transaction and quarter of it is a part
// with a section of its own, after that of the batch.

#include "showing/layout.h"

namespace krofx::command::layouts {

namespace {

constexpr FieldSpec kItemColumns[] = {
    {".", "record", "Record"},
    {"N.PITEMID", "id", "ID"},
    {"N.PITEMNAME", "name", "Name"},
    {"*.", "item", "Item"},
    {"N.SPECIALTYPE", "special_type", "Special type", true},
    {"N.INACTIVE", "inactive", "Inactive"},
    {"N.ISEMP", "of_employee", "Of employee", true},
    {"*/N.CALCTYPE", "calculation", "Calculation", true},
    {"*/N.EXPACCT", "expense_account", "Expense account", true},
    {"*/N.LIABACCT", "liability_account", "Liability account", true},
    {"*/N.LIABAGENCY", "agency", "Agency"},
    {"*/N.DEFRATE|N.TAXITEM/N.RATE", "rate", "Rate"},
    {"*/N.DEFLIMIT", "limit", "Limit"},
    {"N.TAXITEM/N.FEDTAX|N.TAXITEM/N.STATETAXDESC/N.STATETAX|N.TAXITEM/N.OTHERTAX", "tax", "Tax"},
    {"N.TAXITEM/N.STATETAXDESC/N.STATE", "tax_state", "State", true},
    {"*/N.TAXFORMLINE", "form_line", "Form line", true},
};

constexpr FieldSpec kEmployeeColumns[] = {
    {".", "record", "Record"},
    {"N.EMPID", "id", "ID"},
    {"N.EMPNAME|N.ADDRINFO/N.PRINTASNAME", "name", "Name"},
    {"N.ADDRINFO/N.FIRST", "first_name", "First name"},
    {"N.ADDRINFO/N.LAST", "last_name", "Last name"},
    {"N.SSN", "ssn", "SSN"},
    {"N.DTHIRE", "hired", "Hired"},
    {"N.DTRELEASE", "released", "Released"},
    {"N.EMPTYPE", "type", "Type"},
    {"N.EMPGENDER", "gender", "Gender", true},
    {"N.INACTIVE", "inactive", "Inactive"},
    {"N.PAYROLL/N.PAYPD", "pay_period", "Paid"},
    {"N.SICK/N.HRS", "sick_hours", "Sick hours"},
    {"N.VAC/N.HRS", "vacation_hours", "Vacation"},
    {"N.EMPTAX/N.EMPFIT/N.FEDFILESTATUS", "filing_status", "Filing status", true},
    {"N.EMPTAX/N.EMPFIT/N.ALLOWANCES", "allowances", "Allowances", true},
    {"N.ADDRINFO/N.ADDR1", "address1", "Address", true},
    {"N.ADDRINFO/N.ADDR2", "address2", "", true},
    {"N.ADDRINFO/N.POSTALCODE", "postal_code", "Postal code", true},
    {"N.ADDRINFO/N.CITY", "city", "City", true},
    {"N.ADDRINFO/N.STATE", "state", "State", true},
    {"N.ADDRINFO/N.PHONE", "phone", "Phone", true},
    {"N.ADDRINFO/N.EMAIL", "email", "Mail", true},
    {"N.BILLPAYACCT", "billpay_account", "Bill-pay account", true},
};

// What an employee has several of.
constexpr FieldSpec kWageColumns[] = {
    {"N.PITEMID", "item_id", "Item"},
    {"N.PITEMNAME", "name", "Name"},
    {"N.RATE", "rate", "Rate"},
};
constexpr FieldSpec kAdjustmentColumns[] = {
    {"N.PITEMID", "item_id", "Item"},
    {"N.PITEMNAME", "name", "Name"},
    {"N.AMT", "amount", "Amount"},
    {"N.LIMIT", "limit", "Limit"},
};
constexpr FieldSpec kAccountColumns[] = {
    {"N.ACCTNAME", "name", "Account"},
    {"BANKACCTTO/BANKID", "bank_id", "Bank"},
    {"BANKACCTTO/ACCTID", "account_id", "Number"},
    {"BANKACCTTO/ACCTTYPE|BANKACCTTO/ACCTTYPE2", "account_type", "Type"},
    {"N.AMT", "amount", "Share"},
};
constexpr FieldSpec kCustomColumns[] = {
    {"N.FLDNAME", "name", "Field"},
    {"N.FLDVALUE", "value", "Value"},
};
constexpr TableSpec kEmployeeTables[] = {
    {"N.PAYROLL/N.WAGE", "wages", "Wages", kWageColumns},
    {"N.PAYROLL/N.ADJ", "adjustments", "Adjustments", kAdjustmentColumns},
    {"N.EMPDD/N.DDACCT", "accounts", "Accounts", kAccountColumns},
    {"N.CUSTOMFLD", "custom_fields", "Custom fields", kCustomColumns},
};

constexpr FieldSpec kTransactionFields[] = {
    {"N.PAYROLLTXID", "id", "Transaction"},
    {"N.DTTX", "date", "Date"},
    {"N.PAYROLLTXTYPE", "type", "Type"},
    {"N.EMPNAME|N.EMPID", "employee", "Employee"},
    {"N.NAME", "name", "Name"},
    {"N.REFNUM", "reference", "Reference"},
    {"N.ACCTNAME", "account", "Account"},
    {"N.AMT", "amount", "Amount"},
    {"N.TXLINE/N.AMT=", "lines_total", "Total of lines"},
    {"N.DTPAYPDEND", "period_end", "Period to"},
    {"N.VOID", "void", "Void"},
    {"N.ONSERVICE", "on_service", "On service", true},
    {"N.CLEARED", "cleared", "Cleared", true},
    {"N.MEMO", "memo", "Memo"},
};

constexpr FieldSpec kTransactionLineColumns[] = {
    {"N.PITEMID", "item_id", "Item"},
    {"N.PITEMNAME", "name", "Name"},
    {"N.AMT", "amount", "Amount"},
    {"N.ACCTNAME", "account", "Account"},
    {"N.ISDD", "direct_deposit", "Direct deposit", true},
    {"N.WB", "wage_base", "Wage base", true},
    {"N.TAXABLEWAGE", "taxable_wage", "Taxable wage", true},
    {"N.TIPSWB", "tips_wage_base", "Tips wage base", true},
    {"N.CLASS", "class", "Class", true},
    {"N.MEMO", "memo", "Memo"},
};
constexpr TableSpec kTransactionLines[] = {
    {"N.TXLINE", "lines", "Lines", kTransactionLineColumns},
};

constexpr FieldSpec kRunFields[] = {
    {"N.DTPAYCHKS", "date", "Paychecks of"},
    {"N.PAYCHK/N.AMT=", "paychecks_total", "Total of paychecks"},
    {"N.DISBURSEADVICE/N.TAXLIABAMT", "tax_liability", "Tax liability"},
    {"N.DISBURSEADVICE/N.TAXQTR", "tax_quarter", "Tax quarter"},
    {"N.DDADVICE/N.DDAMT", "direct_deposits_total", "Direct deposits"},
};

constexpr FieldSpec kLiabilityColumns[] = {
    {"N.PITEMID", "item_id", "Item"},
    {"N.PITEMNAME", "name", "Name"},
    {"N.FEDTAX|N.STATETAXDESC/N.STATETAX|N.OTHERTAX", "tax", "Tax"},
    {"N.STATETAXDESC/N.STATE", "tax_state", "State"},
    {"N.TAXPMTTYPE", "type", "Type"},
    {"N.CURAMT", "amount", "Amount"},
    {"N.QTRAMT", "quarter_amount", "Quarter"},
    {"N.YTDAMT", "year_amount", "Year"},
    {"N.CURWB", "wage_base", "Wage base", true},
    {"N.QTRWB", "quarter_wage_base", "Wage base of quarter", true},
    {"N.YTDWB", "year_wage_base", "Wage base of year", true},
};
constexpr FieldSpec kDepositColumns[] = {
    {"N.EMPID", "employee_id", "Employee"},
    {"N.EMPNAME", "employee", "Name"},
    {"N.SSN", "ssn", "SSN"},
    {"N.AMT", "amount", "Amount"},
    {"BANKACCTTO/BANKID", "bank_id", "Bank"},
    {"BANKACCTTO/ACCTID", "account_id", "Number"},
    {"BANKACCTTO/ACCTTYPE|BANKACCTTO/ACCTTYPE2", "account_type", "Type"},
};
constexpr TableSpec kRunTables[] = {
    {"N.DISBURSEADVICE/N.TAXLIAB", "tax_liabilities", "Tax liabilities", kLiabilityColumns},
    {"N.DDADVICE/N.DD", "direct_deposits", "Direct deposits", kDepositColumns},
};

constexpr FieldSpec kPayCheckFields[] = {
    {"N.PAYCHKID", "id", "Paycheck"},
    {"N.EMPID", "employee_id", "Employee"},
    {"N.EMPNAME", "employee", "Name"},
    {"N.DTTX", "date", "Date"},
    {"N.PAYCHKTYPE", "type", "Type"},
    {"N.DTPAYPDBEGIN", "period_begin", "Period from"},
    {"N.DTPAYPDEND", "period_end", "Period to"},
    {"N.AMT", "amount", "Amount"},
    {"N.SALARYLINE,N.HRLYWAGELINE/N.AMT=", "pay_total", "Total of pay"},
    {"N.ADJLINE/N.AMT=", "adjustments_total", "Total of adjustments"},
    {"N.TAXLINE/N.AMT=", "taxes_total", "Total of taxes"},
    {"N.DDLINE/N.AMT=", "direct_deposits_total", "Total of direct deposits"},
    {"N.PAYCHKINFO/N.CHKNUM", "check", "Check"},
    {"N.PAYCHKINFO/N.SICKACCRUED", "sick_accrued", "Sick hours accrued"},
    {"N.PAYCHKINFO/N.VACACCRUED", "vacation_accrued", "Vacation accrued"},
    {"N.PAYCHKINFO/N.PRORATE", "prorated", "Prorated", true},
    {"N.VOID", "void", "Void"},
    {"N.CLASS", "class", "Class", true},
    {"N.ACCTNAME", "account", "Account", true},
    {"N.ONSERVICE", "on_service", "On service", true},
    {"N.CLEARED", "cleared", "Cleared", true},
    {"N.MEMO", "memo", "Memo"},
};

constexpr FieldSpec kPayCheckLineColumns[] = {
    {".", "line", "Line"},
    {"N.PITEMID", "item_id", "Item"},
    {"N.PITEMNAME", "name", "Name"},
    {"N.HRS", "hours", "Hours"},
    {"N.QTY", "quantity", "Quantity"},
    {"N.RATE", "rate", "Rate"},
    {"N.AMT", "amount", "Amount"},
    {"N.YTDAMT", "year_amount", "Year"},
    {"N.WB", "wage_base", "Wage base"},
    {"N.TAXABLEWAGE", "taxable_wage", "Taxable wage"},
    {"N.TIPSWB", "tips_wage_base", "Tips wage base", true},
    {"N.DDACCT/N.ACCTNAME", "account", "Account"},
    {"N.DDACCT/BANKACCTTO/ACCTID", "account_id", "Number"},
    {"N.CLASS", "class", "Class", true},
    {"N.JOB", "job", "Job", true},
    {"N.ITEM", "item", "Item", true},
    {"N.EXPBYJOB", "expense_by_job", "By job", true},
};
constexpr TableSpec kPayCheckLines[] = {
    {"N.SALARYLINE|N.HRLYWAGELINE|N.ADJLINE|N.TAXLINE|N.DDLINE", "lines", "Lines",
     kPayCheckLineColumns},
};

constexpr FieldSpec kQuarterFields[] = {
    {"N.QTR", "quarter", "Quarter"},
    {"N.YR", "year", "Year"},
    {"N.INTERVIEWDONE", "interview_done", "Interview done"},
};
constexpr FieldSpec kSummaryColumns[] = {
    {"N.EMPID", "employee_id", "Employee"},
    {"N.ADDRINFO/N.FIRST", "first_name", "First name"},
    {"N.ADDRINFO/N.LAST", "last_name", "Last name"},
    {"N.SSN", "ssn", "SSN"},
    {"N.STATE", "state", "State"},
    {"N.DTHIRE", "hired", "Hired", true},
    {"N.DTRELEASE", "released", "Released", true},
    {"N.HRSWORKED", "hours", "Hours"},
    {"N.WKSWORKED", "weeks", "Weeks"},
    {"N.TOTALWAGE", "wage", "Wage"},
    {"N.TOTALWAGEYTD", "year_wage", "Wage of year"},
    {"N.SUITAXID", "unemployment_id", "Unemployment ID", true},
};
constexpr TableSpec kQuarterTables[] = {
    {"N.EMPTAXSUMMARY", "employees", "Employees", kSummaryColumns},
};

constexpr FieldSpec kSummaryTaxColumns[] = {
    {".", "period", "Period"},
    {"N.FEDTAX|N.STATETAX|N.OTHERTAX", "tax", "Tax"},
    {"N.TAXAMT", "amount", "Amount"},
    {"N.TAXABLEWAGE", "taxable_wage", "Taxable wage"},
    {"N.WAGEBASE", "wage_base", "Wage base"},
    {"N.W2NAME", "name", "Name"},
};
constexpr FieldSpec kFormLineColumns[] = {
    {".", "period", "Period"},
    {"N.TAXFORMLINE", "form_line", "Form line"},
    {"N.AMT", "amount", "Amount"},
};
constexpr FieldSpec kOtherBoxColumns[] = {
    {"N.PITEMID", "item_id", "Item"},
    {"N.PITEMNAME", "name", "Name"},
    {"N.AMT", "amount", "Amount"},
};
constexpr TableSpec kSummaryTables[] = {
    {"N.EMPTAXQTD|N.EMPTAXYTD", "taxes", "Taxes", kSummaryTaxColumns},
    {"N.EMPRPTQTD|N.EMPRPTYTD", "form_lines", "Form lines", kFormLineColumns},
    {"N.W2OTHER", "other_boxes", "Other boxes", kOtherBoxColumns},
};

constexpr FieldSpec kBatchFields[] = {
    {"N.EMPDELID+", "deleted_employees", "Deleted employees"},
    {"N.PITEMDELID+", "deleted_items", "Deleted items"},
    {"N.PAYROLLTXDELID+", "deleted_transactions", "Deleted transactions"},
    {"N.COINFOMOD/N.LEGALNAME", "company", "Company"},
    {"N.ANOMALYTEXT", "anomaly", "Anomaly"},
    {"N.TAXSERVQUIT/N.REASONTEXT", "tax_service_quit", "Leaves the tax service"},
    {"N.TAXSERVQUIT/N.TERMINFO/N.DTTERM", "tax_service_end", "Tax service until"},
    {"N.DDQUIT/N.REASONTEXT", "direct_deposit_quit", "Leaves direct deposit"},
    {"N.DDQUIT/N.DTTERM", "direct_deposit_end", "Direct deposit until"},
};
constexpr TableSpec kBatchTables[] = {
    {"N.EMP|N.EMPMOD", "employees", "Employees", kEmployeeColumns},
    {"N.PITEM|N.PITEMMOD", "items", "Payroll items", kItemColumns},
};
constexpr std::string_view kBatchParts =
    "N.EMP|N.EMPMOD N.PAYROLLTX|N.PAYROLLTXMOD N.PAYROLLRUN N.EMPQTRTOTALS";

constexpr FieldSpec kUpdateFields[] = {
    {"N.PAYCHKNEXTID", "next_paycheck_id", "Next paycheck"},
    {"N.PAYROLLTXNEXTID", "next_transaction_id", "Next transaction"},
    {"N.EMPNEXTID", "next_employee_id", "Next employee"},
    {"N.PITEMNEXTID", "next_item_id", "Next item"},
    {"N.TAXSERVSTATUS/N.TAXSERVMODE", "tax_service", "Tax service"},
    {"N.TAXSERVSTATUS/N.DTACTIVE", "tax_service_since", "Tax service since"},
    {"N.TAXSERVSTATUS/N.REASONTEXT", "tax_service_reason", "Reason"},
    {"N.TAXSERVSTATUS/N.TERMINFO/N.DTTERM", "tax_service_end", "Tax service until"},
    {"N.DDSTATUS/N.DDMODE", "direct_deposit", "Direct deposit"},
    {"N.DDSTATUS/N.LIMIT", "direct_deposit_limit", "Limit"},
    {"N.DDSTATUS/N.REASONTEXT", "direct_deposit_reason", "Reason"},
    {"N.PAYROLLUPDATEDATA/N.EMPDELID+", "deleted_employees", "Deleted employees"},
    {"N.PAYROLLUPDATEDATA/N.PITEMDELID+", "deleted_items", "Deleted items"},
    {"N.PAYROLLUPDATEDATA/N.PAYROLLTXDELID+", "deleted_transactions", "Deleted transactions"},
    {"N.PAYROLLUPDATEDATA/N.COINFOMOD/N.LEGALNAME", "company", "Company"},
};
constexpr TableSpec kUpdateTables[] = {
    {"N.PAYROLLUPDATEDATA/N.EMPMOD", "employees", "Employees", kEmployeeColumns},
    {"N.PAYROLLUPDATEDATA/N.PITEMMOD", "items", "Payroll items", kItemColumns},
};
constexpr std::string_view kUpdateParts =
    "N.PAYROLLUPDATEDATA/N.EMPMOD N.PAYROLLUPDATEDATA/N.PAYROLLTXMOD "
    "N.PAYROLLUPDATEDATA/N.PAYCHKMOD";

constexpr FieldSpec kEnrollFields[] = {
    {"N.COINFO/N.LEGALNAME", "company", "Company"},
    {"N.COINFO/N.FEIN", "employer_id", "Employer ID"},
    {"N.COINFO/N.REGNUM", "registration", "Registration"},
    {"N.COINFO/N.ADDR1", "address1", "Address", true},
    {"N.COINFO/N.ADDR2", "address2", "", true},
    {"N.COINFO/N.POSTALCODE", "postal_code", "Postal code", true},
    {"N.COINFO/N.CITY", "city", "City"},
    {"N.COINFO/N.STATE", "state", "State"},
    {"N.COINFO/N.BANKNAME", "bank", "Bank"},
    {"N.COINFO/BANKACCTFROM/BANKID", "bank_id", "Bank ID", true},
    {"N.COINFO/BANKACCTFROM/ACCTID", "account_id", "Account"},
    {"N.COINFO/N.PRINCFIRSTNAME", "principal_first_name", "Principal"},
    {"N.COINFO/N.PRINCLASTNAME", "principal_last_name", ""},
    {"N.COINFO/N.CONTACT/N.CONFIRSTNAME", "contact_first_name", "Contact"},
    {"N.COINFO/N.CONTACT/N.CONLASTNAME", "contact_last_name", ""},
    {"N.COINFO/N.CONTACT/N.PHONE", "contact_phone", "Phone"},
    {"N.COINFO/N.PAYROLLTYPE", "payroll_type", "Payroll", true},
    {"N.COINFO/N.FEDPMTFREQ", "federal_payments", "Federal payments", true},
    {"N.TAXSERVICE", "tax_service", "Tax service"},
    {"N.DIRECTDEPOSIT", "direct_deposit", "Direct deposit"},
    {"N.DTNEXTPAYROLL", "next_payroll", "Next payroll"},
};
constexpr FieldSpec kEnrolledFields[] = {
    {"N.USERID", "user_id", "User"},
};

constexpr std::string_view kChecks = "N.PAYCHK|N.PAYCHKMOD";
constexpr std::string_view kEmployee = "N.EMPID N.EMPNAME|N.ADDRINFO/N.LAST";
constexpr std::string_view kSummaries = "N.EMPTAXSUMMARY";

constexpr Layout kLayouts[] = {
    {"N.PAYROLLENROLLRQ",
     "payroll-enrollment-request",
     "Enrolment for payroll asked for",
     "N.COINFO/N.LEGALNAME",
     kEnrollFields,
     {}},
    {"N.PAYROLLENROLLRS", "payroll-enrollment", "Enrolment for payroll", "", kEnrolledFields, {}},
    {"N.PAYROLLRQ", "payroll-batch", "Payroll batch", "", kBatchFields, kBatchTables, kBatchParts},
    {"N.PAYROLLRS", "payroll-batch-answer", "Answer to a payroll batch", "", {}, {}, kBatchParts},
    {"N.PAYROLLUPDATERQ", "payroll-update-request", "Payroll update asked for", "", {}, {}},
    {"N.PAYROLLUPDATERS", "payroll-update", "Payroll update", "", kUpdateFields, kUpdateTables,
     kUpdateParts},
    {"N.EMP", "employee", "Employee", kEmployee, {}, kEmployeeTables},
    {"N.EMPMOD", "employee-change", "Change of an employee", kEmployee, {}, kEmployeeTables},
    {"N.PAYROLLTX", "payroll-transaction", "Payroll transaction", "N.PAYROLLTXID",
     kTransactionFields, kTransactionLines},
    {"N.PAYROLLTXMOD", "payroll-transaction-change", "Change of a payroll transaction",
     "N.PAYROLLTXID", kTransactionFields, kTransactionLines},
    {"N.PAYROLLRUN", "payroll-run", "Payroll run", "N.DTPAYCHKS", kRunFields, kRunTables, kChecks},
    {"N.PAYCHK", "paycheck", "Paycheck", "N.PAYCHKID", kPayCheckFields, kPayCheckLines},
    {"N.PAYCHKMOD", "paycheck-change", "Change of a paycheck", "N.PAYCHKID", kPayCheckFields,
     kPayCheckLines},
    {"N.EMPQTRTOTALS", "payroll-quarter", "Quarter", "N.QTR N.YR", kQuarterFields, kQuarterTables,
     kSummaries},
    {"N.EMPTAXSUMMARY",
     "payroll-quarter-employee",
     "Quarter of an employee",
     "N.EMPID N.ADDRINFO/N.LAST",
     {},
     kSummaryTables},
};

}  // namespace

const std::span<const Layout> kPayroll = kLayouts;

}  // namespace krofx::command::layouts
