// Stop checks: which checks a bank is not to pay, and what became of each.

#include "showing/layout.h"

namespace krofx::command::layouts {

namespace {

constexpr std::string_view kAccount = "BANKACCTFROM/BANKID BANKACCTFROM/ACCTID";

constexpr FieldSpec kRequestFields[] = {
    {"BANKACCTFROM/BANKID", "bank_id", "Bank", true},
    {"BANKACCTFROM/ACCTID", "account_id", "Account", true},
    {"CHKRANGE/CHKNUMSTART", "first_check", "First check"},
    {"CHKRANGE/CHKNUMEND", "last_check", "Last check"},
    {"CHKDESC/CHECKNUM", "check", "Check"},
    {"CHKDESC/NAME", "name", "Payee"},
    {"CHKDESC/DTUSER", "user_date", "Written"},
    {"CHKDESC/TRNAMT", "amount", "Amount"},
};

constexpr FieldSpec kFields[] = {
    {"CURDEF", "currency", "Currency"},
    {"BANKACCTFROM/BANKID", "bank_id", "Bank", true},
    {"BANKACCTFROM/ACCTID", "account_id", "Account", true},
    {"FEE", "fee", "Fee"},
    {"FEEMSG", "fee_message", "Fee message"},
};

constexpr FieldSpec kCheckColumns[] = {
    {"CHECKNUM", "check", "Check"},
    {"NAME", "name", "Payee"},
    {"DTUSER", "user_date", "Written"},
    {"TRNAMT", "amount", "Amount"},
    {"CURRENCY/CURSYM", "currency", "Currency", true},
    {"ORIGCURRENCY/CURSYM", "original_currency", "Converted from", true},
    {"CHKSTATUS", "status", "Status"},
    {"CHKERROR", "error", "Error"},
};

constexpr TableSpec kChecks[] = {{"STPCHKNUM", "checks", "Checks", kCheckColumns, "amount"}};

constexpr Layout kLayouts[] = {
    {"STPCHKRQ", "stop-check-request", "Request to stop checks", kAccount, kRequestFields, {}},
    {"STPCHKRS", "stop-check", "Stopped checks", kAccount, kFields, kChecks},
};

}  // namespace

const std::span<const Layout> kStopChecks = kLayouts;

}  // namespace krofx::command::layouts
