// A password on its way from the user into a request.

#ifndef KROFX_COMMAND_BANKS_PASSWORD_H_
#define KROFX_COMMAND_BANKS_PASSWORD_H_

#include <string>

#include "system/file_descriptor.h"

namespace krofx::command {

/// Holds a password and wipes it at the end. What cannot be used is wiped at once, so that no later
/// request takes it for a password. It is never taken from an argument, since those can be
/// seen by every user of the machine.
class Password {
 public:
  /// The most characters that OFX takes.
  static constexpr std::size_t kMaxLength = 171;
  /// The most bytes that these take in UTF-8.
  static constexpr std::size_t kMaxBytes = 4 * kMaxLength;

  /// Reads the first line of an open file, whose rest is not read. A terminal does not show it.
  /// @return empty, or what went wrong.
  std::string ReadFrom(int descriptor);
  /// Takes the value of an environment variable, which is wiped and removed.
  std::string TakeFromEnvironment(const char* name);
  /// Asks on the terminal, without showing what is typed.
  /// @param prompt such as "Password of ada.w at HARBORFED".
  std::string Ask(const std::string& prompt);
  /// @return whether the user gave up at the prompt.
  bool WasCancelled() const { return m_cancelled; }

  /// Wipes the password.
  void Wipe() { explicit_bzero(m_text.bytes, sizeof m_text.bytes); }

  /// Writes it to an open file, in UTF-8 and without the end of a line.
  /// @return false when it cannot be written.
  bool WriteTo(int descriptor) const;
  bool operator==(const Password& other) const;

  /// @return the password in the character set of requests, Windows 1252; never null.
  const char* Get() const { return m_text.bytes; }

 private:
  std::string WipedAfter(std::string problem);
  std::string ReadLine(int descriptor);
  std::string ReadFromTerminal(int terminal, const std::string& prompt, int when);
  std::string Check();
  bool Encode();

  Wiped<kMaxBytes + 2> m_text;
  bool m_cancelled = false;
  bool m_ended = false;  // There was nothing to read.
};

}  // namespace krofx::command

#endif  // KROFX_COMMAND_BANKS_PASSWORD_H_
