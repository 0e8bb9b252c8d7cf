// Certificates of an exchange: the roots that it was given, the chain that the server showed, and
// the way from the one to the other.
//
// libcurl, with its own TLS library, does the handshake and judges the chain. What it does not tell
// is which root the chain ended at. So the chain is built once more here, by libcrypto and over the
// same roots, to find that out.

#ifndef KROFX_TRANSPORT_CURL_INTERNAL_CERTIFICATES_H_
#define KROFX_TRANSPORT_CURL_INTERNAL_CERTIFICATES_H_

#include <curl/curl.h>
#include <openssl/x509.h>
#include <openssl/x509_vfy.h>

#include <memory>

#include "krofx/core/memory.h"
#include "krofx/core/types.h"
#include "krofx/transport/contract/connection_manager.h"

namespace krofx::internal {

/// Frees what libcrypto gave.
struct CryptoDeleter {
  void operator()(BIO* bio) const { BIO_free(bio); }
  void operator()(X509* certificate) const { X509_free(certificate); }
  void operator()(X509_STORE* store) const { X509_STORE_free(store); }
  void operator()(X509_STORE_CTX* context) const { X509_STORE_CTX_free(context); }
  void operator()(STACK_OF(X509) * list) const { sk_X509_pop_free(list, X509_free); }
};

/// Something of libcrypto's, owned.
template <class T>
using CryptoPointer = std::unique_ptr<T, CryptoDeleter>;

/// Certificates, the server's own first, as TLS orders them.
using CertificateList = CryptoPointer<STACK_OF(X509)>;

/// The roots that were added to an exchange, with their IDs.
class AddedRoots {
 public:
  AddedRoots() = default;
  AddedRoots(const AddedRoots&) = delete;
  AddedRoots& operator=(const AddedRoots&) = delete;
  ~AddedRoots();

  /// Adds a root. 0, or a VYNCurlCode.
  u16 Add(const char* der, u32 length, s16 rootID);
  /// Whether there is none.
  bool IsEmpty() const { return m_first == nullptr; }
  /// The roots as PEM text in memory; null when memory is exhausted.
  CryptoPointer<BIO> Pem() const;
  /// A store that trusts the roots and nothing else; null when memory is exhausted.
  CryptoPointer<X509_STORE> Store() const;
  /// The ID of the first root that is this certificate; 0 for none.
  u32 IdOf(const X509* certificate) const;

 private:
  struct Root;
  Root* m_first = nullptr;
};

/// Where roots are that were not added: PEM files, as OpenSSL finds them. Null for none.
struct RootLocation {
  /// A file of certificates.
  const char* file;
  /// A folder of certificates under the hashes of their subjects.
  const char* folder;
};

/// What libcurl kept of the server's certificates; null when it kept none, or memory is exhausted.
CertificateList PresentedCertificates(CURL* easy);

/// What an added root has to do with the chain that a server showed.
enum class ChainCheck {
  /// The chain is valid for a server, now.
  Valid,
  /// Its signatures lead to the root, whatever else may be wrong with it.
  SignaturesOnly,
};

/// The chain from the server's certificate to one of the added roots; null for none.
CertificateList ChainToAddedRoots(const CertificateList& presented, const AddedRoots& roots,
                                  ChainCheck check);

/// The valid chain from the server's certificate to a root in one of the places; null for none.
CertificateList ChainToRootsAt(const CertificateList& presented, const RootLocation& location);

/// A list of certificates as the certificate callback takes it: the other way round, as DER.
class CallbackChain {
 public:
  explicit CallbackChain(const CertificateList& certificates);
  CallbackChain(const CallbackChain&) = delete;
  CallbackChain& operator=(const CallbackChain&) = delete;
  ~CallbackChain();

  /// The first element. Null when memory is exhausted or a certificate has more than 65535 bytes.
  SSLCertificateChain* First() { return m_first; }

 private:
  bool Prepend(X509* certificate);
  void Clear();

  SSLCertificateChain* m_first = nullptr;
};

/// @return whether a certificate names the hosts that it is for in subjectAltName. libcurl falls
/// back
///         on the common name of one that does not, which may be anything.
bool NamesItsServers(const X509* certificate);

/// Empties the thread's queue of libcrypto errors. Whether a handshake failed over a certificate is
/// among them: when a signature does not hold, libcurl's own answer hides that.
bool TakeCertificateRefusal();

}  // namespace krofx::internal

#endif  // KROFX_TRANSPORT_CURL_INTERNAL_CERTIFICATES_H_
