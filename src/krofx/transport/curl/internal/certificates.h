// Certificates of an exchange: the roots that were added to it, the chain that the server showed,
// and the path from the chain to a root.
//
// libcurl, with its own TLS library, does the handshake and verifies the chain, but it does not
// report which root the chain ended at. To find that out, the chain is built again here, by
// libcrypto with the same roots.

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

/// Frees objects of libcrypto.
struct CryptoDeleter {
  void operator()(BIO* bio) const { BIO_free(bio); }
  void operator()(X509* certificate) const { X509_free(certificate); }
  void operator()(X509_STORE* store) const { X509_STORE_free(store); }
  void operator()(X509_STORE_CTX* context) const { X509_STORE_CTX_free(context); }
  void operator()(STACK_OF(X509) * list) const { sk_X509_pop_free(list, X509_free); }
};

/// An owned object of libcrypto.
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

  /// Adds a root.
  /// @return 0, or a VYNCurlCode.
  u16 Add(const char* der, u32 length, s16 rootID);
  /// @return whether there are no roots.
  bool IsEmpty() const { return m_first == nullptr; }
  /// @return the roots as PEM text in memory; null when memory is exhausted.
  CryptoPointer<BIO> Pem() const;
  /// @return a store that trusts only these roots; null when memory is exhausted.
  CryptoPointer<X509_STORE> Store() const;
  /// @return the ID of the first root that is this certificate; 0 for none.
  u32 IdOf(const X509* certificate) const;

 private:
  struct Root;
  Root* m_first = nullptr;
};

/// Where the roots are that were not added: PEM files in OpenSSL's layout. Null for none.
struct RootLocation {
  /// A file of certificates.
  const char* file;
  /// A folder of certificates named by the hashes of their subjects.
  const char* folder;
};

/// @return the server's certificates as libcurl kept them; null when it kept none, or memory is
///         exhausted.
CertificateList PresentedCertificates(CURL* easy);

/// How a chain that a server showed is checked against an added root.
enum class ChainCheck {
  /// The chain is valid for a server, now.
  Valid,
  /// Its signatures lead to the root; nothing else is checked.
  SignaturesOnly,
};

/// @return the chain from the server's certificate to one of the added roots; null for none.
CertificateList ChainToAddedRoots(const CertificateList& presented, const AddedRoots& roots,
                                  ChainCheck check);

/// @return the valid chain from the server's certificate to a root of one of the places; null for
///         none.
CertificateList ChainToRootsAt(const CertificateList& presented, const RootLocation& location);

/// A list of certificates in the form for the certificate callback: in reverse order, as DER.
class CallbackChain {
 public:
  explicit CallbackChain(const CertificateList& certificates);
  CallbackChain(const CallbackChain&) = delete;
  CallbackChain& operator=(const CallbackChain&) = delete;
  ~CallbackChain();

  /// @return the first element; null when memory is exhausted or a certificate has more than 65535
  ///         bytes.
  SSLCertificateChain* First() { return m_first; }

 private:
  bool Prepend(X509* certificate);
  void Clear();

  SSLCertificateChain* m_first = nullptr;
};

/// @return whether a certificate names the hosts that it is for in subjectAltName. libcurl falls
///         back on the common name of one that does not, which may be anything.
bool NamesItsServers(const X509* certificate);

/// Empties the thread's queue of libcrypto errors.
/// @return whether one of them says that a handshake failed because of a certificate. For a wrong
///         signature libcurl's own result does not show this.
bool TakeCertificateRefusal();

}  // namespace krofx::internal

#endif  // KROFX_TRANSPORT_CURL_INTERNAL_CERTIFICATES_H_
