// A connection manager that plays a script, without network or clock, and records every call.

#ifndef KROFX_TESTS_SUPPORT_SCRIPTED_MANAGER_H_
#define KROFX_TESTS_SUPPORT_SCRIPTED_MANAGER_H_

#include <cstring>
#include <fstream>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "krofx/transport/contract/connection_manager.h"

/// Two counters of an exchange, as a progress callback reports them.
struct ScriptedProgress {
  u32 opCode;
  u32 soFar = 0;
  u32 inAll = 0;
};

/// The certificates that a server shows.
struct ScriptedChain {
  /// DER, from the root to the server's own.
  std::vector<std::string> certificates;
  u32 rootID = 0;
  u16 error = 0;
};

/// The course of an exchange, after it has been started.
struct ExchangeScript {
  /// The body and the headers of the reply; no file is written without.
  std::optional<std::string> reply;
  std::optional<std::string> headers;
  /// The code that it ends with.
  u16 result = 0;
  std::vector<ScriptedProgress> progress;
  std::optional<ScriptedChain> chain;
  /// The number of VCWork calls before it ends: 0 ends it while it is being started, kNever only
  /// when it is cancelled.
  int rounds = 1;
  /// Whether cancelling is followed by a finished record at all.
  bool endsWhenCancelled = true;

  static constexpr int kNever = -1;
};

/// Plays ExchangeScripts. An exchange follows `script` as it is when the exchange starts.
class ScriptedManager : public VYNConnectionManager {
 public:
  /// The code that a cancelled exchange ends with.
  static constexpr u16 kCancelled = 1549;

  // The result of each operation.
  u16 openError = 0;
  bool openGivesNull = false;
  u16 closeCode = 0;
  u16 connectCode = 0;
  u16 createError = 0;
  bool createGivesNull = false;
  u16 httpCode = 0;
  u16 sslCode = 0;
  s16 refusedRoot = 0;
  u16 rootCode = 0;
  u16 initiateCode = 0;
  u16 cancelCode = 0;
  u16 needsCode = 0;
  u32 needs = 0;
  ExchangeScript script;

  /// Each operation with its arguments, VCWork left out.
  std::vector<std::string> calls;
  /// The duration of each VCWork.
  std::vector<u32> works;
  /// The results of the certificate callback and of the progress callback.
  std::vector<u16> answers;
  std::vector<u16> callbackResults;
  /// The roots that were added, DER.
  std::vector<std::string> roots;
  /// What was sent.
  std::string sent;

