// Any bytes as what a server sends back over HTTP. The first byte says what is asked, the rest is
// the reply. The exchange ends, with a status that goes with the HTTP status, and what is loaded is
// as long as was said.

#include <stdlib.h>

#include <filesystem>
#include <string>

#include "krofx/core/buffer.h"
#include "krofx/transport/curl/curl_manager.h"
#include "krofx/transport/exchange/vyn_net_access.h"
#include "krofx/transport/exchange/vyn_net_request.h"
#include "support/loopback_server.h"
#include "target.h"

namespace {

using namespace krofx::fuzz;

// An exchange that takes more pauses does not end.
constexpr long kMostPauses = 100000;

// What is made once for all runs.
struct Client {
  Client() {
    std::string name = (std::filesystem::temp_directory_path() / "krofx-fuzz-XXXXXX").string();
    Expect(::mkdtemp(name.data()) != nullptr, "there is a folder for replies");
    folder = name + "/";
    access.SetTempFilePath(folder.c_str());
    Expect(access.InitConnection() == KRNetStatus_Success, "a session is opened");
  }
  ~Client() {
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
  }

  std::string folder;
  krofx::testing::LoopbackServer server;
  krofx::testing::LoopbackPlatform platform{server};
  VYNCurlManager manager;
  VYNNetAccess access{&manager, &platform};
};

void Run(Bytes bytes) {
  static Client client;
  Choices choices(bytes);
  const std::size_t what = choices.Below(4);
  client.server.Serve(choices.Rest());
  const long before = client.platform.Pauses();

  VYNNetRequest request;
  request.SetAccess(&client.access);
  request.SetSaveHeaders(1);
  if (what >= 2) request.SetTimeout(30);
  KRNetStatus status;
  if (what % 2 == 0) {
    status = request.Get(KRString(client.server.Url().c_str()));
  } else {
    KRBuffer body(0, 0);
    body.WriteLarge("OFXHEADER:100", 13);
    status = request.Send(KRString(client.server.Url().c_str()), &body);
  }
  Expect(client.platform.Pauses() - before < kMostPauses, "an exchange ends");
  u32 httpStatus = 0;
  u32 error = 0;
  Expect(request.GetStatus(httpStatus, error) == 1, "an exchange that ended has a status");
  Expect((status == KRNetStatus_Success) == (error == 0), "success is without an error");
  Expect(status != KRNetStatus_Success || (httpStatus >= 200 && httpStatus < 300),
         "success is a success of HTTP");

  u32 size = 0;
  if (request.GetReplySize(size) == KRNetStatus_Success) {
    KRBuffer reply(0, 0);
    Expect(request.LoadReply(&reply) == KRNetStatus_Success, "a reply of a size can be loaded");
    Expect(reply.GetBufferSize() == size, "a reply is as long as was said");
  }
  KRString name("Content-Type");
  KRString value;
  request.GetHeader(name, value);
}

const Target kTarget("reply", &Run);

}  // namespace
