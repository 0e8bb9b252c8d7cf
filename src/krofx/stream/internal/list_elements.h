// What a stream asks of an aggregate about its lists and its account.

#ifndef KROFX_STREAM_INTERNAL_LIST_ELEMENTS_H_
#define KROFX_STREAM_INTERNAL_LIST_ELEMENTS_H_

#include "krofx/core/list.h"
#include "krofx/core/string.h"
#include "krofx/core/tags.h"
#include "krofx/envelope/message_set.h"
#include "krofx/messages/banking/accounts.h"
#include "krofx/model/data_object.h"
#include "krofx/model/internal/aggregate.h"

namespace krofx::internal {

/// Whether an object is of a class that a host has named.
using IsOfClass = bool (*)(const KRDataObj& object);

/// The classes of the elements that a host wants.
class WantedClasses {
 public:
  /// Adds a class of elements.
  /// @return false when memory is exhausted.
  bool Add(IsOfClass element) { return m_elements.Append(element); }
  /// Adds a class of lists, all of whose elements are wanted.
  /// @return false when memory is exhausted.
  bool AddList(IsOfClass list) { return m_lists.Append(list); }
  /// Adds a tag under which elements are wanted.
  /// @return false when memory is exhausted.
  bool AddTag(KRTagID tag) { return m_tags.Append(tag); }

  /// @return whether an element of a list is wanted.
  bool Has(const KRDataObj& element, KRTagID tag, const KRDataObj& list) const;

 private:
  List<IsOfClass> m_elements;
  List<IsOfClass> m_lists;
  List<KRTagID> m_tags;
};

/// The row of the list that holds an object under a tag.
/// @return null when it is no element of a list that a table describes.
const Row* ListRow(const KRDataObj& parent, KRTagID tag);

/// @return whether what an object holds under a tag is an element of a list.
bool IsInList(KRDataObj& parent, KRTagID tag);

/// @return the account that an aggregate is about; null when it names none.
const KRAccount* AccountOf(KRDataObj& object);

/// Adds an aggregate at the end of a path.
/// @param number which of its tag it is in its list; 0 for what is no element of a list.
void AddToStreamPath(KRString& path, KRTagID tag, std::size_t number);

/// The wrappers of a message set are no rows of a table. Calls `use(set)` for a message set.
/// @return what `use` gives; false for another object.
template <class Use>
bool WithMessageSet(KRDataObj& object, Use use) {
  if (auto* const response = dynamic_cast<KRMessageSetRs*>(&object)) return use(*response);
  if (auto* const request = dynamic_cast<KRMessageSetRq*>(&object)) return use(*request);
  return false;
}

}  // namespace krofx::internal

#endif  // KROFX_STREAM_INTERNAL_LIST_ELEMENTS_H_
