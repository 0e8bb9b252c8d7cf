// All that `krofx check` says of one input, and its two forms.

#ifndef KROFX_COMMAND_CHECKING_REPORT_H_
#define KROFX_COMMAND_CHECKING_REPORT_H_

#include <string>
#include <vector>

#include "checking/diagnosis.h"
#include "input/parsed_file.h"
#include "output/json.h"
#include "system/exit_status.h"

namespace krofx::command {

/// One input, with everything that a report says of it.
struct Report {
  Report(const std::string& name, Reader reader);

  ParsedFile file;
  MissingTags missing;
  ExitStatus verdict;
};

/// @return everything that a report lists, a line each, after a line with the status of the parse.
///         Empty for an input that could not be read.
std::string DetailsOf(const Report& report);

/// @return a report as JSON, in the form that docs/json.md describes.
Json JsonOf(const Report& report);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_CHECKING_REPORT_H_
