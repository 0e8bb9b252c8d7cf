// The sessions and exchanges of a VYNCurlManager, and the code that advances them.
//
// Callbacks run host code, which may call any operation. So exchanges are deleted only when the
// outermost operation returns (Scope), handles are looked up and not dereferenced, and what cannot
// be done while libcurl itself is running (m_inCurl) is recorded as a verdict and done afterwards.

#ifndef KROFX_TRANSPORT_CURL_INTERNAL_CURL_CORE_H_
#define KROFX_TRANSPORT_CURL_INTERNAL_CURL_CORE_H_

#include <curl/curl.h>

#include <cstdint>

#include "krofx/core/memory.h"
#include "krofx/core/types.h"
#include "krofx/transport/curl/internal/curl_exchange.h"

namespace krofx::internal {

/// The implementation of VYNCurlManager. Operations with names like the manager's do what its
/// header describes.
class CurlCore : public HeapObject {
 public:
  CurlCore();
  CurlCore(const CurlCore&) = delete;
  CurlCore& operator=(const CurlCore&) = delete;

  /// @return whether libcurl started.
  bool IsReady() const { return m_multi != nullptr; }
  /// Ends all exchanges without a finished record and deletes the object: at once or, when called
  /// from a callback, after the callbacks have returned.
  void Destroy();

  void SetReplyLimit(u32 bytes) { m_settings.replyLimit = bytes; }
  u16 SetProxy(const char* url, const char* exceptions);
  u16 SetSystemRoots(const char* file, const char* folder);
  /// @return the HTTP status of the exchange that ended last; 0 for none.
  u32 GetHttpStatus() const { return m_httpStatus; }

  void* OpenSession();
  u16 CloseSession(void* handle);
  u16 Connect(void* session);
  void* Create(u16& code, void* session, const ExchangeParameters& parameters);
  u16 SetHttp(void* handle, u16 post, const char* contentType, const char* extraHeaders,
              s32 timeout);
  u16 SetTls(void* handle, bool skipVerify, VYCertificateCallback callback);
  u16 AddRoot(void* handle, const char* der, u32 length, s16 rootID);
  u16 Initiate(void* session, void* handle);
  u16 Cancel(void* session, void* handle);
  void Release(void* session, void* handle);
  void Work(u32 milliseconds);
  void PaceWork() { m_paced = true; }

 private:
  class Scope;
  struct Session;

  ~CurlCore();

  void* NewHandle() { return reinterpret_cast<void*>(++m_lastHandle); }
  Session** FindSession(void* handle);
  CurlExchange* FindExchange(void* handle);
  CurlExchange* FindInSession(void* session, void* handle);
  CurlExchange* FindCreated(void* handle);

  bool Turn();
  bool TellProgress();
  bool FinishVerdicts();
  bool FinishTransfers(bool certificateRefused);
  void Finish(CurlExchange& exchange, u16 code);
  void Kill(CurlExchange& exchange);
  void Detach(CurlExchange& exchange);
  void Sweep();

  CURLM* m_multi;
  CurlSettings m_settings;
  Session* m_sessions = nullptr;
  CurlExchange* m_exchanges = nullptr;
  std::uintptr_t m_lastHandle = 0;
  u32 m_depth = 0;
  bool m_inCurl = false;
  // How many exchanges have ended or were released, and how many of them a Work has seen: a pause
  // ends early after an end.
  u32 m_ends = 0;
  u32 m_knownEnds = 0;
  // Whether the next Work lasts for its whole time unless an exchange ends.
  bool m_paced = false;
  u32 m_httpStatus = 0;
  bool m_destroyed = false;
};

}  // namespace krofx::internal

#endif  // KROFX_TRANSPORT_CURL_INTERNAL_CURL_CORE_H_
