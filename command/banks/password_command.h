// A password from a program that the user named, such as a manager of passwords.

#ifndef KROFX_COMMAND_BANKS_PASSWORD_COMMAND_H_
#define KROFX_COMMAND_BANKS_PASSWORD_COMMAND_H_

#include <string>

namespace krofx::command {

class Password;

/// Runs a command of the shell, and takes the first line that it prints. What it writes on standard
/// error is shown as it is; the line is not.
/// @return empty, or what went wrong.
std::string ReadFromCommand(const std::string& command, Password& password);

/// Takes the password of a bank from the keyring of the desktop, by libsecret's command
/// secret-tool.
/// @return whether it is there.
bool ReadFromKeyring(const std::string& bank, Password& password);

/// Has secret-tool ask for the password of a bank on the terminal, and keep it in the keyring.
/// @return empty, or what went wrong.
std::string StoreInKeyring(const std::string& bank);

/// Keeps a password of a bank in the keyring, in the place of the one there.
/// @return empty, or what went wrong.
std::string StoreInKeyring(const std::string& bank, const Password& password);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_BANKS_PASSWORD_COMMAND_H_
