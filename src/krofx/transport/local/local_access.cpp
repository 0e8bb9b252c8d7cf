// A connection that does nothing.

#include "krofx/transport/local/local_access.h"

#include "krofx/transport/contract/net_request.h"

u16 LocalAccess::CanDoNetworkSetup() { return 0; }

u16 LocalAccess::IsNetworkSetup() { return 0; }

u16 LocalAccess::DoNetworkSetup() { return 0; }

KRNetStatus LocalAccess::InitConnection() { return KRNetStatus_Success; }

KRNetStatus LocalAccess::EndConnection() { return KRNetStatus_Success; }

KRNetStatus LocalAccess::DeleteNetRequest(KRNetRequest* request) {
  delete request;
  return KRNetStatus_Success;
}
