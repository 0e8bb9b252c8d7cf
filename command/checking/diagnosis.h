// What a tree lacks, and where in it, as texts.

#ifndef KROFX_COMMAND_CHECKING_DIAGNOSIS_H_
#define KROFX_COMMAND_CHECKING_DIAGNOSIS_H_

#include <cstddef>
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

/// What is missing in a file.
struct MissingTags {
  /// What the trees of the file lack, in its order; then what the elements that are not in the tree
  /// lack, in their order, up to the number that a reading keeps.
  std::vector<MissingTag> listed;
  /// How many there are beyond those.
  std::size_t unlisted = 0;
};

/// @return all that a file lacks.
MissingTags FindMissing(const ParsedFile& file);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_CHECKING_DIAGNOSIS_H_
