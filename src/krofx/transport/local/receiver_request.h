// One exchange by hand: the request is written to SEND.DAT, a person is asked to put a reply into
// RECV.DAT, and that file is read back. A host can be tried out so without a server.

#ifndef KROFX_TRANSPORT_LOCAL_RECEIVER_REQUEST_H_
#define KROFX_TRANSPORT_LOCAL_RECEIVER_REQUEST_H_

#include "krofx/core/export.h"
#include "krofx/core/types.h"
#include "krofx/transport/contract/net_request.h"

class ReceiverAccess;

/// Exchanges through two files in the working folder. The person is not asked here: YesNoMsg says
/// no until a derived class shows the prompt.
///
/// Roots and expected certificates are taken and have no effect. Nothing is logged.
class KROFX_API ReceiverRequest : public KRNetRequest {
 public:
  /// 1.
  u16 AddTrustedRoot(const char* base64Cert, u16 length, s16 rootID) override;
  /// 1.
  u16 AddTrustedRootBER(const char* ber, u16 length, s16 rootID) override;
  /// 1.
  u16 AddExpectedSSLCertID(const char* certID, u16 length) override;
  /// 1.
  u16 AddExpectedSSLCertName(const KRString& name) override;

  /// Looks for RECV.DAT, whatever the URL; always success. When there is no such file the size of
  /// an earlier reply stays.
  KRNetStatus Get(const KRString& url) override;
  /// Writes the content of `body` to SEND.DAT (readable by its owner only when it is new), asks the
  /// person, and on yes gives what Get gives. KRNetStatus_Failed when the file cannot be written or
  /// the answer is no. The body's cursor is moved; the body must live until the next exchange.
  KRNetStatus Send(const KRString& url, KRBuffer* body) override;
  /// Gives the size of RECV.DAT as Get found it; KRNetStatus_NoReplySize, with `size` left alone,
  /// when it found none or an empty one.
  KRNetStatus GetReplySize(u32& size) override;
  /// Writes RECV.DAT at the cursor of `target`. KRNetStatus_ReplyNotLoaded when there is none, it
  /// does not open, or the target's size is not the reply's then, as when it held something before.
  /// The file stays.
  KRNetStatus LoadReply(KRBuffer* target) override;

  /// Says which object made this request.
  virtual void SetAccess(ReceiverAccess* access);

 protected:
  /// Writes the name under which the file `name` is opened into `out`, which has room for 4096
  /// bytes. Here the name as it stands; a derived class may put a folder in front.
  virtual void BuildFileSpec(const char* name, char* out);
  /// Shows `text` and returns nonzero for yes. Here 0: nobody is asked.
  virtual u16 YesNoMsg(const char* text);

  /// The object that made this request, null until SetAccess. Not owned.
  ReceiverAccess* m_access = nullptr;
  /// Where Get expects the reply.
  char m_replyFile[1024] = {};
  /// Bytes of the reply that Get found, 0 for none.
  u32 m_replySize = 0;
  /// What Send was given last. Not owned.
  KRBuffer* m_body = nullptr;
};

#endif  // KROFX_TRANSPORT_LOCAL_RECEIVER_REQUEST_H_
