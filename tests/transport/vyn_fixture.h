// What every test of the connection-manager transport uses: a scripted manager and platform, a
// folder for replies, and access objects and requests that make protected operations public.

#ifndef KROFX_TESTS_TRANSPORT_VYN_FIXTURE_H_
#define KROFX_TESTS_TRANSPORT_VYN_FIXTURE_H_

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include "krofx/core/buffer.h"
#include "krofx/core/string.h"
#include "krofx/transport/exchange/vyn_net_access.h"
#include "krofx/transport/exchange/vyn_net_request.h"
#include "support/buffers.h"
#include "support/scripted_manager.h"
#include "support/scripted_platform.h"
#include "support/temp_folder.h"

/// An access object whose protected operations are public.
class OpenAccess : public VYNNetAccess {
 public:
  using VYNNetAccess::GetVYNSession;
  using VYNNetAccess::OpenInternetIfNeeded;
  using VYNNetAccess::VYNNetAccess;
};

/// A request whose protected operations are public.
class OpenRequest : public VYNNetRequest {
 public:
  using VYNNetRequest::AddAllTrustedRoots;
  using VYNNetRequest::AddExpectedCertID;
  using VYNNetRequest::DoCallback;
  using VYNNetRequest::IsAnExpectedCertID;
  using VYNNetRequest::IsATrustedRoot;
  using VYNNetRequest::LoadHeaders;
  using VYNNetRequest::MapVYNErrorToHttpStatus;
  using VYNNetRequest::MapVYNErrorToNetStatus;
  using VYNNetRequest::SetSSLOptions;
  using VYNNetRequest::WaitForReply;
};

/// What a request reports about its last exchange.
struct ExchangeState {
  u16 known = 0;
  u32 http = 0;
  u32 error = 0;
};

class VYNTest : public testing::Test {
 public:
  /// A line of the log.
  struct Line {
    std::string text;
    u16 level;
    bool hasExtra;
    bool operator==(const Line&) const = default;
  };
  using Progress = std::tuple<u32, std::uintptr_t, std::uintptr_t>;

  VYNTest() {
    Lines().clear();
    Progresses().clear();
    OnProgress() = nullptr;
    OnLine() = nullptr;
    access->SetTempFilePath(folder.Name("").c_str());
    access->SetLogCallback([](const char* text, u16 level, const char* extra) {
      Lines().push_back({text, level, extra != nullptr});
      if (OnLine()) OnLine()(text);
    });
    access->SetSessionCallback([](KROpCode code, void* first, void* second) {
      Progresses().push_back({code, reinterpret_cast<std::uintptr_t>(first),
                              reinterpret_cast<std::uintptr_t>(second)});
      if (OnProgress()) OnProgress()();
    });
    request->SetAccess(access.get());
  }
  ~VYNTest() override {
    OnProgress() = nullptr;
    OnLine() = nullptr;
  }

  /// Opens and connects the session and forgets the calls for it.
  void Connect() {
    ASSERT_EQ(access->InitConnection(), KRNetStatus_Success);
    manager.calls.clear();
  }

  KRNetStatus Get(const char* url) { return request->Get(url); }
  KRNetStatus Send(const char* url, const std::string& text) {
    KRBuffer body(0, 0);
    Put(body, text);
    return request->Send(url, &body);
  }

  ExchangeState State() const {
    ExchangeState state;
    state.known = request->GetStatus(state.http, state.error);
    return state;
  }
  u32 AccessError() const {
    u32 error = 12345;
    EXPECT_EQ(access->GetStatus(error), 1);
    return error;
  }
  /// The size of the reply, or minus the status.
  long ReplySize() {
    u32 size = 0;
    const KRNetStatus status = request->GetReplySize(size);
    return status == KRNetStatus_Success ? static_cast<long>(size) : -static_cast<long>(status);
  }
  /// Adds a root of the library's own under an ID.
  u16 AddRoot(s16 id) {
    const std::string der = RootBytes();
    return request->AddTrustedRootBER(der.data(), static_cast<u16>(der.size()), id);
  }
  /// A certificate for any purpose, DER; with 1, another one.
  static std::string RootBytes(int which = 0);
  /// The ID of that certificate.
  static std::string RootBytesID(int which = 0);

  /// The texts of the log.
  static std::vector<std::string> Texts() {
    std::vector<std::string> texts;
    for (const Line& line : Lines()) texts.push_back(line.text);
    return texts;
  }
  static std::vector<Line>& Lines() {
    static std::vector<Line> lines;
    return lines;
  }
  static std::vector<Progress>& Progresses() {
    static std::vector<Progress> progresses;
    return progresses;
  }
  /// What the host does in its callbacks.
  static std::function<void()>& OnProgress() {
    static std::function<void()> action;
    return action;
  }
  static std::function<void(const std::string&)>& OnLine() {
    static std::function<void(const std::string&)> action;
    return action;
  }

  TempFolder folder;
  ScriptedManager manager;
  ScriptedPlatform platform;
  std::unique_ptr<OpenAccess> access = std::make_unique<OpenAccess>(&manager, &platform);
  std::unique_ptr<OpenRequest> request{new OpenRequest};
};

/// The same with the session connected and a server that replies.
class ConnectedVYNTest : public VYNTest {
 protected:
  void SetUp() override {
    Connect();
    manager.script.reply = "reply";
  }
};

#endif  // KROFX_TESTS_TRANSPORT_VYN_FIXTURE_H_
