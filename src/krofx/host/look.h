// Looking for objects of a class anywhere in a tree, with what is around them.
//
//   for (const auto& tx : krofx::Each<KRBankStatementTx>(reading)) Book(*tx, tx.Path());
//   krofx::ForEach<KRBankStatementTx>(*file, [](const KRBankStatementTx& tx) { Book(tx); });
//
// Nothing is copied. Objects come in the order of the document, a parent before its children, and
// those of derived classes too: Each<KRAccount> finds accounts of every kind. The tree must not
// change while it is gone through, and must outlive the range.

#ifndef KROFX_HOST_LOOK_H_
#define KROFX_HOST_LOOK_H_

#include <concepts>
#include <cstddef>
#include <iterator>

#include "krofx/core/export.h"
#include "krofx/core/lifetime.h"
#include "krofx/core/string.h"
#include "krofx/host/internal/tree_walk.h"
#include "krofx/model/data_object.h"
#include "krofx/reader/reading.h"

namespace krofx {

/// Where an object is in its tree. A value of its own: it refers to the objects of the tree, not to
/// the search that has found them.
class Trail {
 public:
  explicit Trail(const internal::TreeWalk& walk) {
    while (m_count < kMost) {
      const internal::PathStep step = walk.Above(m_count);
      if (step.object == nullptr) break;
      m_line[m_count++] = step;
    }
  }

  /// The nearest object of a class above this one.
  /// @return null when there is none.
  template <class Class>
  const Class* Ancestor() const {
    for (std::size_t at = 1; at < m_count; ++at) {
      if (auto* const found = dynamic_cast<const Class*>(m_line[at].object)) return found;
    }
    return nullptr;
  }
  /// @return the object right above this one; null for the root.
  const KRDataObj* Parent() const { return m_count > 1 ? m_line[1].object : nullptr; }
  /// @return the tags from the root on, such as "OFX/BANKMSGSRSV1/STMTTRNRS[2]/STMTRS": a number,
  ///         from 1, is there for one of several aggregates with one tag and parent. Empty, with
  ///         the fire alarm raised, when memory is exhausted.
  KRString Path() const { return internal::PathOf({m_line, m_count}); }

 private:
  // A parse opens ten aggregates below the root. Only files in files are deeper: they have no tag
  // in a path, and the nearest ones are here.
  static constexpr std::size_t kMost = 16;

  std::size_t m_count = 0;
  internal::PathStep m_line[kMost];  // The object, its parent, and so on.
};

/// An object that was found. As a pointer to it, and with its trail; it may be kept as long as the
/// tree is there and is not changed.
template <class Class>
class Found : public Trail {
 public:
  Found(Class& object, const internal::TreeWalk& walk) : Trail(walk), m_object(&object) {}

  /// @return the object, which belongs to its tree.
  Class& operator*() const { return *m_object; }
  Class* operator->() const { return m_object; }
  operator Class&() const { return *m_object; }

 private:
  Class* m_object;
};

/// The objects of a class in a tree: what Each gives. To be gone through once at a time.
template <class Class>
class EachRange {
 public:
  /// Moves from one object to the next.
  class Iterator {
   public:
    using difference_type = std::ptrdiff_t;
    using value_type = Found<Class>;

    Iterator() = default;
    explicit Iterator(internal::TreeWalk& walk) : m_walk(&walk) { Advance(); }

    Found<Class> operator*() const { return Found<Class>(*m_object, *m_walk); }
    Iterator& operator++() {
      Advance();
      return *this;
    }
    void operator++(int) { Advance(); }
    friend bool operator==(const Iterator& iterator, std::default_sentinel_t) {
      return iterator.m_object == nullptr;
    }

   private:
    void Advance() {
      do {
        KRDataObj* const next = m_walk->Next();
        if (next == nullptr) {
          m_object = nullptr;
          return;
        }
        m_object = dynamic_cast<Class*>(next);
      } while (m_object == nullptr);
    }

    internal::TreeWalk* m_walk = nullptr;
    Class* m_object = nullptr;
  };

  explicit EachRange(const internal::TreeSource& source) : m_source(source), m_walk(source) {}

  /// Starts from the first object. The iterator refers to the range; what it finds does not.
  Iterator begin() KROFX_LIFETIME_BOUND {
    m_walk = internal::TreeWalk(m_source);
    return Iterator(m_walk);
  }
  std::default_sentinel_t end() const { return {}; }

 private:
  internal::TreeSource m_source;
  internal::TreeWalk m_walk;
};

/// All objects of a class in the tree of `root`, itself included. Each is a Found, which converts
/// to a reference to the object.
template <std::derived_from<KRDataObj> Class>
EachRange<Class> Each(KRDataObj& root) {
  return EachRange<Class>(internal::TreeSource(&root));
}
/// The same in a tree that is not to be changed.
template <std::derived_from<KRDataObj> Class>
EachRange<const Class> Each(const KRDataObj& root) {
  return EachRange<const Class>(internal::TreeSource(&root));
}
/// The same for a pointer; null is an empty tree.
template <std::derived_from<KRDataObj> Class>
EachRange<Class> Each(KRDataObj* root) {
  return EachRange<Class>(internal::TreeSource(root));
}
template <std::derived_from<KRDataObj> Class>
EachRange<const Class> Each(const KRDataObj* root) {
  return EachRange<const Class>(internal::TreeSource(root));
}
/// The same in all texts of a reading.
template <std::derived_from<KRDataObj> Class>
EachRange<Class> Each(Reading& reading) {
  return EachRange<Class>(internal::TreeSource(reading));
}
template <std::derived_from<KRDataObj> Class>
EachRange<const Class> Each(const Reading& reading) {
  return EachRange<const Class>(internal::TreeSource(reading));
}
/// The trees would be gone before the first object is looked at.
template <std::derived_from<KRDataObj> Class>
void Each(Reading&&) = delete;

/// Calls `visit(object)`, or `visit(object, trail)` if it takes a Trail, for all objects of a class
/// in `source`, which is anything that Each takes.
template <std::derived_from<KRDataObj> Class, class Source, class Visit>
void ForEach(Source&& source, Visit&& visit) {
  for (auto&& found : Each<Class>(source)) {
    if constexpr (std::invocable<Visit&, decltype(*found), const Trail&>) {
      visit(*found, static_cast<const Trail&>(found));
    } else {
      visit(*found);
    }
  }
}

}  // namespace krofx

#endif  // KROFX_HOST_LOOK_H_
