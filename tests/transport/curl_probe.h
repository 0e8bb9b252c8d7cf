// A caller of the libcurl manager that records everything it gets.

#ifndef KROFX_TESTS_TRANSPORT_CURL_PROBE_H_
#define KROFX_TESTS_TRANSPORT_CURL_PROBE_H_

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "krofx/transport/curl/curl_manager.h"
#include "support/temp_folder.h"
#include "support/tls_server.h"

/// Tests over the manager: a session in it, and a folder that must be empty at the end.
class CurlTest : public ::testing::Test {
 protected:
  CurlTest();
  ~CurlTest() override;

  TempFolder m_temp;
  std::string m_folder;
  VYNCurlManager m_manager;
  void* m_session = nullptr;
};

/// One exchange: created by Send or Get, started and run to its end by Run.
class CurlProbe {
 public:
  CurlProbe(VYNCurlManager& usedManager, void* usedSession, std::string usedFolder)
      : manager(usedManager), session(usedSession), folder(std::move(usedFolder)) {}
  /// Removes the files that it got.
  ~CurlProbe();
  CurlProbe(const CurlProbe&) = delete;
  CurlProbe& operator=(const CurlProbe&) = delete;

  /// Create the exchange; for https the TLS options are set as well.
  CurlProbe& Get(const std::string& url);
  CurlProbe& Send(const std::string& url, const std::string& data);
  /// Sets the HTTP options, with no limit of time unless one is given.
  CurlProbe& Http(const char* contentType, const char* headers, s32 timeout = 0);
  CurlProbe& Root(const TestCertificate& root, s16 id);
  /// Starts the exchange and works until it is over; returns its code.
  u16 Run();
  /// Starts the exchange.
  u16 Start() { return manager.VCInitiate(session, exchange); }
  /// Works until the exchange is over.
  void Finish();
  /// The content of a file.
  static std::string Content(const std::string& name);
  std::string Reply() const { return Content(replyFile); }
  std::string Headers() const { return Content(headerFile); }
  /// The codes of the progress records, each run of equal ones once.
  std::vector<u32> Phases() const;

  VYNCurlManager& manager;
  void* session;
  std::string folder;
  u16 skipVerify = 0;
  /// The result of the certificate callback.
  u16 answer = 0;
  /// Called from the certificate callback and for each progress record.
  std::function<void()> onCertificate;
  std::function<void(const VYProgressRecord&)> onProgress;
  std::function<void()> onFinished;

  u16 error = 0;
  void* exchange = nullptr;
  int rounds = 0;
  int finished = 0;
  u16 result = 0;
  std::string replyFile;
  std::string headerFile;
  std::vector<VYProgressRecord> progress;

  int asked = 0;
  u32 rootID = 0;
  u16 certificateError = 0;
  /// The chain as it was shown, DER.
  std::vector<std::string> chain;

 private:
  void PrepareTls(const std::string& url);
  static u16 Record(VYCallbackStatus status, void* record);
  static u16 Certificate(SSLCertificateChain* chain, u32 rootID, u16 error, void* request, u32,
                         u32);
  std::string m_data;
};

#endif  // KROFX_TESTS_TRANSPORT_CURL_PROBE_H_
