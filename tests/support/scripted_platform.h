// A wait platform that plays the host's events from a list.

#ifndef KROFX_TESTS_SUPPORT_SCRIPTED_PLATFORM_H_
#define KROFX_TESTS_SUPPORT_SCRIPTED_PLATFORM_H_

#include <deque>
#include <functional>
#include <utility>
#include <vector>

#include "krofx/transport/contract/connection_manager.h"
#include "krofx/transport/contract/wait_platform.h"

/// Takes events from the front of a list; a pause is one VCWork of the manager.
class ScriptedPlatform : public VYNWaitPlatform {
 public:
  /// The host's queue. An event does something and returns whether it quits the loop.
  std::deque<std::function<VYNEventResult()>> events;
  /// How long each pause was.
  std::vector<u32> pauses;
  /// How often the queue was checked.
  int looks = 0;

  /// Queues an event that does something.
  void Post(std::function<void()> action) {
    events.push_back([action = std::move(action)] {
      action();
      return VYNEventResult_Handled;
    });
  }
  /// Queues the event that ends the host's loop.
  void PostQuit() {
    events.push_back([] { return VYNEventResult_Quit; });
  }

  VYNEventResult HandleOneEvent() override {
    ++looks;
    if (events.empty()) return VYNEventResult_None;
    const auto event = std::move(events.front());
    events.pop_front();
    return event();
  }
  void Pause(u32 milliseconds, VYNConnectionManager& manager) override {
    pauses.push_back(milliseconds);
    manager.VCWork(milliseconds);
  }
};

#endif  // KROFX_TESTS_SUPPORT_SCRIPTED_PLATFORM_H_
