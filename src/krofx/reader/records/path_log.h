// The paths of the aggregates in which something was mended or warned of.
//
// A path such as "OFX/BANKMSGSRSV1/STMTTRNRS[2]" numbers the aggregates of one tag and parent, but
// not one that stays alone, which is known only at the end. So an aggregate of which something is
// said gets a node here, its parents too, and the texts are made at the end.

#ifndef KROFX_READER_RECORDS_PATH_LOG_H_
#define KROFX_READER_RECORDS_PATH_LOG_H_

#include <cstddef>
#include <functional>
#include <span>

#include "krofx/core/list.h"
#include "krofx/core/string.h"
#include "krofx/core/tags.h"
#include "krofx/core/types.h"

class KRDataObj;

namespace krofx::internal {

/// Adds an aggregate at the end of a path: its name, and its number unless that is 0.
void AddToPath(KRString& path, const char* name, unsigned number);

/// An object whose path is wanted.
struct WantedObject {
  const KRDataObj* object;
  std::size_t number;  ///< For the one who asks.
  s32 node = -1;       ///< Takes its node.

  bool operator<(const WantedObject& other) const {
    return std::less<const KRDataObj*>()(object, other.object);
  }
};

/// Nodes of paths.
class PathLog {
 public:
  /// No path: outside the body.
  static constexpr s32 kNoPath = -1;

  /// Adds an aggregate.
  /// @param number which of its tag in its parent, from 1.
  /// @return its node; kNoPath when memory is exhausted.
  s32 Add(s32 parent, KRTagID tag, u32 number);
  /// Says that an aggregate has a sibling of its tag.
  void NotAlone(s32 node) { m_nodes[static_cast<std::size_t>(node)].alone = false; }
  /// Adds an object of a tree that is complete.
  /// @return its node; kNoPath for the root, for what is not in the tree, and without memory.
  s32 AddTo(KRDataObj& root, const KRDataObj* object);
  /// Adds several objects of a tree that is complete, in one walk over it.
  /// @param wanted in the order of their operator; takes the nodes, kNoPath as of AddTo.
  /// @return false when memory is exhausted.
  bool AddAll(KRDataObj& root, std::span<WantedObject> wanted);
  /// @return whether memory did not suffice for an aggregate, so that paths may lack it.
  bool HasFailed() const { return m_failed; }
  /// @return the path of an aggregate; empty for kNoPath.
  KRString PathOf(s32 node) const;

 private:
  struct Node {
    s32 parent;
    KRTagID tag;
    u32 number;
    bool alone;
  };

  bool AddAllBelow(s32 parent, KRDataObj& object, std::span<WantedObject> wanted, int depth,
                   bool& any);
  s32 AddBelow(s32 parent, KRDataObj& object, const KRDataObj* wanted, int depth);

  List<Node> m_nodes;
  bool m_failed = false;
};

}  // namespace krofx::internal

#endif  // KROFX_READER_RECORDS_PATH_LOG_H_
