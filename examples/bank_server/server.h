// The bank's HTTP server: one path, one method, one answer for each connection.
//
// POST /ofx accepts an OFX request of at most 1 MiB and returns the OFX answer, with status 200
// even if the bank refuses the request. The content type is ignored if the body is OFX. Other
// requests get
//   400  the body is not an OFX request with a sign-on, or it is cut off
//   404  another path
//   405  another method
//   413  a longer body
//   415  a form (multipart/form-data)
//   500  the answer could not be made
//
// With options it is slow, breaks an answer off, or answers with another status: see Options.

#ifndef KROFX_EXAMPLES_BANK_SERVER_SERVER_H_
#define KROFX_EXAMPLES_BANK_SERVER_SERVER_H_

#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>

#include "bank.h"
#include "certificates.h"

namespace bank_server {

/// The options of the command line.
struct Options {
  int port = 0;  ///< 0 for a free one.
  bool plain = false;
  std::string authorityPem;  ///< The file for the authority's certificate; empty for none.
  std::string authorityDer;
  std::string serverPem;  ///< The file for the server's own certificate, and the one for its ID.
  std::string serverId;
  std::string profile;                 ///< The file of the profile, read for each request.
  Fault fault = Fault::kNone;          ///< The fault of the server's certificate.
  std::size_t requests = 0;            ///< After how many requests to end; 0 for never.
  std::chrono::milliseconds delay{0};  ///< Before each answer.
  std::optional<std::size_t> cut;      ///< After how many bytes an answer breaks off.
  int status = 200;                    ///< HTTP status of answers; other than 200 without OFX.
};

/// Serves until the process gets SIGTERM or SIGINT, or enough requests were answered. Prints the
/// address on standard output when it listens, and a line for each request on standard error.
/// @return the exit status of the process.
int Serve(Bank& bank, const Options& options);

}  // namespace bank_server

#endif  // KROFX_EXAMPLES_BANK_SERVER_SERVER_H_
