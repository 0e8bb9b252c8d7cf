// The HTTP server, with cpp-httplib.
//
// Bodies are read piece by piece, so that no request takes more memory than the limit. Bodies are
// never logged, since they contain a password.

#include "server.h"

#include <httplib.h>
#include <sys/socket.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <csignal>
#include <cstdio>
#include <ctime>
#include <mutex>
#include <thread>

#include "answer.h"
#include "certificates.h"

namespace bank_server {
namespace {

constexpr char kHost[] = "127.0.0.1";
constexpr char kPath[] = "/ofx";
constexpr char kType[] = "application/x-ofx";
constexpr std::size_t kMaxBody = 1024 * 1024;
constexpr std::size_t kThreads = 4;
constexpr time_t kTimeout = 10;

// No other program may use its port.
void SetSocketOptions(socket_t socket) {
  const int yes = 1;
  setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
}

bool SetUpTls(SSL_CTX& context, const Identity& identity) {
  return SSL_CTX_set_min_proto_version(&context, TLS1_2_VERSION) == 1 &&
         SSL_CTX_use_certificate(&context, identity.server.get()) == 1 &&
         SSL_CTX_use_PrivateKey(&context, identity.serverKey.get()) == 1;
}

// Reads a body; returns 200, or the status of the error.
int ReadBody(const httplib::ContentReader& reader, KRBuffer& body) {
  bool tooLong = false;
  const bool whole = reader([&](const char* bytes, std::size_t count) {
    tooLong = count > kMaxBody - body.GetBufferSize();
    return !tooLong && body.WriteLarge(bytes, static_cast<u32>(count)) == KRBufferOK;
  });
  if (tooLong) return 413;
  return whole ? 200 : 400;
}

// The bank as a set of handlers. The server has several threads, but only one at a time may use the
// bank.
class Handlers {
 public:
  Handlers(Bank& bank, const Options& options) : m_options(options), m_answerer(bank) {}

  // Lets whoever waits for a delayed answer have it at once.
  void Hurry() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_hurry = true;
    m_hurried.notify_all();
  }

  void AddTo(httplib::Server& server) {
    using Request = httplib::Request;
    using Response = httplib::Response;
    using Reader = httplib::ContentReader;
    const auto refuse = [](const Request& request, Response& response, const Reader& reader) {
      Refuse(request, response, reader);
    };
    server.Post(kPath, [this](const Request& request, Response& response, const Reader& reader) {
      Post(request, response, reader);
    });
    // Without a handler for bodies they would be read whole, without a limit.
    server.Post(".*", refuse).Put(".*", refuse).Patch(".*", refuse).Delete(".*", refuse);
    const auto refuseWithoutBody = [](const Request& request, Response& response) {
      Refuse(request, response);
    };
    server.Get(".*", refuseWithoutBody).Options(".*", refuseWithoutBody);
  }

 private:
  static void Refuse(const httplib::Request& request, httplib::Response& response) {
    if (request.path == kPath) {
      response.status = 405;
      response.set_header("Allow", "POST");
    } else {
      response.status = 404;
    }
  }
  static void Refuse(const httplib::Request& request, httplib::Response& response,
                     const httplib::ContentReader& reader) {
    // If data is left unread when the connection closes, the answer may be lost.
    if (!request.is_multipart_form_data()) {
      KRBuffer ignored(0, 0);
      ReadBody(reader, ignored);
    }
    Refuse(request, response);
  }

  void Post(const httplib::Request& request, httplib::Response& response,
            const httplib::ContentReader& reader) {
    if (request.is_multipart_form_data()) {
      response.status = 415;
      return;
    }
    KRBuffer body(0, 0);
    const int read = ReadBody(reader, body);
    if (read != 200) {
      if (response.status != 413) response.status = read;
      return;
    }
    KRDateTime now;
    now = static_cast<s32>(std::time(nullptr));
    KRBuffer reply(0, 0);
    std::unique_lock<std::mutex> lock(m_mutex);
    m_hurried.wait_for(lock, m_options.delay, [this] { return m_hurry; });
    if (m_options.status != 200) {
      response.status = m_options.status;
      return;
    }
    switch (m_answerer.Answer(body, now, reply)) {
      case Answered::kYes:
        Reply({reply.GetBufferPtr(), reply.GetBufferSize()}, response);
        break;
      case Answered::kNotOfx:
        response.status = 400;
        break;
      case Answered::kFailed:
        response.status = 500;
        break;
    }
  }

