// Where in a text and in a tree something is, and what a tree lacks.

#ifndef KROFX_COMMAND_CHECKING_DIAGNOSIS_H_
#define KROFX_COMMAND_CHECKING_DIAGNOSIS_H_

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

#include "input/parsed_file.h"

namespace krofx::command {

/// A place in a text, counted from 1.
struct Place {
  std::size_t line;
  std::size_t column;  ///< In bytes.
};

/// Finds lines; ends of lines are LF, CR LF or CR.
class LineFinder {
 public:
  explicit LineFinder(const KRBuffer* text);
  Place Find(s32 position) const;

 private:
  std::vector<std::size_t> m_starts{0};
};

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

  /// The path of an object; empty when it is not in the tree.
  std::string Find(const KRDataObj* object) const;
  /// All that is missing, in the order of the tree.
  std::vector<MissingTag> FindMissing() const;

 private:
  struct Node {
    KRDataObj* object;
    std::size_t parent;
    unsigned number;  // Among those of its tag; 0 for the only one.
  };

  void Add(KRDataObj* object, std::size_t parent, unsigned number);

  std::vector<Node> m_nodes;
  std::unordered_map<const KRDataObj*, std::size_t> m_index;
};

}  // namespace krofx::command

#endif  // KROFX_COMMAND_CHECKING_DIAGNOSIS_H_
