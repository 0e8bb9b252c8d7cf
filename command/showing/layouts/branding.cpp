// Branding: the directory of institutions, and the marketing tiers.

#include "showing/layout.h"

namespace krofx::command::layouts {

namespace {

constexpr FieldSpec kSoftwareFields[] = {
    {"NORV.SW/NORV.SWPRODCD", "software", "Software"},
    {"NORV.SW/NORV.SWVER", "software_version", "Version"},
    {"NORV.SW/NORV.SWOSCD", "operating_system", "System", true},
    {"NORV.SW/NORV.DISTMETHOD", "distribution", "Distribution", true},
};

constexpr FieldSpec kBrandColumns[] = {
    {"NORV.BID", "brand_id", "Brand"},
    {"NORV.DTUPDATE", "updated", "Copy of"},
};

constexpr TableSpec kBrands[] = {
    {"NORV.SELECTBYBID/NORV.BIDINFO", "brands", "Brands asked for", kBrandColumns},
};

// A brand whose entry has not changed has only its ID and date.
constexpr FieldSpec kEntryColumns[] = {
    {"NORV.BIDINFO/NORV.BID", "brand_id", "Brand"},
    {"NORV.BIDINFO/NORV.DTUPDATE", "updated", "Updated"},
    {"NORV.BRANDDETAILS/NORV.BRANDNAME", "name", "Name"},
    {"NORV.BRANDDETAILS/NORV.FISHORTNM", "short_name", "Short name", true},
    {"NORV.BRANDDETAILS/NORV.STATUS", "status", "Status"},
    {"NORV.BRANDDETAILS/NORV.NPCFLAG", "flavour", "Flavour"},
    {"NORV.BRANDDETAILS/NORV.BRANDCATEGORY", "category", "Category"},
    {"NORV.BRANDDETAILS/NORV.SVCLIST/NORV.SVC2+|NORV.BRANDDETAILS/NORV.SVCLIST/NORV.SVC+",
     "services", "Services"},
    {"NORV.BRANDDETAILS/NORV.DISTNAME+", "distributed_as", "Distributed as", true},
    {"NORV.BRANDDETAILS/NORV.MKTTIERTYPE", "tier_type", "Tier type", true},
    {"NORV.BRANDDETAILS/NORV.MKTTIERCD", "tier", "Tier", true},
    {"NORV.BRANDDETAILS/FI/ORG", "institution", "Institution"},
    {"NORV.BRANDDETAILS/FI/FID", "institution_id", "ID"},
    {"NORV.BRANDDETAILS/ADDR1", "address1", "Address", true},
    {"NORV.BRANDDETAILS/ADDR2", "address2", "", true},
    {"NORV.BRANDDETAILS/POSTALCODE", "postal_code", "Postal code", true},
    {"NORV.BRANDDETAILS/CITY", "city", "City"},
    {"NORV.BRANDDETAILS/STATE", "state", "State", true},
    {"NORV.BRANDDETAILS/COUNTRY", "country", "Country", true},
    {"NORV.BRANDDETAILS/CSPHONE", "customer_phone", "Customer service"},
    {"NORV.BRANDDETAILS/TSPHONE", "technical_phone", "Technical support", true},
    {"NORV.BRANDDETAILS/FAXPHONE", "fax", "Fax", true},
    {"NORV.BRANDDETAILS/EMAIL", "email", "Mail", true},
    {"NORV.BRANDDETAILS/URL|NORV.BRANDDETAILS/URL2", "url", "Web", true},
    {"NORV.BRANDDETAILS/NORV.FIPROFILEURL|NORV.BRANDDETAILS/NORV.FIPROFILEURL2", "profile_url",
     "Profile at"},
    {"NORV.BRANDDETAILS/NORV.ENROLLURL|NORV.BRANDDETAILS/NORV.ENROLLURL2", "enroll_url",
     "Enrolment", true},
    {"NORV.BRANDDETAILS/NORV.FIMESSAGE|NORV.BRANDDETAILS/NORV.FIMESSAGE2", "message", "Message",
     true},
};

constexpr TableSpec kDirectory[] = {
    {"NORV.BRANDDATALIST/NORV.BRANDDATA", "institutions", "Institutions", kEntryColumns},
};

constexpr FieldSpec kTierFields[] = {
    {"NORV.TIERDTUPDATE", "updated", "Tiers of"},
};

constexpr FieldSpec kTierColumns[] = {
    {"NORV.TIERTYPE", "type", "Type"},
    {"NORV.TIERCD", "tier", "Tier"},
    {"NORV.DISTMETHOD", "distribution", "Distribution"},
    {"NORV.FEATURENM+", "features", "Features"},
};

constexpr TableSpec kTiers[] = {
    {"NORV.TIERDEF", "tiers", "Tiers", kTierColumns},
};

constexpr Layout kLayouts[] = {
    {"NORV.BRANDRQ", "branding-request", "Request for branding", "", kSoftwareFields, kBrands},
    {"NORV.BRANDRS", "branding", "Branding directory", "", kSoftwareFields, kDirectory},
    {"NORV.MKTTIERRQ", "tiers-request", "Request for marketing tiers", "", kTierFields, {}},
    {"NORV.MKTTIERRS", "tiers", "Marketing tiers", "", kTierFields, kTiers},
};

}  // namespace

const std::span<const Layout> kBranding = kLayouts;

}  // namespace krofx::command::layouts
