// What an institution refused: the statuses of a reply that are errors.

#ifndef KROFX_COMMAND_EXCHANGE_REFUSALS_H_
#define KROFX_COMMAND_EXCHANGE_REFUSALS_H_

#include <string>
#include <vector>

#include "input/element_tree.h"

namespace krofx::command {

/// One line for each status of severity ERROR, in the order of the reply.
std::vector<std::string> FindRefusals(const Element& file);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_EXCHANGE_REFUSALS_H_
