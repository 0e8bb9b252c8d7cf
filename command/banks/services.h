// What institutions serve, each by a message set of its own.

#ifndef KROFX_COMMAND_BANKS_SERVICES_H_
#define KROFX_COMMAND_BANKS_SERVICES_H_

#include <string_view>

#include "krofx/krofx.h"

namespace krofx::command {

/// What a request can be about.
enum class Service {
  kSignOn,
  kAccounts,
  kBank,
  kCard,
  kInvestment,
  kInterbank,
  kWire,
  kBillPay,
  kMail,
  kProfile
};

/// @return the name that profiles have for the message sets of a service in all versions, as
///         BANKMSGSET.
std::string_view FamilyOf(Service service);

/// @return what a service is called in messages, such as "bill payment".
std::string_view WordsOf(Service service);

/// @param version 1 or 2.
/// @return the tag of its message set in a request.
KRTagID RequestSetOf(Service service, u16 version);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_BANKS_SERVICES_H_
