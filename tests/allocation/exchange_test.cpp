// Exchanges without memory, with a scripted manager and with the real one over a server of the
// test's own: whichever allocation fails, the exchange ends with a status that says so, or its
// reply is whole; no file stays, and the next exchange is clean.

#include <gtest/gtest.h>

#include <string>

#include "allocation/sweep.h"
#include "krofx/transport/curl/curl_manager.h"
#include "krofx/transport/exchange/vyn_net_access.h"
#include "krofx/transport/exchange/vyn_net_request.h"
#include "support/buffers.h"
#include "support/loopback_server.h"
#include "support/scripted_manager.h"
#include "support/scripted_platform.h"
#include "support/temp_folder.h"

namespace krofx::testing {
namespace {

constexpr char kBody[] = "OFXHEADER:100\r\n\r\n<OFX></OFX>";

// One exchange from its first to its last step. Its reply is the host's, or it reports a failure.
class Exchange {
 public:
  Exchange(VYNConnectionManager& manager, VYNWaitPlatform& platform, std::string url)
      : m_manager(manager), m_platform(platform), m_url(std::move(url)) {}

  Outcome Run(const Failure& failure) const {
    KRBuffer body(0, 0);
    Put(body, kBody);
    const KRString url(m_url.c_str());
    KRString header("X-Kept");
    KRBuffer reply(0, 0);
    KRString kept;
    bool whole = false;
    {
      const FailingScope scope(failure);
      VYNNetAccess access(&m_manager, &m_platform);
      VYNNetRequest request;
      u32 size = 0;
      access.SetTempFilePath(m_folder.Name("").c_str());
      whole = access.InitConnection() == KRNetStatus_Success && Send(request, access, url, body) &&
              request.GetReplySize(size) == KRNetStatus_Success &&
              request.LoadReply(&reply) == KRNetStatus_Success &&
              request.GetHeader(header, kept) == 1;
      request.SetAccess(nullptr);
    }
    EXPECT_EQ(m_folder.Entries(), 0u) << "a file of the reply stays";
    const bool said = !whole || KRGetFireAlarm() != KRFireAlarm_None;
    KRSetFireAlarm(KRFireAlarm_None);
    return {said, whole ? Content(reply) + std::string(kept) : "nothing"};
  }

 private:
  static bool Send(VYNNetRequest& request, VYNNetAccess& access, const KRString& url,
                   KRBuffer& body) {
    request.SetAccess(&access);
    request.SetSaveHeaders(1);
    request.SetTimeout(60);
    return request.Send(url, &body) == KRNetStatus_Success;
  }

  VYNConnectionManager& m_manager;
  VYNWaitPlatform& m_platform;
  const std::string m_url;
  TempFolder m_folder;
};

TEST(FailedAllocations, EndAScriptedExchangeOrLeaveItsReplyWhole) {
  ScriptedManager manager;
  manager.script.reply = "<OFX></OFX>";
  manager.script.headers = "HTTP/1.1 200 OK\r\nX-Kept: yes\r\n\r\n";
  ScriptedPlatform platform;
  const Exchange exchange(manager, platform, "http://bank/");
  Sweep([&](const Failure& failure) {
    const Outcome outcome = exchange.Run(failure);
    EXPECT_EQ(manager.Live(), 0u) << "an exchange was not given back";
    return outcome;
  });
}

TEST(FailedAllocations, EndARealExchangeOrLeaveItsReplyWhole) {
  LoopbackServer server;
  LoopbackPlatform platform(server);
  const std::string reply =
      "HTTP/1.1 200 OK\r\nX-Kept: yes\r\nContent-Length: 11\r\n\r\n<OFX></OFX>";
  Sweep([&](const Failure& failure) {
    server.Serve(reply);
    // The manager is made anew as well: it holds what an exchange left.
    VYNCurlManager manager;
    return Exchange(manager, platform, server.Url()).Run(failure);
  });
}

}  // namespace
}  // namespace krofx::testing
