// The simplest connection and request that are not abstract: they record their calls.

#ifndef KROFX_TESTS_TRANSPORT_PROBE_TRANSPORT_H_
#define KROFX_TESTS_TRANSPORT_PROBE_TRANSPORT_H_

#include <string>
#include <vector>

#include "krofx/core/buffer.h"
#include "krofx/transport/contract/net_access.h"
#include "krofx/transport/contract/net_request.h"

/// A root as a request received it.
struct GivenRoot {
  std::string ber;
  s16 id;
};

/// Records roots and sends.
class ProbeRequest : public KRNetRequest {
 public:
  u16 AddTrustedRoot(const char*, u16, s16) override { return 1; }
  u16 AddTrustedRootBER(const char* ber, u16 length, s16 id) override {
    roots.push_back({std::string(ber, length), id});
    return id == refusedRoot ? 0 : 1;
  }
  u16 AddExpectedSSLCertID(const char*, u16) override { return 1; }
  u16 AddExpectedSSLCertName(const KRString&) override { return 1; }
  KRNetStatus Send(const KRString& url, KRBuffer* body) override {
    sent.push_back(std::string(url));
    sentBody = body;
    return sendResult;
  }

  /// The IDs of the roots, in order.
  std::vector<s16> RootIDs() const {
    std::vector<s16> ids;
    for (const GivenRoot& root : roots) ids.push_back(root.id);
    return ids;
  }

  std::vector<GivenRoot> roots;
  s16 refusedRoot = 0;
  std::vector<std::string> sent;
  KRBuffer* sentBody = nullptr;
  KRNetStatus sendResult = KRNetStatus_Success;
};

/// Opens nothing; makes ProbeRequests.
class ProbeAccess : public KRNetAccess {
 public:
  using KRNetAccess::GetAgentName;
  using KRNetAccess::GetTempFilePath;
  u16 CanDoNetworkSetup() override { return 1; }
  u16 IsNetworkSetup() override { return 1; }
  u16 DoNetworkSetup() override { return 1; }
  KRNetStatus InitConnection() override { return KRNetStatus_Success; }
  KRNetStatus EndConnection() override { return KRNetStatus_Success; }
  KRNetRequest* NewNetRequest() override { return new ProbeRequest; }
  KRNetStatus DeleteNetRequest(KRNetRequest* request) override {
    delete request;
    return KRNetStatus_Success;
  }

  std::string AgentName() const {
    KRString name;
    GetAgentName(name);
    return std::string(name);
  }
  std::string TempFilePath() const {
    KRString path;
    GetTempFilePath(path);
    return std::string(path);
  }
};

#endif  // KROFX_TESTS_TRANSPORT_PROBE_TRANSPORT_H_
