// Statements and closings of bank and card accounts, and the requests for them.

#include "showing/layout.h"

namespace krofx::command::layouts {

namespace {

constexpr std::string_view kAccount =
    "BANKACCTFROM/BANKID BANKACCTFROM/BRANCHID BANKACCTFROM/ACCTID|CCACCTFROM/ACCTID "
    "BANKACCTFROM/ACCTTYPE|BANKACCTFROM/ACCTTYPE2";

constexpr FieldSpec kRequestFields[] = {
    {"BANKACCTFROM/BANKID", "bank_id", "Bank", true},
    {"BANKACCTFROM/BRANCHID", "branch_id", "Branch", true},
    {"BANKACCTFROM/ACCTID|CCACCTFROM/ACCTID", "account_id", "Account", true},
    {"BANKACCTFROM/ACCTTYPE|BANKACCTFROM/ACCTTYPE2", "account_type", "Type", true},
    {"INCTRAN/DTSTART|DTSTART", "from", "From"},
    {"INCTRAN/DTEND|DTEND", "to", "To"},
    {"INCTRAN/INCLUDE", "include_transactions", "Transactions"},
};

constexpr FieldSpec kStatementFields[] = {
    {"CURDEF", "currency", "Currency"},
    {"BANKACCTFROM/BANKID", "bank_id", "Bank", true},
    {"BANKACCTFROM/BRANCHID", "branch_id", "Branch", true},
    {"BANKACCTFROM/ACCTID|CCACCTFROM/ACCTID", "account_id", "Account", true},
    {"BANKACCTFROM/ACCTTYPE|BANKACCTFROM/ACCTTYPE2", "account_type", "Type", true},
    {"BANKACCTFROM/ACCTKEY|CCACCTFROM/ACCTKEY", "account_key", "Key", true},
    {"BANKTRANLIST/DTSTART", "from", "From"},
    {"BANKTRANLIST/DTEND", "to", "To"},
    {"LEDGERBAL/BALAMT", "ledger_balance", "Ledger balance"},
    {"LEDGERBAL/DTASOF", "ledger_date", "as of"},
    {"AVAILBAL/BALAMT", "available_balance", "Available"},
    {"AVAILBAL/DTASOF", "available_date", "as of"},
    {"MKTGINFO", "marketing", "Note"},
};

constexpr FieldSpec kTransactionColumns[] = {
    {"DTPOSTED", "posted", "Posted"},
    {"DTUSER", "user_date", "User date", true},
    {"DTAVAIL", "available", "Available", true},
    {"TRNTYPE", "type", "Type"},
    {"TRNAMT", "amount", "Amount"},
    {"CURRENCY/CURSYM", "currency", "Currency"},
    {"CURRENCY/CURRATE", "rate", "Rate", true},
    {"ORIGCURRENCY/CURSYM", "original_currency", "Converted from", false, true},
    {"ORIGCURRENCY/CURRATE", "original_rate", "Rate", true},
    {"CHECKNUM", "check", "Check"},
    {"NAME|PAYEE/NAME|PAYEE2/NAME", "name", "Name"},
    {"MEMO|MEMO2", "memo", "Memo"},
    {"FITID", "id", "ID", false, true},
    {"CORRECTACTION", "correction", "Correction", true},
    {"CORRECTFITID", "corrects", "Corrects", true},
    {"SRVRTID|SRVRTID2", "server_id", "Server ID", true},
    {"REFNUM", "reference", "Reference", true},
    {"SIC", "sic", "SIC", true},
    {"PAYEEID|PAYEEID2", "payee_id", "Payee ID", true},
    {"PAYEE/CITY|PAYEE2/CITY", "payee_city", "City", true},
    {"BANKACCTTO/BANKID", "to_bank", "To bank", true},
    {"BANKACCTTO/ACCTID|CCACCTTO/ACCTID", "to_account", "To account", true},
};

constexpr TableSpec kTransactions[] = {
    {"BANKTRANLIST/STMTTRN", "transactions", "Transactions", kTransactionColumns, "amount"},
};

constexpr FieldSpec kClosingFields[] = {
    {"CURDEF", "currency", "Currency"},
    {"BANKACCTFROM/BANKID", "bank_id", "Bank", true},
    {"BANKACCTFROM/BRANCHID", "branch_id", "Branch", true},
    {"BANKACCTFROM/ACCTID|CCACCTFROM/ACCTID", "account_id", "Account", true},
    {"BANKACCTFROM/ACCTTYPE|BANKACCTFROM/ACCTTYPE2", "account_type", "Type", true},
};

constexpr FieldSpec kClosingColumns[] = {
    {"DTOPEN", "opened", "Opened"},
    {"DTCLOSE", "closed", "Closed"},
    {"DTNEXT", "next", "Next", true},
    {"BALOPEN", "opening_balance", "Opening"},
    {"BALCLOSE", "closing_balance", "Closing"},
    {"BALMIN", "minimum_balance", "Minimum", true},
    {"DEPANDCREDIT|PAYANDCREDIT", "credits", "Credits"},
    {"CHKANDDEB|PURANDADV", "debits", "Debits"},
    {"TOTALFEES", "fees", "Fees"},
    {"TOTALINT", "interest", "Interest"},
    {"FINCHG", "finance_charge", "Finance charge"},
    {"DEBADJ", "debit_adjustment", "Adjustment", true},
    {"DTPMTDUE", "payment_due_date", "Due"},
    {"MINPMTDUE", "minimum_payment", "Minimum due"},
    {"CREDITLIMIT", "credit_limit", "Limit"},
    {"DTPOSTSTART", "posted_from", "Posted from", true},
    {"DTPOSTEND", "posted_to", "Posted to", true},
    {"FITID", "id", "ID", true},
    {"MKTGINFO", "marketing", "Note", true},
};

constexpr TableSpec kClosings[] = {
    {"CLOSING|CCCLOSING", "closings", "Closings", kClosingColumns},
};

constexpr Layout kLayouts[] = {
    {"STMTRQ",
     "bank-statement-request",
     "Request for a bank statement",
     kAccount,
     kRequestFields,
     {}},
    {"CCSTMTRQ",
     "card-statement-request",
     "Request for a card statement",
     kAccount,
     kRequestFields,
     {}},
    {"STMTENDRQ",
     "bank-closing-request",
     "Request for bank closings",
     kAccount,
     kRequestFields,
     {}},
    {"CCSTMTENDRQ",
     "card-closing-request",
     "Request for card closings",
     kAccount,
     kRequestFields,
     {}},
    {"STMTRS", "bank-statement", "Bank statement", kAccount, kStatementFields, kTransactions},
    {"CCSTMTRS", "card-statement", "Card statement", kAccount, kStatementFields, kTransactions},
    {"STMTENDRS", "bank-closing", "Bank closings", kAccount, kClosingFields, kClosings},
    {"CCSTMTENDRS", "card-closing", "Card closings", kAccount, kClosingFields, kClosings},
};

}  // namespace

const std::span<const Layout> kStatements = kLayouts;

}  // namespace krofx::command::layouts
