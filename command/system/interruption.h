// Work that a signal can end and that still cleans up.

#ifndef KROFX_COMMAND_SYSTEM_INTERRUPTION_H_
#define KROFX_COMMAND_SYSTEM_INTERRUPTION_H_

#include <csignal>

namespace krofx::command {

/// As long as it lives, the signals that end a command (of the interrupt and quit keys, of a closed
/// terminal, of `kill`) are only noted. One that came takes effect at its end, when all is cleaned
/// up.
class Interruption {
 public:
  /// What happens at the end with a signal that came.
  enum class Afterwards {
    kSignal,  ///< It takes effect.
    kNothing  ///< The code that noted it acts on it.
  };

  explicit Interruption(Afterwards afterwards = Afterwards::kSignal);
  ~Interruption();
  Interruption(const Interruption&) = delete;
  Interruption& operator=(const Interruption&) = delete;

  /// @return whether a signal came.
  static bool Came();

 private:
  static constexpr int kSignals[] = {SIGHUP, SIGINT, SIGQUIT, SIGTERM};

  const Afterwards m_afterwards;
  struct sigaction m_before[sizeof kSignals / sizeof *kSignals] = {};
};

}  // namespace krofx::command

#endif  // KROFX_COMMAND_SYSTEM_INTERRUPTION_H_
