// Writes the response to a transfer in two halves, between which an interbank transfer writes its
// reference number.

#include "krofx/build/builder.h"
#include "krofx/messages/banking/transfers.h"
#include "krofx/model/internal/aggregate.h"

using krofx::internal::BuildRowsBetween;

KRBuildStatus KRTransferRs::BuildFirstHalf(KRBuilder* builder) const {
  return BuildRowsBetween(*this, *GetTable(), KRTag_CURDEF, KRTag_DTPOSTED, *builder);
}

KRBuildStatus KRTransferRs::BuildSecondHalf(KRBuilder* builder) const {
  return BuildRowsBetween(*this, *GetTable(), KRTag_RECSRVRTID, KRTag_XFERPRCSTS, *builder);
}

KRBuildStatus KRTransferRs::Build(KRBuilder* builder) const {
  const KRBuildStatus status = BuildFirstHalf(builder);
  return status != KRBuildStatus_Done ? status : BuildSecondHalf(builder);
}

KRBuildStatus KRInterRs::Build(KRBuilder* builder) const {
  KRBuildStatus status = BuildFirstHalf(builder);
  if (status == KRBuildStatus_Done) {
    status = BuildRowsBetween(*this, *GetTable(), KRTag_REFNUM, KRTag_REFNUM, *builder);
  }
  return status != KRBuildStatus_Done ? status : BuildSecondHalf(builder);
}
