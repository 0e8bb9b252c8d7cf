// One exchange of a VYNCurlManager: its options, its files, and the functions that libcurl calls
// while it runs.

#ifndef KROFX_TRANSPORT_CURL_INTERNAL_CURL_EXCHANGE_H_
#define KROFX_TRANSPORT_CURL_INTERNAL_CURL_EXCHANGE_H_

#include <curl/curl.h>

#include <cstddef>
#include <string_view>

#include "krofx/core/memory.h"
#include "krofx/core/string.h"
#include "krofx/core/types.h"
#include "krofx/transport/contract/connection_manager.h"
#include "krofx/transport/curl/internal/certificates.h"
#include "krofx/transport/curl/internal/reply_framing.h"
#include "krofx/transport/curl/internal/request_headers.h"
#include "krofx/transport/curl/internal/temporary_file.h"
#include "krofx/transport/curl/internal/tls_hooks.h"

namespace krofx::internal {

/// The settings of a manager.
struct CurlSettings {
  /// Bytes that the body of a reply may have.
  u32 replyLimit = 0;
  /// Whether rootFile and rootFolder replace libcurl's default places.
  bool ownRoots = false;
  /// The proxy, empty for none, and the hosts that are reached without it.
  KRString proxy;
  KRString proxyExceptions;
  /// PEM file of the system's roots, empty for none.
  KRString rootFile;
  /// Folder of the system's roots, empty for none.
  KRString rootFolder;
};

/// What an exchange is created with.
struct ExchangeParameters {
  const char* url;
  const char* data;
  u32 size;
  bool isSend;
  const char* tempPath;
  VYProgressCallback callback;
  void* userData;
};

/// The state of an exchange.
enum class ExchangeState {
  /// Being set up.
  Created,
  /// Started; a finished record will follow.
  Running,
  /// Ended, while the certificate callback gets the reason; the finished record is next.
  Ending,
  /// Over or released: no handle is valid for it, no callback is made, and the object is deleted
  /// soon.
  Dead,
};

/// The part of a reply that comes next.
enum class ReplyPart {
  /// A status line.
  Status,
  /// Header lines.
  Header,
  /// The body, and what may come after it.
  Body,
};

/// An exchange. The core (curl_core.h) owns it, advances it, and links it into its list.
class CurlExchange : public HeapObject {
 public:
  /// `handle` and `session` are the numbers by which callers refer to the exchange and its session.
  CurlExchange(void* handle, void* session) : m_handle(handle), m_session(session) {}
  CurlExchange(const CurlExchange&) = delete;
  CurlExchange& operator=(const CurlExchange&) = delete;
  ~CurlExchange();

  /// Takes the parameters and makes the files. A URL that cannot be used becomes the verdict.
  /// `settings` must outlive the exchange.
  /// @return 0, or a VYNCurlCode.
  u16 Create(const ExchangeParameters& parameters, const CurlSettings& settings);
  /// Sets the HTTP options. Headers that cannot be used become the verdict.
  /// @return 0, or a VYNCurlCode.
  u16 SetHttp(u16 post, const char* contentType, const char* extraHeaders, s32 timeout);
  /// Sets the TLS options.
  void SetTls(bool skipVerify, VYCertificateCallback callback);
  /// Adds a root.
  /// @return 0, or a VYNCurlCode.
  u16 AddRoot(const char* der, u32 length, s16 rootID) { return m_roots.Add(der, length, rootID); }

  /// Makes the transfer, unless there is a verdict.
  /// @return 0, or a VYNCurlCode.
  u16 Prepare();
  /// @return the transfer; null without one.
  CURL* Easy() const { return m_easy; }

  /// @return whether a progress record is due.
  bool HasNews() const;
  /// Makes the next progress record; one must be due.
  VYProgressRecord TakeNews();
  /// Finds the code of a transfer that libcurl ended, and calls the certificate callback if the
  /// server's certificates were the reason. `certificateRefused` says that they were the reason of
  /// a failed handshake.
  /// @return the code.
  u16 Result(CURLcode result, bool certificateRefused);
  /// @return the HTTP status that the server, or a proxy that refused, has sent; 0 for none.
  u32 HttpStatus() const;
  /// Makes the finished record, and passes the files to its receiver.
  void Finish(u16 code, VYFinishedRecord& record);

  /// @return the callback for progress and finished records; may be null.
  VYProgressCallback Callback() const { return m_callback; }

 private:
  friend class CurlCore;

  // Whether the functions that libcurl calls must stop the transfer.
  bool MustStop() const { return m_state == ExchangeState::Dead || m_verdict != 0; }
  void ReadUrl(const char* url);
  bool SetConnection();
  bool SetRequest();
  bool SetTrust();
  RootLocation SystemRoots() const;
  u16 CheckCertificates();
  u16 WriteHeader(const char* line, std::size_t length);
  bool IsFramingSafe(std::string_view line);
  u16 CodeOfReply() const;
  bool IsKnownWhole() const;
  u16 AskCallback(SSLCertificateChain* chain, u32 rootID, u16 error);

  static int BeforeRequest(void* self, char*, char*, int, int);
  static std::size_t GiveData(char* out, std::size_t size, std::size_t count, void* self);
  static std::size_t TakeBody(char* bytes, std::size_t size, std::size_t count, void* self);
  static std::size_t TakeHeader(char* bytes, std::size_t size, std::size_t count, void* self);

  // For the core: the exchange's numbers, the next one in the list, its state, and the verdict.
  // With a verdict, a code other than 0, the exchange ends as soon as possible, whatever the
  // transfer does.
  void* const m_handle;
  void* const m_session;
  CurlExchange* m_next = nullptr;
  ExchangeState m_state = ExchangeState::Created;
  u16 m_verdict = 0;

  CURL* m_easy = nullptr;
  CURLU* m_url = nullptr;
  bool m_isHttps = false;
  const CurlSettings* m_settings = nullptr;

  const char* m_data = nullptr;
  u32 m_size = 0;
  u32 m_position = 0;
  bool m_isSend = false;
  VYProgressCallback m_callback = nullptr;
  void* m_userData = nullptr;
  u32 m_replyLimit = 0;
  TemporaryFile m_replyFile;
  TemporaryFile m_headerFile;

  RequestHeaders m_headers;
  s32 m_timeout = 0;

  AddedRoots m_roots;
  bool m_tlsSet = false;
  bool m_skipVerify = false;
  VYCertificateCallback m_certificateCallback = nullptr;

  // The code with which a function that libcurl called stopped the transfer; 0 if none did.
  u16 m_stopped = 0;
  ReplyPart m_part = ReplyPart::Status;
  // Bytes of header lines so far, those of interim replies and the trailers included.
  std::size_t m_headerSize = 0;
  // What the header of the final reply says about the end of its body.
  ReplyFraming m_framing;
  TlsEnd m_tlsEnd;
  bool m_toldConnecting = false;
  u32 m_toldSent = 0;
  std::size_t m_toldReceived = 0;
};

}  // namespace krofx::internal

#endif  // KROFX_TRANSPORT_CURL_INTERNAL_CURL_EXCHANGE_H_
