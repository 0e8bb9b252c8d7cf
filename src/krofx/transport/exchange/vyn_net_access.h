// HTTP and HTTPS through a connection manager: the access object, which holds the session.
//
// The session is opened and connected by InitConnection, or comes from the host through
// SetGlobalState. What happens in the session is the requests' affair (vyn_net_request.h); the
// bytes are the connection manager's (connection_manager.h), and so are the numbers in the log.

#ifndef KROFX_TRANSPORT_EXCHANGE_VYN_NET_ACCESS_H_
#define KROFX_TRANSPORT_EXCHANGE_VYN_NET_ACCESS_H_

#include "krofx/core/export.h"
#include "krofx/core/types.h"
#include "krofx/transport/contract/connection_manager.h"
#include "krofx/transport/contract/net_access.h"
#include "krofx/transport/contract/wait_platform.h"
#include "krofx/transport/exchange/internal/connection_session.h"

/// A module of the process: null for the program, else a handle of dlopen.
using HINSTANCE = void*;

/// The connection of VYNNetRequest objects.
class KROFX_API VYNNetAccess : public KRNetAccess {
 public:
  /// Works through the given manager and waits through the given platform. Neither is owned, and
  /// both must outlive this object. Null means the default: a manager of this object's own over
  /// libcurl, a platform without events. Without memory for the default manager every operation
  /// fails.
  explicit VYNNetAccess(VYNConnectionManager* manager = nullptr,
                        VYNWaitPlatform* platform = nullptr);
  VYNNetAccess(const VYNNetAccess&) = delete;
  VYNNetAccess& operator=(const VYNNetAccess&) = delete;
  /// Ends what its requests are doing, takes them off this object, and closes a session that it
  /// opened itself. It may be destroyed by host code in an event or in a callback of its own.
  ~VYNNetAccess() override;

  /// 1.
  u16 CanDoNetworkSetup() override;
  /// 1 unless the manager says that the network has yet to be configured, or fails to say.
  u16 IsNetworkSetup() override;
  /// 0: the connection manager sets the network up by its own means.
  u16 DoNetworkSetup() override;
  /// Opens a session, unless there is one, and connects it, unless it is connected.
  /// KRNetStatus_Failed when either fails, KRNetStatus_Refused when the connection was refused.
  KRNetStatus InitConnection() override;
  /// Closes the session; one that came from the host is only forgotten. There is no session behind
  /// it, also when closing failed with KRNetStatus_CloseFailed. Exchanges that still run end, with
  /// KRNetStatus_Failed.
  KRNetStatus EndConnection() override;
  /// Makes a VYNNetRequest of this object; null when memory is exhausted.
  KRNetRequest* NewNetRequest() override;
  /// Destroys a request with all that it holds; null is allowed. Always success.
  KRNetStatus DeleteNetRequest(KRNetRequest* request) override;
  /// Takes a session that the host opened, which stays the host's. Returns 1. A session that this
  /// object opened before is closed.
  u16 SetGlobalState(void* session) override;
  /// Gives the last code from the connection manager, 0 for success. Returns 1.
  u16 GetStatus(u32& lastError) const override;

  /// Gives the folder of a module, with the separator at its end, as a folder for reply files. Of
  /// the module's name at most 1023 characters count; one without a folder gives "c:\".
  static void SetupTempPathFromHInst(HINSTANCE module, KRString& path);

  /// @return the session as the requests of this object use it.
  krofx::internal::ConnectionSession& Session() { return m_session; }

 protected:
  /// @return the session; null when none is open.
  void* GetVYNSession() { return m_session.Handle(); }
  /// Does what InitConnection does.
  KRNetStatus OpenInternetIfNeeded();

 private:
  krofx::internal::ConnectionSession m_session;
};

#endif  // KROFX_TRANSPORT_EXCHANGE_VYN_NET_ACCESS_H_
