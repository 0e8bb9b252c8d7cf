// A transport by hand: requests go into a file, and a person puts the replies into another.

#ifndef KROFX_TRANSPORT_LOCAL_RECEIVER_ACCESS_H_
#define KROFX_TRANSPORT_LOCAL_RECEIVER_ACCESS_H_

#include "krofx/core/export.h"
#include "krofx/transport/local/local_access.h"

/// Makes the requests of receiver_request.h. A host that shows the prompt derives a request class
/// of its own, and an access class that makes it.
class KROFX_API ReceiverAccess : public LocalAccess {
 public:
  /// A ReceiverRequest that knows this object; null when memory is exhausted.
  KRNetRequest* NewNetRequest() override;
};

#endif  // KROFX_TRANSPORT_LOCAL_RECEIVER_ACCESS_H_
