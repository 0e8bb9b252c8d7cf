// Certificates in files of the forms in which they are handed around.

#ifndef KROFX_COMMAND_INPUT_CERTIFICATE_FILE_H_
#define KROFX_COMMAND_INPUT_CERTIFICATE_FILE_H_

#include <string>
#include <vector>

namespace krofx::command {

/// Reads all certificates of a file: blocks of PEM, among which other blocks may be, or the
/// base64 text or the DER bytes of one certificate. "-" is standard input.
/// @param problem takes what went wrong.
/// @return the DER bytes of each; none when something went wrong.
std::vector<std::string> ReadCertificates(const std::string& name, std::string& problem);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_INPUT_CERTIFICATE_FILE_H_
