// Transfers by tag: the class that belongs to the tag of a request or a response.

#include "krofx/messages/banking/transfers.h"
#include "krofx/model/factory.h"

KRTransferRq* KRTransferRq::NewTransferRq(KRTagID tag) {
  KRDataObjFactory* factory = GetFactory();
  if (factory == nullptr) return nullptr;
  if (tag == KRTag_INTRARQ) return factory->NewIntraRq(0);
  if (tag == KRTag_INTERRQ) return factory->NewInterRq(0);
  return nullptr;
}

KRTransferRs* KRTransferRs::NewTransferRs(KRTagID tag) {
  KRDataObjFactory* factory = GetFactory();
  if (factory == nullptr) return nullptr;
  if (tag == KRTag_INTRARS) return factory->NewIntraRs(0);
  if (tag == KRTag_INTERRS) return factory->NewInterRs(0);
  return nullptr;
}
