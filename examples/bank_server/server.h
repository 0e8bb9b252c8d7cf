// The bank behind HTTP: one path, one method, one answer for each connection.
//
// POST /ofx takes an OFX request of at most 1 MiB and gives the OFX answer, with status 200 also
// when the bank refuses what is asked. The content type of a request is not looked at, as long as
// its body is OFX. Other requests get
//   400  the body is no OFX request with a sign-on, or it breaks off
//   404  another path
//   405  another method
//   413  a longer body
//   415  a form (multipart/form-data), which is no body but parts
//   500  no answer could be made

#ifndef KROFX_EXAMPLES_BANK_SERVER_SERVER_H_
#define KROFX_EXAMPLES_BANK_SERVER_SERVER_H_

#include <cstddef>
#include <memory>
#include <string>

#include "bank.h"
#include "certificates.h"

namespace bank_server {

/// What is asked on the command line.
struct Options {
  int port = 0;  ///< 0 for a free one.
  bool plain = false;
  std::string authorityPem;  ///< Where the authority's certificate goes; empty for nowhere.
  std::string authorityDer;
  Fault fault = Fault::kNone;  ///< Of the server's certificate.
  std::size_t requests = 0;    ///< After how many requests to end; 0 for never.
};

/// Serves until the process gets SIGTERM or SIGINT, or enough requests were answered. Prints the
/// address on standard output once it listens, and a line for each request on standard error.
/// @return what the process ends with.
int Serve(Bank& bank, const Options& options);

}  // namespace bank_server

#endif  // KROFX_EXAMPLES_BANK_SERVER_SERVER_H_
