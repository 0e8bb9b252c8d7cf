// A growable array of certificates, in which a request holds its trusted roots.

#ifndef KROFX_SECURITY_CERTIFICATE_ARRAY_H_
#define KROFX_SECURITY_CERTIFICATE_ARRAY_H_

#include "krofx/core/array.h"
#include "krofx/core/export.h"
#include "krofx/security/certificate.h"

/// An array of owned certificates.
class KROFX_API KRDynamicArrayCert : public krofx::internal::PlainArray<KRCert> {
 public:
  using PlainArray::PlainArray;
};

#endif  // KROFX_SECURITY_CERTIFICATE_ARRAY_H_
