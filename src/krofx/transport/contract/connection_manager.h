// The interface between the transport and the code that carries HTTP: a session, exchanges in it,
// and two callbacks.
//
// The prefix VYN marks this interface and the transport that uses it: VYN for classes, VC for the
// operations of a manager, VY for its records and codes.
//
// A VYNNetAccess uses one VYNConnectionManager, only through these operations. The transport
// decides what is sent, which certificates are accepted and what the numbers mean. The default
// manager speaks HTTP and HTTPS through libcurl (curl/curl_manager.h); a host may supply its own,
// and tests use a scripted one.
//
// The order of one exchange: VCSendDataRequest or VCGetFileRequest creates it, VCAddTrustedRoot,
// VCSetSSLInfo and VCSetHTTPInfo set it up, VCInitiate starts it. From then on the manager calls
// the progress callback and, for HTTPS, the certificate callback after the server has shown its
// certificates. The last call has the finished record; after it the exchange's handle is no longer
// valid. An exchange that gets no finished record, because it was never started or nothing waits
// for it any more, is released with VCRelease.
//
// Every callback is made on the thread that runs the exchange, from inside one of the operations
// here, usually VCWork. A callback may run host code, which may call VCCancel or VCRelease for the
// same exchange. Texts that are passed to an operation are valid only during the call.

#ifndef KROFX_TRANSPORT_CONTRACT_CONNECTION_MANAGER_H_
#define KROFX_TRANSPORT_CONTRACT_CONNECTION_MANAGER_H_

#include "krofx/core/export.h"
#include "krofx/core/types.h"
#include "krofx/transport/contract/net_status.h"

/// What a progress callback reports.
enum VYCallbackStatus : u32 {
  /// The record is a VYProgressRecord.
  kVYProgress = 0,
  /// The exchange is over; the record is a VYFinishedRecord.
  kVYFInished = 1,
};

#pragma pack(push, 1)

/// The progress of an exchange. The record is packed, so that it has the same layout with every
/// compiler. The user data is as wide as a pointer: with pointers of 8 bytes, the code is at offset
/// 10, the totals are at 14 and 18, and the counts at 22 and 26. With pointers of 4 bytes all of
/// these are 4 bytes earlier.
struct VYProgressRecord {
  /// Not used.
  u16 reserved;
  /// What was given when the exchange was created.
  void* userData;
  /// A KROpCode.
  u32 opCode;
  /// Total bytes to receive (code 3); 0 while unknown.
  u32 receiveTotal;
  /// Total bytes to send (code 2); 0 while unknown.
  u32 sendTotal;
  /// Bytes received so far.
  u32 received;
  /// Bytes sent so far.
  u32 sent;
};

/// How an exchange ended. Packed like VYProgressRecord: the names are at offsets 10 and 292 with
/// pointers of 8 bytes, and at 6 and 288 with pointers of 4 bytes.
struct VYFinishedRecord {
  /// Bytes of a reply file's name, its NUL included.
  static constexpr u32 kReplyFileSize = 282;
  /// Bytes of a header file's name, its NUL included.
  static constexpr u32 kHeaderFileSize = 1024;

  /// 0 for success, else one of the manager's codes.
  u16 result;
  /// What was given when the exchange was created.
  void* userData;
  /// The file with the reply's body; empty for none. The receiver removes the file.
  char replyFile[kReplyFileSize];
  /// The file with the reply's headers; empty for none. The receiver removes the file.
  char headerFile[kHeaderFileSize];
};

#pragma pack(pop)

/// One certificate of a chain. The list begins at the root; its last element is the server's own
/// certificate. The list and the bytes belong to the manager and are valid only during the
/// callback.
struct SSLCertificateChain {
  /// The next certificate, one step nearer to the server; null after the server's own.
  SSLCertificateChain* next;
  /// Bytes of `der`.
  u16 length;
  /// The certificate, DER.
  const char* der;
};

/// Takes a VYProgressRecord or a VYFinishedRecord; the result is not used.
using VYProgressCallback = u16 (*)(VYCallbackStatus status, void* record);

