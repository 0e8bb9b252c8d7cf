// Sets the transport up, carries one exchange out, and says how it ended.

#include "krofx/host/exchange.h"

#include <algorithm>

#include "krofx/core/buffer.h"
#include "krofx/core/thread.h"
#include "krofx/host/exchange_access.h"
#include "krofx/host/words.h"
#include "krofx/reader/file/file_bytes.h"
#include "krofx/security/certificate.h"

namespace krofx {

namespace {

using internal::WatchingAccess;
using internal::WatchingManager;
using internal::WatchingRequest;

constexpr std::string_view kBegin = "-----BEGIN CERTIFICATE-----";
constexpr std::string_view kEnd = "-----END CERTIFICATE-----";
// Roots of the host's own are numbered apart from those that the library knows.
constexpr s16 kFirstRootId = 9001;
constexpr std::size_t kMostRoots = 999;
constexpr std::size_t kMostPins = 2;
// Base64 of 20 bytes.
constexpr std::size_t kPinLength = 28;

bool IsPin(std::string_view id) {
  return id.size() == kPinLength && id.back() == '=' &&
         std::all_of(id.begin(), id.end() - 1, [](char c) {
           return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') ||
                  c == '+' || c == '/';
         });
}

bool IsCertificate(const KRString& base64) {
  KRCert certificate;
  return certificate.SetEncodedCert(base64, base64.GetStrLength()) == KRSecStatus_Success;
}

void Empty(KRBuffer& buffer) {
  buffer.SetBufferOffset(0);
  buffer.SetBufferSize(0);
}

}  // namespace

Exchange::Exchange(std::string_view url) { Assign(m_url, url); }

Exchange::~Exchange() = default;

bool Exchange::Assign(KRString& target, std::string_view text) {
  const internal::PassedText passed(text);
  if (!passed.IsWhole()) {
    m_badText = true;
    return false;
  }
  target = passed.Get();
  return Note(ToText(target) == text);
}

bool Exchange::TrustPem(const char* file) {
  KRBuffer text(0, 0);
  if (file == nullptr || internal::ReadFileBytes(file, text) != internal::FileBytes::kRead) {
    // Without the roots that were asked for nothing may be sent.
    m_badRoot = true;
    return false;
  }
  return TrustPemText({text.GetBufferPtr(), text.GetBufferSize()});
}

bool Exchange::TrustPemText(std::string_view text) {
  bool any = false;
  for (std::size_t begin; (begin = text.find(kBegin)) != std::string_view::npos; any = true) {
    text.remove_prefix(begin + kBegin.size());
    const std::size_t end = text.find(kEnd);
    const internal::PassedText root(text.substr(0, end));
    if (end == std::string_view::npos || !root.IsWhole() || !IsCertificate(root.Get()) ||
        m_roots.size() == kMostRoots || !m_roots.Append(root.Get())) {
      m_badRoot = true;
      return false;
    }
  }
  m_badRoot = m_badRoot || !any;
  return any;
}

bool Exchange::Pin(std::string_view id) {
  const internal::PassedText pin(id);
  if (!IsPin(id) || !pin.IsWhole() || m_pins.size() == kMostPins || !m_pins.Append(pin.Get())) {
    m_badPin = true;
    return false;
  }
  return true;
}

void Exchange::Timeout(std::chrono::seconds limit) {
  constexpr std::chrono::seconds kShortest{1};
  constexpr std::chrono::seconds kLongest{0x7fffffff};
  m_timeout = std::clamp(limit, kShortest, kLongest);
}

void Exchange::TemporaryFolder(std::string_view folder) {
  if (!Assign(m_folder, folder) || folder.empty() || folder.ends_with('/')) return;
  m_folder += '/';
  // Without memory it is empty now.
  Note(m_folder.IsEmpty() == 0);
}

void Exchange::Proxy(std::string_view url) { Assign(m_proxy, url); }

// Why nothing may be sent; success when it may.
KRNetStatus Exchange::FindObstacle() const {
  if (!m_hasMemory) return KRNetStatus_NoMemory;
  if (m_badText) return KRNetStatus_NotCreated;
  if (m_badRoot) return KRNetStatus_RootRejected;
  // Only https has certificates: by any other way the pins and roots would be passed over.
  const bool isChecked = !m_pins.empty() || !m_roots.empty();
  const bool isSecure = ToText(m_url).starts_with("https:");
  return m_badPin || (isChecked && !isSecure) ? KRNetStatus_SslOptionsRejected
                                              : KRNetStatus_Success;
}

Outcome Exchange::Send(KRBuffer& question, KRBuffer& reply) { return Run(&question, reply); }

Outcome Exchange::Get(KRBuffer& reply) { return Run(nullptr, reply); }

Outcome Exchange::Run(KRBuffer* question, KRBuffer& reply) {
  Empty(reply);
  Outcome outcome;
  outcome.status = FindObstacle();
  if (outcome.status == KRNetStatus_Success) Carry(question, reply, outcome);
  if (outcome.cancelled) {
    outcome.text = "it was cancelled";
  } else if (!outcome) {
    outcome.text = ReasonOf(outcome.status, outcome.http, outcome.code);
  }
  if (!outcome) Empty(reply);
  return outcome;
}

void Exchange::Carry(KRBuffer* question, KRBuffer& reply, Outcome& outcome) {
  WatchingManager manager;
  if (m_proxy.IsEmpty() == 0 && manager.SetProxy(m_proxy, nullptr) == 0) {
    outcome.status = KRNetStatus_NotCreated;
    return;
  }
  WatchingAccess access(manager, m_onProgress, m_onLog);
  access.SetTempFilePath(m_folder);
  if (access.GetTempFilePath() != m_folder) {
    // The reply would be kept in another folder.
    outcome.status = KRNetStatus_NoMemory;
    return;
  }
  outcome.status = access.InitConnection();
  if (outcome.status != KRNetStatus_Success) return;
  WatchingRequest request;
  request.SetAccess(&access);
  access.Watch(&request);
  if (SetUp(request)) {
    outcome.status = question == nullptr ? request.Get(m_url) : request.Send(m_url, question);
    u32 roughStatus = 0;
    request.GetStatus(roughStatus, outcome.code);
    outcome.http = manager.GetHttpStatus();
    outcome.seenCertificate = request.Seen();
    if (outcome.status == KRNetStatus_Success) outcome.status = request.LoadReply(&reply);
  } else {
    outcome.status = KRNetStatus_NoMemory;
  }
  outcome.cancelled = access.IsCancelled();
  if (outcome.cancelled && outcome.status == KRNetStatus_Success) {
    outcome.status = KRNetStatus_Other;
  }
  access.Watch(nullptr);
}

// Everything was tried when it was added, so only memory can fail here.
bool Exchange::SetUp(VYNNetRequest& request) const {
  s16 id = kFirstRootId;
  for (const KRString& root : m_roots) {
    if (request.AddTrustedRoot(root, root.GetStrLength(), id++) == 0) return false;
  }
  for (const KRString& pin : m_pins) {
    if (request.AddExpectedSSLCertID(pin, pin.GetStrLength()) == 0) return false;
  }
  request.SetTimeout(static_cast<s32>(m_timeout.count()));
  return true;
}

}  // namespace krofx