  /// Exchanges that have neither ended nor been released.
  std::size_t Live() const { return m_exchanges.size(); }
  /// The names of the calls without their arguments.
  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const std::string& call : calls) names.push_back(call.substr(0, call.find('(')));
    return names;
  }

  void* VCOpenInet(u16* error) override {
    calls.push_back("VCOpenInet()");
    *error = openError;
    return openGivesNull ? nullptr : &m_session;
  }
  u16 VCCloseInet(void* session) override {
    calls.push_back("VCCloseInet(" + Session(session) + ")");
    return closeCode;
  }
  u16 VCConnect(void* session) override {
    calls.push_back("VCConnect(" + Session(session) + ")");
    return connectCode;
  }
  void* VCSendDataRequest(u16* error, void* session, const char* url, const char* data, u32 size,
                          const char* tempPath, VYProgressCallback callback,
                          void* userData) override {
    sent.assign(data, size);
    calls.push_back("VCSendDataRequest(" + Session(session) + ", " + url + ", " +
                    std::to_string(size) + ")");
    return Create(error, tempPath, callback, userData);
  }
  void* VCGetFileRequest(u16* error, void* session, const char* url, const char* tempPath,
                         VYProgressCallback callback, void* userData) override {
    calls.push_back("VCGetFileRequest(" + Session(session) + ", " + url + ")");
    return Create(error, tempPath, callback, userData);
  }
  u16 VCSetHTTPInfo(void* exchange, u32 second, u16 post, const char* contentType,
                    const char* extraHeaders, u32 sixth, s32 timeout) override {
    calls.push_back("VCSetHTTPInfo(" + Handle(exchange) + ", " + std::to_string(second) + ", " +
                    std::to_string(post) + ", " + Text(contentType) + ", " + Text(extraHeaders) +
                    ", " + std::to_string(sixth) + ", " + std::to_string(timeout) + ")");
    return httpCode;
  }
  u16 VCSetSSLInfo(void* exchange, u16 skipVerify, VYCertificateCallback callback,
                   u32 constant) override {
    calls.push_back("VCSetSSLInfo(" + Handle(exchange) + ", " + std::to_string(skipVerify) + ", " +
                    (callback == nullptr ? "null" : "callback") + ", " + std::to_string(constant) +
                    ")");
    if (Exchange* const known = Find(exchange)) known->certificateCallback = callback;
    return sslCode;
  }
  u16 VCAddTrustedRoot(void* exchange, const char* der, u32 length, s16 rootID) override {
    calls.push_back("VCAddTrustedRoot(" + Handle(exchange) + ", " + std::to_string(length) + ", " +
                    std::to_string(rootID) + ")");
    roots.emplace_back(der, length);
    return rootID == refusedRoot ? rootCode : 0;
  }
  u16 VCInitiate(void* session, void* exchange) override {
    calls.push_back("VCInitiate(" + Session(session) + ", " + Handle(exchange) + ")");
    if (initiateCode != 0) return initiateCode;
    if (Exchange* const known = Find(exchange)) {
      known->isStarted = true;
      if (known->script.rounds == 0) Play(exchange);
    }
    return 0;
  }
  u16 VCCancel(void* session, void* exchange) override {
    calls.push_back("VCCancel(" + Session(session) + ", " + Handle(exchange) + ")");
    if (cancelCode != 0) return cancelCode;
    if (Exchange* const known = Find(exchange))
      known->isCancelled = known->script.endsWhenCancelled;
    return 0;
  }
  void VCRelease(void* session, void* exchange) override {
    calls.push_back("VCRelease(" + Session(session) + ", " + Handle(exchange) + ")");
    m_exchanges.erase(exchange);
  }
  u16 VY_IspConfig_NeedsToConfigure(u32* answer) override {
    calls.push_back("VY_IspConfig_NeedsToConfigure()");
    *answer = needs;
    return needsCode;
  }
  void VCWork(u32 milliseconds) override {
    works.push_back(milliseconds);
    std::vector<void*> handles;
    for (const auto& [handle, exchange] : m_exchanges) handles.push_back(handle);
    for (void* const handle : handles) Move(handle);
  }

 private:
  struct Exchange {
    int number = 0;
    std::string tempPath;
    VYProgressCallback callback = nullptr;
    VYCertificateCallback certificateCallback = nullptr;
    void* userData = nullptr;
    ExchangeScript script;
    bool isStarted = false;
    bool isCancelled = false;
  };

  static std::string Text(const char* text) {
    return text == nullptr ? "null" : "\"" + std::string(text) + "\"";
  }
  std::string Session(void* session) const {
    if (session == nullptr) return "null";
    return session == &m_session ? "session" : "host's session";
  }
  std::string Handle(void* exchange) { return Find(exchange) == nullptr ? "unknown" : "exchange"; }

  Exchange* Find(void* handle) {
    const auto found = m_exchanges.find(handle);
    return found == m_exchanges.end() ? nullptr : &found->second;
  }

  void* Create(u16* error, const char* tempPath, VYProgressCallback callback, void* userData) {
    *error = createError;
    if (createGivesNull) return nullptr;
    // No handle is used twice, so that the use of a stale one is detected.
    void* const handle = reinterpret_cast<void*>(static_cast<std::uintptr_t>(++m_created));
    if (createError != 0) return handle;
    m_exchanges[handle] = {m_created, tempPath, callback, nullptr, userData, script, false, false};
    return handle;
  }

  // One step of one exchange.
  void Move(void* handle) {
    Exchange* const exchange = Find(handle);
    if (exchange == nullptr || !exchange->isStarted) return;
    if (exchange->isCancelled) {
      Finish(handle, kCancelled);
    } else if (exchange->script.rounds == ExchangeScript::kNever) {
      TellProgress(handle);
    } else if (--exchange->script.rounds <= 0) {
      Play(handle);
    }
  }

  void Play(void* handle) {
    TellProgress(handle);
    u16 result = ShowCertificates(handle);
    if (Exchange* const exchange = Find(handle)) {
      Finish(handle, result == 0 ? exchange->script.result : result);
    }
  }

  // A callback may run host code that releases the exchange, so it is looked up each time.
  void TellProgress(void* handle) {
    for (std::size_t step = 0;; ++step) {
      Exchange* const exchange = Find(handle);
      if (exchange == nullptr || step >= exchange->script.progress.size()) return;
      const ScriptedProgress progress = exchange->script.progress[step];
      VYProgressRecord record{};
      record.userData = exchange->userData;
      record.opCode = progress.opCode;
      // The counters of the other code are filled too: they must not be taken for this one's.
      record.sent = progress.opCode == KROpCode_Sending ? progress.soFar : 991;
      record.sendTotal = progress.opCode == KROpCode_Sending ? progress.inAll : 992;
      record.received = progress.opCode == KROpCode_Receiving ? progress.soFar : 993;
      record.receiveTotal = progress.opCode == KROpCode_Receiving ? progress.inAll : 994;
      callbackResults.push_back(exchange->callback(kVYProgress, &record));
    }
  }

  u16 ShowCertificates(void* handle) {
    Exchange* const exchange = Find(handle);
    if (exchange == nullptr || !exchange->script.chain.has_value() ||
        exchange->certificateCallback == nullptr) {
      return 0;
    }
    const ScriptedChain chain = *exchange->script.chain;
    std::vector<SSLCertificateChain> elements(chain.certificates.size());
    for (std::size_t index = 0; index < elements.size(); ++index) {
      const std::string& der = chain.certificates[index];
      elements[index] = {index + 1 < elements.size() ? &elements[index + 1] : nullptr,
                         static_cast<u16>(der.size()), der.data()};
    }
    answers.push_back(exchange->certificateCallback(elements.empty() ? nullptr : elements.data(),
                                                    chain.rootID, chain.error, exchange->userData,
                                                    0, 0));
    return answers.back();
  }

  void Finish(void* handle, u16 result) {
    const Exchange exchange = m_exchanges[handle];
    m_exchanges.erase(handle);
    VYFinishedRecord record{};
    record.result = result;
    record.userData = exchange.userData;
    Write(record.replyFile, exchange, "reply-", exchange.script.reply);
    Write(record.headerFile, exchange, "header-", exchange.script.headers);
    callbackResults.push_back(exchange.callback(kVYFInished, &record));
  }

  template <std::size_t kRoom>
  static void Write(char (&name)[kRoom], const Exchange& exchange, const char* kind,
                    const std::optional<std::string>& content) {
    if (!content.has_value()) return;
    const std::string file = exchange.tempPath + kind + std::to_string(exchange.number);
    std::ofstream(file, std::ios::binary) << *content;
    std::strncpy(name, file.c_str(), kRoom - 1);
  }

  char m_session = 0;
  int m_created = 0;
  std::map<void*, Exchange> m_exchanges;
};

#endif  // KROFX_TESTS_SUPPORT_SCRIPTED_MANAGER_H_
