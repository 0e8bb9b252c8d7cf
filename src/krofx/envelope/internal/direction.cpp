// The operations of the factory that each direction uses.

#include "krofx/envelope/internal/direction.h"

#include "krofx/envelope/multi_trans.h"
#include "krofx/envelope/payroll.h"
#include "krofx/model/factory.h"

namespace krofx::internal {

using Request = Direction<Side::kRequest>;
using Response = Direction<Side::kResponse>;

KRTransRq* Request::NewTrans(KRDataObjFactory& factory, KRTagID tag) {
  return tag == KRTag_MULTIINTERTRNRQ ? factory.NewMultiTransRq(0) : factory.NewTransRq(0);
}

KRSyncRq* Request::NewSync(KRDataObjFactory& factory, KRTagID /*tag*/) {
  return factory.NewSyncRq(0);
}

KRSignOnRq* Request::NewSignOn(KRDataObjFactory& factory) { return factory.NewSignOnRq(0); }

KRMessageSetRq* Request::NewMessageSet(KRDataObjFactory& factory) {
  return factory.NewMessageSetRq(0);
}

KRRequest* Request::NewBody(KRDataObjFactory& factory) { return factory.NewRequest(0); }

KRTransRs* Response::NewTrans(KRDataObjFactory& factory, KRTagID tag) {
  return tag == KRTag_MULTIINTERTRNRS ? factory.NewMultiTransRs(0) : factory.NewTransRs(0);
}

KRSyncRs* Response::NewSync(KRDataObjFactory& factory, KRTagID tag) {
  return tag == KRTag_N_PAYROLLUPDATERS ? factory.NewPayrollUpdateRs(0) : factory.NewSyncRs(0);
}

KRSignOnRs* Response::NewSignOn(KRDataObjFactory& factory) { return factory.NewSignOnRs(0); }

KRMessageSetRs* Response::NewMessageSet(KRDataObjFactory& factory) {
  return factory.NewMessageSetRs(0);
}

KRResponse* Response::NewBody(KRDataObjFactory& factory) { return factory.NewResponse(0); }

}  // namespace krofx::internal
