// Takes a password from a prompt without echo, a descriptor or the environment, and checks it.

#include "requests/password.h"

#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "output/characters.h"

namespace krofx::command {

namespace {

constexpr char kInterrupt = 3;
constexpr char kTooLong[] = "the password is longer than the 171 characters that OFX takes";

// Switches echo and the signals of keys off, and back on at the end.
class SilentTerminal {
 public:
  explicit SilentTerminal(int terminal) : m_terminal(terminal) {
    m_active = ::tcgetattr(terminal, &m_before) == 0;
    if (!m_active) return;
    termios silent = m_before;
    silent.c_lflag &= ~static_cast<tcflag_t>(ECHO | ISIG);
    m_active = ::tcsetattr(terminal, TCSAFLUSH, &silent) == 0;
  }
  ~SilentTerminal() {
    if (m_active) ::tcsetattr(m_terminal, TCSAFLUSH, &m_before);
  }
  SilentTerminal(const SilentTerminal&) = delete;
  SilentTerminal& operator=(const SilentTerminal&) = delete;

  bool IsActive() const { return m_active; }

 private:
  int m_terminal;
  bool m_active;
  termios m_before{};
};

void Show(int terminal, const char* text) {
  if (::write(terminal, text, std::strlen(text)) < 0) return;
}

}  // namespace

std::string Password::ReadFrom(int descriptor) {
  std::size_t length = 0;
  for (;;) {
    char& next = m_text.bytes[length];
    const ssize_t got = ::read(descriptor, &next, 1);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return std::string("the password cannot be read: ") + std::strerror(errno);
    if (got == 0 || next == '\n') {
      next = '\0';
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
  return fits ? Check() : kTooLong;
}

std::string Password::Ask() {
  const FileDescriptor terminal(::open("/dev/tty", O_RDWR | O_CLOEXEC | O_NOCTTY));
  if (!terminal) {
    return "there is no terminal to ask for the password; use --password-fd or --password-env";
  }
  const SilentTerminal silent(terminal.Get());
  if (!silent.IsActive()) return "the terminal shows what is typed; use --password-fd";
  Show(terminal.Get(), "Password: ");
  std::string problem = ReadFrom(terminal.Get());
  Show(terminal.Get(), "\n");
  if (std::strchr(m_text.bytes, kInterrupt) != nullptr) problem = "interrupted";
  return problem;
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
  if (!Encode()) {
    return "the password has a character that the request's character set, Windows 1252, does not "
           "have";
  }
  return std::strlen(m_text.bytes) > kMaxLength ? kTooLong : "";
}

}  // namespace krofx::command
