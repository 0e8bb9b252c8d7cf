// The profile of an institution: who it is, how to reach it, what it offers.

#include "showing/layout.h"

namespace krofx::command::layouts {

namespace {

constexpr FieldSpec kFields[] = {
    {"FINAME", "name", "Name"},
    {"ADDR1", "address1", "Address"},
    {"ADDR2", "address2", ""},
    {"ADDR3", "address3", ""},
    {"POSTALCODE", "postal_code", "Postal code"},
    {"CITY", "city", "City"},
    {"STATE", "state", "State"},
    {"COUNTRY", "country", "Country"},
    {"CSPHONE", "customer_phone", "Customer service"},
    {"TSPHONE", "technical_phone", "Technical support"},
    {"FAXPHONE", "fax", "Fax"},
    {"URL|URL2", "url", "Web"},
    {"EMAIL", "email", "Mail"},
    {"DTPROFUP", "profile_date", "Profile of"},
};

// Each set holds one aggregate for each of its versions; the columns look into either.
constexpr FieldSpec kSetColumns[] = {
    {".", "name", "Set"},
    {"*/MSGSETCORE/VER", "version", "Version"},
    {"*/MSGSETCORE/URL|*/MSGSETCORE/URL2", "url", "URL"},
    {"*/MSGSETCORE/OFXSEC", "security", "Security"},
    {"*/MSGSETCORE/TRANSPSEC", "transport_security", "TLS"},
    {"*/MSGSETCORE/SIGNONREALM", "realm", "Realm"},
    {"*/MSGSETCORE/SYNCMODE", "sync_mode", "Synchronisation"},
};

constexpr FieldSpec kRealmColumns[] = {
    {"SIGNONREALM", "realm", "Realm"},
    {"MIN", "minimum", "Least characters"},
    {"MAX", "maximum", "Most characters"},
    {"CHARTYPE", "characters", "Characters"},
    {"CASESEN", "case_sensitive", "Case matters"},
    {"SPECIAL", "special", "Special"},
    {"SPACES", "spaces", "Blanks"},
    {"PINCH", "can_change", "Can change"},
};

constexpr TableSpec kTables[] = {
    {"MSGSETLIST/*", "message_sets", "Message sets", kSetColumns},
    {"SIGNONINFOLIST/SIGNONINFO", "realms", "Sign-on realms", kRealmColumns},
};

constexpr FieldSpec kRequestFields[] = {
    {"CLIENTROUTING", "client_routing", "Client routing"},
    {"DTPROFUP", "profile_date", "Profile of"},
};

constexpr Layout kLayouts[] = {
    {"PROFRQ", "profile-request", "Request for a profile", "", kRequestFields, {}},
    {"PROFRS", "profile", "Profile", "FINAME", kFields, kTables},
};

}  // namespace

const std::span<const Layout> kProfile = kLayouts;

}  // namespace krofx::command::layouts
