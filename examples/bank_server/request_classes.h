// The bank's own classes for the parts of a request: each answers itself in ProcessRequest.

#ifndef KROFX_EXAMPLES_BANK_SERVER_REQUEST_CLASSES_H_
#define KROFX_EXAMPLES_BANK_SERVER_REQUEST_CLASSES_H_

#include <krofx/krofx.h>

namespace bank_server {

/// Makes objects of the bank's classes for requests; all others as the library does.
class RequestFactory : public KRDataObjFactory {
 public:
  KRRequest* NewRequest(u16 version) override;
  KRMessageSetRq* NewMessageSetRq(u16 version) override;
  KRTransRq* NewTransRq(u16 version) override;
  KRPinChangeRq* NewPinChangeRq(u16 version) override;
  KRProfileRq* NewProfileRq(u16 version) override;
  KRAccountInfoRq* NewAccountInfoRq(u16 version) override;
  KRBankStatementRq* NewBankStatementRq(u16 version) override;
  KRCCStatementRq* NewCCStatementRq(u16 version) override;
  KRIntraRq* NewIntraRq(u16 version) override;
  KRInvStmtRq* NewInvStmtRq(u16 version) override;
  KRSecListRq* NewSecListRq(u16 version) override;

 private:
  // An object of one of the bank's classes, of a version.
  template <class Own>
  Own* Make(u16 version) {
    Own* made = new Own;
    if (made != nullptr) made->SetMsgSetVersion(version != 0 ? version : GetVersion());
    return made;
  }
};

}  // namespace bank_server

#endif  // KROFX_EXAMPLES_BANK_SERVER_REQUEST_CLASSES_H_
