// The tables of the manager's codes.

#include "krofx/transport/curl/internal/result_codes.h"

#include <openssl/x509_vfy.h>

#include <cerrno>

namespace krofx::internal {

namespace {

// A run of HTTP statuses whose codes are consecutive too.
struct StatusRun {
  long first;
  long last;
  u16 code;
};

constexpr StatusRun kStatusRuns[] = {
    {200, 200, VYNCurlCode_Success},          {201, 204, 1501},
    {301, 304, VYNCurlCode_MovedPermanently}, {308, 308, VYNCurlCode_MovedPermanently},
    {400, 408, VYNCurlCode_BadRequest},       {500, 504, VYNCurlCode_InternalServerError},
};

// Codes of the classes 2xx to 5xx.
constexpr u16 kClassCodes[] = {VYNCurlCode_UnexpectedSuccess, VYNCurlCode_Found,
                               VYNCurlCode_BadRequest, VYNCurlCode_InternalServerError};

struct TransferCode {
  CURLcode result;
  u16 code;
};

constexpr TransferCode kTransferCodes[] = {
    {CURLE_OK, VYNCurlCode_Success},
    {CURLE_URL_MALFORMAT, VYNCurlCode_MalformedUrl},
    // Schemes are checked before a transfer starts, so this is about the reply.
    {CURLE_UNSUPPORTED_PROTOCOL, VYNCurlCode_NotHttp},
    {CURLE_WEIRD_SERVER_REPLY, VYNCurlCode_NotHttp},
    {CURLE_BAD_CONTENT_ENCODING, VYNCurlCode_NotHttp},
    {CURLE_COULDNT_RESOLVE_HOST, VYNCurlCode_HostNotFound},
    {CURLE_COULDNT_RESOLVE_PROXY, VYNCurlCode_ProxyNotFound},
    {CURLE_OPERATION_TIMEDOUT, VYNCurlCode_TimedOut},
    {CURLE_SEND_ERROR, VYNCurlCode_SendFailed},
    {CURLE_SEND_FAIL_REWIND, VYNCurlCode_SendFailed},
    {CURLE_RECV_ERROR, VYNCurlCode_ReceiveFailed},
    {CURLE_PARTIAL_FILE, VYNCurlCode_Cut},
    {CURLE_GOT_NOTHING, VYNCurlCode_Cut},
    {CURLE_INTERFACE_FAILED, VYNCurlCode_NetworkFailed},
    {CURLE_NO_CONNECTION_AVAILABLE, VYNCurlCode_NetworkFailed},
    {CURLE_PROXY, VYNCurlCode_NetworkFailed},
    {CURLE_UNRECOVERABLE_POLL, VYNCurlCode_NetworkFailed},
    {CURLE_SSL_CONNECT_ERROR, VYNCurlCode_HandshakeFailed},
    {CURLE_SSL_CACERT_BADFILE, VYNCurlCode_RootsUnreadable},
    {CURLE_PEER_FAILED_VERIFICATION, VYNCurlCode_Untrusted},
    {CURLE_SSL_ENGINE_NOTFOUND, VYNCurlCode_TlsFailed},
    {CURLE_SSL_ENGINE_SETFAILED, VYNCurlCode_TlsFailed},
    {CURLE_SSL_ENGINE_INITFAILED, VYNCurlCode_TlsFailed},
    {CURLE_SSL_CERTPROBLEM, VYNCurlCode_TlsFailed},
    {CURLE_SSL_CIPHER, VYNCurlCode_TlsFailed},
    {CURLE_SSL_SHUTDOWN_FAILED, VYNCurlCode_TlsFailed},
    {CURLE_SSL_CRL_BADFILE, VYNCurlCode_TlsFailed},
    {CURLE_SSL_ISSUER_ERROR, VYNCurlCode_TlsFailed},
    {CURLE_SSL_INVALIDCERTSTATUS, VYNCurlCode_TlsFailed},
    {CURLE_SSL_CLIENTCERT, VYNCurlCode_TlsFailed},
    {CURLE_USE_SSL_FAILED, VYNCurlCode_TlsFailed},
    {CURLE_FILESIZE_EXCEEDED, VYNCurlCode_ReplyTooLarge},
    {CURLE_WRITE_ERROR, VYNCurlCode_FileFailed},
    {CURLE_OUT_OF_MEMORY, VYNCurlCode_NoMemory},
};

// The errors of a chain that does lead to a trusted root.
constexpr long kNotValidErrors[] = {
    X509_V_OK,
    X509_V_ERR_UNSPECIFIED,
    X509_V_ERR_CERT_NOT_YET_VALID,
    X509_V_ERR_CERT_HAS_EXPIRED,
    X509_V_ERR_ERROR_IN_CERT_NOT_BEFORE_FIELD,
    X509_V_ERR_ERROR_IN_CERT_NOT_AFTER_FIELD,
    X509_V_ERR_CERT_REVOKED,
    X509_V_ERR_INVALID_PURPOSE,
    X509_V_ERR_UNHANDLED_CRITICAL_EXTENSION,
    X509_V_ERR_PERMITTED_VIOLATION,
    X509_V_ERR_EXCLUDED_VIOLATION,
    X509_V_ERR_HOSTNAME_MISMATCH,
    X509_V_ERR_IP_ADDRESS_MISMATCH,
    X509_V_ERR_EE_KEY_TOO_SMALL,
    X509_V_ERR_CA_KEY_TOO_SMALL,
    X509_V_ERR_CA_MD_TOO_WEAK,
};

}  // namespace

u16 CodeOfHttpStatus(long status) {
  for (const StatusRun& run : kStatusRuns) {
    if (status >= run.first && status <= run.last) {
      return static_cast<u16>(run.code + (status - run.first));
    }
  }
  if (status < 200 || status > 599) return VYNCurlCode_NotHttp;
  return kClassCodes[status / 100 - 2];
}

u16 CodeOfTransfer(CURLcode result, long systemError, bool isConnectingOver) {
  if (result == CURLE_COULDNT_CONNECT) {
    return systemError == ECONNREFUSED ? VYNCurlCode_Refused : VYNCurlCode_ConnectFailed;
  }
  // The system's error may be that of an earlier address of the host.
  if (result == CURLE_OPERATION_TIMEDOUT && systemError == ETIMEDOUT && !isConnectingOver) {
    return VYNCurlCode_ConnectFailed;
  }
  for (const TransferCode& row : kTransferCodes) {
    if (row.result == result) return row.code;
  }
  return VYNCurlCode_Other;
}

u16 CodeOfVerification(long verifyError) {
  for (const long error : kNotValidErrors) {
    if (error == verifyError) return VYNCurlCode_BadCertificate;
  }
  return VYNCurlCode_Untrusted;
}

}  // namespace krofx::internal
