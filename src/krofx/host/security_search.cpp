// Passes over everything that security lists are not in: there are tens of thousands of objects in
// a statement, and each of its positions and transactions asks.

#include "krofx/host/security_search.h"

#include "krofx/messages/investment/securities.h"
#include "krofx/model/internal/aggregate.h"
#include "krofx/values/utility.h"

namespace krofx {

namespace {

bool IsSame(const KRSecID& a, const KRSecID& b) {
  return (a.GetUniqueID() == b.GetUniqueID()) != 0 &&
         (a.GetUniqueIDType() == b.GetUniqueIDType()) != 0;
}

}  // namespace

const KRSecInfo* FindSecurity(const internal::TreeSource& source, const KRSecID& id) {
  internal::TreeWalk walk(source);
  while (const KRDataObj* const object = walk.Next()) {
    if (const auto* const info = dynamic_cast<const KRSecInfo*>(object)) {
      const KRSecID* const own = info->GetSecID();
      if (own != nullptr && IsSame(*own, id)) return info;
      walk.SkipChildren();
    } else if (dynamic_cast<const KRTransBase*>(object) != nullptr) {
      walk.SkipChildren();  // A list is beside the wrappers and payloads, not in them.
    }
  }
  return nullptr;
}

namespace internal {

std::string_view TagOf(const KRDataObj* object) {
  const KRTagDictionary* const dictionary = KRTagDictionary::TheKRTagDictionary();
  const KRTagID tag = object == nullptr ? KRTag_None : TypeOf(*object);
  const char* const text =
      dictionary == nullptr || tag == KRTag_None ? nullptr : dictionary->GetTagString(tag);
  return text == nullptr ? std::string_view() : std::string_view(text);
}

}  // namespace internal
}  // namespace krofx
