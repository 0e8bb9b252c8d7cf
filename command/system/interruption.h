// Work that a signal can end and that still cleans up.

#ifndef KROFX_COMMAND_SYSTEM_INTERRUPTION_H_
#define KROFX_COMMAND_SYSTEM_INTERRUPTION_H_

#include <csignal>
#include <vector>

namespace krofx::command {

/// As long as it lives, the signals that end a command (of the interrupt and quit keys, of a closed
/// terminal, of timers and limits, of devices and power, of `kill`) are only noted. One that came
/// takes effect at its end, when all is cleaned up. Writing to a pipe that nobody reads is an error
/// and no signal.
class Interruption {
 public:
  /// @return all that end a process and can be noted, but for those of faults in the program.
  static const std::vector<int>& Signals();

  /// What happens at the end with a signal that came.
  enum class Afterwards {
    kSignal,    ///< It takes effect.
    kUnlessKey  ///< It takes effect, unless it is of a key, on which the code that noted it acts.
  };

  explicit Interruption(Afterwards afterwards = Afterwards::kSignal);
  ~Interruption();
  Interruption(const Interruption&) = delete;
  Interruption& operator=(const Interruption&) = delete;

  /// @return whether a signal came.
  static bool Came();
  /// @return whether the last one that came is that of the interrupt or the quit key.
  static bool CameFromKey();

 private:
  const Afterwards m_afterwards;
  std::vector<struct sigaction> m_before;  // For each of Signals().
  struct sigaction m_pipeBefore {};
};

}  // namespace krofx::command

#endif  // KROFX_COMMAND_SYSTEM_INTERRUPTION_H_
