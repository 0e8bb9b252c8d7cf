// The exchange that a request has under way in its session, and the call that waits for it.

#ifndef KROFX_TRANSPORT_EXCHANGE_INTERNAL_SESSION_EXCHANGE_H_
#define KROFX_TRANSPORT_EXCHANGE_INTERNAL_SESSION_EXCHANGE_H_

#include "krofx/core/export.h"
#include "krofx/core/types.h"
#include "krofx/transport/contract/net_status.h"

class KRNetAccess;
class VYNConnectionManager;

namespace krofx::internal {

class ConnectionSession;

/// A call that waits for an exchange: what it has to know when it goes on, whatever the host's code
/// did meanwhile. It lives on the stack of the call, and so outlives the request.
struct ExchangeCall {
  /// The exchange was ended without a finished record.
  bool over = false;
  /// The request was destroyed.
  bool requestGone = false;
};

/// The place of one request among the exchanges of a session.
class KROFX_API SessionExchange {
 public:
  SessionExchange() = default;
  SessionExchange(const SessionExchange&) = delete;
  SessionExchange& operator=(const SessionExchange&) = delete;
  /// Ends the exchange, says so to the call that waits, and leaves the session.
  ~SessionExchange();

  /// Takes the place in a session, and leaves the one before; null only leaves.
  void Join(ConnectionSession* session);
  /// Leaves the session, if there is one.
  void Leave();
  /// @return the session; null without one.
  ConnectionSession* Session() const { return m_session; }
  /// @return the manager of the session; null without one.
  VYNConnectionManager* Manager() const;
  /// @return the access object whose log takes the lines; null without a session.
  KRNetAccess* Log() const;

  /// Says which call waits from now on; null for none any more.
  void SetCall(ExchangeCall* call) { m_call = call; }
  /// @return whether a call waits.
  bool HasCall() const { return m_call != nullptr; }
  /// Waits until `*finished` is not 0, or the exchange or the host's event loop ends. In each round
  /// one event at most is handled, and then comes a pause.
  void Wait(const u16* finished);

  /// Says under which handle the manager knows the exchange; null when it does not, or no longer.
  void SetHandle(void* handle) { m_handle = handle; }
  /// @return that handle.
  void* Handle() const { return m_handle; }
  /// Cancels the exchange, if there is one; its finished record still comes.
  /// @return KRNetStatus_CancelFailed when the manager refuses.
  KRNetStatus Cancel();
  /// Gives the exchange back to the manager, if there is one: no finished record comes.
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
