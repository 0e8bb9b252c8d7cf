// Operations of the payroll sign-on that differ from other aggregates': for two texts, the tag that
// makes them present is not the tag under which they are written.

#include "krofx/build/builder.h"
#include "krofx/model/internal/aggregate.h"
#include "krofx/payroll/sign_on.h"

using krofx::internal::BuildRowsBetween;
using krofx::internal::NoteFailure;

KRBuildStatus PayrollSignOnRq::Build(KRBuilder* builder) const {
  KRBuildStatus status =
      BuildRowsBetween(*this, *GetTable(), KRTag_DTCLIENT, KRTag_APPVER, *builder);
  if (status == KRBuildStatus_Done && ValidateTag(KRTag_N_PAYROLL) != 0) {
    status = builder->AddTagKRString(KRTag_APPVER, m_appVerString);
  }
  if (status == KRBuildStatus_Done && ValidateTag(KRTag_N_ONSERVICE) != 0) {
    status = builder->AddTagKRString(KRTag_APPID, m_appIdString);
  }
  if (status != KRBuildStatus_Done) NoteFailure(*builder, *this);
  return status;
}

KRParseStatus PayrollSignOnRq::HandleTagElement(const KRTagDictionaryEntry* const entry,
                                                const KRString& value) {
  switch (entry->tagID) {
    case KRTag_APPVER:
      SetAppVerString(value);
      return KRParseStatus_Accepted;
    case KRTag_APPID:
      SetAppIdString(value);
      return KRParseStatus_Accepted;
    case KRTag_N_PAYROLL:
    case KRTag_N_ONSERVICE:
      return KRParseStatus_Invalid;
    default:
      return KRSignOnRq::HandleTagElement(entry, value);
  }
}

u16 PayrollSignOnRq::SetMsgSetVersion(u16) { return KRSignOnRq::SetMsgSetVersion(1); }
