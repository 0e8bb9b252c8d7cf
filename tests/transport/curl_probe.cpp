// The probe's operations.

#include "transport/curl_probe.h"

#include <unistd.h>

#include <fstream>
#include <iterator>

namespace {

// Longer than any test may take: a wait that nothing ends shows as a test that hangs.
constexpr u32 kLongPause = 3600U * 1000;

}  // namespace

CurlTest::CurlTest() : m_folder(m_temp.Path().string()) {
  u16 error = 1;
  m_session = m_manager.VCOpenInet(&error);
  EXPECT_NE(m_session, nullptr);
  EXPECT_EQ(error, 0);
}

CurlTest::~CurlTest() {
  EXPECT_EQ(m_manager.VCCloseInet(m_session), 0);
  EXPECT_EQ(m_temp.Entries(), 0U);
}

CurlProbe::~CurlProbe() {
  unlink(replyFile.c_str());
  unlink(headerFile.c_str());
}

void CurlProbe::PrepareTls(const std::string& url) {
  if (url.starts_with("https:")) {
    EXPECT_EQ(manager.VCSetSSLInfo(exchange, skipVerify, &Certificate, 120), 0);
  }
}

CurlProbe& CurlProbe::Get(const std::string& url) {
  exchange = manager.VCGetFileRequest(&error, session, url.c_str(), folder.c_str(), &Record, this);
  if (exchange != nullptr) PrepareTls(url);
  return *this;
}

CurlProbe& CurlProbe::Send(const std::string& url, const std::string& data) {
  m_data = data;
  exchange =
      manager.VCSendDataRequest(&error, session, url.c_str(), m_data.data(),
                                static_cast<u32>(m_data.size()), folder.c_str(), &Record, this);
  if (exchange != nullptr) PrepareTls(url);
  return *this;
}

CurlProbe& CurlProbe::Http(const char* contentType, const char* headers, s32 timeout) {
  const u16 post = contentType == nullptr && headers == nullptr ? 0 : 1;
  EXPECT_EQ(manager.VCSetHTTPInfo(exchange, 0, post, contentType, headers, 1, timeout), 0);
  return *this;
}

CurlProbe& CurlProbe::Root(const TestCertificate& root, s16 id) {
  const std::string der = root.Der();
  EXPECT_EQ(manager.VCAddTrustedRoot(exchange, der.data(), static_cast<u32>(der.size()), id), 0);
  return *this;
}

u16 CurlProbe::Run() {
  EXPECT_EQ(Start(), 0);
  Finish();
  return result;
}

void CurlProbe::Finish() {
  while (finished == 0 && rounds < 100000) {
    manager.VCWork(kLongPause);
    ++rounds;
  }
  EXPECT_EQ(finished, 1);
}

std::string CurlProbe::Content(const std::string& name) {
  std::ifstream file(name, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::vector<u32> CurlProbe::Phases() const {
  std::vector<u32> phases;
  for (const VYProgressRecord& record : progress) {
    const u32 code = record.opCode;
    if (phases.empty() || phases.back() != code) phases.push_back(code);
  }
  return phases;
}

u16 CurlProbe::Record(VYCallbackStatus status, void* record) {
  if (status == kVYProgress) {
    const VYProgressRecord copy = *static_cast<VYProgressRecord*>(record);
    auto& self = *static_cast<CurlProbe*>(copy.userData);
    EXPECT_EQ(self.finished, 0);
    self.progress.push_back(copy);
    if (self.onProgress) self.onProgress(copy);
    return 0;
  }
  const auto& ended = *static_cast<VYFinishedRecord*>(record);
  auto& self = *static_cast<CurlProbe*>(ended.userData);
  ++self.finished;
  self.result = ended.result;
  self.replyFile = ended.replyFile;
  self.headerFile = ended.headerFile;
  if (self.onFinished) self.onFinished();
  return 0;
}

u16 CurlProbe::Certificate(SSLCertificateChain* chain, u32 rootID, u16 error, void* request, u32,
                           u32) {
  auto& self = *static_cast<CurlProbe*>(request);
  ++self.asked;
  self.rootID = rootID;
  self.certificateError = error;
  self.chain.clear();
  for (; chain != nullptr; chain = chain->next) self.chain.emplace_back(chain->der, chain->length);
  if (self.onCertificate) self.onCertificate();
  return error != 0 ? error : self.answer;
}
