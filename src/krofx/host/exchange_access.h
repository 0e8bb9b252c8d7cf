// The transport of one exchange, with what the host hears of it.

#ifndef KROFX_HOST_EXCHANGE_ACCESS_H_
#define KROFX_HOST_EXCHANGE_ACCESS_H_

#include "krofx/host/exchange.h"
#include "krofx/host/internal/callback.h"
#include "krofx/transport/contract/wait_platform.h"
#include "krofx/transport/curl/curl_manager.h"
#include "krofx/transport/exchange/vyn_net_access.h"
#include "krofx/transport/exchange/vyn_net_request.h"

namespace krofx::internal {

/// Notes the ID of the certificate that a server shows. The decision stays the transport's.
class WatchingRequest : public VYNNetRequest {
 public:
  /// Notes the last certificate of a chain, the server's own.
  void Note(const SSLCertificateChain* chain);
  const KRString& Seen() const { return m_seen; }

 private:
  KRString m_seen;
};

/// Lets the request see the certificates before the transport decides over them.
class WatchingManager : public VYNCurlManager {
 public:
  u16 VCSetSSLInfo(void* exchange, u16 skipVerify, VYCertificateCallback callback,
                   u32 constant) override;
};

/// Says to the host how far the exchange is, and ends it when the host wants that.
class WatchingAccess : public VYNNetAccess, public VYNDefaultWaitPlatform {
 public:
  using OnProgress = Callback<bool(const Progress&)>;
  using OnLog = Callback<void(const char*)>;

  WatchingAccess(VYNConnectionManager& manager, const OnProgress& onProgress, const OnLog& onLog)
      : VYNNetAccess(&manager, this), m_onProgress(onProgress), m_onLog(onLog) {}

  /// The request that is ended.
  void Watch(VYNNetRequest* request) { m_request = request; }
  bool IsCancelled() const { return m_isCancelled; }

  void UpdateSessionStatus(KROpCode code, void* a, void* b) override;
  void LogMessage(const char* text, u16 level, const char* extra) override;
  VYNEventResult HandleOneEvent() override;

 private:
  void Say();

  const OnProgress& m_onProgress;
  const OnLog& m_onLog;
  VYNNetRequest* m_request = nullptr;
  Progress m_progress;
  bool m_isCancelled = false;
};

}  // namespace krofx::internal

#endif  // KROFX_HOST_EXCHANGE_ACCESS_H_
