// How a thread waits for its exchange while the host's events are handled: the interface to the
// platform's event queue and its sleep.
//
// A waiting call works in rounds. Each round takes at most one event, lets the host handle it, and
// then pauses for 100 milliseconds, less only if the exchange ends.

#ifndef KROFX_TRANSPORT_CONTRACT_WAIT_PLATFORM_H_
#define KROFX_TRANSPORT_CONTRACT_WAIT_PLATFORM_H_

#include <cstdint>

#include "krofx/core/export.h"
#include "krofx/core/types.h"

class VYNConnectionManager;

/// What HandleOneEvent did.
enum VYNEventResult : u32 {
  /// The queue was empty.
  VYNEventResult_None = 0,
  /// One event was taken and handled.
  VYNEventResult_Handled = 1,
  /// The event that ends the host's event loop was taken; the wait ends too.
  VYNEventResult_Quit = 2,
};

/// The platform's side of a waiting call.
class KROFX_API VYNWaitPlatform {
 public:
  virtual ~VYNWaitPlatform() = default;
  /// Takes at most one event of the calling thread, without blocking, and lets the host handle it.
  /// The host's code may call Abort on the request that waits.
  virtual VYNEventResult HandleOneEvent() = 0;
  /// Pauses for `milliseconds`. It must not return earlier unless the exchange has ended, since
  /// only one event is handled between two pauses.
  virtual void Pause(u32 milliseconds, VYNConnectionManager& manager) = 0;
  /// By this clock a wait makes sure that a pause has lasted; if it has not, because the connection
  /// manager returned earlier, the wait pauses again for the rest.
  /// @return milliseconds since any moment, never less than before. The default is always 0, which
  ///         means that there is no clock and that Pause can be relied on.
  virtual std::uint64_t Clock() const { return 0; }
};

/// Takes at most one event of the host's own loop and handles it; `context` is the one that the
/// host supplied.
using VYNEventSource = VYNEventResult (*)(void* context);

/// The default: events come from a function of the host, if it supplied one, and a pause runs the
/// connection manager, so that it ends as soon as the exchange does. The clock is the system's
/// steady one, so the rate of events is limited with every manager.
class KROFX_API VYNDefaultWaitPlatform : public VYNWaitPlatform {
 public:
  /// With a null `source` there are no events.
  explicit VYNDefaultWaitPlatform(VYNEventSource source = nullptr, void* context = nullptr)
      : m_source(source), m_context(context) {}
  VYNEventResult HandleOneEvent() override;
  void Pause(u32 milliseconds, VYNConnectionManager& manager) override;
  std::uint64_t Clock() const override;

 private:
  VYNEventSource m_source;
  void* m_context;
};

#endif  // KROFX_TRANSPORT_CONTRACT_WAIT_PLATFORM_H_
