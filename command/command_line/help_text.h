// The help of a subcommand as text: what it is for, its usage, its options and subcommands.

#ifndef KROFX_COMMAND_COMMAND_LINE_HELP_TEXT_H_
#define KROFX_COMMAND_COMMAND_LINE_HELP_TEXT_H_

#include <string>
#include <utility>
#include <vector>

#include "command_line/command_line.h"

namespace krofx::command {

/// What the help of a subcommand has.
struct HelpPage {
  std::string purpose;
  std::string command;  ///< With the names before it, such as "krofx request transfer".
  std::vector<OptionDescription> options;
  std::vector<std::pair<std::string, std::string>> subcommands;  ///< Name and purpose.
  std::string footer;                                            ///< A line for each paragraph.
};

/// @return the page in lines of no more than 80 characters, as far as its words allow.
std::string LayOut(const HelpPage& page);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_COMMAND_LINE_HELP_TEXT_H_
