// From what libcurl, libcrypto and servers say to the manager's codes.

#ifndef KROFX_TRANSPORT_CURL_INTERNAL_RESULT_CODES_H_
#define KROFX_TRANSPORT_CURL_INTERNAL_RESULT_CODES_H_

#include <curl/curl.h>

#include "krofx/core/types.h"
#include "krofx/transport/curl/curl_code.h"

namespace krofx::internal {

/// The code of an HTTP status. One that has no code of its own counts as the first of its class;
/// what is no final status at all is VYNCurlCode_NotHttp.
u16 CodeOfHttpStatus(long status);

/// The code of a transfer that ended with `result`; 0 for CURLE_OK. `systemError` is the errno of a
/// failed connection. Failed verifications are not told apart here: see CodeOfVerification.
u16 CodeOfTransfer(CURLcode result, long systemError);

/// The code of a verification that failed with an X509_V_ERR number; `verifyError` is X509_V_OK, or
/// the unspecified one, when the chain was fine and only the host name was not.
u16 CodeOfVerification(long verifyError);

}  // namespace krofx::internal

#endif  // KROFX_TRANSPORT_CURL_INTERNAL_RESULT_CODES_H_
