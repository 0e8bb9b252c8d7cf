// The one walk over trees that everything else in this folder that looks for objects is made of.

#ifndef KROFX_HOST_INTERNAL_TREE_WALK_H_
#define KROFX_HOST_INTERNAL_TREE_WALK_H_

#include <cstddef>
#include <span>
#include <utility>

#include "krofx/core/export.h"
#include "krofx/core/list.h"
#include "krofx/core/string.h"
#include "krofx/core/types.h"

class KRDataObj;

namespace krofx {
struct OfxText;
struct Reading;
}  // namespace krofx

namespace krofx::internal {

/// Where objects are looked for: one tree, or those of all texts of a reading. It refers to them.
class TreeSource {
 public:
  TreeSource() = default;
  TreeSource(const KRDataObj* root) : m_root(root) {}
  TreeSource(const Reading& reading) : m_reading(&reading) {}

  const KRDataObj* Root() const { return m_root; }
  const Reading* Texts() const { return m_reading; }

 private:
  const KRDataObj* m_root = nullptr;
  const Reading* m_reading = nullptr;
};

/// @param line the object, its parent, and so on up to the root.
/// @return the path of an object by what is above it, such as
///         "OFX/BANKMSGSRSV1/STMTTRNRS[2]/STMTRS".
KROFX_API KRString PathOf(std::span<const KRDataObj* const> line);

/// Goes through the objects of one or more trees in the order of the document, a parent before its
/// children. The trees must not change meanwhile. It takes no memory unless a tree is deeper than
/// any that OFX describes.
class KROFX_API TreeWalk {
 public:
  /// Begins before the first object of a source.
  explicit TreeWalk(const TreeSource& source);

  /// Moves to the next object.
  /// @return it; null after the last, and, with the fire alarm raised, when memory is exhausted.
  KRDataObj* Next();
  /// Passes over what is below the current object.
  void SkipChildren();
  /// @return the object `steps` levels above the current one: 1 is its parent. Null above the root.
  KRDataObj* Above(std::size_t steps) const;

 private:
  struct Frame {
    KRDataObj* object;
    u16 next;   // The child that comes next.
    u16 count;  // Of children.
  };
  // A parse opens ten aggregates below the root; some more for files in files.
  static constexpr std::size_t kLevels = 16;

  const Frame& At(std::size_t level) const {
    return level < kLevels ? m_frames[level] : m_deeper[level - kLevels];
  }
  Frame& At(std::size_t level) { return const_cast<Frame&>(std::as_const(*this).At(level)); }
  KRDataObj* Push(KRDataObj* object);
  void Pop();
  const KRDataObj* NextRoot();

  const KRDataObj* m_root = nullptr;
  const OfxText* m_text = nullptr;
  const OfxText* m_lastText = nullptr;
  std::size_t m_depth = 0;
  Frame m_frames[kLevels];
  List<Frame> m_deeper;
};

}  // namespace krofx::internal

#endif  // KROFX_HOST_INTERNAL_TREE_WALK_H_
