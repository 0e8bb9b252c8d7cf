// Mail: letters to and from the institution, notices of checks and deposits, and the URL of a part.
// The parts that travel with an answer are listed with their sizes by the printer of multipart
// texts.

#include "showing/layout.h"

namespace krofx::command::layouts {

namespace {

constexpr std::string_view kAccount =
    "BANKACCTFROM/BANKID|INVACCTFROM/BROKERID "
    "BANKACCTFROM/ACCTID|CCACCTFROM/ACCTID|INVACCTFROM/ACCTID";

constexpr FieldSpec kFields[] = {
    {"BANKACCTFROM/ACCTID|CCACCTFROM/ACCTID|INVACCTFROM/ACCTID", "account_id", "Account", true},
    {"MAIL/DTCREATED", "written", "Written"},
    {"MAIL/FROM", "from", "From"},
    {"MAIL/TO", "to", "To"},
    {"MAIL/SUBJECT", "subject", "Subject"},
    {"MAIL/MSGBODY", "text", "Text"},
    {"MAIL/USEHTML", "html", "HTML", true},
    {"MAIL/INCIMAGES", "images", "Images", true},
    {"CHECKNUM", "check", "Check"},
    {"TRNAMT", "amount", "Amount"},
    {"DTUSER", "user_date", "Date"},
    {"FEE", "fee", "Fee"},
};

constexpr FieldSpec kPartFields[] = {{"URL|URL2", "url", "URL"}};

constexpr Layout kLayouts[] = {
    {"MAILRQ", "mail-request", "Letter to the institution", "", kFields, {}},
    {"MAILRS", "mail", "Letter from the institution", "", kFields, {}},
    {"BANKMAILRQ", "bank-mail-request", "Letter to the bank", kAccount, kFields, {}},
    {"BANKMAILRS", "bank-mail", "Letter from the bank", kAccount, kFields, {}},
    {"INVMAILRQ", "investment-mail-request", "Letter to the broker", kAccount, kFields, {}},
    {"INVMAILRS", "investment-mail", "Letter from the broker", kAccount, kFields, {}},
    {"CHKMAILRS", "check-notice", "Notice of a check", kAccount, kFields, {}},
    {"DEPMAILRS", "deposit-notice", "Notice of a deposit", kAccount, kFields, {}},
    {"GETMIMERQ", "part-request", "Request for a part", "", kPartFields, {}},
    {"GETMIMERS", "part", "Part", "", kPartFields, {}},
};

}  // namespace

const std::span<const Layout> kMail = kLayouts;

}  // namespace krofx::command::layouts
