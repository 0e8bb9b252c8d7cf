// A certificate authority that lives as long as the program, and the certificate that it gives to
// the server. The authority's key is destroyed afterwards; no key is ever written to a file.

#ifndef KROFX_EXAMPLES_BANK_SERVER_CERTIFICATES_H_
#define KROFX_EXAMPLES_BANK_SERVER_CERTIFICATES_H_

#include <openssl/evp.h>
#include <openssl/x509.h>

#include <memory>
#include <string>

namespace bank_server {

/// Frees what OpenSSL made.
template <auto kFree>
struct Freeing {
  template <class Object>
  void operator()(Object* object) const {
    kFree(object);
  }
};
using Key = std::unique_ptr<EVP_PKEY, Freeing<EVP_PKEY_free>>;
using Certificate = std::unique_ptr<X509, Freeing<X509_free>>;

/// The server's certificate with its key, and the authority that issued it.
struct Identity {
  Certificate authority;
  Certificate server;
  Key serverKey;
};

/// What is wrong with the server's certificate, for testing how clients refuse it.
enum class Fault {
  kNone,
  kExpired,      ///< It was valid a week ago.
  kNotYetValid,  ///< It will be valid in a week.
  kOtherHost,    ///< It names another server.
};

/// Makes an authority and a certificate for 127.0.0.1 and localhost, valid for a week unless it has
/// a fault; false when OpenSSL fails.
bool MakeIdentity(Fault fault, Identity& identity);

/// Writes a certificate as PEM; false when the file cannot be written.
bool WritePem(X509* certificate, const std::string& file);
/// Writes a certificate as DER.
bool WriteDer(X509* certificate, const std::string& file);
/// Writes the ID of a certificate, by which a client pins it, in a line.
bool WriteId(X509* certificate, const std::string& file);

}  // namespace bank_server

#endif  // KROFX_EXAMPLES_BANK_SERVER_CERTIFICATES_H_
