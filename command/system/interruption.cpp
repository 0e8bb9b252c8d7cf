// Notes a signal while there is something to clean up, and passes it on at the end.

#include "system/interruption.h"

namespace krofx::command {

namespace {

volatile std::sig_atomic_t g_signal = 0;
int g_living = 0;

void Note(int signal) { g_signal = signal; }

std::vector<int> ListSignals() {
  std::vector<int> signals = {SIGHUP,  SIGINT,  SIGQUIT, SIGTERM,   SIGABRT, SIGALRM, SIGUSR1,
                              SIGUSR2, SIGXCPU, SIGXFSZ, SIGVTALRM, SIGPROF, SIGIO,   SIGPWR};
#ifdef SIGSTKFLT  // Not every processor has it.
  signals.push_back(SIGSTKFLT);
#endif
  for (int signal = SIGRTMIN; signal <= SIGRTMAX; ++signal) signals.push_back(signal);
  return signals;
}

}  // namespace

const std::vector<int>& Interruption::Signals() {
  static const std::vector<int> signals = ListSignals();
  return signals;
}

Interruption::Interruption(Afterwards afterwards)
    : m_afterwards(afterwards), m_before(Signals().size()) {
  // What the one around it noted counts for that one too.
  if (g_living++ == 0) g_signal = 0;
  struct sigaction ignoring {};
  ignoring.sa_handler = SIG_IGN;
  ::sigaction(SIGPIPE, &ignoring, &m_pipeBefore);
  struct sigaction noting {};
  noting.sa_handler = Note;
  for (std::size_t index = 0; index < m_before.size(); ++index) {
    ::sigaction(Signals()[index], &noting, &m_before[index]);
    // What the shell has the command ignore stays ignored, and a handler that is there stays.
    if (m_before[index].sa_handler != SIG_DFL) {
      ::sigaction(Signals()[index], &m_before[index], nullptr);
    }
  }
}

Interruption::~Interruption() {
  for (std::size_t index = 0; index < m_before.size(); ++index) {
    ::sigaction(Signals()[index], &m_before[index], nullptr);
  }
  ::sigaction(SIGPIPE, &m_pipeBefore, nullptr);
  --g_living;
  if (Came() && (m_afterwards == Afterwards::kSignal || !CameFromKey())) ::raise(g_signal);
}

bool Interruption::Came() { return g_signal != 0; }

bool Interruption::CameFromKey() { return g_signal == SIGINT || g_signal == SIGQUIT; }

}  // namespace krofx::command
