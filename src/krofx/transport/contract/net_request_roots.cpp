// Adds the roots that the library carries to a request, with their IDs.

#include <initializer_list>

#include "krofx/security/internal/trusted_roots.h"
#include "krofx/transport/contract/net_request.h"

namespace internal = krofx::internal;

namespace {

// Adds roots in order, until one is refused.
u16 AddRoots(KRNetRequest& request, std::initializer_list<const internal::TrustedRoot*> roots) {
  for (const internal::TrustedRoot* root : roots) {
    if (request.AddTrustedRootBER(root->der, root->length, root->id) == 0) return 0;
  }
  return 1;
}

}  // namespace

u16 KRNetRequest::AddNorvikBrandingRoot() {
  return AddRoots(*this, {&internal::kNorvikBrandingRoot});
}

u16 KRNetRequest::AddRSAServerRoot() {
  return AddRoots(*this, {&internal::kRSAServerRootReissue, &internal::kRSAServerRoot});
}

u16 KRNetRequest::AddVeriSignOFXCARoot() {
  return AddRoots(*this, {&internal::kVeriSignOFXCARoot, &internal::kVeriSignClass3Root});
}
