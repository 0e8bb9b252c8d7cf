// The search for objects that lack something required.

#ifndef KROFX_MODEL_INTERNAL_MISSING_SEARCH_H_
#define KROFX_MODEL_INTERNAL_MISSING_SEARCH_H_

#include "krofx/core/export.h"
#include "krofx/model/data_object.h"
#include "krofx/model/internal/aggregate.h"
#include "krofx/model/internal/required_bits.h"

namespace krofx::internal {

/// Searches trees. It remembers what their classes require, so one that is kept is quicker than one
/// for each tree.
class KROFX_API MissingSearch {
 public:
  /// @return the deepest incomplete object on the first path that has one; null when the tree is
  ///         complete.
  KRDataObj* Find(KRDataObj& object);

 private:
  KRDataObj* FindBy(const AggregateTable& table, KRDataObj& object);

  RequiredBits m_required;
};

}  // namespace krofx::internal

#endif  // KROFX_MODEL_INTERNAL_MISSING_SEARCH_H_
