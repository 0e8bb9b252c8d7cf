// The one walk over trees that everything else in this folder that looks for objects is made of.

#ifndef KROFX_HOST_INTERNAL_TREE_WALK_H_
#define KROFX_HOST_INTERNAL_TREE_WALK_H_

#include <cstddef>
#include <span>
#include <utility>

#include "krofx/core/export.h"
#include "krofx/core/list.h"
#include "krofx/core/string.h"
#include "krofx/core/tags.h"
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

/// An object on the way to the root, and which of its tag it is in its parent.
struct PathStep {
  const KRDataObj* object;
  u16 number;  ///< From 1; 0 for the only one of its tag, and for a root.
};

/// @param line the object, its parent, and so on up to the root.
/// @return the path of an object by what is above it, such as
///         "OFX/BANKMSGSRSV1/STMTTRNRS[2]/STMTRS"; empty, with the fire alarm raised, when memory
///         is exhausted.
KROFX_API KRString PathOf(std::span<const PathStep> line);

/// Goes through the objects of one or more trees in the order of the document, a parent before its
/// children. The trees must not change meanwhile. It takes no memory unless a tree is deeper, or
/// mixes more tags in its lists, than any that OFX describes.
class KROFX_API TreeWalk {
 public:
  /// Begins before the first object of a source.
  explicit TreeWalk(const TreeSource& source);

  /// Moves to the next object.
  /// @return it; null after the last, and, with the fire alarm raised, when memory is exhausted.
  KRDataObj* Next();
  /// Passes over what is below the current object.
  void SkipChildren();
  /// @return the object `steps` levels above the current one: 1 is its parent. The object is null
  ///         above the root.
  PathStep Above(std::size_t steps) const;

 private:
  // How many objects of a tag that comes more than once have been gone through in a list.
  struct TagCount {
    KRTagID tag;
    u16 count;
  };
  struct Frame {
    KRDataObj* object;
    u16 next;            // The child that comes next.
    u16 count;           // Of children.
    u16 number;          // Of the object in its parent.
    std::size_t counts;  // The place of the first count of its children.
  };

  // A stack whose first entries need no memory.
  template <class T, std::size_t kOwn>
  class Stack {
   public:
    std::size_t Size() const { return m_size; }
    const T& At(std::size_t place) const {
      return place < kOwn ? m_own[place] : m_more[place - kOwn];
    }
    T& At(std::size_t place) { return const_cast<T&>(std::as_const(*this).At(place)); }
    bool Push(const T& entry) {
      if (m_size < kOwn) {
        m_own[m_size] = entry;
      } else if (!m_more.Append(entry)) {
        return false;
      }
      ++m_size;
      return true;
    }
    void CutTo(std::size_t size) {
      for (; m_size > size; --m_size) {
        if (m_size > kOwn) m_more.RemoveLast();
      }
    }

   private:
    T m_own[kOwn];
    List<T> m_more;
    std::size_t m_size = 0;
  };

  // A parse opens ten aggregates below the root; some more for files in files.
  static constexpr std::size_t kLevels = 16;
  // A list of investment transactions mixes some twenty tags, those around it few.
  static constexpr std::size_t kTags = 32;

  bool Number(const KRDataObj& child, const Frame& parent, u16& number);
  static bool HasAnother(const Frame& parent, KRTagID tag);
  KRDataObj* Push(KRDataObj* object, u16 number);
  KRDataObj* OutOfMemory();
  const KRDataObj* NextRoot();

  const KRDataObj* m_root = nullptr;
  const OfxText* m_text = nullptr;
  const OfxText* m_lastText = nullptr;
  Stack<Frame, kLevels> m_frames;
  Stack<TagCount, kTags> m_counts;  // Of all open objects, the innermost last.
};

}  // namespace krofx::internal

#endif  // KROFX_HOST_INTERNAL_TREE_WALK_H_
