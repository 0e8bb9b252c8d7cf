// The synchronisation wrappers: what depends on the wrapper's type.

#include "krofx/envelope/envelope.h"
#include "krofx/envelope/internal/missing_tags.h"
#include "krofx/envelope/internal/routing.h"
#include "krofx/messages/banking/accounts.h"
#include "krofx/model/internal/aggregate.h"

using krofx::internal::ChildSlot;
using krofx::internal::CopyAggregate;
using krofx::internal::FindSync;
using krofx::internal::MissingTags;
using krofx::internal::Side;
using krofx::internal::SyncOfPayload;
using krofx::internal::SyncRoute;
using krofx::internal::TypeOf;

namespace {

const SyncRoute* RouteOf(Side side, const KRDataObj& sync) { return FindSync(side, TypeOf(sync)); }

u16 ValidTagsOf(Side side, const KRDataObj& sync, KRArrayOfTags& tags) {
  const SyncRoute* route = RouteOf(side, sync);
  tags = route == nullptr ? KRArrayOfTags() : route->valid;
  return 1;
}

// Adds what is missing in a wrapper of this type besides its token. One account too many is also
// reported as a missing one, since the contract has no other result for it.
void AddNeeds(Side side, const KRDataObj& sync, MissingTags& missing) {
  const SyncRoute* route = RouteOf(side, sync);
  if (route == nullptr) return;
  if (route->eitherAccount &&
      sync.ValidateTag(KRTag_CCACCTFROM) == sync.ValidateTag(KRTag_BANKACCTFROM)) {
    missing.Add(KRTag_BANKACCTFROM);
  }
  for (u8 i = 0; i < route->needsCount; ++i) {
    if (sync.ValidateTag(route->needs[i]) == 0) missing.Add(route->needs[i]);
  }
}

// The token of the wrapper's version.
KRTagID TokenOf(const KRDataObj& sync) {
  return sync.IsValidTag(KRTag_TOKEN2) != 0 ? KRTag_TOKEN2 : KRTag_TOKEN;
}

// An investment account replaces the account without a warning, unlike the other two.
void MakeRoom(ChildSlot& account, KRTagID tag) {
  if (tag == KRTag_INVACCTFROM) account.Set(nullptr);
}

}  // namespace

KRTagID KRSyncRq::MsgIDToSyncWrapper(KRTagID tag) { return SyncOfPayload(tag); }

u16 KRSyncRq::GetArrayOfValidTags(KRArrayOfTags& tags) const {
  return ValidTagsOf(Side::kRequest, *this, tags);
}

KRParseStatus KRSyncRq::HandleTagStart(const KRTagDictionaryEntry* const entry) {
  MakeRoom(m_account, entry->tagID);
  return KRDataObj::HandleTagStart(entry);
}

u16 KRSyncRq::AllRequiredPresent() {
  return GetFirstMissingRequiredTag(KRTag_None) == KRTag_None ? 1 : 0;
}

KRTagID KRSyncRq::GetFirstMissingRequiredTag(KRTagID after) {
  MissingTags missing(after);
  // Presence counts, not the value: a TOKENONLY of N is a way of synchronising too. Two tokens are
  // as bad as none.
  const int ways = (ValidateTag(KRTag_TOKEN) != ValidateTag(KRTag_TOKEN2) ? 1 : 0) +
                   ValidateTag(KRTag_TOKENONLY) + ValidateTag(KRTag_REFRESH);
  if (ways != 1) missing.Add(TokenOf(*this));
  if (ValidateTag(KRTag_REJECTIFMISSING) == 0) missing.Add(KRTag_REJECTIFMISSING);
  AddNeeds(Side::kRequest, *this, missing);
  return missing.Found();
}

u16 KRSyncRq::DeepCopyFrom(KRSyncRq* source) {
  if (CopyAggregate(*this, source) == 0) return 0;
  m_messageSet = source->m_messageSet;
  return 1;
}

u16 KRSyncRs::GetArrayOfValidTags(KRArrayOfTags& tags) const {
  return ValidTagsOf(Side::kResponse, *this, tags);
}

KRParseStatus KRSyncRs::HandleTagStart(const KRTagDictionaryEntry* const entry) {
  MakeRoom(m_account, entry->tagID);
  return KRDataObj::HandleTagStart(entry);
}

u16 KRSyncRs::AllRequiredPresent() {
  return GetFirstMissingRequiredTag(KRTag_None) == KRTag_None ? 1 : 0;
}

KRTagID KRSyncRs::GetFirstMissingRequiredTag(KRTagID after) {
  MissingTags missing(after);
  if (ValidateTag(KRTag_TOKEN) == 0 && ValidateTag(KRTag_TOKEN2) == 0) missing.Add(TokenOf(*this));
  AddNeeds(Side::kResponse, *this, missing);
  return missing.Found();
}

u16 KRSyncRs::DeepCopyFrom(KRSyncRs* source) {
  if (CopyAggregate(*this, source) == 0) return 0;
  m_messageSet = source->m_messageSet;
  return 1;
}
