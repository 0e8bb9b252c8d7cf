// Asking a server, with callbacks that carry what they need.
//
//   krofx::Exchange exchange("https://bank.example/ofx");
//   exchange.TrustPem("ca.pem");
//   exchange.Pin("bA8...=");
//   exchange.OnProgress([&](const krofx::Progress& progress) { return !cancelled; });
//   krofx::Outcome outcome = exchange.Send(question, reply);
//   if (!outcome) return Complain(outcome.text);
//
// It drives VYNNetAccess over VYNCurlManager, and weakens nothing of their rules for certificates:
// docs/transport.md has them. Roots that are added are the only ones that count; a pin that is
// added must be met; what cannot be added is not sent past.

#ifndef KROFX_HOST_EXCHANGE_H_
#define KROFX_HOST_EXCHANGE_H_

#include <chrono>
#include <concepts>
#include <string_view>
#include <utility>

#include "krofx/core/export.h"
#include "krofx/core/list.h"
#include "krofx/core/string.h"
#include "krofx/host/internal/callback.h"
#include "krofx/host/outcome.h"
#include "krofx/transport/contract/net_status.h"

class KRBuffer;
class VYNNetRequest;

namespace krofx {

/// How far an exchange has come.
struct Progress {
  KROpCode step = KROpCode_Connecting;
  u32 done = 0;   ///< Bytes sent or received so far.
  u32 total = 0;  ///< Bytes in all; 0 while that is unknown.
};

/// Exchanges with one server. It belongs to one thread at a time. The functions that it is given
/// must not throw.
class KROFX_API Exchange {
 public:
  /// An exchange may take this long unless Timeout says otherwise.
  static constexpr std::chrono::seconds kDefaultTimeout{60};

  /// @param url such as "https://bank.example/ofx".
  explicit Exchange(std::string_view url);
  Exchange(const Exchange&) = delete;
  Exchange& operator=(const Exchange&) = delete;
  ~Exchange();

  /// Trusts the certificates of a PEM file as roots, and from then on no others.
  /// @return false when the file cannot be read, has no certificate or one that cannot be read:
  ///         then every exchange fails with KRNetStatus_RootRejected, and nothing is sent.
  bool TrustPem(const char* file);
  /// The same for the text of such a file.
  bool TrustPemText(std::string_view text);
  /// Expects the server's certificate to have an ID, as `krofx certid` prints it; of two IDs, one.
  /// @return false for a third one and for what is no ID: then every exchange fails with
  ///         KRNetStatus_SslOptionsRejected, and nothing is sent.
  bool Pin(std::string_view id);
  /// Limits the whole exchange, from the look-up of the host's name to the last byte. Less than a
  /// second counts as one.
  void Timeout(std::chrono::seconds limit);
  /// Keeps the reply in a file of this folder until it is loaded; "/tmp" without it. The file is
  /// readable by its owner only, and is deleted.
  void TemporaryFolder(std::string_view folder);
  /// Goes through a proxy, such as "http://proxy:3128"; none without it, whatever the environment
  /// says.
  void Proxy(std::string_view url);

  /// Calls `function(progress)` whenever the exchange moves, and ten times a second while it does
  /// not. It ends the exchange when it answers false; one without an answer ends nothing.
  /// @return false when memory is exhausted: then no exchange is made.
  template <std::invocable<const Progress&> Function>
  bool OnProgress(Function function) {
    return Note(
        m_onProgress.Set([function = std::move(function)](const Progress& progress) mutable {
          if constexpr (std::convertible_to<decltype(function(progress)), bool>) {
            return static_cast<bool>(function(progress));
          } else {
            function(progress);
            return true;
          }
        }));
  }
  /// Calls `function(line)` for each line of the transport's log. No password is in them. The line
  /// lives through the call only.
  /// @return as OnProgress.
  template <std::invocable<const char*> Function>
  bool OnLog(Function function) {
    return Note(m_onLog.Set(
        [function = std::move(function)](const char* line) mutable { function(line); }));
  }

  /// Sends a request and waits for the reply.
  /// @param question stays as it is.
  /// @param reply gets the reply in place of what it had; it is empty after a failure.
  Outcome Send(KRBuffer& question, KRBuffer& reply);
  /// Fetches what is at the address; a `file:` URL reads a file.
  Outcome Get(KRBuffer& reply);

 private:
  bool Note(bool stored) {
    m_hasMemory = m_hasMemory && stored;
    return stored;
  }
  bool Assign(KRString& target, std::string_view text);
  KRNetStatus FindObstacle() const;
  Outcome Run(KRBuffer* question, KRBuffer& reply);
  void Carry(KRBuffer* question, KRBuffer& reply, Outcome& outcome);
  bool SetUp(VYNNetRequest& request) const;

  KRString m_url;
  KRString m_folder;
  KRString m_proxy;
  List<KRString> m_roots;  // In base64.
  List<KRString> m_pins;
  bool m_badRoot = false;
  bool m_badPin = false;
  bool m_badText = false;
  bool m_hasMemory = true;
  std::chrono::seconds m_timeout = kDefaultTimeout;
  internal::Callback<bool(const Progress&)> m_onProgress;
  internal::Callback<void(const char*)> m_onLog;
};

}  // namespace krofx

#endif  // KROFX_HOST_EXCHANGE_H_
