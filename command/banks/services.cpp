// The table of services.

#include "banks/services.h"

namespace krofx::command {

namespace {

struct Names {
  std::string_view family;
  std::string_view words;
  KRTagID requestSets[2];
};

// In the order of Service.
constexpr Names kNames[] = {
    {"SIGNONMSGSET", "sign-on", {KRTag_SIGNONMSGSRQV1, KRTag_SIGNONMSGSRQV2}},
    {"SIGNUPMSGSET", "lists of accounts", {KRTag_SIGNUPMSGSRQV1, KRTag_SIGNUPMSGSRQV2}},
    {"BANKMSGSET", "banking", {KRTag_BANKMSGSRQV1, KRTag_BANKMSGSRQV2}},
    {"CREDITCARDMSGSET", "cards", {KRTag_CREDITCARDMSGSRQV1, KRTag_CREDITCARDMSGSRQV2}},
    {"INVSTMTMSGSET", "investments", {KRTag_INVSTMTMSGSRQV1, KRTag_INVSTMTMSGSRQV2}},
    {"INTERXFERMSGSET",
     "transfers to other banks",
     {KRTag_INTERXFERMSGSRQV1, KRTag_INTERXFERMSGSRQV2}},
    {"WIREXFERMSGSET", "wires", {KRTag_WIREXFERMSGSRQV1, KRTag_WIREXFERMSGSRQV2}},
    {"BILLPAYMSGSET", "bill payment", {KRTag_BILLPAYMSGSRQV1, KRTag_BILLPAYMSGSRQV2}},
    {"EMAILMSGSET", "letters", {KRTag_EMAILMSGSRQV1, KRTag_EMAILMSGSRQV2}},
    {"PROFMSGSET", "profiles", {KRTag_PROFMSGSRQV1, KRTag_PROFMSGSRQV2}},
};

const Names& NamesOf(Service service) { return kNames[static_cast<std::size_t>(service)]; }

}  // namespace

std::string_view FamilyOf(Service service) { return NamesOf(service).family; }

std::string_view WordsOf(Service service) { return NamesOf(service).words; }

KRTagID RequestSetOf(Service service, u16 version) {
  return NamesOf(service).requestSets[version - 1];
}

}  // namespace krofx::command
