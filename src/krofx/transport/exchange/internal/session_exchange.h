// The exchange that a request runs in its session, and the call that waits for it.

#ifndef KROFX_TRANSPORT_EXCHANGE_INTERNAL_SESSION_EXCHANGE_H_
#define KROFX_TRANSPORT_EXCHANGE_INTERNAL_SESSION_EXCHANGE_H_

#include "krofx/core/export.h"
#include "krofx/core/types.h"
#include "krofx/transport/contract/net_status.h"

class KRNetAccess;
class VYNConnectionManager;

namespace krofx::internal {

class ConnectionSession;

/// The state of a call that waits for an exchange, which host code may have changed before the call
/// continues. It is on the stack of the call, and so outlives the request.
struct ExchangeCall {
  /// The exchange was ended without a finished record.
  bool over = false;
  /// The request was destroyed.
  bool requestGone = false;
};

/// The entry of one request in its session's list of exchanges.
class KROFX_API SessionExchange {
 public:
  SessionExchange() = default;
  SessionExchange(const SessionExchange&) = delete;
  SessionExchange& operator=(const SessionExchange&) = delete;
  /// Ends the exchange, notifies the call that waits, and leaves the session.
  ~SessionExchange();

  /// Joins a session and leaves the previous one; null only leaves.
  void Join(ConnectionSession* session);
  /// Leaves the session, if there is one.
  void Leave();
  /// @return the session; null without one.
  ConnectionSession* Session() const { return m_session; }
  /// @return the manager of the session; null without one.
  VYNConnectionManager* Manager() const;
  /// @return the access object whose log takes the lines; null without a session.
  KRNetAccess* Log() const;

  /// Sets the call that waits from now on; null for none.
  void SetCall(ExchangeCall* call) { m_call = call; }
  /// @return whether a call waits.
  bool HasCall() const { return m_call != nullptr; }
  /// Waits until `*finished` is not 0, or the exchange or the host's event loop ends. Each round
  /// handles at most one event and then pauses.
  void Wait(const u16* finished);

  /// Sets the manager's handle of the exchange; null when it has none, or no longer has one.
  void SetHandle(void* handle) { m_handle = handle; }
  /// @return the manager's handle of the exchange; null for none.
  void* Handle() const { return m_handle; }
  /// Cancels the exchange, if there is one; its finished record still follows.
  /// @return KRNetStatus_CancelFailed when the manager refuses.
  KRNetStatus Cancel();
  /// Releases the exchange in the manager, if there is one; no finished record follows.
  void Release();
  /// Releases the exchange and ends the call that waits for it.
  void End();

 private:
  friend class ConnectionSession;

  ConnectionSession* m_session = nullptr;
  // The neighbours in the list of the session.
  SessionExchange* m_next = nullptr;
  SessionExchange* m_previous = nullptr;
  void* m_handle = nullptr;
  ExchangeCall* m_call = nullptr;
};

}  // namespace krofx::internal

#endif  // KROFX_TRANSPORT_EXCHANGE_INTERNAL_SESSION_EXCHANGE_H_
