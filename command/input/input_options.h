// The options of the subcommands that read many files.

#ifndef KROFX_COMMAND_INPUT_INPUT_OPTIONS_H_
#define KROFX_COMMAND_INPUT_INPUT_OPTIONS_H_

#include <cstddef>
#include <string>
#include <vector>

#include "input/parsed_file.h"
#include "system/exit_status.h"

namespace krofx::command {

class Subcommand;

/// Which files are read, and how.
struct InputOptions {
  std::vector<std::string> files;
  bool strict = false;
  int jobs = 0;  ///< How many at once; 0 for as many as the machine has cores.

  Reader GetReader() const { return strict ? Reader::kStrict : Reader::kMending; }
  std::size_t CountThreads() const;
};

/// Adds the options to a command line.
void AddInputOptions(const Subcommand& app, InputOptions& options);

/// Finds the files that the options name, those of folders among them. Without any that is standard
/// input, when it is no terminal.
/// @param subcommand what messages call the subcommand.
/// @return kExitClean; kExitUnusable after a complaint about what cannot be read, with the rest in
///         `names`; kExitWrongUse after a complaint when there is nothing to read.
ExitStatus FindInputs(const InputOptions& options, const std::string& subcommand,
                      std::vector<std::string>& names);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_INPUT_INPUT_OPTIONS_H_
