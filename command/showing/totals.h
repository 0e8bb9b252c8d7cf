// The line below a table: how many rows it has, and what they come to.

#ifndef KROFX_COMMAND_SHOWING_TOTALS_H_
#define KROFX_COMMAND_SHOWING_TOTALS_H_

#include <string>

#include "output/text_form.h"
#include "showing/document.h"

namespace krofx::command {

/// The lines below a table with rows, one for each currency:
/// "61 transactions   in 9258.49   out -5279.17   net 3979.32". With several currencies each line
/// ends in its own.
std::string TotalsOf(const Section& section, const Table& table, const TextForm& form);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_SHOWING_TOTALS_H_
