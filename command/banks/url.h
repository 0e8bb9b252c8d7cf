// The parts of a URL that the command looks at.

#ifndef KROFX_COMMAND_BANKS_URL_H_
#define KROFX_COMMAND_BANKS_URL_H_

#include <string>
#include <string_view>

namespace krofx::command {

/// A URL, taken apart.
struct Url {
  explicit Url(std::string_view text);

  std::string scheme;  ///< In small letters; empty when there is none.
  std::string rest;    ///< Everything after the colon, or all without a scheme.
  std::string user;    ///< What is before the host, with its "@".
  std::string host;    ///< Without the port.

  /// @return the URL with its scheme in small letters, which is what the transport knows as secure.
  std::string Text() const { return scheme + ":" + rest; }
  /// The same without what may be secret: user, query, fragment, and what could be a password.
  std::string Shown() const;
  /// @return whether the host is this machine.
  bool IsLoopback() const;
};

}  // namespace krofx::command

#endif  // KROFX_COMMAND_BANKS_URL_H_
