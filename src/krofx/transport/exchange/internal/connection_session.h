// The session that an access object and its requests share, opened, connected and closed through a
// connection manager.
//
// VYNNetAccess holds the session; each of its requests has a SessionExchange in it. The session
// does nothing with the exchanges except end them when it ends.

#ifndef KROFX_TRANSPORT_EXCHANGE_INTERNAL_CONNECTION_SESSION_H_
#define KROFX_TRANSPORT_EXCHANGE_INTERNAL_CONNECTION_SESSION_H_

#include "krofx/core/export.h"
#include "krofx/core/types.h"
#include "krofx/transport/contract/net_access.h"
#include "krofx/transport/contract/wait_platform.h"

class VYNConnectionManager;

namespace krofx::internal {

class SessionExchange;

/// A session of a connection manager, with the exchanges that take place in it.
class KROFX_API ConnectionSession {
 public:
  /// Opens no session yet. Lines are logged through `access`, of which this object is a member. The
  /// manager and the platform are not owned. A null manager means a libcurl manager that this
  /// object makes, a null platform means one without events.
  ConnectionSession(KRNetAccess& access, VYNConnectionManager* manager, VYNWaitPlatform* platform);
  ConnectionSession(const ConnectionSession&) = delete;
  ConnectionSession& operator=(const ConnectionSession&) = delete;
  /// Ends the exchanges, detaches them, and closes a session that was opened here.
  ~ConnectionSession();

  /// Opens a session, unless there is one, and connects it, unless it is connected.
  /// @return as VYNNetAccess::InitConnection.
  KRNetStatus Open();
  /// Ends the exchanges, and closes the session if it was opened here. Afterwards there is no
  /// session.
  /// @return as VYNNetAccess::EndConnection.
  KRNetStatus Close();
  /// Takes a session that the host opened and still owns. A different session that was opened here
  /// is closed first, and its exchanges end.
  void Adopt(void* session);
  /// Asks the manager whether the network has been configured.
  /// @return whether it has; false also when the manager fails.
  bool IsNetworkSetUp();

  /// Adds an exchange to the session, which ends it when the session ends.
  void Add(SessionExchange& exchange);
  /// Removes an exchange from the session.
  void Remove(SessionExchange& exchange);

  /// @return the manager; null when there was no memory for the default one.
  VYNConnectionManager* Manager() const { return m_manager; }
  /// @return the platform through which calls wait.
  VYNWaitPlatform& Platform() { return *m_platform; }
  /// @return the access object, which takes the log lines and has the folder of reply files.
  KRNetAccess& Access() const { return m_access; }
  /// @return the manager's handle of the session; null while none is open.
  void* Handle() const { return m_handle; }
  /// @return the last code from the manager; 0 for success.
  u16 LastError() const { return m_lastError; }

 private:
  bool OwnsHandle() const;
  void EndExchanges();
  void Note(u16 code, const char* line);

  KRNetAccess& m_access;
  VYNConnectionManager* m_manager;
  VYNConnectionManager* m_ownManager = nullptr;
  VYNDefaultWaitPlatform m_ownPlatform;
  VYNWaitPlatform* m_platform;

  void* m_handle = nullptr;
  bool m_fromHost = false;
  bool m_connected = false;
  u16 m_lastError = 0;
  SessionExchange* m_exchanges = nullptr;
};

}  // namespace krofx::internal

#endif  // KROFX_TRANSPORT_EXCHANGE_INTERNAL_CONNECTION_SESSION_H_
