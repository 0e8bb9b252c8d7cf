// The contract of one exchange: a buffer goes to a URL, or a URL is fetched, and the reply comes
// back as a size and a buffer.
//
// The base class makes `file:` URLs work without any transport, so that a saved reply reads as
// though it had come over the wire.

#ifndef KROFX_TRANSPORT_CONTRACT_NET_REQUEST_H_
#define KROFX_TRANSPORT_CONTRACT_NET_REQUEST_H_

#include "krofx/core/export.h"
#include "krofx/core/memory.h"
#include "krofx/core/string.h"
#include "krofx/core/types.h"
#include "krofx/transport/contract/net_status.h"

class KRBuffer;

/// Carries out exchanges, one after another. KRNetAccess::NewNetRequest makes one.
///
/// A host sets the request up (roots, expected certificates, timeout), calls Get or one of the
/// sends, which return when the exchange is over, and then asks for GetStatus, GetReplySize,
/// LoadReply and GetHeader. A `u16` result is 1 for success or true, else 0.
class KROFX_API KRNetRequest : public krofx::internal::HeapObject {
 public:
  /// No URL.
  KRNetRequest() = default;
  /// Copies the URL.
  KRNetRequest(const KRNetRequest&) = default;
  /// Copies the URL.
  KRNetRequest& operator=(const KRNetRequest&) = default;

  /// Adds a root that a server's chain may end at, as base64 text of `length` characters. `rootID`
  /// names it from then on; its thousands tell the family of roots.
  virtual u16 AddTrustedRoot(const char* base64Cert, u16 length, s16 rootID) = 0;
  /// As AddTrustedRoot, from `length` bytes of DER.
  virtual u16 AddTrustedRootBER(const char* ber, u16 length, s16 rootID) = 0;
  /// Adds the ID of a certificate that the server may show.
  virtual u16 AddExpectedSSLCertID(const char* certID, u16 length) = 0;
  /// Adds the name of a certificate that the server may show.
  virtual u16 AddExpectedSSLCertName(const KRString& name) = 0;

  /// Adds the root of branding servers, 1000.
  virtual u16 AddNorvikBrandingRoot();
  /// Adds the roots 4001 and then 4000 of secure servers, ending at the first that is refused.
  virtual u16 AddRSAServerRoot();
  /// Adds the root of OFX servers, 2000, and then its issuer, 3000, ending at the first that is
  /// refused.
  virtual u16 AddVeriSignOFXCARoot();
  /// Says whether the server's certificates are checked, 1 or 0. Here 0: there is no such choice.
  virtual u16 SetSSLVerifyCert(u16 verify);

  /// Fetches a URL. Here only `file:` URLs: the URL is stored, no file is touched yet. Any other
  /// gives KRNetStatus_NotFileUrl and nothing is stored; KRNetStatus_NoMemory when the URL cannot
  /// be stored.
  virtual KRNetStatus Get(const KRString& url);
  /// Sends the content of `body`, which stays the caller's, to a URL.
  virtual KRNetStatus Send(const KRString& url, KRBuffer* body) = 0;
  /// As Send, with extra header lines. Here they are ignored.
  virtual KRNetStatus SendPlusHeaders(const KRString& url, KRBuffer* body, char* headers);
  /// As SendPlusHeaders, with a content type. Here it is ignored.
  virtual KRNetStatus SendPlusHeadersContent(const KRString& url, KRBuffer* body, char* headers,
                                             const char* contentType);
  /// Ends a running exchange, from a callback or an event. Here KRNetStatus_AbortNotSupported.
  virtual KRNetStatus Abort();
  /// Gives the size of the reply in bytes. Here that of the file that the stored URL names;
  /// KRNetStatus_NoReplySize, with `size` left alone, without a URL or when the file does not open,
  /// is no regular file, has 4 GiB or more, or has a name of over 255 characters.
  virtual KRNetStatus GetReplySize(u32& size);
  /// Loads the reply into `target`. Here the file replaces what the target held, and the cursor
  /// stays where it was: KRNetStatus_ReplyNotLoaded as for GetReplySize, KRNetStatus_NoMemory
  /// when the target cannot hold the file, else success, however many bytes came.
  virtual KRNetStatus LoadReply(KRBuffer* target);

  /// Says whether reply headers are kept, 1 or 0. Here 0: they are not.
  virtual u16 SetSaveHeaders(u16 save);
  /// Gives the value of a kept header. Here 0.
  virtual u16 GetHeader(KRString& name, KRString& value);
  /// Gives the HTTP status and the transport's own error code. Here 0, and both are left alone.
  virtual u16 GetStatus(u32& httpStatus, u32& transportError) const;
  /// Sets how long an exchange may take, in seconds. Here 0: there is no such limit.
  virtual u16 SetTimeout(s32 seconds);

  /// A request may be deleted through a pointer to this class, with all that its own class holds.
  virtual ~KRNetRequest();

  /// 1 when the URL begins with "file:", in letters of any case.
  static u16 HasFileScheme(const char* url);
  /// Writes the name of the file that a `file:` URL names, in the form with a drive and
  /// backslashes, and returns 1; for any other URL `out` becomes empty and the result is 0. The
  /// character behind the scheme is skipped whatever it is, and a '/' behind that. `out` must have
  /// room for as many characters as the URL has, and must not overlap it.
  static u16 ConvertFileURLToLocalFileName(char* out, const char* url);
  /// Writes the `file:` URL of a name, or the name itself if it is such a URL already; returns 1.
  /// `out` must have room for 8 bytes more than the name has characters, and must not overlap it.
  static u16 ConvertLocalFileNameToFileURL(char* out, const char* name);

 private:
  KRString m_url;
};

#endif  // KROFX_TRANSPORT_CONTRACT_NET_REQUEST_H_
