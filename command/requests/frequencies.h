// How often a recurring order is carried out.

#ifndef KROFX_COMMAND_REQUESTS_FREQUENCIES_H_
#define KROFX_COMMAND_REQUESTS_FREQUENCIES_H_

#include <string_view>

namespace krofx::command {

/// The frequencies of recurring transfers.
inline constexpr std::string_view kFrequencies[] = {"WEEKLY",    "BIWEEKLY",     "TWICEMONTHLY",
                                                    "MONTHLY",   "FOURWEEKS",    "BIMONTHLY",
                                                    "QUARTERLY", "SEMIANNUALLY", "ANNUALLY"};

}  // namespace krofx::command

#endif  // KROFX_COMMAND_REQUESTS_FREQUENCIES_H_
