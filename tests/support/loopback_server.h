// An HTTP server without a thread: it answers every connection with the same bytes, and is moved on
// in the pauses of the client's wait. An exchange with it takes no longer than its bytes do.

#ifndef KROFX_TESTS_SUPPORT_LOOPBACK_SERVER_H_
#define KROFX_TESTS_SUPPORT_LOOPBACK_SERVER_H_

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "krofx/transport/contract/connection_manager.h"
#include "krofx/transport/contract/wait_platform.h"

namespace krofx::testing {

/// The server, on a port of its own. It ends the process when it cannot listen.
class LoopbackServer {
 public:
  LoopbackServer() {
    m_listener = ::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* const name = reinterpret_cast<sockaddr*>(&address);
    if (::bind(m_listener, name, size) != 0 || ::listen(m_listener, 8) != 0 ||
        ::getsockname(m_listener, name, &size) != 0) {
      std::perror("loopback server");
      std::abort();
    }
    m_url = "http://127.0.0.1:" + std::to_string(ntohs(address.sin_port)) + "/ofx";
  }
  LoopbackServer(const LoopbackServer&) = delete;
  LoopbackServer& operator=(const LoopbackServer&) = delete;
  ~LoopbackServer() {
    Close();
    ::close(m_listener);
  }

  const std::string& Url() const { return m_url; }

  /// Sets the answer, which must live as long as it is served and fit into what the system buffers
  /// for a connection. An open connection is closed.
  void Serve(std::string_view reply) {
    m_reply = reply;
    Close();
  }

  /// Takes a connection; reads of the one that there is, and answers what came first.
  void Move() {
    if (m_connection < 0) {
      m_connection = ::accept4(m_listener, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
      m_answered = false;
      return;
    }
    char bytes[4096];
    const ssize_t count = ::recv(m_connection, bytes, sizeof bytes, 0);
    if (count == 0) return Close();
    if (count < 0 || m_answered) return;
    m_answered = true;
    if (!m_reply.empty()) {
      [[maybe_unused]] const ssize_t sent =
          ::send(m_connection, m_reply.data(), m_reply.size(), MSG_NOSIGNAL);
    }
    ::shutdown(m_connection, SHUT_WR);
  }

 private:
  void Close() {
    if (m_connection >= 0) ::close(m_connection);
    m_connection = -1;
  }

  int m_listener = -1;
  int m_connection = -1;
  bool m_answered = false;
  std::string_view m_reply;
  std::string m_url;
};

/// Waits for a reply of such a server: moves the client and the server in turn.
class LoopbackPlatform : public VYNWaitPlatform {
 public:
  explicit LoopbackPlatform(LoopbackServer& server) : m_server(server) {}
  VYNEventResult HandleOneEvent() override { return VYNEventResult_None; }
  void Pause(u32, VYNConnectionManager& manager) override {
    manager.VCWork(0);
    m_server.Move();
    ++m_pauses;
  }
  /// How many pauses there have been.
  long Pauses() const { return m_pauses; }

 private:
  LoopbackServer& m_server;
  long m_pauses = 0;
};

}  // namespace krofx::testing

#endif  // KROFX_TESTS_SUPPORT_LOOPBACK_SERVER_H_
