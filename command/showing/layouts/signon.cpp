// Sign-on: who asked, and how the institution answered.

#include "showing/layout.h"

namespace krofx::command::layouts {

namespace {

constexpr FieldSpec kRequestFields[] = {
    {"DTCLIENT", "client_date", "Date"},        {"USERID", "user_id", "User"},
    {"FI/ORG", "institution", "Institution"},   {"FI/FID", "institution_id", "Institution ID"},
    {"LANGUAGE", "language", "Language", true}, {"COUNTRY", "country", "Country", true},
    {"APPID", "application_id", "Application"}, {"APPVER", "application_version", "Version"},
};

constexpr FieldSpec kResponseFields[] = {
    {"STATUS/CODE", "status_code", "Status"},
    {"STATUS/SEVERITY", "severity", "Severity"},
    {"STATUS/MESSAGE|STATUS/MESSAGE2", "message", "Message"},
    {"DTSERVER", "server_date", "Date"},
    {"FI/ORG", "institution", "Institution"},
    {"FI/FID", "institution_id", "Institution ID"},
    {"LANGUAGE", "language", "Language", true},
    {"COUNTRY", "country", "Country", true},
    {"DTPROFUP", "profile_date", "Profile of", true},
    {"DTACCTUP", "accounts_date", "Accounts of", true},
};

constexpr Layout kLayouts[] = {
    {"SONRQ", "sign-on-request", "Sign-on request", "FI/ORG", kRequestFields, {}},
    {"SONRS", "sign-on", "Sign-on", "FI/ORG", kResponseFields, {}},
};

}  // namespace

const std::span<const Layout> kSignOn = kLayouts;

}  // namespace krofx::command::layouts
