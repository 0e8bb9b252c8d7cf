// Looks for securities only where security lists can be, since a statement may have tens of
// thousands of objects, and lists them once for views, since each position and transaction asks.

#include "krofx/host/security_search.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <tuple>
#include <utility>

#include "krofx/core/internal/failed_allocations.h"
#include "krofx/core/list.h"
#include "krofx/core/memory.h"
#include "krofx/host/words.h"
#include "krofx/messages/investment/securities.h"
#include "krofx/model/internal/aggregate.h"
#include "krofx/values/utility.h"

namespace krofx {

namespace {

// What distinguishes securities: the ID, and the numbering that it is from.
using Key = std::pair<std::string_view, std::string_view>;

Key KeyOf(const KRSecID& id) { return {ToText(id.GetUniqueID()), ToText(id.GetUniqueIDType())}; }

// Calls `take` with each security that has an ID, until that gives false.
template <class Take>
void ForEachSecurity(const internal::TreeSource& source, const Take& take) {
  internal::TreeWalk walk(source);
  while (const KRDataObj* const object = walk.Next()) {
    if (const auto* const info = dynamic_cast<const KRSecInfo*>(object)) {
      const KRSecID* const id = info->GetSecID();
      if (id != nullptr && !take(KeyOf(*id), *info)) return;
      walk.SkipChildren();
    } else if (dynamic_cast<const KRTransBase*>(object) != nullptr) {
      walk.SkipChildren();  // A list is beside the wrappers and payloads, not in them.
    }
  }
}

}  // namespace

const KRSecInfo* FindSecurity(const internal::TreeSource& source, const KRSecID& id) {
  const Key wanted = KeyOf(id);
  const KRSecInfo* found = nullptr;
  ForEachSecurity(source, [&](const Key& key, const KRSecInfo& info) {
    if (key == wanted) found = &info;
    return found == nullptr;
  });
  return found;
}

namespace internal {

// In the order of their keys, and for one key in that of the document.
struct SecurityFinder::Listing : HeapObject {
  struct Entry {
    Key key;
    const KRSecInfo* info;
    std::size_t place;
  };
  std::atomic<std::size_t> users{1};
  List<Entry> entries;
};

SecurityFinder::SecurityFinder(const TreeSource& source) {
  const AllocationWatch memory;
  ForEachSecurity(source, [this](const Key& key, const KRSecInfo& info) {
    if (m_listing == nullptr) m_listing = new Listing;
    return m_listing != nullptr &&
           m_listing->entries.Append({key, &info, m_listing->entries.size()});
  });
  if (memory.HasFailed()) {
    delete std::exchange(m_listing, nullptr);
    m_unlisted = source;
  } else if (m_listing != nullptr) {
    std::sort(m_listing->entries.begin(), m_listing->entries.end(),
              [](const Listing::Entry& left, const Listing::Entry& right) {
                return std::tie(left.key, left.place) < std::tie(right.key, right.place);
              });
  }
}

SecurityFinder::SecurityFinder(const SecurityFinder& other)
    : m_unlisted(other.m_unlisted), m_listing(other.m_listing) {
  if (m_listing != nullptr) m_listing->users.fetch_add(1, std::memory_order_relaxed);
}

SecurityFinder::SecurityFinder(SecurityFinder&& other) noexcept
    : m_unlisted(other.m_unlisted), m_listing(std::exchange(other.m_listing, nullptr)) {}

SecurityFinder& SecurityFinder::operator=(SecurityFinder other) noexcept {
  m_unlisted = other.m_unlisted;
  std::swap(m_listing, other.m_listing);
  return *this;
}

SecurityFinder::~SecurityFinder() {
  if (m_listing != nullptr && m_listing->users.fetch_sub(1, std::memory_order_acq_rel) == 1) {
    delete m_listing;
  }
}

const KRSecInfo* SecurityFinder::Find(const KRSecID& id) const {
  if (m_listing == nullptr) return FindSecurity(m_unlisted, id);
  const Key key = KeyOf(id);
  const auto* const end = m_listing->entries.end();
  const auto* const found = std::lower_bound(
      std::as_const(m_listing->entries).begin(), end, key,
      [](const Listing::Entry& entry, const Key& wanted) { return entry.key < wanted; });
  return found != end && found->key == key ? found->info : nullptr;
}

std::string_view TagOf(const KRDataObj* object) {
  const KRTagDictionary* const dictionary = KRTagDictionary::TheKRTagDictionary();
  const KRTagID tag = object == nullptr ? KRTag_None : TypeOf(*object);
  const char* const text =
      dictionary == nullptr || tag == KRTag_None ? nullptr : dictionary->GetTagString(tag);
  return text == nullptr ? std::string_view() : std::string_view(text);
}

}  // namespace internal
}  // namespace krofx
