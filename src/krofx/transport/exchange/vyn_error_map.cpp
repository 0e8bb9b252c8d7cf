// The meaning of the connection manager's codes.

#include "krofx/transport/exchange/vyn_net_request.h"

namespace {

constexpr u32 kHttpOk = 200;

// The codes from this one on mean the HTTP statuses of the table, in order.
constexpr u16 kFirstHttpCode = 1501;

constexpr u16 kHttpStatuses[] = {201, 202, 203, 204, 301, 302, 303, 304, 400, 401, 402,
                                 403, 404, 405, 406, 407, 408, 500, 501, 502, 503, 504};

struct CodeRange {
  u16 first;
  u16 last;
  KRNetStatus status;
};

constexpr CodeRange kCodeRanges[] = {
    {0, 0, KRNetStatus_Success},
    {1509, 1516, KRNetStatus_ClientError},
    {1517, 1517, KRNetStatus_TimedOut},
    {1518, 1520, KRNetStatus_ServerError},
    {1521, 1522, KRNetStatus_Unavailable},
    {1524, 1526, KRNetStatus_ClientError},
    {1529, 1529, KRNetStatus_ClientError},
    {1531, 1531, KRNetStatus_Refused},
    {1532, 1536, KRNetStatus_ClientError},
    {1539, 1540, KRNetStatus_ClientError},
    {1544, 1547, KRNetStatus_ClientError},
    {1548, 1549, KRNetStatus_NetworkFailed},
    {1600, 1600, KRNetStatus_NetworkFailed},
    {1601, 1601, KRNetStatus_SslFailed},
    {1602, 1602, KRNetStatus_NetworkFailed},
    {1603, 1604, KRNetStatus_SslFailed},
    {1605, 1611, KRNetStatus_NetworkFailed},
    {1612, 1619, KRNetStatus_SslFailed},
    {1620, 1620, KRNetStatus_NetworkFailed},
    {1670, 1670, KRNetStatus_Untrusted},
    {1672, 1672, KRNetStatus_BadCertificate},
    {1673, 1673, KRNetStatus_UnexpectedCertificate},
    {1699, 1699, KRNetStatus_SslFailed},
};

}  // namespace

u32 VYNNetRequest::MapVYNErrorToHttpStatus(u16 code) {
  const u32 place = u32{code} - kFirstHttpCode;
  return place < sizeof kHttpStatuses / sizeof *kHttpStatuses ? kHttpStatuses[place] : kHttpOk;
}

KRNetStatus VYNNetRequest::MapVYNErrorToNetStatus(u16 code) {
  for (const CodeRange& range : kCodeRanges) {
    if (code >= range.first && code <= range.last) return range.status;
  }
  return KRNetStatus_Other;
}
