// Notes a signal while there is something to clean up, and passes it on at the end.

#include "system/interruption.h"

namespace krofx::command {

namespace {

volatile std::sig_atomic_t g_signal = 0;

void Note(int signal) { g_signal = signal; }

}  // namespace

Interruption::Interruption(Afterwards afterwards) : m_afterwards(afterwards) {
  g_signal = 0;
  struct sigaction noting {};
  noting.sa_handler = Note;
  for (std::size_t index = 0; index < sizeof kSignals / sizeof *kSignals; ++index) {
    ::sigaction(kSignals[index], &noting, &m_before[index]);
    // What the shell has the command ignore stays ignored.
    if (m_before[index].sa_handler == SIG_IGN) {
      ::sigaction(kSignals[index], &m_before[index], nullptr);
    }
  }
}

Interruption::~Interruption() {
  for (std::size_t index = 0; index < sizeof kSignals / sizeof *kSignals; ++index) {
    ::sigaction(kSignals[index], &m_before[index], nullptr);
  }
  if (Came() && m_afterwards == Afterwards::kSignal) ::raise(g_signal);
}

bool Interruption::Came() { return g_signal != 0; }

}  // namespace krofx::command
