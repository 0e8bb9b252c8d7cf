// Notes a signal while there is something to clean up, and passes it on at the end.

#include "system/interruption.h"

namespace krofx::command {

namespace {

volatile std::sig_atomic_t g_signal = 0;
int g_living = 0;

void Note(int signal) { g_signal = signal; }

}  // namespace

Interruption::Interruption(Afterwards afterwards) : m_afterwards(afterwards) {
  // What the one around it noted counts for that one too.
  if (g_living++ == 0) g_signal = 0;
  struct sigaction ignoring {};
  ignoring.sa_handler = SIG_IGN;
  ::sigaction(SIGPIPE, &ignoring, &m_pipeBefore);
  struct sigaction noting {};
  noting.sa_handler = Note;
  for (std::size_t index = 0; index < std::size(kSignals); ++index) {
    ::sigaction(kSignals[index], &noting, &m_before[index]);
    // What the shell has the command ignore stays ignored, and a handler that is there stays.
    if (m_before[index].sa_handler != SIG_DFL) {
      ::sigaction(kSignals[index], &m_before[index], nullptr);
    }
  }
}

Interruption::~Interruption() {
  for (std::size_t index = 0; index < std::size(kSignals); ++index) {
    ::sigaction(kSignals[index], &m_before[index], nullptr);
  }
  ::sigaction(SIGPIPE, &m_pipeBefore, nullptr);
  --g_living;
  if (Came() && m_afterwards == Afterwards::kSignal) ::raise(g_signal);
}

bool Interruption::Came() { return g_signal != 0; }

}  // namespace krofx::command
