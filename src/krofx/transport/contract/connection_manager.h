// What the transport asks of whatever carries HTTP: a session, exchanges in it, and two callbacks.
//
// The prefix VYN is the name of this interface, and of the transport that works through it: VYN on
// classes, VC on the operations of a manager, VY on its records and codes.
//
// A VYNNetAccess is given one VYNConnectionManager and decides, over these operations alone, what
// is sent, which certificates are accepted and what the numbers mean. The default manager speaks
// HTTP and HTTPS through libcurl (curl/curl_manager.h); a host may bring its own, and tests bring a
// scripted one.
//
// The order of one exchange: VCSendDataRequest or VCGetFileRequest creates it, VCAddTrustedRoot,
// VCSetSSLInfo and VCSetHTTPInfo set it up, VCInitiate starts it. From then on the manager calls
// the progress callback, and, for HTTPS, the certificate callback once the server has shown its
// certificates. The last call is the finished record; the exchange's handle is dead behind it. An
// exchange that gets no finished record, because it was never started or nobody waits for it any
// more, is given back with VCRelease.
//
// Every callback is made on the thread that runs the exchange, from inside one of the operations
// here, VCWork as a rule. A callback may lead to host code, which may call VCCancel or VCRelease
// for the very exchange that the callback is about. Texts that are handed to an operation live
// through the call only.

#ifndef KROFX_TRANSPORT_CONTRACT_CONNECTION_MANAGER_H_
#define KROFX_TRANSPORT_CONTRACT_CONNECTION_MANAGER_H_

#include "krofx/core/export.h"
#include "krofx/core/types.h"
#include "krofx/transport/contract/net_status.h"

/// What a progress callback tells.
enum VYCallbackStatus : u32 {
  /// The record is a VYProgressRecord.
  kVYProgress = 0,
  /// The exchange is over; the record is a VYFinishedRecord.
  kVYFInished = 1,
};

#pragma pack(push, 1)

/// How far an exchange has come. Packed, so that the record is the same for every compiler; the
/// user data is as wide as a pointer, so that with pointers of 8 bytes what follows it begins at
/// 10: code 10, totals 14 and 18, counts 22 and 26. With user data of 4 bytes all that would stand
/// 4 bytes earlier.
struct VYProgressRecord {
  /// Not used.
  u16 reserved;
  /// What was given when the exchange was created.
  void* userData;
  /// A KROpCode.
  u32 opCode;
  /// Bytes in all of code 3, receiving; 0 while unknown.
  u32 receiveTotal;
  /// Bytes in all of code 2, sending; 0 while unknown.
  u32 sendTotal;
  /// Bytes so far of code 3.
  u32 received;
  /// Bytes so far of code 2.
  u32 sent;
};

/// How an exchange ended. Packed as VYProgressRecord: with pointers of 8 bytes the names stand at
/// 10 and 292, with user data of 4 bytes they would at 6 and 288.
struct VYFinishedRecord {
  /// Bytes of a reply file's name, its NUL included.
  static constexpr u32 kReplyFileSize = 282;
  /// Bytes of a header file's name, its NUL included.
  static constexpr u32 kHeaderFileSize = 1024;

  /// 0 for success, else one of the manager's codes.
  u16 result;
  /// What was given when the exchange was created.
  void* userData;
  /// Where the reply's body is, empty for none; the receiver removes the file.
  char replyFile[kReplyFileSize];
  /// Where the reply's headers are, empty for none; the receiver removes the file.
  char headerFile[kHeaderFileSize];
};

#pragma pack(pop)

/// One certificate of a chain. The list begins at the root's end; its last element is the server's
/// own certificate. List and bytes are the manager's, and live through the callback only.
struct SSLCertificateChain {
  /// The next certificate, one step nearer to the server; null behind the server's own.
  SSLCertificateChain* next;
  /// Bytes of `der`.
  u16 length;
  /// The certificate, DER.
  const char* der;
};

/// Takes a VYProgressRecord or a VYFinishedRecord; the result is not used.
using VYProgressCallback = u16 (*)(VYCallbackStatus status, void* record);

