// The libcurl manager while the system's resolver does not answer: neither a time limit nor the end
// of a wait depends on it.

#include <dlfcn.h>
#include <netdb.h>

#include <chrono>
#include <condition_variable>
#include <cstring>
#include <mutex>

#include "transport/curl_probe.h"

namespace {

constexpr char kSlowHost[] = "slow.krofx.invalid";

// Holds back the look-ups of one host until Release. A look-up gives up after a long time, and
// records that, so that a failing test does not wait for ever.
class SlowResolver {
 public:
  static SlowResolver& Get() {
    static SlowResolver resolver;
    return resolver;
  }
  void Hold() {
    const std::lock_guard lock(m_mutex);
    m_held = true;
    m_gaveUp = false;
  }
  // Releases the look-ups and waits until they have returned. Returns whether all were still held.
  bool Release() {
    std::unique_lock lock(m_mutex);
    const bool wereHeld = m_waiting > 0 && !m_gaveUp;
    m_held = false;
    m_change.notify_all();
    m_change.wait(lock, [this] { return m_waiting == 0; });
    return wereHeld;
  }
  void Wait() {
    std::unique_lock lock(m_mutex);
    ++m_waiting;
    m_change.notify_all();
    if (!m_change.wait_for(lock, std::chrono::seconds(30), [this] { return !m_held; })) {
      m_gaveUp = true;
    }
    --m_waiting;
    m_change.notify_all();
  }
  void UntilItIsAsked() {
    std::unique_lock lock(m_mutex);
    m_change.wait(lock, [this] { return m_waiting > 0; });
  }

 private:
  std::mutex m_mutex;
  std::condition_variable m_change;
  bool m_held = false;
  bool m_gaveUp = false;
  int m_waiting = 0;
};

using CurlResolver = CurlTest;

TEST_F(CurlResolver, DoesNotHoldATimeLimit) {
  SlowResolver::Get().Hold();
  CurlProbe probe(m_manager, m_session, m_folder);
  const u16 code =
      probe.Get(std::string("http://") + kSlowHost + "/").Http(nullptr, nullptr, 1).Run();
  EXPECT_EQ(code, VYNCurlCode_TimedOut);
  EXPECT_TRUE(SlowResolver::Get().Release());
}

TEST_F(CurlResolver, DoesNotHoldTheEndOfAWait) {
  SlowResolver::Get().Hold();
  CurlProbe probe(m_manager, m_session, m_folder);
  ASSERT_EQ(probe.Get(std::string("http://") + kSlowHost + "/").Start(), 0);
  m_manager.VCWork(1);
  SlowResolver::Get().UntilItIsAsked();
  m_manager.VCRelease(m_session, probe.exchange);
  EXPECT_EQ(m_temp.Entries(), 0U);
  EXPECT_TRUE(SlowResolver::Get().Release());
}

}  // namespace

// Replaces the system's function for the whole program, libcurl included.
extern "C" __attribute__((visibility("default"))) int getaddrinfo(const char* __restrict host,
                                                                  const char* __restrict service,
                                                                  const addrinfo* __restrict hints,
                                                                  addrinfo** __restrict out) {
  if (host != nullptr && std::strcmp(host, kSlowHost) == 0) {
    SlowResolver::Get().Wait();
    return EAI_NONAME;
  }
  using Function = int(const char*, const char*, const addrinfo*, addrinfo**);
  static auto* const system = reinterpret_cast<Function*>(dlsym(RTLD_NEXT, "getaddrinfo"));
  return system(host, service, hints, out);
}
