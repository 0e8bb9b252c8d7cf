// The certificates that the tests of the connection-manager transport use.

#include "transport/vyn_fixture.h"

#include "krofx/security/internal/trusted_roots.h"

std::string VYNTest::RootBytes(int which) {
  const krofx::internal::TrustedRoot& root =
      which == 0 ? krofx::internal::kRSAServerRoot : krofx::internal::kRSAServerRootReissue;
  return {root.der, root.length};
}

std::string VYNTest::RootBytesID(int which) {
  // By another tool: the base64 of the SHA-1 of the bytes.
  return which == 0 ? "DZdEYXA3E8t0ky0qday8cUsoEmY=" : "RGPFMdfMwQBnlGErtlbTv4JXhG8=";
}
