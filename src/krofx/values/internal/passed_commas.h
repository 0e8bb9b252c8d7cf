// How often a number was read that has a comma, which the parser passes over, or no digit, which it
// takes for zero, for readers that must not take "-11,76" for -1176, nor "-" for an amount: the
// parse itself says nothing of it.

#ifndef KROFX_VALUES_INTERNAL_PASSED_COMMAS_H_
#define KROFX_VALUES_INTERNAL_PASSED_COMMAS_H_

#include <cstddef>

#include "krofx/core/export.h"

namespace krofx::internal {

/// @return how many commas the numbers that this thread has read had so far.
KROFX_API std::size_t& PassedCommas();

/// @return how many texts without a digit this thread has read as numbers so far.
KROFX_API std::size_t& NumbersWithoutDigits();

}  // namespace krofx::internal

#endif  // KROFX_VALUES_INTERNAL_PASSED_COMMAS_H_
