// The parts of a URL that the command looks at.

#ifndef KROFX_COMMAND_BANKS_URL_H_
#define KROFX_COMMAND_BANKS_URL_H_

#include <string>
#include <string_view>

namespace krofx::command {

/// A URL, taken apart by the parser of the transport, so that the host that is looked at is the one
/// that is connected to.
struct Url {
  explicit Url(std::string_view text);

  std::string scheme;  ///< In small letters; empty when there is none.
  std::string rest;    ///< Everything after the colon, or all without a scheme.
  /// Of http and https, without the port. Empty when there is none, and when the URL cannot be
  /// used: because the transport's parser refuses it, or because it has blanks, control characters
  /// or backslashes, or another form of "@" or ":", which programs understand in different ways.
  std::string host;
  bool hasUser = false;  ///< A user or a password is before the host.

  /// @return the URL with its scheme in small letters, which is what the transport knows as secure.
  std::string Text() const { return scheme + ":" + rest; }
  /// The same without what may be secret: user, query and fragment. Where a password may
  /// begin that cannot be distinguished from the host, three stars replace the rest.
  std::string Shown() const;
  /// @return whether the host is this machine.
  bool IsLoopback() const;
};

/// @return whether the text is the address of a proxy that the transport can use, such as
///         http://proxy.example:3128. One without a scheme needs a port.
bool IsProxyAddress(const std::string& text);

/// @return whether the address of a proxy has a password, be it an empty one.
bool HasPassword(const std::string& proxy);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_BANKS_URL_H_
