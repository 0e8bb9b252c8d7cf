// A small server on loopback with a thread of its own, with or without TLS, which treats each
// connection as a script says.

#ifndef KROFX_TESTS_SUPPORT_TLS_SERVER_H_
#define KROFX_TESTS_SUPPORT_TLS_SERVER_H_

#include <openssl/ssl.h>

#include <atomic>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "support/test_certificates.h"

/// One connection, after the TLS handshake if there is one. Operations on a connection that has
/// ended do nothing.
class ServerConnection {
 public:
  ServerConnection(int socket, SSL* tls) : m_socket(socket), m_tls(tls) {}

  /// Reads one request: its head, and a body as long as Content-Length says.
  std::string ReadRequest();
  /// Reads what comes next, empty at the end.
  std::string ReadSome();
  void Write(const std::string& bytes);
  /// Waits until the client has received all that was written.
  void WaitUntilTaken();
  /// Waits until the client closes the connection, or the server stops.
  void WaitForClient();
  /// Breaks the connection: without a TLS closure, and with a reset instead of an orderly end.
  void Cut();
  /// Changes to TLS, on a connection that was plain so far.
  bool StartTls(SSL_CTX* context);
  SSL* Tls() const { return m_tls; }

 private:
  int m_socket;
  SSL* m_tls;
};

/// A reply with a Content-Length.
std::string HttpReply(const std::string& status, const std::string& body,
                      const std::string& headerLines = "");

/// What a server is to do.
struct ServerPlan {
  /// Called for each connection, in the server's thread.
  std::function<void(ServerConnection&)> script;
  /// The certificates that are shown, the server's own first; none makes a plain server.
  std::vector<TestCertificate> chain;
  /// The newest version of TLS that the server accepts; 0 for any.
  int newestTls = 0;
  /// An answer on revocation to staple to the handshake, DER; empty for none.
  std::string stapled = {};
  /// If not null, a plain request for a tunnel is read before TLS, as by a proxy, and stored here.
  std::string* tunnel = nullptr;
  /// Whether the server warns of a host's name that it does not know, up to version 1.2 of TLS.
  bool warnsOfName = false;
};

/// The server. When the object is destroyed the server stops, and its waits end.
class TlsServer {
 public:
  explicit TlsServer(ServerPlan plan);
  ~TlsServer();
  TlsServer(const TlsServer&) = delete;
  TlsServer& operator=(const TlsServer&) = delete;

  int Port() const { return m_port; }
  /// "http://127.0.0.1:port/ofx", with the scheme that the server speaks.
  std::string Url(const std::string& host = "127.0.0.1") const;
  /// Connections accepted so far.
  int Accepted() const { return m_accepted; }

 private:
  void Serve();
  static int Staple(SSL* connection, void* plan);

  ServerPlan m_plan;
  SSL_CTX* m_context = nullptr;
  int m_port = 0;
  int m_listener;
  std::atomic<int> m_accepted{0};
  std::mutex m_mutex;
  int m_connection = -1;
  bool m_stopping = false;
  std::thread m_thread;
};

/// A port on loopback on which no server listens.
int UnusedPort();

#endif  // KROFX_TESTS_SUPPORT_TLS_SERVER_H_
