// The loopback server.

#include "support/tls_server.h"

#include <linux/sockios.h>
#include <netinet/in.h>
#include <poll.h>
#include <signal.h>
#include <strings.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <utility>

namespace {

// A socket that has a port on loopback.
int BindToLoopback(int& port) {
  const int bound = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t length = sizeof address;
  if (bind(bound, reinterpret_cast<sockaddr*>(&address), length) != 0 ||
      getsockname(bound, reinterpret_cast<sockaddr*>(&address), &length) != 0) {
    std::abort();
  }
  port = ntohs(address.sin_port);
  return bound;
}

int ListenOnLoopback(int& port) {
  const int listener = BindToLoopback(port);
  if (listen(listener, 16) != 0) std::abort();
  return listener;
}

SSL_CTX* NewContext(const ServerPlan& plan) {
  if (plan.chain.empty()) return nullptr;
  SSL_CTX* const context = SSL_CTX_new(TLS_server_method());
  // Old versions of TLS need a security level below the default.
  SSL_CTX_set_security_level(context, 0);
  SSL_CTX_set_max_proto_version(context, plan.newestTls);
  SSL_CTX_use_certificate(context, plan.chain.front().Certificate());
  SSL_CTX_use_PrivateKey(context, plan.chain.front().Key());
  for (std::size_t i = 1; i < plan.chain.size(); ++i) {
    SSL_CTX_add1_chain_cert(context, plan.chain[i].Certificate());
  }
  return context;
}

int WarnOfName(SSL* /*connection*/, int* /*alert*/, void* /*argument*/) {
  return SSL_TLSEXT_ERR_ALERT_WARNING;
}

std::size_t ContentLength(const std::string& head) {
  static constexpr char kName[] = "\r\ncontent-length:";
  for (std::size_t at = 0; at < head.size(); ++at) {
    if (strncasecmp(head.c_str() + at, kName, sizeof kName - 1) == 0) {
      return std::strtoul(head.c_str() + at + sizeof kName - 1, nullptr, 10);
    }
  }
  return 0;
}

}  // namespace

std::string ServerConnection::ReadSome() {
  if (m_socket < 0) return "";
  char bytes[16384];
  const long count = m_tls != nullptr ? SSL_read(m_tls, bytes, sizeof bytes)
                                      : recv(m_socket, bytes, sizeof bytes, 0);
  return count > 0 ? std::string(bytes, static_cast<std::size_t>(count)) : "";
}

std::string ServerConnection::ReadRequest() {
  std::string request;
  std::size_t end = std::string::npos;
  while ((end = request.find("\r\n\r\n")) == std::string::npos) {
    const std::string more = ReadSome();
    if (more.empty()) return request;
    request += more;
  }
  const std::size_t whole = end + 4 + ContentLength(request.substr(0, end));
  while (request.size() < whole) {
    const std::string more = ReadSome();
    if (more.empty()) return request;
    request += more;
  }
  return request;
}

void ServerConnection::Write(const std::string& bytes) {
  if (m_socket < 0) return;
  std::size_t done = 0;
  while (done < bytes.size()) {
    const long count =
        m_tls != nullptr
            ? SSL_write(m_tls, bytes.data() + done, static_cast<int>(bytes.size() - done))
            : send(m_socket, bytes.data() + done, bytes.size() - done, MSG_NOSIGNAL);
    if (count <= 0) return;
    done += static_cast<std::size_t>(count);
  }
}

void ServerConnection::WaitUntilTaken() {
  for (int left = 1; m_socket >= 0 && ioctl(m_socket, SIOCOUTQ, &left) == 0 && left > 0;) {
    std::this_thread::yield();
  }
}

void ServerConnection::WaitForClient() {
  while (!ReadSome().empty()) {
  }
}

void ServerConnection::Cut() {
  if (m_socket < 0) return;
  const linger reset{1, 0};
  setsockopt(m_socket, SOL_SOCKET, SO_LINGER, &reset, sizeof reset);
  if (m_tls != nullptr) SSL_set_quiet_shutdown(m_tls, 1);
  // The descriptor stays open until the server closes it; only the connection ends.
  const int other = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  dup2(other, m_socket);
  close(other);
  m_socket = -1;
}

bool ServerConnection::StartTls(SSL_CTX* context) {
  m_tls = SSL_new(context);
  SSL_set_fd(m_tls, m_socket);
  return SSL_accept(m_tls) == 1;
}

std::string HttpReply(const std::string& status, const std::string& body,
                      const std::string& headerLines) {
  return "HTTP/1.1 " + status + "\r\n" + headerLines +
         "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
}

TlsServer::TlsServer(ServerPlan plan)
    : m_plan(std::move(plan)), m_context(NewContext(m_plan)), m_listener(ListenOnLoopback(m_port)) {
  if (m_context != nullptr) {
    SSL_CTX_set_tlsext_status_cb(m_context, &Staple);
    SSL_CTX_set_tlsext_status_arg(m_context, &m_plan);
    if (m_plan.warnsOfName) SSL_CTX_set_tlsext_servername_callback(m_context, &WarnOfName);
  }
  m_thread = std::thread([this] { Serve(); });
}

int TlsServer::Staple(SSL* connection, void* plan) {
  const std::string& answer = static_cast<ServerPlan*>(plan)->stapled;
  if (answer.empty()) return SSL_TLSEXT_ERR_NOACK;
  void* const copy = OPENSSL_memdup(answer.data(), answer.size());
  SSL_set_tlsext_status_ocsp_resp(connection, copy, static_cast<long>(answer.size()));
  return SSL_TLSEXT_ERR_OK;
}

TlsServer::~TlsServer() {
  {
    const std::lock_guard lock(m_mutex);
    m_stopping = true;
    shutdown(m_listener, SHUT_RDWR);
    if (m_connection >= 0) shutdown(m_connection, SHUT_RDWR);
  }
  m_thread.join();
  close(m_listener);
  SSL_CTX_free(m_context);
}

std::string TlsServer::Url(const std::string& host) const {
  return (m_context == nullptr ? "http://" : "https://") + host + ":" + std::to_string(m_port) +
         "/ofx";
}

void TlsServer::Serve() {
  // A client that has closed its connection must not end the program. SIGPIPE is blocked in this
  // thread only, so that the client's own thread still gets it.
  sigset_t pipe;
  sigemptyset(&pipe);
  sigaddset(&pipe, SIGPIPE);
  pthread_sigmask(SIG_BLOCK, &pipe, nullptr);
  for (;;) {
    const int socket = accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC);
    if (socket < 0) return;
    {
      const std::lock_guard lock(m_mutex);
      m_connection = socket;
      if (m_stopping) shutdown(socket, SHUT_RDWR);
    }
    ++m_accepted;
    ServerConnection connection(socket, nullptr);
    if (m_plan.tunnel != nullptr) {
      *m_plan.tunnel = connection.ReadRequest();
      connection.Write("HTTP/1.1 200 Connected\r\nX-Proxy: 1\r\n\r\n");
    }
    if (m_context == nullptr || connection.StartTls(m_context)) m_plan.script(connection);
    if (SSL* const tls = connection.Tls(); tls != nullptr) {
      SSL_shutdown(tls);
      SSL_free(tls);
    }
    const std::lock_guard lock(m_mutex);
    m_connection = -1;
    close(socket);
  }
}

int UnusedPort() {
  // Held as long as the program runs, so that no other server gets it.
  static int port = 0;
  static const int held = BindToLoopback(port);
  (void)held;
  return port;
}
