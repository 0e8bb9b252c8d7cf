// Turns the results of libcurl, libcrypto and servers into the manager's codes.

#ifndef KROFX_TRANSPORT_CURL_INTERNAL_RESULT_CODES_H_
#define KROFX_TRANSPORT_CURL_INTERNAL_RESULT_CODES_H_

#include <curl/curl.h>

#include "krofx/core/types.h"
#include "krofx/transport/curl/curl_code.h"

namespace krofx::internal {

/// @return the code of an HTTP status. A status without a code of its own counts as the first of
///         its class; a number that is not a final status gives VYNCurlCode_NotHttp.
u16 CodeOfHttpStatus(long status);

/// `systemError` is the errno of a failed connection. `isConnectingOver` says that the transfer had
/// all the time that is allowed for connecting: before that, only the system can have given up.
/// Failed verifications are not distinguished here: see CodeOfVerification.
/// @return the code of a transfer that ended with `result`; 0 for CURLE_OK.
u16 CodeOfTransfer(CURLcode result, long systemError, bool isConnectingOver);

/// `verifyError` is X509_V_OK, or the unspecified number, when the chain was valid and only the
/// host name was wrong.
/// @return the code of a verification that failed with an X509_V_ERR number.
u16 CodeOfVerification(long verifyError);

}  // namespace krofx::internal

#endif  // KROFX_TRANSPORT_CURL_INTERNAL_RESULT_CODES_H_
