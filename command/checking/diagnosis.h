// What a tree lacks, and where in it, as texts.

#ifndef KROFX_COMMAND_CHECKING_DIAGNOSIS_H_
#define KROFX_COMMAND_CHECKING_DIAGNOSIS_H_

#include <string>
#include <vector>

#include "input/parsed_file.h"

namespace krofx::command {

/// Something that must be there and is not.
struct MissingTag {
  std::string path;                       ///< The aggregate that lacks it.
  std::string tag;                        ///< Empty when a choice among several is unmet.
  std::vector<std::string> alternatives;  ///< Among which the choice is then.
  std::string sentence;                   ///< What to do.
};

/// @return all that the trees of a file lack, in its order.
std::vector<MissingTag> FindMissing(const ParsedFile& file);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_CHECKING_DIAGNOSIS_H_
