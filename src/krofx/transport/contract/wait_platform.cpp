// The default way to wait: the host's own event function, and a pause that the exchange can end.

#include "krofx/transport/contract/wait_platform.h"

#include <chrono>

#include "krofx/transport/contract/connection_manager.h"

VYNEventResult VYNDefaultWaitPlatform::HandleOneEvent() {
  return m_source == nullptr ? VYNEventResult_None : m_source(m_context);
}

void VYNDefaultWaitPlatform::Pause(u32 milliseconds, VYNConnectionManager& manager) {
  manager.VCWork(milliseconds);
}

std::uint64_t VYNDefaultWaitPlatform::Clock() const {
  using std::chrono::milliseconds;
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  return static_cast<std::uint64_t>(std::chrono::duration_cast<milliseconds>(now).count()) + 1;
}
