// How an exchange ended, and what that means in words.

#ifndef KROFX_HOST_OUTCOME_H_
#define KROFX_HOST_OUTCOME_H_

#include "krofx/core/export.h"
#include "krofx/core/string.h"
#include "krofx/core/types.h"
#include "krofx/transport/contract/net_status.h"

namespace krofx {

/// How an exchange ended.
struct Outcome {
  /// 0 when the server answered with HTTP 200 and the reply is in the buffer; docs/transport.md has
  /// all others.
  KRNetStatus status = KRNetStatus_Failed;
  /// The host ended it by its answer to OnProgress.
  bool cancelled = false;
  /// The HTTP status, as the server sent it; 0 when none came.
  u32 http = 0;
  /// The code of the connection manager; 0 for success. docs/transport.md has them.
  u32 code = 0;
  /// What went wrong, and what to do about it: an English sentence without a capital letter and a
  /// full stop. Empty after a success, and, with the fire alarm raised, when memory is exhausted.
  KRString text;
  /// The ID of the certificate that the server showed, as Pin takes it: 28 characters. Empty when
  /// there was none, and when its chain was not valid, so that nothing of it can be believed; also,
  /// with the fire alarm raised, when memory is exhausted.
  KRString seenCertificate;

  /// @return whether there is a reply.
  explicit operator bool() const { return status == KRNetStatus_Success && !cancelled; }
};

/// @param http,code as in an Outcome.
/// @return what an exchange's end means, and what to do about it, as Outcome::text says it. Never
///         empty: after KRNetStatus_Success the reply was empty.
KROFX_API const char* ReasonOf(KRNetStatus status, u32 http, u32 code);

}  // namespace krofx

#endif  // KROFX_HOST_OUTCOME_H_
