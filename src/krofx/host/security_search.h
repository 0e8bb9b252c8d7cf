// Finds the security that an ID names in a file's lists, and the tag that an object has.

#ifndef KROFX_HOST_SECURITY_SEARCH_H_
#define KROFX_HOST_SECURITY_SEARCH_H_

#include <string_view>

#include "krofx/core/export.h"
#include "krofx/host/internal/tree_walk.h"

class KRDataObj;
class KRSecID;
class KRSecInfo;

namespace krofx {

/// The description of a security in the security lists of `source`, as Each takes it. It looks
/// through the lists each time, and through nothing else of the file: to look for many, take the
/// views, which list the securities once.
/// @return null when there is none.
KROFX_API const KRSecInfo* FindSecurity(const internal::TreeSource& source, const KRSecID& id);

namespace internal {

/// Lists the securities of a file once, to find many of them. Copies share the list: as long as one
/// is there, the file's security lists must be there and must not change. Copies may be used on
/// several threads.
class KROFX_API SecurityFinder {
 public:
  /// Finds none.
  SecurityFinder() = default;
  /// Lists the securities of a source. Without memory for that, Find looks through the source each
  /// time.
  explicit SecurityFinder(const TreeSource& source);
  SecurityFinder(const SecurityFinder& other);
  SecurityFinder(SecurityFinder&& other) noexcept;
  SecurityFinder& operator=(SecurityFinder other) noexcept;
  ~SecurityFinder();

  /// @return the first security with an ID; null when there is none.
  const KRSecInfo* Find(const KRSecID& id) const;

 private:
  struct Listing;

  TreeSource m_unlisted;         // Where to look without a list.
  Listing* m_listing = nullptr;  // Null when there is no security, and without memory.
};

/// @return the tag of an object, such as "POSSTOCK"; empty for null, and for an object without a
///         tag.
std::string_view TagOf(const KRDataObj* object);

}  // namespace internal
}  // namespace krofx

#endif  // KROFX_HOST_SECURITY_SEARCH_H_
