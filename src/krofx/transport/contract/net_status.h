// The numbers that an exchange reports: how it ended, and its progress. Hosts compare the numbers,
// so they never change; unused numbers are reserved.

#ifndef KROFX_TRANSPORT_CONTRACT_NET_STATUS_H_
#define KROFX_TRANSPORT_CONTRACT_NET_STATUS_H_

#include "krofx/core/types.h"

/// How an operation of a transport ended.
enum KRNetStatus : u32 {
  /// Done.
  KRNetStatus_Success = 0,
  /// No more precise reason is known: the network did not open or connect, a request file cannot be
  /// written, or the user declined.
  KRNetStatus_Failed = 1,
  /// The URL does not name a local file, and this request can fetch nothing else.
  KRNetStatus_NotFileUrl = 3,
  /// There is no reply, so it has no size.
  KRNetStatus_NoReplySize = 5,
  /// The reply could not be loaded, or its size is not the expected one.
  KRNetStatus_ReplyNotLoaded = 6,
  /// Closing the connection failed.
  KRNetStatus_CloseFailed = 7,
  /// The exchange could not be created.
  KRNetStatus_NotCreated = 8,
  /// The exchange could not be started.
  KRNetStatus_NotStarted = 10,
  /// No memory for the reply.
  KRNetStatus_NoMemory = 12,
  /// An error of the client or of the protocol, such as HTTP 4xx other than 408.
  KRNetStatus_ClientError = 14,
  /// The server is unavailable, or a gateway timed out: HTTP 503 and 504.
  KRNetStatus_Unavailable = 15,
  /// A trusted root could not be added.
  KRNetStatus_RootRejected = 16,
  /// The TLS options could not be set.
  KRNetStatus_SslOptionsRejected = 17,
  /// The network failed.
  KRNetStatus_NetworkFailed = 18,
  /// TLS failed.
  KRNetStatus_SslFailed = 19,
  /// The server's certificate does not lead to an accepted root, or it cannot be read.
  KRNetStatus_Untrusted = 21,
  /// The server's certificate leads to a root but is not valid for this server now.
  KRNetStatus_BadCertificate = 22,
  /// The server's certificate is not one of the expected ones.
  KRNetStatus_UnexpectedCertificate = 23,
  /// This transport cannot abort.
  KRNetStatus_AbortNotSupported = 24,
  /// Cancelling the exchange failed.
  KRNetStatus_CancelFailed = 25,
  /// The connection was refused.
  KRNetStatus_Refused = 26,
  /// The request timed out, here or at the server (HTTP 408).
  KRNetStatus_TimedOut = 27,
  /// The server failed: HTTP 500, 501 and 502.
  KRNetStatus_ServerError = 28,
  /// Any other error of the connection manager.
  KRNetStatus_Other = 29,
};

/// The progress of an exchange, for the session callback. Sending and receiving come with two
/// counters, the bytes moved so far and the total bytes (0 while unknown); the others have none.
enum KROpCode : u32 {
  /// A connection is being made.
  KROpCode_Connecting = 1,
  /// The request is being sent.
  KROpCode_Sending = 2,
  /// The reply is being received.
  KROpCode_Receiving = 3,
};

#endif  // KROFX_TRANSPORT_CONTRACT_NET_STATUS_H_
