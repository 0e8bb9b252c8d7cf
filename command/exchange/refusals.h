// What an institution refused: the statuses of a reply that are errors.

#ifndef KROFX_COMMAND_EXCHANGE_REFUSALS_H_
#define KROFX_COMMAND_EXCHANGE_REFUSALS_H_

#include <string>
#include <vector>

#include "input/element_tree.h"
#include "system/exit_status.h"

namespace krofx::command {

class ParsedFile;

/// A status of severity ERROR.
struct Refusal {
  ExitStatus exitStatus;  ///< kExitSignOnRefused or kExitRefused.
  std::string text;       ///< In one line.
};

/// @return one for each status of severity ERROR, in the order of the reply.
std::vector<Refusal> FindRefusals(const Element& file);

/// Complains of each refusal in a reply, and of a request that came back in place of a reply.
/// @return the worst of them, or kExitClean.
ExitStatus ComplainOfRefusals(const ParsedFile& reply);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_EXCHANGE_REFUSALS_H_
