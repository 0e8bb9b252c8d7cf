// HTTP and HTTPS through a connection manager: the access object, which holds the session.
//
// The session is opened and connected by InitConnection, or comes from the host through
// SetGlobalState. The requests carry out exchanges in the session (vyn_net_request.h). The
// connection manager moves the bytes (connection_manager.h), and the numbers in the log are its
// codes.

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

/// The connection that VYNNetRequest objects use.
class KROFX_API VYNNetAccess : public KRNetAccess {
 public:
  /// Uses the given manager, and waits through the given platform. Neither is owned, and both must
  /// outlive this object. Null means the default: a libcurl manager that this object makes, and a
  /// platform without events. When there is no memory for the default manager every operation
  /// fails.
  explicit VYNNetAccess(VYNConnectionManager* manager = nullptr,
                        VYNWaitPlatform* platform = nullptr);
  VYNNetAccess(const VYNNetAccess&) = delete;
  VYNNetAccess& operator=(const VYNNetAccess&) = delete;
  /// Ends the exchanges of its requests, detaches the requests, and closes a session that it opened
  /// itself. Host code may destroy the object in an event or in one of its callbacks.
  ~VYNNetAccess() override;

  /// @return 1.
  u16 CanDoNetworkSetup() override;
  /// @return 1; 0 when the manager reports that the network must still be configured, or fails.
  u16 IsNetworkSetup() override;
  /// @return 0: the connection manager sets up the network itself.
  u16 DoNetworkSetup() override;
  /// Opens a session, unless there is one, and connects it, unless it is connected.
  /// @return KRNetStatus_Success; KRNetStatus_Failed when either fails; KRNetStatus_Refused when
  ///         the connection was refused.
  KRNetStatus InitConnection() override;
  /// Closes the session, or only forgets one that came from the host. Exchanges that still run end
  /// with KRNetStatus_Failed.
  /// @return KRNetStatus_Success; KRNetStatus_CloseFailed when closing failed. There is no session
  ///         afterwards in either case.
  KRNetStatus EndConnection() override;
  /// Makes a VYNNetRequest of this object.
  /// @return the request; null when memory is exhausted.
  KRNetRequest* NewNetRequest() override;
  /// Destroys a request; null is allowed.
  /// @return KRNetStatus_Success.
  KRNetStatus DeleteNetRequest(KRNetRequest* request) override;
  /// Takes a session that the host opened and still owns. A session that this object opened before
  /// is closed.
  /// @return 1.
  u16 SetGlobalState(void* session) override;
  /// Gets the last code from the connection manager, 0 for success.
  /// @return 1.
  u16 GetStatus(u32& lastError) const override;

  /// Gets the folder of a module, with a separator at its end, as a folder for reply files. At most
  /// 1023 characters of the module's name are used; a name without a folder gives "c:\".
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
