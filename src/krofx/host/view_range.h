// Going through a tree by views: what the ranges of transactions, statements and positions share.

#ifndef KROFX_HOST_VIEW_RANGE_H_
#define KROFX_HOST_VIEW_RANGE_H_

#include <cstddef>
#include <iterator>
#include <string_view>
#include <utility>

#include "krofx/core/lifetime.h"
#include "krofx/host/look.h"
#include "krofx/host/security_search.h"
#include "krofx/host/words.h"

namespace krofx {

/// Views of objects, made as they are reached, in the order of the document. To be gone through
/// once at a time. The trees must outlive it and its views, and their security lists, which it
/// reads when it is made, must not change meanwhile.
/// @tparam View made from a Found and a SecurityFinder; View::Shows says of which objects.
/// @tparam Class whose objects are looked at.
template <class View, class Class>
class ViewRange {
 public:
  /// Moves from one view to the next.
  class Iterator {
   public:
    using difference_type = std::ptrdiff_t;
    using value_type = View;

    Iterator() = default;
    Iterator(typename EachRange<const Class>::Iterator at,
             const internal::SecurityFinder& securities)
        : m_at(at), m_securities(&securities) {
      PassOver();
    }

    View operator*() const { return View(*m_at, *m_securities); }
    Iterator& operator++() {
      ++m_at;
      PassOver();
      return *this;
    }
    void operator++(int) { ++*this; }
    friend bool operator==(const Iterator& iterator, std::default_sentinel_t end) {
      return iterator.m_at == end;
    }

   private:
    void PassOver() {
      while (m_at != std::default_sentinel && !View::Shows(*m_at)) ++m_at;
    }

    typename EachRange<const Class>::Iterator m_at;
    const internal::SecurityFinder* m_securities = nullptr;
  };

  /// Views of what is in a source.
  /// @param securities those that the objects may name.
  ViewRange(const internal::TreeSource& source, internal::SecurityFinder securities)
      : m_securities(std::move(securities)), m_objects(source) {}

  Iterator begin() { return Iterator(m_objects.begin(), m_securities); }
  std::default_sentinel_t end() const { return {}; }

 private:
  internal::SecurityFinder m_securities;
  EachRange<const Class> m_objects;
};

namespace internal {

inline TreeSource SourceOf(const KRDataObj& root) { return TreeSource(&root); }
inline TreeSource SourceOf(const KRDataObj* root) { return TreeSource(root); }
inline TreeSource SourceOf(const Reading& reading) { return TreeSource(reading); }
/// The trees would be gone before the first view is looked at.
void SourceOf(Reading&&) = delete;

/// @return the text of an element; empty when it is absent.
inline std::string_view TextIf(u16 isPresent, const KRString& text KROFX_LIFETIME_BOUND) {
  return isPresent != 0 ? ToText(text) : std::string_view();
}

}  // namespace internal
}  // namespace krofx

#endif  // KROFX_HOST_VIEW_RANGE_H_
