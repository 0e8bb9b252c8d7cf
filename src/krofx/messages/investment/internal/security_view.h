// A look at elements that other arrays own.
//
// The array that a caller fills shares the slots of the view, so neither deletes the elements:
// destroying the caller's array leaves them to their owner, and destroying the view empties the
// caller's array before the elements go.

#ifndef KROFX_MESSAGES_INVESTMENT_INTERNAL_SECURITY_VIEW_H_
#define KROFX_MESSAGES_INVESTMENT_INTERNAL_SECURITY_VIEW_H_

#include "krofx/model/value_arrays.h"

namespace krofx::internal {

/// Borrowed securities. A copy of an object that has a view starts with an empty one.
class KROFX_API SecurityView {
 public:
  SecurityView() = default;
  SecurityView(const SecurityView&) : SecurityView() {}
  SecurityView& operator=(const SecurityView&) { return *this; }
  ~SecurityView() { Empty(); }

  /// Forgets what was borrowed, in the arrays that share the view too.
  void Empty() { m_securities.Clear(); }
  /// Borrows `security`.
  /// @return 1; 0 for null and when it could not be stored.
  u16 Add(KRDataObj* security) { return m_securities.Append(security); }
  /// The borrowed elements.
  const KRDynamicArrayDataObj& Get() const { return m_securities; }

 private:
  KRDynamicArrayDataObj m_securities{5, 5};
};

}  // namespace krofx::internal

#endif  // KROFX_MESSAGES_INVESTMENT_INTERNAL_SECURITY_VIEW_H_
