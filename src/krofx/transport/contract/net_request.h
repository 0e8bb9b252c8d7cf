// The interface of one exchange: it sends a buffer to a URL, or fetches a URL, and gives the reply
// as a size and a buffer.
//
// The base class supports `file:` URLs without any transport, so that a saved reply can be read
// like one from a server.

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
/// A host sets up the request (roots, expected certificates, timeout) and calls Get or one of the
/// sends, which return when the exchange is over. Then it calls GetStatus, GetReplySize, LoadReply
/// and GetHeader. A `u16` result is 1 for success or true, else 0.
class KROFX_API KRNetRequest : public krofx::internal::HeapObject {
 public:
  /// No URL.
  KRNetRequest() = default;
  /// Copies the URL.
  KRNetRequest(const KRNetRequest&) = default;
  /// Copies the URL.
  KRNetRequest& operator=(const KRNetRequest&) = default;

  /// Adds a root that a server's chain may end at, as base64 text of `length` characters. `rootID`
  /// identifies the root; its thousands digit is the group of the root.
  virtual u16 AddTrustedRoot(const char* base64Cert, u16 length, s16 rootID) = 0;
  /// As AddTrustedRoot, from `length` bytes of DER.
  virtual u16 AddTrustedRootBER(const char* ber, u16 length, s16 rootID) = 0;
  /// Adds the ID of a certificate that the server may show.
  virtual u16 AddExpectedSSLCertID(const char* certID, u16 length) = 0;
  /// Adds the name of a certificate that the server may show.
  virtual u16 AddExpectedSSLCertName(const KRString& name) = 0;

  /// Adds the root of branding servers, 1000.
  virtual u16 AddNorvikBrandingRoot();
  /// Adds the roots of secure servers, 4001 and then 4000; stops at the first that is refused.
  virtual u16 AddRSAServerRoot();
  /// Adds the root of OFX servers, 2000, and then its issuer, 3000; stops at the first that is
  /// refused.
  virtual u16 AddVeriSignOFXCARoot();
  /// Sets whether the server's certificates are checked, 1 or 0.
  /// @return in this class 0: the choice is not supported.
  virtual u16 SetSSLVerifyCert(u16 verify);

  /// Fetches a URL. This class supports only `file:` URLs: it stores the URL and does not open the
  /// file yet.
  /// @return in this class KRNetStatus_Success; KRNetStatus_NotFileUrl, with nothing stored, for
  ///         any other URL; KRNetStatus_NoMemory when the URL cannot be stored.
  virtual KRNetStatus Get(const KRString& url);
  /// Sends the content of `body`, which stays the caller's, to a URL.
  virtual KRNetStatus Send(const KRString& url, KRBuffer* body) = 0;
  /// As Send, with extra header lines, which this class ignores.
  virtual KRNetStatus SendPlusHeaders(const KRString& url, KRBuffer* body, char* headers);
  /// As SendPlusHeaders, with a content type, which this class ignores.
  virtual KRNetStatus SendPlusHeadersContent(const KRString& url, KRBuffer* body, char* headers,
                                             const char* contentType);
  /// Ends a running exchange, from a callback or an event.
  /// @return in this class KRNetStatus_AbortNotSupported.
  virtual KRNetStatus Abort();
  /// Gets the size of the reply in bytes, in this class that of the file that the stored URL names.
  /// @return KRNetStatus_Success; KRNetStatus_NoReplySize, with `size` unchanged, when there is no
  ///         URL, or when the file does not open, is not a regular file, has 4 GiB or more, or has
  ///         a name of over 255 characters.
  virtual KRNetStatus GetReplySize(u32& size);
  /// Loads the reply into `target`. In this class the file replaces what the target held, and the
  /// cursor does not move.
  /// @return KRNetStatus_ReplyNotLoaded where GetReplySize fails; KRNetStatus_NoMemory when the
  ///         target cannot hold the file; else KRNetStatus_Success, however many bytes were read.
  virtual KRNetStatus LoadReply(KRBuffer* target);

  /// Sets whether reply headers are kept, 1 or 0.
  /// @return in this class 0: they are not kept.
  virtual u16 SetSaveHeaders(u16 save);
  /// Gets the value of a kept header.
  /// @return 1 when there is one; in this class 0.
  virtual u16 GetHeader(KRString& name, KRString& value);
  /// Gets the HTTP status and the transport's own error code.
  /// @return 1 when they are known; in this class 0, with both unchanged.
  virtual u16 GetStatus(u32& httpStatus, u32& transportError) const;
  /// Sets how long an exchange may take, in seconds.
  /// @return in this class 0: there is no such limit.
  virtual u16 SetTimeout(s32 seconds);

  /// A request may be deleted through a pointer to this class.
  virtual ~KRNetRequest();

  /// @return 1 when the URL begins with "file:", in letters of any case.
  static u16 HasFileScheme(const char* url);
  /// Writes the name of the file that a `file:` URL names, in the form with a drive and
  /// backslashes. The character after the scheme is skipped, whatever it is, and so is a '/' after
  /// that. `out` must have room for as many characters as the URL has, and must not overlap it.
  /// @return 1; 0, with `out` empty, for any other URL.
  static u16 ConvertFileURLToLocalFileName(char* out, const char* url);
  /// Writes the `file:` URL of a name, or the name itself if it is already such a URL. `out` must
  /// have room for 8 bytes more than the name has characters, and must not overlap it.
  /// @return 1.
  static u16 ConvertLocalFileNameToFileURL(char* out, const char* name);

 private:
  KRString m_url;
};

#endif  // KROFX_TRANSPORT_CONTRACT_NET_REQUEST_H_
