// An OFX server for testing clients: an invented bank on this machine's loopback address.
//
//   bank_server [--port N] [--http] [--ca-file FILE] [--ca-der FILE] [--cert-file FILE]
//               [--id-file FILE] [--profile FILE] [--fault KIND] [--delay SECONDS] [--cut BYTES]
//               [--status N] [--once | --requests N]
//
// At its start it makes a certificate for itself, and prints `listening on
// https://127.0.0.1:PORT/ofx`. A client has to trust the authority's certificate, which --ca-file
// writes as PEM and --ca-der as DER, and pins the server by the ID that --id-file writes. With
// --fault the server's certificate is one that no client should accept; with --delay, --cut and
// --status the server is slow, breaks its answers off, or answers with an error of HTTP; with
// --profile it gives the profile of a file, which may change meanwhile, in place of its own. The
// server answers requests of the user ada.w with the password not-a-real-password, whose accounts
// are in bank_data.cpp, in both versions of the message sets: sign-on, profile, list of accounts,
// bank, card and investment statements, descriptions of securities, another password, and transfers
// between own accounts, which change balances until the program ends, and their synchronisation.
// Statements have the transactions from the
// first to the last day that a request names, both included; times and zones are ignored.
//
// The files: main.cpp reads the command line; server.cpp speaks HTTP; certificates.cpp makes the
// certificates; answer.cpp turns a request's text into the answer's; request_classes.cpp defines
// how each part of a request is answered; statement_, investment_, profile_ and sync_answers.cpp
// make the contents of answers; bank.cpp and bank_data.cpp are the bank.

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "server.h"

namespace {

constexpr char kUsage[] =
    "usage: bank_server [--port N] [--http] [--ca-file FILE] [--ca-der FILE]\n"
    "                   [--cert-file FILE] [--id-file FILE] [--fault KIND] [--delay SECONDS]\n"
    "                   [--cut BYTES] [--status N] [--profile FILE] [--once | --requests N]\n"
    "  --port N        listen on port N of 127.0.0.1 (default: a free one)\n"
    "  --http          speak plain HTTP\n"
    "  --ca-file FILE  write the certificate of the authority as PEM\n"
    "  --ca-der FILE   write it as DER\n"
    "  --fault KIND    show a certificate that is expired, not-yet-valid, or for an other-host\n"
    "  --cert-file FILE  write the server's own certificate as PEM\n"
    "  --id-file FILE  write its ID, by which a client pins it\n"
    "  --profile FILE  give the profile in this OFX response, if there is such a file\n"
    "  --delay SECONDS wait before each answer\n"
    "  --cut BYTES     break each answer off after so many bytes\n"
    "  --status N      answer with the HTTP status N, from 400 to 599, and nothing else\n"
    "  --once          end after one request\n"
    "  --requests N    end after N requests\n";

// A number from 1 to `max`.
bool ReadNumber(const char* text, unsigned long max, unsigned long& number) {
  char* end = nullptr;
  number = std::strtoul(text, &end, 10);
  return *text >= '0' && *text <= '9' && *end == '\0' && number >= 1 && number <= max;
}

bool ReadFault(const char* text, bank_server::Fault& fault) {
  using bank_server::Fault;
  constexpr struct {
    const char* name;
    Fault fault;
  } kFaults[] = {{"expired", Fault::kExpired},
                 {"not-yet-valid", Fault::kNotYetValid},
                 {"other-host", Fault::kOtherHost}};
  for (const auto& known : kFaults) {
    if (std::strcmp(text, known.name) != 0) continue;
    fault = known.fault;
    return true;
  }
  return false;
}

// Where the value of an option that names a file goes; null for any other option.
std::string* FileOption(const char* name, bank_server::Options& options) {
  if (std::strcmp(name, "--ca-file") == 0) return &options.authorityPem;
  if (std::strcmp(name, "--ca-der") == 0) return &options.authorityDer;
  if (std::strcmp(name, "--cert-file") == 0) return &options.serverPem;
  if (std::strcmp(name, "--id-file") == 0) return &options.serverId;
  if (std::strcmp(name, "--profile") == 0) return &options.profile;
  return nullptr;
}

bool ReadOptions(int count, char** arguments, bank_server::Options& options) {
  for (int index = 1; index < count; ++index) {
    const char* const name = arguments[index];
    if (std::strcmp(name, "--http") == 0) {
      options.plain = true;
      continue;
    }
    if (std::strcmp(name, "--once") == 0) {
      options.requests = 1;
      continue;
    }
    if (++index == count) return false;
    const char* const value = arguments[index];
    unsigned long number = 0;
    if (std::string* const file = FileOption(name, options)) {
      *file = value;
    } else if (std::strcmp(name, "--fault") == 0 && ReadFault(value, options.fault)) {
    } else if (std::strcmp(name, "--port") == 0 && ReadNumber(value, 65535, number)) {
      options.port = static_cast<int>(number);
    } else if (std::strcmp(name, "--requests") == 0 && ReadNumber(value, 1000000000, number)) {
      options.requests = number;
    } else if (std::strcmp(name, "--delay") == 0 && ReadNumber(value, 3600, number)) {
      options.delay = std::chrono::seconds(number);
    } else if (std::strcmp(name, "--cut") == 0 && ReadNumber(value, 1000000000, number)) {
      options.cut = number;
    } else if (std::strcmp(name, "--status") == 0 && ReadNumber(value, 599, number) &&
               number >= 400) {
      options.status = static_cast<int>(number);
    } else {
      return false;
    }
  }
  return true;
}

}  // namespace

int main(int count, char** arguments) {
  if (count == 2 && std::strcmp(arguments[1], "--help") == 0) {
    std::fputs(kUsage, stdout);
    return 0;
  }
  bank_server::Options options;
  if (!ReadOptions(count, arguments, options)) {
    std::fputs(kUsage, stderr);
    return 64;
  }
  bank_server::Bank bank;
  return bank_server::Serve(bank, options);
}
