// All that `krofx check` says of one input, and its two forms.

#ifndef KROFX_COMMAND_CHECKING_REPORT_H_
#define KROFX_COMMAND_CHECKING_REPORT_H_

#include <string>
#include <string_view>
#include <vector>

#include "checking/diagnosis.h"
#include "input/parsed_file.h"
#include "output/json.h"
#include "system/exit_status.h"

namespace krofx::command {

/// The name of a warning that something that must be there is not.
inline constexpr std::string_view kMissingTagWarning = "KRPW_MISSINGTAG";

/// One input, with everything that a report says of it.
struct Report {
  Report(const std::string& name, Reader reader);

  ParsedFile file;
  /// The warnings of the file, of which those that a tag is missing agree with `missing`.
  std::vector<Warning> warnings;
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
