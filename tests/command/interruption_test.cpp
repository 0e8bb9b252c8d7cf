// Signals that come while there is something to clean up.

#include "system/interruption.h"

#include <gtest/gtest.h>

#include <memory>

namespace krofx::command {
namespace {

using Afterwards = Interruption::Afterwards;

// Whether a signal that comes while an Interruption lives takes effect at its end, and not before.
bool TakesEffectAtTheEnd(int signal, Afterwards afterwards) {
  auto interruption = std::make_unique<Interruption>(afterwards);
  EXPECT_FALSE(Interruption::Came());
  ::raise(signal);
  EXPECT_TRUE(Interruption::Came());
  // Held back, it can be looked at, and then be ignored.
  sigset_t held;
  sigset_t before;
  ::sigemptyset(&held);
  ::sigaddset(&held, signal);
  ::sigprocmask(SIG_BLOCK, &held, &before);
  sigset_t pending;
  ::sigpending(&pending);
  EXPECT_EQ(::sigismember(&pending, signal), 0);
  interruption.reset();
  ::sigpending(&pending);
  const bool takesEffect = ::sigismember(&pending, signal) == 1;
  const auto usual = ::signal(signal, SIG_IGN);
  EXPECT_EQ(usual, SIG_DFL);
  ::sigprocmask(SIG_SETMASK, &before, nullptr);
  ::signal(signal, usual);
  return takesEffect;
}

TEST(Interruption, PassesASignalOnWhenAllIsCleanedUp) {
  for (const int signal : {SIGINT, SIGQUIT, SIGTERM, SIGHUP, SIGUSR1, SIGXFSZ, SIGRTMAX}) {
    EXPECT_TRUE(TakesEffectAtTheEnd(signal, Afterwards::kSignal)) << signal;
  }
}

TEST(Interruption, LeavesTheSignalsOfKeysToWhoeverNotedThem) {
  for (const int signal : {SIGINT, SIGQUIT}) {
    EXPECT_FALSE(TakesEffectAtTheEnd(signal, Afterwards::kUnlessKey)) << signal;
  }
  EXPECT_TRUE(TakesEffectAtTheEnd(SIGTERM, Afterwards::kUnlessKey));
}

TEST(Interruption, LeavesASignalIgnoredThatWasIgnoredBefore) {
  const auto before = ::signal(SIGINT, SIG_IGN);
  {
    const Interruption interruption;
    ::raise(SIGINT);
    EXPECT_FALSE(Interruption::Came());
  }
  EXPECT_EQ(::signal(SIGINT, before), SIG_IGN);
}

}  // namespace
}  // namespace krofx::command
