// What a tree lacks, and where in it.

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
  std::string advice;                     ///< What to do then; empty when it is not known.
};

/// The paths of objects, such as "OFX/BANKMSGSRSV1/STMTTRNRS[2]/STMTRS": a number, from 1,
/// distinguishes aggregates of one tag and parent.
class ObjectPaths {
 public:
  explicit ObjectPaths(const ParsedFile& file);

  /// All that is missing, in the order of the tree.
  std::vector<MissingTag> FindMissing() const;

 private:
  struct Node {
    KRDataObj* object;
    std::size_t parent;
    unsigned number;  // Among those of its tag; 0 for the only one.
  };

  void Add(KRDataObj* object, std::size_t parent, unsigned number);
  std::string PathOf(std::size_t node) const;

  std::vector<Node> m_nodes;
};

}  // namespace krofx::command

#endif  // KROFX_COMMAND_CHECKING_DIAGNOSIS_H_
