// Reads certificates, builds chains, and turns them into the callback's list.

#include "krofx/transport/curl/internal/certificates.h"

#include <openssl/bio.h>
#include <openssl/err.h>
#include <openssl/pem.h>
#include <openssl/sslerr.h>
#include <openssl/x509v3.h>

#include <climits>
#include <cstring>
#include <utility>

#include "krofx/security/internal/crypto_error_scope.h"
#include "krofx/transport/curl/curl_code.h"

namespace krofx::internal {

struct AddedRoots::Root : HeapObject {
  CryptoPointer<X509> certificate;
  s16 id = 0;
  Root* next = nullptr;
};

AddedRoots::~AddedRoots() {
  while (m_first != nullptr) {
    Root* const root = m_first;
    m_first = root->next;
    delete root;
  }
}

u16 AddedRoots::Add(const char* der, u32 length, s16 rootID) {
  const CryptoErrorScope scope;
  if (der == nullptr || rootID == 0 || length > static_cast<u32>(INT_MAX)) {
    return VYNCurlCode_BadRoot;
  }
  const auto* const start = reinterpret_cast<const unsigned char*>(der);
  const unsigned char* at = start;
  CryptoPointer<X509> certificate(d2i_X509(nullptr, &at, static_cast<long>(length)));
  if (certificate == nullptr || at != start + length) return VYNCurlCode_BadRoot;
  auto* const root = new Root;
  if (root == nullptr) return VYNCurlCode_NoMemory;
  root->certificate = std::move(certificate);
  root->id = rootID;
  // Added at the end, so that a certificate that is added twice keeps its first ID.
  Root** end = &m_first;
  while (*end != nullptr) end = &(*end)->next;
  *end = root;
  return VYNCurlCode_Success;
}

CryptoPointer<BIO> AddedRoots::Pem() const {
  const CryptoErrorScope scope;
  CryptoPointer<BIO> text(BIO_new(BIO_s_mem()));
  for (const Root* root = m_first; root != nullptr && text != nullptr; root = root->next) {
    if (PEM_write_bio_X509(text.get(), root->certificate.get()) != 1) text.reset();
  }
  return text;
}

CryptoPointer<X509_STORE> AddedRoots::Store() const {
  CryptoPointer<X509_STORE> store(X509_STORE_new());
  for (const Root* root = m_first; root != nullptr && store != nullptr; root = root->next) {
    if (X509_STORE_add_cert(store.get(), root->certificate.get()) != 1) store.reset();
  }
  return store;
}

u32 AddedRoots::IdOf(const X509* certificate) const {
  for (const Root* root = m_first; root != nullptr; root = root->next) {
    if (X509_cmp(root->certificate.get(), certificate) == 0) return static_cast<u32>(root->id);
  }
  return 0;
}

CertificateList PresentedCertificates(CURL* easy) {
  const CryptoErrorScope scope;
  // libcurl's records are lines "name:value"; the certificate itself is PEM text under this name.
  static constexpr char kName[] = "Cert:";
  curl_certinfo* info = nullptr;
  if (curl_easy_getinfo(easy, CURLINFO_CERTINFO, &info) != CURLE_OK || info == nullptr) {
    return nullptr;
  }
  CertificateList list(sk_X509_new_null());
  for (int i = 0; i < info->num_of_certs && list != nullptr; ++i) {
    const curl_slist* line = info->certinfo[i];
    while (line != nullptr && std::strncmp(line->data, kName, sizeof kName - 1) != 0) {
      line = line->next;
    }
    CryptoPointer<X509> certificate;
    if (line != nullptr) {
      const CryptoPointer<BIO> text(BIO_new_mem_buf(line->data + sizeof kName - 1, -1));
      if (text != nullptr) {
        certificate.reset(PEM_read_bio_X509(text.get(), nullptr, nullptr, nullptr));
      }
    }
    // In a list with a missing certificate another one would seem to be the server's.
    if (certificate == nullptr || sk_X509_push(list.get(), certificate.get()) == 0) return nullptr;
    (void)certificate.release();
  }
  if (list != nullptr && sk_X509_num(list.get()) == 0) list.reset();
  return list;
}

namespace {

CertificateList BuildChain(const CertificateList& presented, X509_STORE* store, ChainCheck check) {
  const CryptoPointer<X509_STORE_CTX> context(X509_STORE_CTX_new());
  if (context == nullptr || presented == nullptr || store == nullptr) return nullptr;
  if (X509_STORE_CTX_init(context.get(), store, sk_X509_value(presented.get(), 0),
                          presented.get()) != 1) {
    return nullptr;
  }
  // As in libcurl: any trusted certificate may end a chain, not only a self-signed one.
  X509_STORE_CTX_set_flags(context.get(), X509_V_FLAG_PARTIAL_CHAIN | X509_V_FLAG_TRUSTED_FIRST);
  if (check == ChainCheck::Valid) {
    if (X509_STORE_CTX_set_default(context.get(), "ssl_server") != 1) return nullptr;
  } else {
    X509_STORE_CTX_set_flags(context.get(), X509_V_FLAG_NO_CHECK_TIME);
  }
  if (X509_verify_cert(context.get()) != 1) return nullptr;
  return CertificateList(X509_STORE_CTX_get1_chain(context.get()));
}

}  // namespace

CertificateList ChainToAddedRoots(const CertificateList& presented, const AddedRoots& roots,
                                  ChainCheck check) {
  const CryptoErrorScope scope;
  const CryptoPointer<X509_STORE> store = roots.Store();
  return BuildChain(presented, store.get(), check);
}

CertificateList ChainToRootsAt(const CertificateList& presented, const RootLocation& location) {
  const CryptoErrorScope scope;
  const CryptoPointer<X509_STORE> store(X509_STORE_new());
  if (store == nullptr) return nullptr;
  // The folder first: only the certificates that are needed are read from it, and usually it has
  // the same ones as the file.
  CertificateList chain;
  if (location.folder != nullptr && X509_STORE_load_path(store.get(), location.folder) == 1) {
    chain = BuildChain(presented, store.get(), ChainCheck::Valid);
  }
  if (chain == nullptr && location.file != nullptr &&
      X509_STORE_load_file(store.get(), location.file) == 1) {
    chain = BuildChain(presented, store.get(), ChainCheck::Valid);
  }
  return chain;
}

CallbackChain::CallbackChain(const CertificateList& certificates) {
  const int count = certificates == nullptr ? 0 : sk_X509_num(certificates.get());
  for (int i = 0; i < count; ++i) {
    if (!Prepend(sk_X509_value(certificates.get(), i))) {
      Clear();
      return;
    }
  }
}

CallbackChain::~CallbackChain() { Clear(); }

bool CallbackChain::Prepend(X509* certificate) {
  const int length = i2d_X509(certificate, nullptr);
  if (length <= 0 || length > UINT16_MAX) return false;
  // The bytes are in the same block, after the element.
  auto* const element = static_cast<SSLCertificateChain*>(
      Allocate(sizeof(SSLCertificateChain) + static_cast<std::size_t>(length)));
  if (element == nullptr) return false;
  auto* const der = reinterpret_cast<unsigned char*>(element + 1);
  unsigned char* at = der;
  i2d_X509(certificate, &at);
  *element = SSLCertificateChain{m_first, static_cast<u16>(length), reinterpret_cast<char*>(der)};
  m_first = element;
  return true;
}

void CallbackChain::Clear() {
  while (m_first != nullptr) {
    SSLCertificateChain* const element = m_first;
    m_first = element->next;
    Free(element);
  }
}

bool NamesItsServers(const X509* certificate) {
  const CryptoErrorScope scope;
  auto* const names = static_cast<GENERAL_NAMES*>(
      X509_get_ext_d2i(certificate, NID_subject_alt_name, nullptr, nullptr));
  bool named = false;
  for (int i = 0; i < sk_GENERAL_NAME_num(names); ++i) {
    const int kind = sk_GENERAL_NAME_value(names, i)->type;
    named = named || kind == GEN_DNS || kind == GEN_IPADD;
  }
  GENERAL_NAMES_free(names);
  return named;
}

bool TakeCertificateRefusal() {
  bool refused = false;
  while (const unsigned long error = ERR_get_error()) {
    if (ERR_GET_LIB(error) == ERR_LIB_SSL &&
        ERR_GET_REASON(error) == SSL_R_CERTIFICATE_VERIFY_FAILED) {
      refused = true;
    }
  }
  return refused;
}

}  // namespace krofx::internal
