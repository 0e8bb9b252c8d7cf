// Sign-up: enrollment, the list of the user's accounts with the services that each one has, and
// changes of services.

#include "showing/layout.h"

namespace krofx::command::layouts {

namespace {

constexpr FieldSpec kEnrollRequestFields[] = {
    {"FIRSTNAME", "first_name", "First name"},
    {"MIDDLENAME", "middle_name", "Middle name"},
    {"LASTNAME", "last_name", "Last name"},
    {"ADDR1", "address1", "Address"},
    {"CITY", "city", "City"},
    {"STATE", "state", "State"},
    {"POSTALCODE", "postal_code", "Postal code"},
    {"COUNTRY", "country", "Country"},
    {"EMAIL", "email", "Mail"},
    {"USERID", "user_id", "User"},
    {"*/ACCTID", "account_id", "Account"},
};

constexpr FieldSpec kEnrollFields[] = {
    {"USERID", "user_id", "User"},
    {"DTEXPIRE", "expires", "First password expires"},
};

constexpr FieldSpec kListFields[] = {{"DTACCTUP", "accounts_date", "Accounts of"}};

constexpr FieldSpec kAccountColumns[] = {
    {"DESC", "description", "Description"},
    {"PHONE", "phone", "Phone", true},
    {"*/BANKACCTFROM/BANKID|*/INVACCTFROM/BROKERID", "institution", "Institution"},
    {"*/BANKACCTFROM/ACCTID|*/CCACCTFROM/ACCTID|*/INVACCTFROM/ACCTID", "account_id", "Account"},
    {"*/BANKACCTFROM/ACCTTYPE|*/BANKACCTFROM/ACCTTYPE2|INVACCTINFO/USPRODUCTTYPE", "type", "Type"},
    {"BANKACCTINFO/SVCSTATUS|BANKACCTINFO/SVCSTATUS2", "bank_service", "Banking"},
    {"CCACCTINFO/SVCSTATUS|CCACCTINFO/SVCSTATUS2", "card_service", "Card"},
    {"BPACCTINFO/SVCSTATUS|BPACCTINFO/SVCSTATUS2", "bill_payment_service", "Bill payment"},
    {"INVACCTINFO/SVCSTATUS|INVACCTINFO/SVCSTATUS2", "investment_service", "Investment"},
    {"*/SUPTXDL", "download", "Download", true},
    {"*/XFERSRC", "transfer_source", "Transfers from", true},
    {"*/XFERDEST", "transfer_target", "Transfers to", true},
};

constexpr TableSpec kAccounts[] = {{"ACCTINFO", "accounts", "Accounts", kAccountColumns}};

constexpr FieldSpec kServiceFields[] = {
    {"SVC|SVC2", "service", "Service"},
    {"SVCADD/*/ACCTID|SVCCHG/*/ACCTID|SVCDEL/*/ACCTID", "account_id", "Account"},
    {"SVCSTATUS|SVCSTATUS2", "state", "State"},
    {"REASON", "reason", "Reason"},
};

constexpr Layout kLayouts[] = {
    {"ENROLLRQ", "enrollment-request", "Enrollment", "", kEnrollRequestFields, {}},
    {"ENROLLRS", "enrollment", "Enrollment", "", kEnrollFields, {}},
    {"ACCTINFORQ", "accounts-request", "Request for the accounts", "", kListFields, {}},
    {"ACCTINFORS", "accounts", "Accounts", "", kListFields, kAccounts},
    {"ACCTRQ", "service-request", "Request for a service", "", kServiceFields, {}},
    {"ACCTRS", "service", "Service", "", kServiceFields, {}},
};

}  // namespace

const std::span<const Layout> kAccountLists = kLayouts;

}  // namespace krofx::command::layouts
