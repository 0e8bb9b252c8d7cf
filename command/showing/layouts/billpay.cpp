// Bill payment: payments and their models with payee, amount, due date and processing status, the
// invoices that they settle, and letters about them.

#include "showing/layout.h"

namespace krofx::command::layouts {

namespace {

// A payload holds its payment in PMTINFO or PMTINFO2; the paths look into either. Only what an
// exchange has appears.
constexpr std::string_view kAccount =
    "*/BANKACCTFROM/BANKID */BANKACCTFROM/BRANCHID */BANKACCTFROM/ACCTID "
    "*/BANKACCTFROM/ACCTTYPE|*/BANKACCTFROM/ACCTTYPE2";

constexpr FieldSpec kFields[] = {
    {"SRVRTID|SRVRTID2", "server_id", "Server ID"},
    {"RECSRVRTID|RECSRVRTID2", "model_id", "Model"},
    {"PMTINFO/PAYEE/NAME|PMTINFO2/PAYEE2/NAME|EXTDPAYEE/NAME", "payee", "Payee"},
    {"PMTINFO/PAYEEID|PMTINFO2/PAYEEID2|EXTDPAYEE/PAYEEID|EXTDPAYEE/PAYEEID2", "payee_id",
     "Payee ID"},
    {"PAYEELSTID|PAYEELSTID2|*/PAYEELSTID|*/PAYEELSTID2", "payee_list_id", "Payee list ID"},
    {"PMTINFO/PAYEE/CITY|PMTINFO2/PAYEE2/CITY", "payee_city", "City", true},
    {"*/PAYACCT", "payee_account", "Account with payee"},
    {"CURDEF", "currency", "Currency"},
    {"*/TRNAMT", "amount", "Amount"},
    {"*/DTDUE", "due", "Due"},
    {"*/DTAVAIL", "available", "Available", true},
    {"PMTPRCSTS/PMTPRCCODE", "processing_status", "Processing"},
    {"PMTPRCSTS/DTPMTPRC", "processing_date", "on"},
    {"CHECKNUM", "check", "Check"},
    {"*/BANKACCTFROM/BANKID", "bank_id", "Bank", true},
    {"*/BANKACCTFROM/BRANCHID", "branch_id", "Branch", true},
    {"*/BANKACCTFROM/ACCTID", "account_id", "Account", true},
    {"*/BANKACCTFROM/ACCTTYPE|*/BANKACCTFROM/ACCTTYPE2", "account_type", "Type", true},
    {"*/BANKACCTTO/BANKID", "to_bank", "To bank", true},
    {"*/BANKACCTTO/ACCTID", "to_account", "To account", true},
    {"*/MEMO|*/MEMO2", "memo", "Memo"},
    {"*/BILLREFINFO", "bill_reference", "Bill"},
    {"RECURRINST/FREQ", "frequency", "Recurs"},
    {"RECURRINST/NINSTS", "times", "Times"},
    {"INITIALAMT", "first_amount", "First amount"},
    {"FINALAMT", "last_amount", "Last amount"},
    {"MODPENDING", "modify_pending", "Pending ones too"},
    {"CANPENDING", "cancel_pending", "Pending ones too"},
};

constexpr FieldSpec kMailFields[] = {
    {"SRVRTID|SRVRTID2", "server_id", "Server ID"},
    {"MAIL/DTCREATED", "written", "Written"},
    {"MAIL/FROM", "from", "From"},
    {"MAIL/TO", "to", "To"},
    {"MAIL/SUBJECT", "subject", "Subject"},
    {"MAIL/MSGBODY", "text", "Text"},
    {"*/TRNAMT", "amount", "Amount"},
    {"*/DTDUE", "due", "Due"},
};

constexpr FieldSpec kInvoiceColumns[] = {
    {"INVNO", "number", "Number"},
    {"INVDATE", "date", "Date"},
    {"INVDESC", "description", "Description"},
    {"INVTOTALAMT", "total", "Total"},
    {"INVPAIDAMT", "paid", "Paid"},
    {"DISCOUNT/DSCAMT|DISCOUNT2/DSCAMT", "discount", "Discount"},
    {"DISCOUNT/DSCRATE|DISCOUNT2/DSCRATE", "discount_rate", "Rate"},
    {"DISCOUNT/DSCDESC|DISCOUNT2/DSCDESC", "discount_description", "for", true},
};

constexpr TableSpec kInvoices[] = {
    {"*/EXTDPMT/EXTDPMTINV/INVOICE|INVOICE2", "invoices", "Invoices", kInvoiceColumns,
     "total paid"},
};

constexpr Layout kLayouts[] = {
    {"PMTRQ", "payment-request", "Payment asked for", kAccount, kFields, kInvoices},
    {"PMTMODRQ", "payment-change-request", "Change of a payment asked for", kAccount, kFields,
     kInvoices},
    {"PMTCANCRQ", "payment-cancel-request", "Cancellation of a payment asked for", "", kFields, {}},
    {"PMTINQRQ", "payment-inquiry", "Inquiry about a payment", "", kFields, {}},
    {"PMTRS", "payment", "Payment", kAccount, kFields, kInvoices},
    {"PMTMODRS", "payment-change", "Changed payment", kAccount, kFields, kInvoices},
    {"PMTCANCRS", "payment-cancel", "Cancelled payment", "", kFields, {}},
    {"PMTINQRS", "payment-status", "Status of a payment", "", kFields, {}},
    {"RECPMTRQ", "recurring-payment-request", "Recurring payment asked for", kAccount, kFields,
     kInvoices},
    {"RECPMTMODRQ", "recurring-payment-change-request", "Change of a recurring payment asked for",
     kAccount, kFields, kInvoices},
    {"RECPMTCANCRQ",
     "recurring-payment-cancel-request",
     "Cancellation of a recurring payment asked for",
     "",
     kFields,
     {}},
    {"RECPMTRS", "recurring-payment", "Recurring payment", kAccount, kFields, kInvoices},
    {"RECPMTMODRS", "recurring-payment-change", "Changed recurring payment", kAccount, kFields,
     kInvoices},
    {"RECPMTCANCRS", "recurring-payment-cancel", "Cancelled recurring payment", "", kFields, {}},
    {"PMTMAILRQ", "payment-mail-request", "Letter to the bill-pay service", "", kMailFields, {}},
    {"PMTMAILRS", "payment-mail", "Letter from the bill-pay service", "", kMailFields, {}},
};

}  // namespace

const std::span<const Layout> kBillPay = kLayouts;

}  // namespace krofx::command::layouts
