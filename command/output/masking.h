// Which values are never shown, and which only by their last characters.

#ifndef KROFX_COMMAND_OUTPUT_MASKING_H_
#define KROFX_COMMAND_OUTPUT_MASKING_H_

#include <string>
#include <string_view>

#include "krofx/core/tags.h"

namespace krofx::command {

/// Whether a tag holds a password, which is not shown in any way.
bool IsPassword(KRTagID tag);

/// Whether an element identifies a person, so that it is shown by its last four characters unless
/// the user asks for all. In a payroll these are the accounts of employees and company too; the
/// account of a statement is the user's own, and names what the statement is of.
bool IsPersonal(std::string_view tagText, bool inPayroll);

/// The value with all but its last four characters replaced by stars.
std::string Masked(std::string_view value);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_OUTPUT_MASKING_H_
