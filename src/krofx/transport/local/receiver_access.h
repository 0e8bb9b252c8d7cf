// A transport by hand: requests are written to a file, and a person puts each reply into another
// file.

#ifndef KROFX_TRANSPORT_LOCAL_RECEIVER_ACCESS_H_
#define KROFX_TRANSPORT_LOCAL_RECEIVER_ACCESS_H_

#include "krofx/core/export.h"
#include "krofx/transport/local/local_access.h"

/// Makes the requests of receiver_request.h. A host that wants to show the prompt derives a request
/// class of its own, and an access class that makes it.
class KROFX_API ReceiverAccess : public LocalAccess {
 public:
  /// @return a ReceiverRequest of this object; null when memory is exhausted.
  KRNetRequest* NewNetRequest() override;
};

#endif  // KROFX_TRANSPORT_LOCAL_RECEIVER_ACCESS_H_
