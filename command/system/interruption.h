// Work that a signal can end and that still cleans up.

#ifndef KROFX_COMMAND_SYSTEM_INTERRUPTION_H_
#define KROFX_COMMAND_SYSTEM_INTERRUPTION_H_

#include <csignal>
#include <iterator>

namespace krofx::command {

/// As long as it lives, the signals that end a command (of the interrupt and quit keys, of a closed
/// terminal, of timers and limits, of `kill`) are only noted. One that came takes effect at its
/// end, when all is cleaned up. Writing to a pipe that nobody reads is an error and no signal.
class Interruption {
 public:
  /// All that end a process and can be noted, but for those of faults in the program.
  static constexpr int kSignals[] = {SIGHUP,  SIGINT,  SIGQUIT, SIGTERM, SIGABRT,   SIGALRM,
                                     SIGUSR1, SIGUSR2, SIGXCPU, SIGXFSZ, SIGVTALRM, SIGPROF};

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
  const Afterwards m_afterwards;
  struct sigaction m_before[std::size(kSignals)] = {};
  struct sigaction m_pipeBefore {};
};

}  // namespace krofx::command

#endif  // KROFX_COMMAND_SYSTEM_INTERRUPTION_H_
