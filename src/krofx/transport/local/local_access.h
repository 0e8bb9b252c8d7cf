// The base class of transports that do not leave this machine: there is no network to set up and no
// connection to open.

#ifndef KROFX_TRANSPORT_LOCAL_LOCAL_ACCESS_H_
#define KROFX_TRANSPORT_LOCAL_LOCAL_ACCESS_H_

#include "krofx/core/export.h"
#include "krofx/core/types.h"
#include "krofx/transport/contract/net_access.h"

/// A connection that does nothing. A derived class makes its requests in NewNetRequest.
class KROFX_API LocalAccess : public KRNetAccess {
 public:
  /// @return 0: there is no network.
  u16 CanDoNetworkSetup() override;
  /// @return 0: there is no network.
  u16 IsNetworkSetup() override;
  /// @return 0: there is no network.
  u16 DoNetworkSetup() override;
  /// Opens nothing.
  /// @return KRNetStatus_Success.
  KRNetStatus InitConnection() override;
  /// Closes nothing.
  /// @return KRNetStatus_Success.
  KRNetStatus EndConnection() override;
  /// Destroys the request; null is allowed.
  /// @return KRNetStatus_Success.
  KRNetStatus DeleteNetRequest(KRNetRequest* request) override;
};

#endif  // KROFX_TRANSPORT_LOCAL_LOCAL_ACCESS_H_
