// The synchronisation wrappers: what depends on the wrapper's type.

#include "krofx/build/builder.h"
#include "krofx/core/thread.h"
#include "krofx/envelope/envelope.h"
#include "krofx/envelope/routing.h"
#include "krofx/messages/banking/accounts.h"
#include "krofx/model/aggregate.h"
#include "krofx/model/factory.h"

using krofx::internal::AggregateTable;
using krofx::internal::BuildRows;
using krofx::internal::ChildSlot;
using krofx::internal::FindSync;
using krofx::internal::FindTransaction;
using krofx::internal::Side;
using krofx::internal::SyncRoute;

namespace {

const SyncRoute* RouteOf(Side side, const KRDataObj& sync) {
  return FindSync(side, const_cast<KRDataObj&>(sync).GetType());
}

u16 ValidTagsOf(Side side, const KRDataObj& sync, KRArrayOfTags& tags) {
  const SyncRoute* route = RouteOf(side, sync);
  tags = route == nullptr ? KRArrayOfTags() : route->valid;
  return 1;
}

// The rows of the class, and then the transactions, grouped by tag.
KRBuildStatus BuildSync(Side side, const KRDataObj& sync, const AggregateTable& table,
                        const KRDynamicArrayDataObj& transactions, KRBuilder& builder) {
  KRBuildStatus status = BuildRows(sync, table, builder);
  KRArrayOfTags tags;
  sync.GetArrayOfValidTags(tags);
  for (u16 row = 0; row < tags.count && status == KRBuildStatus_Done; ++row) {
    const KRTagID tag = tags.table[row].tag;
    if (FindTransaction(side, tag) == nullptr || sync.ValidateTag(tag) == 0) continue;
    status = transactions.Build(&builder, tag);
    if (status != KRBuildStatus_Done) krofx::internal::NoteFailure(builder, sync);
  }
  return status;
}

u16 NeedsMet(Side side, const KRDataObj& sync) {
  const SyncRoute* route = RouteOf(side, sync);
  if (route == nullptr) return 1;
  if (route->eitherAccount &&
      sync.ValidateTag(KRTag_CCACCTFROM) == sync.ValidateTag(KRTag_BANKACCTFROM)) {
    return 0;
  }
  for (u8 i = 0; i < route->needsCount; ++i) {
    if (sync.ValidateTag(route->needs[i]) == 0) return 0;
  }
  return 1;
}

// Index 0 is the account, which may be null; the transactions follow.
KRDataObj* ChildOf(const ChildSlot& account, const KRDynamicArrayDataObj& transactions, u16 index) {
  return index == 0 ? account.Get() : transactions.Get(static_cast<u16>(index - 1));
}

u16 ChildrenOf(const KRDynamicArrayDataObj& transactions) {
  const u16 entries = transactions.Entries();
  return entries == 0xffff ? entries : static_cast<u16>(entries + 1);
}

void PassDown(const KRDynamicArrayDataObj& transactions, u16 version) {
  for (u16 index = 0; index < transactions.Entries(); ++index) {
    if (KRDataObj* child = transactions.Get(index)) child->SetMsgSetVersion(version);
  }
}

// Stores a new transaction of a tag and descends into it.
KRParseStatus PushTransaction(KRDataObj& sync, KRDynamicArrayDataObj& transactions, KRTagID tag,
                              KRDataObj* made) {
  if (made == nullptr) {
    KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
    return KRParseStatus_Fatal;
  }
  made->SetType(tag);
  if (transactions.Append(made) == 0) {
    delete made;
    return KRParseStatus_Fatal;
  }
  return sync.PushAndSetObject(made, tag);
}

}  // namespace

KRTagID KRSyncRq::MsgIDToSyncWrapper(KRTagID tag) { return krofx::internal::SyncOfPayload(tag); }

u16 KRSyncRq::GetArrayOfValidTags(KRArrayOfTags& tags) const {
  return ValidTagsOf(Side::kRequest, *this, tags);
}

KRParseStatus KRSyncRq::HandleTagStart(const KRTagDictionaryEntry* const entry) {
  if (FindTransaction(Side::kRequest, entry->tagID) == nullptr) {
    // An investment account replaces what is there without a warning, unlike the other two.
    if (entry->tagID == KRTag_INVACCTFROM) m_account.Set(nullptr);
    return KRDataObj::HandleTagStart(entry);
  }
  KRDataObjFactory* factory = GetFactory();
  if (factory == nullptr) return KRParseStatus_Fatal;
  return PushTransaction(*this, m_trans, entry->tagID, factory->NewTransRq(0));
}

KRBuildStatus KRSyncRq::Build(KRBuilder* builder) const {
  return BuildSync(Side::kRequest, *this, *GetTable(), m_trans, *builder);
}

u16 KRSyncRq::AllRequiredPresent() {
  if (ValidateTag(KRTag_REJECTIFMISSING) == 0) return 0;
  // Presence counts, not the value: a TOKENONLY of N is a way of synchronising too. Two tokens are
  // none.
  const int ways = (ValidateTag(KRTag_TOKEN) != ValidateTag(KRTag_TOKEN2) ? 1 : 0) +
                   ValidateTag(KRTag_TOKENONLY) + ValidateTag(KRTag_REFRESH);
  return ways == 1 ? NeedsMet(Side::kRequest, *this) : u16{0};
}

KRDataObj* KRSyncRq::GetChild(u16 index) const { return ChildOf(m_account, m_trans, index); }

u16 KRSyncRq::GetNumberOfChildren() const { return ChildrenOf(m_trans); }

u16 KRSyncRq::SetMsgSetVersion(u16 version) {
  PassDown(m_trans, version);
  return KRDataObj::SetMsgSetVersion(version);
}

u16 KRSyncRs::GetArrayOfValidTags(KRArrayOfTags& tags) const {
  return ValidTagsOf(Side::kResponse, *this, tags);
}

KRParseStatus KRSyncRs::HandleTagStart(const KRTagDictionaryEntry* const entry) {
  if (FindTransaction(Side::kResponse, entry->tagID) == nullptr) {
    if (entry->tagID == KRTag_INVACCTFROM) m_account.Set(nullptr);
    return KRDataObj::HandleTagStart(entry);
  }
  KRDataObjFactory* factory = GetFactory();
  if (factory == nullptr) return KRParseStatus_Fatal;
  return PushTransaction(*this, m_trans, entry->tagID, factory->NewTransRs(0));
}

KRBuildStatus KRSyncRs::Build(KRBuilder* builder) const {
  return BuildSync(Side::kResponse, *this, *GetTable(), m_trans, *builder);
}

u16 KRSyncRs::AllRequiredPresent() {
  if (ValidateTag(KRTag_TOKEN) == 0 && ValidateTag(KRTag_TOKEN2) == 0) return 0;
  return NeedsMet(Side::kResponse, *this);
}

KRDataObj* KRSyncRs::GetChild(u16 index) const { return ChildOf(m_account, m_trans, index); }

u16 KRSyncRs::GetNumberOfChildren() const { return ChildrenOf(m_trans); }

u16 KRSyncRs::SetMsgSetVersion(u16 version) {
  PassDown(m_trans, version);
  return KRDataObj::SetMsgSetVersion(version);
}
