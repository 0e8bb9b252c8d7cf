// The header lines that a request sends in addition to libcurl's. They are checked, so that only
// complete header lines are sent.

#ifndef KROFX_TRANSPORT_CURL_INTERNAL_REQUEST_HEADERS_H_
#define KROFX_TRANSPORT_CURL_INTERNAL_REQUEST_HEADERS_H_

#include <curl/curl.h>

#include <cstddef>

#include "krofx/core/types.h"

namespace krofx::internal {

/// Header lines in libcurl's form.
class RequestHeaders {
 public:
  RequestHeaders() = default;
  RequestHeaders(const RequestHeaders&) = delete;
  RequestHeaders& operator=(const RequestHeaders&) = delete;
  ~RequestHeaders() { curl_slist_free_all(m_list); }

  /// Replaces the lines. A null `contentType` means none; `extraHeaders`, which may be null, has
  /// lines that end with CR LF or LF, except that the last end may be missing.
  /// @return 0; a VYNCurlCode on failure, and then there are no lines.
  u16 Set(const char* contentType, const char* extraHeaders);
  /// @return the lines; null for none.
  curl_slist* List() const { return m_list; }

 private:
  u16 AddExtra(const char* line, std::size_t length);
  u16 AddLine(const char* name, std::size_t nameLength, const char* value, std::size_t valueLength);

  curl_slist* m_list = nullptr;
  bool m_hasContentType = false;
};

}  // namespace krofx::internal

#endif  // KROFX_TRANSPORT_CURL_INTERNAL_REQUEST_HEADERS_H_
