// One exchange by hand: the request is written to SEND.DAT, a person is asked to put a reply into
// RECV.DAT, and that file is read back. This way a host can be tried without a server.

#ifndef KROFX_TRANSPORT_LOCAL_RECEIVER_REQUEST_H_
#define KROFX_TRANSPORT_LOCAL_RECEIVER_REQUEST_H_

#include "krofx/core/export.h"
#include "krofx/core/types.h"
#include "krofx/transport/contract/net_request.h"

class ReceiverAccess;

/// Exchanges through two files in the working folder. This class does not ask the person: YesNoMsg
/// answers no unless a derived class overrides it to show the prompt.
///
/// Roots and expected certificates are accepted but have no effect. Nothing is logged.
class KROFX_API ReceiverRequest : public KRNetRequest {
 public:
  /// @return 1.
  u16 AddTrustedRoot(const char* base64Cert, u16 length, s16 rootID) override;
  /// @return 1.
  u16 AddTrustedRootBER(const char* ber, u16 length, s16 rootID) override;
  /// @return 1.
  u16 AddExpectedSSLCertID(const char* certID, u16 length) override;
  /// @return 1.
  u16 AddExpectedSSLCertName(const KRString& name) override;

  /// Looks for RECV.DAT, whatever the URL is. If there is no such file the size of an earlier reply
  /// stays.
  /// @return KRNetStatus_Success.
  KRNetStatus Get(const KRString& url) override;
  /// Writes the content of `body` to SEND.DAT (a new file, readable by its owner only) and asks the
  /// person. The body's cursor moves; the body must live until the next exchange.
  /// @return as Get, if the answer is yes; KRNetStatus_Failed when the file cannot be written or
  ///         the answer is no.
  KRNetStatus Send(const KRString& url, KRBuffer* body) override;
  /// Gets the size of RECV.DAT as Get found it.
  /// @return KRNetStatus_Success; KRNetStatus_NoReplySize, with `size` unchanged, when Get found no
  ///         file or an empty one.
  KRNetStatus GetReplySize(u32& size) override;
  /// Writes RECV.DAT at the cursor of `target`. The file stays.
  /// @return KRNetStatus_Success; KRNetStatus_ReplyNotLoaded when there is no file, it does not
  ///         open, or the target's size is then not the reply's, for example because it was not
  ///         empty.
  KRNetStatus LoadReply(KRBuffer* target) override;

  /// Sets the object that made this request.
  virtual void SetAccess(ReceiverAccess* access);

 protected:
  /// Writes the name under which the file `name` is opened into `out`, which has room for 4096
  /// bytes. In this class it is `name` itself; a derived class may put a folder before it.
  virtual void BuildFileSpec(const char* name, char* out);
  /// Shows `text` to the person.
  /// @return nonzero for yes; in this class 0, without asking.
  virtual u16 YesNoMsg(const char* text);

  /// The object that made this request, null until SetAccess. Not owned.
  ReceiverAccess* m_access = nullptr;
  /// Where Get expects the reply.
  char m_replyFile[1024] = {};
  /// Bytes of the reply that Get found, 0 for none.
  u32 m_replySize = 0;
  /// The body of the last Send. Not owned.
  KRBuffer* m_body = nullptr;
};

#endif  // KROFX_TRANSPORT_LOCAL_RECEIVER_REQUEST_H_
