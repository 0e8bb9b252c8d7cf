// What every transport that stays on this machine has in common: there is no network to set up and
// no connection to open.

#ifndef KROFX_TRANSPORT_LOCAL_LOCAL_ACCESS_H_
#define KROFX_TRANSPORT_LOCAL_LOCAL_ACCESS_H_

#include "krofx/core/export.h"
#include "krofx/core/types.h"
#include "krofx/transport/contract/net_access.h"

/// A connection that does nothing. A derived class says in NewNetRequest what its requests are.
class KROFX_API LocalAccess : public KRNetAccess {
 public:
  /// 0: there is no network.
  u16 CanDoNetworkSetup() override;
  /// 0: there is no network.
  u16 IsNetworkSetup() override;
  /// 0: there is no network.
  u16 DoNetworkSetup() override;
  /// Success; nothing is opened.
  KRNetStatus InitConnection() override;
  /// Success; nothing is closed.
  KRNetStatus EndConnection() override;
  /// Destroys the request with all that it holds; null is allowed. Always success.
  KRNetStatus DeleteNetRequest(KRNetRequest* request) override;
};

#endif  // KROFX_TRANSPORT_LOCAL_LOCAL_ACCESS_H_