  // Gives an answer, or as much of it as is wanted; then the connection is closed.
  void Reply(const std::string& text, httplib::Response& response) const {
    if (!m_options.cut || *m_options.cut >= text.size()) {
      response.set_content(text, kType);
      return;
    }
    const std::string start = text.substr(0, *m_options.cut);
    response.set_content_provider(
        text.size(), kType, [start](std::size_t offset, std::size_t, httplib::DataSink& sink) {
          if (offset < start.size()) sink.write(start.data() + offset, start.size() - offset);
          return offset < start.size();
        });
  }

  const Options& m_options;
  std::mutex m_mutex;
  std::condition_variable m_hurried;
  bool m_hurry = false;
  Answerer m_answerer;
};

std::unique_ptr<httplib::Server> MakeServer(const Options& options, const Identity& identity) {
  std::unique_ptr<httplib::Server> server;
  if (options.plain) {
    server = std::make_unique<httplib::Server>();
  } else {
    server = std::make_unique<httplib::SSLServer>(
        [&identity](SSL_CTX& context) { return SetUpTls(context, identity); });
  }
  server->set_socket_options(SetSocketOptions);
  server->set_payload_max_length(kMaxBody);
  server->set_read_timeout(kTimeout).set_write_timeout(kTimeout);
  // A client that keeps its connection open would occupy a thread.
  server->set_keep_alive_max_count(1);
  server->new_task_queue = [] { return new httplib::ThreadPool(kThreads); };
  return server;
}

// Writes what clients are to know of the certificates, where a name of a file is given.
bool WriteCertificates(const Options& options, const Identity& identity) {
  const struct {
    bool (*write)(X509* certificate, const std::string& file);
    X509* certificate;
    const std::string& file;
  } kFiles[] = {{WritePem, identity.authority.get(), options.authorityPem},
                {WriteDer, identity.authority.get(), options.authorityDer},
                {WritePem, identity.server.get(), options.serverPem},
                {WriteId, identity.server.get(), options.serverId}};
  for (const auto& each : kFiles) {
    if (each.file.empty() || each.write(each.certificate, each.file)) continue;
    std::perror(each.file.c_str());
    return false;
  }
  return true;
}

// The signals that end the program, blocked in all threads so that one thread can wait for them.
class EndSignals {
 public:
  EndSignals() : m_waiter(pthread_self()) {
    sigemptyset(&m_set);
    sigaddset(&m_set, SIGTERM);
    sigaddset(&m_set, SIGINT);
    pthread_sigmask(SIG_BLOCK, &m_set, nullptr);
  }
  void Wait() const {
    int signal = 0;
    sigwait(&m_set, &signal);
  }
  // Ends the wait from another thread.
  void Raise() const { pthread_kill(m_waiter, SIGTERM); }

 private:
  sigset_t m_set;
  pthread_t m_waiter;
};

}  // namespace

int Serve(Bank& bank, const Options& options) {
  const EndSignals signals;
  Identity identity;
  if (!options.plain && !MakeIdentity(options.fault, identity)) {
    std::fprintf(stderr, "no certificate could be made\n");
    return 1;
  }
  if (!options.plain && !WriteCertificates(options, identity)) return 1;

  bank.SetProfileFile(options.profile);
  const std::unique_ptr<httplib::Server> server = MakeServer(options, identity);
  Handlers handlers(bank, options);
  handlers.AddTo(*server);
  std::atomic<std::size_t> answered = 0;
  server->set_logger([&](const httplib::Request& request, const httplib::Response& response) {
    std::fprintf(stderr, "%s %d, %zu bytes\n", request.method.c_str(), response.status,
                 response.body.size());
    if (++answered == options.requests) signals.Raise();
  });

  int port = options.port;
  if (!server->is_valid()) port = -1;
  if (port == 0) {
    port = server->bind_to_any_port(kHost);
  } else if (port > 0 && !server->bind_to_port(kHost, port)) {
    port = -1;
  }
  if (port <= 0) {
    std::fprintf(stderr, "cannot listen on %s\n", kHost);
    return 1;
  }
  const char* const scheme = options.plain ? "http" : "https";
  bank.SetUrl(std::string(scheme) + "://" + kHost + ":" + std::to_string(port) + kPath);

  // From here on the socket accepts connections; the thread only has to fetch them.
  std::atomic<bool> ended = false;
  std::thread listener([&] {
    server->listen_after_bind();
    ended = true;
    signals.Raise();
  });
  std::printf("listening on %s\n", bank.Url().c_str());
  std::fflush(stdout);
  signals.Wait();
  const bool onItsOwn = ended;
  // A server that is not yet listening cannot be stopped.
  while (!server->is_running() && !ended) std::this_thread::sleep_for(std::chrono::milliseconds(1));
  handlers.Hurry();
  server->stop();
  listener.join();
  return onItsOwn ? 1 : 0;
}

}  // namespace bank_server
