// Takes a password from a prompt without echo, a descriptor or the environment, and checks it.

#include "banks/password.h"

#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "output/characters.h"
#include "output/safe_text.h"
#include "system/interruption.h"

namespace krofx::command {

namespace {

constexpr char kTooLong[] = "the password is longer than the 171 characters that OFX takes";
constexpr char kControlCharacter[] = "the password has a control character";

// Switches echo off, and back on at the end.
class SilentTerminal {
 public:
  // `when` is TCSAFLUSH to drop what was typed before, and what is left at the end.
  SilentTerminal(int terminal, int when) : m_terminal(terminal), m_when(when) {
    m_active = ::tcgetattr(terminal, &m_before) == 0;
    if (!m_active) return;
    termios silent = m_before;
    silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    m_active = ::tcsetattr(terminal, when, &silent) == 0;
  }
  ~SilentTerminal() {
    if (m_active) ::tcsetattr(m_terminal, m_when, &m_before);
  }
  SilentTerminal(const SilentTerminal&) = delete;
  SilentTerminal& operator=(const SilentTerminal&) = delete;

  bool IsActive() const { return m_active; }

 private:
  int m_terminal;
  int m_when;
  bool m_active;
  termios m_before{};
};

volatile std::sig_atomic_t g_stopped = 0;

// As long as it lives, the key that puts the command into the background is only noted, and signals
// come in WaitForInput alone, so that none is lost between a look at what came and a wait.
class PromptSignals {
 public:
  PromptSignals() {
    sigset_t held;
    ::sigemptyset(&held);
    ::sigaddset(&held, SIGTSTP);
    for (const int signal : Interruption::Signals()) ::sigaddset(&held, signal);
    ::sigprocmask(SIG_BLOCK, &held, &m_mask);
    g_stopped = 0;
    struct sigaction noting {};
    noting.sa_handler = [](int) { g_stopped = 1; };
    ::sigaction(SIGTSTP, &noting, &m_before);
    if (m_before.sa_handler == SIG_IGN) ::sigaction(SIGTSTP, &m_before, nullptr);
  }
  ~PromptSignals() {
    ::sigaction(SIGTSTP, &m_before, nullptr);
    ::sigprocmask(SIG_SETMASK, &m_mask, nullptr);
  }
  PromptSignals(const PromptSignals&) = delete;
  PromptSignals& operator=(const PromptSignals&) = delete;

  // Waits until there is something to read. False when a signal came first.
  bool WaitForInput(int terminal) const {
    pollfd input{terminal, POLLIN, 0};
    while (::ppoll(&input, 1, nullptr, &m_mask) < 0) {
      if (errno != EINTR || Interruption::Came() || HasStopped()) return false;
    }
    return true;
  }
  static bool HasStopped() { return g_stopped != 0; }

 private:
  sigset_t m_mask{};
  struct sigaction m_before {};
};

void Show(int terminal, const std::string& text) {
  if (::write(terminal, text.data(), text.size()) < 0) return;
}

}  // namespace

std::string Password::ReadFrom(int descriptor) {
  // Lines that are pasted for several descriptors come at once and are kept.
  return WipedAfter(::isatty(descriptor) != 0 ? ReadFromTerminal(descriptor, "", TCSANOW)
                                              : ReadLine(descriptor));
}

std::string Password::WipedAfter(std::string problem) {
  if (!problem.empty()) Wipe();
  return problem;
}

std::string Password::ReadLine(int descriptor) {
  std::size_t length = 0;
  for (;;) {
    char& next = m_text.bytes[length];
    const ssize_t got = ::read(descriptor, &next, 1);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return std::string("the password cannot be read: ") + std::strerror(errno);
    if (got == 0 || next == '\n') {
      if (std::memchr(m_text.bytes, '\0', length) != nullptr) return kControlCharacter;
      next = '\0';
      m_ended = got == 0 && length == 0;
      break;
    }
    if (++length > kMaxBytes) return kTooLong;
  }
  if (length > 0 && m_text.bytes[length - 1] == '\r') m_text.bytes[length - 1] = '\0';
  return Check();
}

std::string Password::TakeFromEnvironment(const char* name) {
  char* const value = std::getenv(name);
  if (value == nullptr) return std::string("the environment has no ") + name;
  const std::size_t length = std::strlen(value);
  const bool fits = length <= kMaxBytes;
  if (fits) std::memcpy(m_text.bytes, value, length + 1);
  explicit_bzero(value, length);
  ::unsetenv(name);
  return WipedAfter(fits ? Check() : kTooLong);
}

std::string Password::Ask(const std::string& prompt) {
  const std::string shown = SafeLine(prompt) + ": ";
  const FileDescriptor terminal(::open("/dev/tty", O_RDWR | O_CLOEXEC | O_NOCTTY));
  if (!terminal) {
    return "there is no terminal to ask for the password; use --password-fd or --password-env";
  }
  return WipedAfter(ReadFromTerminal(terminal.Get(), shown, TCSAFLUSH));
}

std::string Password::ReadFromTerminal(int terminal, const std::string& prompt, int when) {
  for (;;) {
    std::string problem;
    {
      // What ends the command, or puts it into the background, first gets the terminal back as it
      // was, so that what is typed next is not taken for the password and is seen.
      const Interruption interruption(Interruption::Afterwards::kUnlessKey);
      {
        const PromptSignals signals;
        const SilentTerminal silent(terminal, when);
        if (!silent.IsActive()) return "the terminal cannot be kept from showing what is typed";
        Show(terminal, prompt);
        if (signals.WaitForInput(terminal)) problem = ReadLine(terminal);
        if (!prompt.empty()) Show(terminal, "\n");
      }
      m_cancelled = Interruption::Came() || m_ended;
      if (Interruption::Came()) return "interrupted";
      if (m_ended) return "no password was typed";
    }
    if (!PromptSignals::HasStopped()) return problem;
    Wipe();
    ::raise(SIGTSTP);  // Returns when the command is in the foreground again.
  }
}

bool Password::WriteTo(int descriptor) const {
  Wiped<kMaxBytes> bytes;
  std::size_t length = 0;
  for (const char* at = m_text.bytes; *at != '\0'; ++at) {
    // A character of the code page has up to three bytes, which fit into the room of a short text.
    std::string one;
    AppendUtf8(one, FromCodePage1252(static_cast<unsigned char>(*at)));
    std::memcpy(bytes.bytes + length, one.data(), one.size());
    length += one.size();
    explicit_bzero(one.data(), one.size());
  }
  return ::write(descriptor, bytes.bytes, length) == static_cast<ssize_t>(length);
}

bool Password::operator==(const Password& other) const {
  return std::strcmp(m_text.bytes, other.m_text.bytes) == 0;
}

// Turns UTF-8 into the code page in its place, which never takes more room.
bool Password::Encode() {
  std::string_view left(m_text.bytes);
  char* at = m_text.bytes;
  while (!left.empty()) {
    char32_t character = 0;
    if (!TakeUtf8(left, character) || !ToCodePage1252(character, *at)) return false;
    ++at;
  }
  *at = '\0';
  return true;
}

std::string Password::Check() {
  if (m_text.bytes[0] == '\0') return "the password is empty";
  if (HasControlCharacter(m_text.bytes)) return kControlCharacter;
  if (!Encode()) {
    return "the password has a character that the request's character set, Windows 1252, does not "
           "have";
  }
  return std::strlen(m_text.bytes) > kMaxLength ? kTooLong : "";
}

}  // namespace krofx::command