/// Decides over a server's certificates: 0 accepts, any other value refuses and ends the exchange
/// with that code. `rootID` is the ID under which the root at the end of the verified chain was
/// added, 0 for a root of the system; `error` is what the manager's own check found, 0 for nothing.
/// `request` is the user data of the exchange. The last two are not used.
using VYCertificateCallback = u16 (*)(SSLCertificateChain* chain, u32 rootID, u16 error,
                                      void* request, u32, u32);

/// Carries bytes for a VYNNetAccess. A `u16` result is 0 for success, else one of the manager's
/// codes, which MapVYNErrorToNetStatus of VYNNetRequest turns into a KRNetStatus.
///
/// A manager belongs to one thread at a time, as the access object does that uses it.
class KROFX_API VYNConnectionManager {
 public:
  virtual ~VYNConnectionManager() = default;

  /// Opens a session. Null, or a nonzero `*error`, means failure.
  virtual void* VCOpenInet(u16* error) = 0;
  /// Closes a session; null is allowed.
  virtual u16 VCCloseInet(void* session) = 0;
  /// Connects a session to the network. 2200 means that the connection was refused.
  virtual u16 VCConnect(void* session) = 0;

  /// Creates an exchange that sends `size` bytes to `url`. The data lives until the exchange is
  /// over or given back. Reply and header file are made in `tempPath`, which ends with its
  /// separator and in which a backslash is a slash, as in the names that `callback` is told. Null,
  /// or a nonzero `*error`, means failure: there is no exchange then.
  virtual void* VCSendDataRequest(u16* error, void* session, const char* url, const char* data,
                                  u32 size, const char* tempPath, VYProgressCallback callback,
                                  void* userData) = 0;
  /// Creates an exchange that fetches `url`. As VCSendDataRequest, without data.
  virtual void* VCGetFileRequest(u16* error, void* session, const char* url, const char* tempPath,
                                 VYProgressCallback callback, void* userData) = 0;

  /// Sets the HTTP options. `post` is 1 for a send; `contentType` and `extraHeaders` (lines ended
  /// by CR LF) may be null; `timeout` is in seconds for the whole exchange. The second and the
  /// sixth argument are always 0 and 1. An exchange without options has no limit of its own, and a
  /// send is then a post of application/x-ofx.
  virtual u16 VCSetHTTPInfo(void* exchange, u32, u16 post, const char* contentType,
                            const char* extraHeaders, u32, s32 timeout) = 0;
  /// Sets the TLS options. With `skipVerify` 1 the manager checks nothing itself; the callback is
  /// asked all the same. The last argument is always 120.
  virtual u16 VCSetSSLInfo(void* exchange, u16 skipVerify, VYCertificateCallback callback, u32) = 0;
  /// Adds a root that the server's chain may end at. `der` must live through the call only.
  virtual u16 VCAddTrustedRoot(void* exchange, const char* der, u32 length, s16 rootID) = 0;

  /// Starts the exchange. Behind a failure there is no finished record.
  virtual u16 VCInitiate(void* session, void* exchange) = 0;
  /// Ends a started exchange early; its finished record still comes, with a code.
  virtual u16 VCCancel(void* session, void* exchange) = 0;
  /// Gives back an exchange that has had no finished record, started or not: it ends at once, its
  /// callbacks are made no more, files that nobody was told of are removed, and the handle is dead.
  /// The default does nothing, for a manager that keeps nothing of such an exchange and never calls
  /// back for one later; any other must do as told here.
  virtual void VCRelease(void* session, void* exchange);

  /// Says in `*needs`, with 1, that the network has yet to be set up.
  virtual u16 VY_IspConfig_NeedsToConfigure(u32* needs) = 0;

  /// Gives the manager the thread for at most `milliseconds`: it moves its exchanges on, makes
  /// their callbacks, and returns as soon as one of them moved. A manager that works on its own
  /// only lets the time pass, which is what the default does.
  virtual void VCWork(u32 milliseconds);
  /// Says that the next VCWork is a pause between two events of the host's: it is to last for its
  /// whole time unless an exchange ends, however often one moves, so that no more events are
  /// handled than time allows. The default does nothing, for a manager whose VCWork always does so.
  virtual void VCPaceWork();
};

#endif  // KROFX_TRANSPORT_CONTRACT_CONNECTION_MANAGER_H_