/// Decides whether a server's certificates are accepted: 0 accepts, any other value refuses and
/// ends the exchange with that code. `rootID` is the ID of the root at the end of the verified
/// chain, 0 for a root of the system; `error` is the code of an error that the manager's own check
/// found, 0 for none; `request` is the user data of the exchange. The last two arguments are not
/// used.
using VYCertificateCallback = u16 (*)(SSLCertificateChain* chain, u32 rootID, u16 error,
                                      void* request, u32, u32);

/// Carries bytes for a VYNNetAccess. A `u16` result is 0 for success, else one of the manager's
/// codes, which MapVYNErrorToNetStatus of VYNNetRequest turns into a KRNetStatus.
///
/// Only one thread at a time may use a manager, as is the case for the access object.
class KROFX_API VYNConnectionManager {
 public:
  virtual ~VYNConnectionManager() = default;

  /// Opens a session.
  /// @return the session. Null, or a nonzero `*error`, means failure.
  virtual void* VCOpenInet(u16* error) = 0;
  /// Closes a session; null is allowed.
  virtual u16 VCCloseInet(void* session) = 0;
  /// Connects a session to the network. 2200 means that the connection was refused.
  virtual u16 VCConnect(void* session) = 0;

  /// Creates an exchange that sends `size` bytes to `url`. The data must live until the exchange is
  /// over or released. The reply file and the header file are made in `tempPath`, which ends with a
  /// separator and in which a backslash counts as a slash, as in the names that `callback` gets.
  /// @return the exchange. Null, or a nonzero `*error`, means failure: no exchange was created.
  virtual void* VCSendDataRequest(u16* error, void* session, const char* url, const char* data,
                                  u32 size, const char* tempPath, VYProgressCallback callback,
                                  void* userData) = 0;
  /// Creates an exchange that fetches `url`. As VCSendDataRequest, without data.
  virtual void* VCGetFileRequest(u16* error, void* session, const char* url, const char* tempPath,
                                 VYProgressCallback callback, void* userData) = 0;

  /// Sets the HTTP options. `post` is 1 for a send; `contentType` and `extraHeaders` (lines ended
  /// by CR LF) may be null; `timeout` is in seconds for the whole exchange. The second and the
  /// sixth argument are always 0 and 1. Without this call an exchange has no limit of its own, and
  /// a send is a post of application/x-ofx.
  virtual u16 VCSetHTTPInfo(void* exchange, u32, u16 post, const char* contentType,
                            const char* extraHeaders, u32, s32 timeout) = 0;
  /// Sets the TLS options. With `skipVerify` 1 the manager checks nothing itself, but still calls
  /// the callback. The last argument is always 120.
  virtual u16 VCSetSSLInfo(void* exchange, u16 skipVerify, VYCertificateCallback callback, u32) = 0;
  /// Adds a root that the server's chain may end at. `der` needs to be valid only during the call.
  virtual u16 VCAddTrustedRoot(void* exchange, const char* der, u32 length, s16 rootID) = 0;

  /// Starts the exchange. After a failure there is no finished record.
  virtual u16 VCInitiate(void* session, void* exchange) = 0;
  /// Ends a started exchange early. Its finished record still follows, with an error code.
  virtual u16 VCCancel(void* session, void* exchange) = 0;
  /// Releases an exchange that has had no finished record, started or not. It ends at once, makes
  /// no more callbacks, removes the files that no record has named, and its handle is no longer
  /// valid. The default does nothing, which is right only for a manager that keeps nothing of such
  /// an exchange and never calls back for it later.
  virtual void VCRelease(void* session, void* exchange);

  /// Sets `*needs` to 1 when the network must still be set up, else to 0.
  virtual u16 VY_IspConfig_NeedsToConfigure(u32* needs) = 0;

  /// Lets the manager use the thread for at most `milliseconds`: it advances its exchanges, makes
  /// their callbacks, and returns as soon as one of them has advanced. A manager that does its work
  /// elsewhere only lets the time pass, which is what the default does.
  virtual void VCWork(u32 milliseconds);
  /// Announces that the next VCWork is a pause between two events of the host. It must last for its
  /// whole time unless an exchange ends, even if exchanges advance, so that the rate of events
  /// stays limited. The default does nothing, for a manager whose VCWork always does this; if it
  /// does not, VYNDefaultWaitPlatform is paused again for the rest of the time.
  virtual void VCPaceWork();
};

#endif  // KROFX_TRANSPORT_CONTRACT_CONNECTION_MANAGER_H_
