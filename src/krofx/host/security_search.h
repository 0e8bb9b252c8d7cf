// Which security of a file's lists an ID names, and the tag that an object is in the file as.

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
/// through the lists each time, and through nothing else of the file.
/// @return null when there is none.
KROFX_API const KRSecInfo* FindSecurity(const internal::TreeSource& source, const KRSecID& id);

namespace internal {

/// @return the tag of an object, such as "POSSTOCK"; empty for null, and for an object without a
///         tag.
std::string_view TagOf(const KRDataObj* object);

}  // namespace internal
}  // namespace krofx

#endif  // KROFX_HOST_SECURITY_SEARCH_H_
