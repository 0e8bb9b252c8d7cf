// The interface of a connection to the outside world, which makes the requests that carry bytes.
//
// A host makes the access object of the transport that it wants, sets names, paths and callbacks,
// asks IsNetworkSetup, calls InitConnection, makes a request with NewNetRequest, carries out
// exchanges with it (net_request.h), destroys it with DeleteNetRequest, and ends with
// EndConnection. No other part of the library calls a transport.

#ifndef KROFX_TRANSPORT_CONTRACT_NET_ACCESS_H_
#define KROFX_TRANSPORT_CONTRACT_NET_ACCESS_H_

#include "krofx/core/export.h"
#include "krofx/core/memory.h"
#include "krofx/core/string.h"
#include "krofx/core/types.h"
#include "krofx/transport/contract/net_status.h"

class KRNetRequest;

/// Takes one line of a transport's log: the text, its level (1 for what a user may care about, 3
/// for details), and an extra text that may be null. The texts are valid only during the call.
using KRLogCallback = void (*)(const char* text, u16 level, const char* extra);

/// Takes the progress of an exchange. With codes 2 and 3 come two counters, converted to pointers:
/// the bytes so far and the total bytes. With the other codes both are null.
using KRSessionCallback = void (*)(KROpCode code, void* a, void* b);

/// A connection, with the settings that all its requests share.
///
/// An access object and its requests are used by one thread, and its requests must be destroyed
/// before it. Nothing throws; a failure is reported by a KRNetStatus, 0 or null.
class KROFX_API KRNetAccess : public krofx::internal::HeapObject {
 public:
  /// No callbacks, the agent name "NONAME", and no path.
  KRNetAccess();
  /// Copies every setting.
  KRNetAccess(const KRNetAccess&) = default;
  /// Copies every setting.
  KRNetAccess& operator=(const KRNetAccess&) = default;

  /// @return 1 when DoNetworkSetup can do something.
  virtual u16 CanDoNetworkSetup() = 0;
  /// @return 1 when the network is ready to be used.
  virtual u16 IsNetworkSetup() = 0;
  /// Sets up the network.
  /// @return 1 when it was set up, else 0.
  virtual u16 DoNetworkSetup() = 0;

  /// Stores the name of the host application. No transport of the library sends it.
  virtual void SetAgentName(const KRString& name);
  /// Stores the folder in which a transport keeps its reply files, with the separator at its end.
  /// Without memory for it none is stored, and the fire alarm is raised.
  virtual void SetTempFilePath(const KRString& path);
  /// @return the folder in which reply files are kept, as it was set; it stays this object's.
  const KRString& GetTempFilePath() const { return m_tempFilePath; }
  /// Stores the function that takes log lines; null means no logging.
  virtual void SetLogCallback(void (*callback)(const char*, u16, const char*));
  /// Passes the three values to the log callback; without one it does nothing.
  virtual void LogMessage(const char* text, u16 level, const char* extra);
  /// Stores the function that takes the progress of exchanges; null means none.
  virtual void SetSessionCallback(void (*callback)(KROpCode, void*, void*));
  /// Passes the three values to the session callback; without one it does nothing.
  virtual void UpdateSessionStatus(KROpCode code, void* a, void* b);

  /// Opens the connection.
  virtual KRNetStatus InitConnection() = 0;
  /// Closes the connection.
  virtual KRNetStatus EndConnection() = 0;
  /// Makes a request that belongs to this object and uses it. DeleteNetRequest destroys it.
  /// @return the request; null when memory is exhausted.
  virtual KRNetRequest* NewNetRequest() = 0;
  /// Destroys a request of this object; null is allowed.
  virtual KRNetStatus DeleteNetRequest(KRNetRequest* request) = 0;

  /// Takes a session that the host opened, in the form that the transport uses.
  /// @return 1 when the session was taken; in this class 0.
  virtual u16 SetGlobalState(void* state);
  /// Gets the transport's last error code.
  /// @return 1 when the transport has error codes; in this class 0, with `lastError` unchanged.
  virtual u16 GetStatus(u32& lastError) const;

  /// An access object may be deleted through a pointer to this class.
  virtual ~KRNetAccess();

 protected:
  /// Copies the agent name into `name`.
  void GetAgentName(KRString& name) const;
  /// Copies the folder of reply files into `path`.
  void GetTempFilePath(KRString& path) const;

 private:
  KRLogCallback m_logCallback = nullptr;
  KRSessionCallback m_sessionCallback = nullptr;
  KRString m_agentName;
  KRString m_tempFilePath;
};

#endif  // KROFX_TRANSPORT_CONTRACT_NET_ACCESS_H_
