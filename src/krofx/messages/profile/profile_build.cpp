// Operations of the profile that differ from other aggregates': the list makes objects only in a
// parse, and the versions of a message set keep their order.

#include "krofx/messages/profile/profile.h"
#include "krofx/model/internal/aggregate.h"

using krofx::internal::NoteFailure;

KRParseStatus KRMessageSetList::HandleTagStart(const KRTagDictionaryEntry* const entry) {
  return GetParser() == nullptr ? KRParseStatus_Fatal : KRDataObj::HandleTagStart(entry);
}

KRBuildStatus KRMessageSetProfile::Build(KRBuilder* builder) const {
  const KRBuildStatus status = m_messageSetVersion.Build(builder, KRTag_None);
  if (status != KRBuildStatus_Done) NoteFailure(*builder, *this);
  return status;
}
