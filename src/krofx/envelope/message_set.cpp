// Message sets: dispatch of their children, order of writing, and what makes each complete.

#include "krofx/envelope/message_set.h"

#include "krofx/build/builder.h"
#include "krofx/core/thread.h"
#include "krofx/envelope/internal/routing.h"
#include "krofx/messages/investment/securities.h"
#include "krofx/model/factory.h"
#include "krofx/model/internal/aggregate.h"

namespace krofx::internal {

namespace {

// The transactions that make a set complete whatever else it holds.
template <Side kSide>
constexpr KRTagID kProfile = kSide == Side::kRequest ? KRTag_PROFTRNRQ : KRTag_PROFTRNRS;
template <Side kSide>
constexpr KRTagID kSecurities = kSide == Side::kRequest ? KRTag_SECLISTTRNRQ : KRTag_SECLIST;

KRParseStatus OutOfMemory() {
  KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
  return KRParseStatus_Fatal;
}

// Stores a child of a tag and descends into it.
KRParseStatus StoreAndPush(KRDataObj& set, KRDynamicArrayDataObj& array, KRTagID tag,
                           KRDataObj* child) {
  if (child == nullptr) return OutOfMemory();
  child->SetType(tag);
  if (array.Append(child) == 0) {
    delete child;
    return KRParseStatus_Fatal;
  }
  return set.PushAndSetObject(child, tag);
}

// Puts a child where there can be only one, with a warning when there is one already, and descends
// into it.
KRParseStatus ReplaceAndPush(KRDataObj& set, ChildSlot& slot, KRTagID tag, KRDataObj* child) {
  if (slot.Get() != nullptr) LogWarning(KRPW_EXTRAAGG, KRString(), KRString(), tag, &set);
  slot.Set(child);
  return child == nullptr ? OutOfMemory() : set.PushAndSetObject(child, tag);
}

}  // namespace

template <Side kSide>
u16 MessageSet<kSide>::AppendTrans(Trans* transaction) {
  return AppendElement<KRDynamicArrayDataObj, KRDataObj>(*this, m_transactions, transaction);
}

template <Side kSide>
u16 MessageSet<kSide>::SetTrans(u16 index, Trans* transaction) {
  return NoteElement(*this, m_transactions.Set(index, transaction), transaction);
}

template <Side kSide>
u16 MessageSet<kSide>::AppendSync(Sync* sync) {
  return AppendElement<KRDynamicArrayDataObj, KRDataObj>(*this, m_syncs, sync);
}

template <Side kSide>
u16 MessageSet<kSide>::SetSync(u16 index, Sync* sync) {
  return NoteElement(*this, m_syncs.Set(index, sync), sync);
}

template <Side kSide>
u16 MessageSet<kSide>::GetArrayOfValidTags(KRArrayOfTags& tags) const {
  const MessageSetRoute* route = FindMessageSet(kSide, TypeOf(*this));
  tags = route == nullptr ? KRArrayOfTags() : route->valid;
  return 1;
}

template <Side kSide>
KRParseStatus MessageSet<kSide>::HandleTagStart(const KRTagDictionaryEntry* const entry) {
  const KRTagID tag = entry->tagID;
  if (GetFactory() == nullptr) return KRParseStatus_Fatal;
  if (tag == Direction<kSide>::kSignOn) return PushSignOn(tag);
  if (FindSync(kSide, tag) != nullptr) return PushSyncObject(tag);
  if (FindTransaction(kSide, tag) != nullptr) return PushTranObject(tag);
  return KRParseStatus_Invalid;
}

template <Side kSide>
KRParseStatus MessageSet<kSide>::PushSignOn(KRTagID tag) {
  return ReplaceAndPush(*this, m_signOn, tag, Direction<kSide>::NewSignOn(*GetFactory()));
}

template <Side kSide>
KRParseStatus MessageSet<kSide>::PushTranObject(KRTagID tag) {
  return StoreAndPush(*this, m_transactions, tag, Direction<kSide>::NewTrans(*GetFactory(), tag));
}

template <Side kSide>
KRParseStatus MessageSet<kSide>::PushSyncObject(KRTagID tag) {
  return StoreAndPush(*this, m_syncs, tag, Direction<kSide>::NewSync(*GetFactory(), tag));
}

template <Side kSide>
u16 MessageSet<kSide>::SetSignOn(SignOn* signOn) {
  return SetChild(*this, m_signOn, Direction<kSide>::kSignOn, signOn);
}

template <Side kSide>
KRBuildStatus MessageSet<kSide>::Build(KRBuilder* builder) const {
  KRArrayOfTags tags;
  GetArrayOfValidTags(tags);
  KRBuildStatus status = KRBuildStatus_Done;
  if (m_signOn.Get() != nullptr) status = m_signOn.Get()->BuildObject(builder, KRTag_None);
  for (u16 row = 0; row < tags.count && status == KRBuildStatus_Done; ++row) {
    const KRTagID tag = tags.table[row].tag;
    if (ValidateTag(tag) == 0) continue;
    const bool isSync = FindSync(kSide, tag) != nullptr;
    status = (isSync ? m_syncs : m_transactions).Build(builder, tag);
  }
  if (status != KRBuildStatus_Done) NoteFailure(*builder, *this);
  return status;
}

template <Side kSide>
u16 MessageSet<kSide>::AllRequiredPresent() {
  const bool anyTransaction = m_transactions.Entries() != 0;
  switch (GetType()) {
    case KRTag_SIGNONMSGSRQV1:
    case KRTag_SIGNONMSGSRQV2:
    case KRTag_SIGNONMSGSRSV1:
    case KRTag_SIGNONMSGSRSV2:
      return ValidateTag(Direction<kSide>::kSignOn);
    case KRTag_PROFMSGSRQV1:
    case KRTag_PROFMSGSRQV2:
    case KRTag_PROFMSGSRSV1:
    case KRTag_PROFMSGSRSV2:
      return ValidateTag(kProfile<kSide>);
    case KRTag_SECLISTMSGSRQV1:
    case KRTag_SECLISTMSGSRQV2:
      return ValidateTag(kSecurities<kSide>) != 0 && anyTransaction ? 1 : 0;
    case KRTag_SECLISTMSGSRSV1:
    case KRTag_SECLISTMSGSRSV2:
      return ValidateTag(kSecurities<kSide>) != 0 || anyTransaction ? 1 : 0;
    case KRTag_BILLPAYMSGSRQV1:
    case KRTag_BILLPAYMSGSRQV2:
    case KRTag_BILLPAYMSGSRSV1:
    case KRTag_BILLPAYMSGSRSV2:
    case KRTag_N_PAYROLLMSGSRQV1:
    case KRTag_N_PAYROLLMSGSRSV1:
      return anyTransaction || m_syncs.Entries() != 0 ? 1 : 0;
    default:
      return AnyValidPresent();
  }
}

template <Side kSide>
KRTagID MessageSet<kSide>::GetFirstMissingRequiredTag(KRTagID after) {
  if (after != KRTag_None || AllRequiredPresent() != 0) return KRTag_None;
  for (const KRTagID tag : {Direction<kSide>::kSignOn, kProfile<kSide>, kSecurities<kSide>}) {
    if (IsValidTag(tag) != 0) return tag;
  }
  KRArrayOfTags tags;
  GetArrayOfValidTags(tags);
  return tags.count == 0 ? KRTag_None : tags.table[0].tag;
}

template <Side kSide>
KRDataObj* MessageSet<kSide>::GetChild(u16 index) const {
  if (index == 0) return m_signOn.Get();
  --index;
  if (index < m_transactions.Entries()) return m_transactions.Get(index);
  return m_syncs.Get(static_cast<u16>(index - m_transactions.Entries()));
}

template <Side kSide>
u16 MessageSet<kSide>::GetNumberOfChildren() const {
  const u32 count = 1u + m_transactions.Entries() + m_syncs.Entries();
  return static_cast<u16>(count < 0xffff ? count : 0xffff);
}

namespace {

// Makes `array` hold deep copies of the elements of `source`.
u16 CopyElements(KRDynamicArrayDataObj& array, const KRDynamicArrayDataObj& source) {
  array.DeleteAll();
  for (u16 index = 0; index < source.Entries(); ++index) {
    if (source.Get(index) == nullptr) continue;
    ChildSlot copy;
    if (CopyChild(copy, source.Get(index)) == 0 || array.Set(index, copy.Get()) == 0) return 0;
    copy.Release();
  }
  return 1;
}

}  // namespace

template <Side kSide>
u16 MessageSet<kSide>::CopySetFrom(MessageSet* source) {
  if (source == nullptr) return 0;
  if (source == this) return 1;
  if (CopyElements(m_transactions, source->m_transactions) == 0 ||
      CopyElements(m_syncs, source->m_syncs) == 0 ||
      CopyChild(m_signOn, source->m_signOn.Get()) == 0) {
    return 0;
  }
  return CopyBaseMembersFrom(source);
}

template class MessageSet<Side::kRequest>;
template class MessageSet<Side::kResponse>;

}  // namespace krofx::internal

using krofx::internal::CopyChild;
using krofx::internal::FamilyOf;
using krofx::internal::NoteFailure;
using krofx::internal::ReplaceAndPush;
using krofx::internal::SetChild;

KRTagID KRMessageSetRq::MsgIDToMsgSetID(KRTagID tag) { return FamilyOf(tag); }

KRSignOnRq* KRMessageSetRq::GetSignOnRq() const { return static_cast<KRSignOnRq*>(m_signOn.Get()); }

KRSignOnRs* KRMessageSetRs::GetSignOnRs() const { return static_cast<KRSignOnRs*>(m_signOn.Get()); }

KRSecList* KRMessageSetRs::GetSecList() const { return static_cast<KRSecList*>(m_secList.Get()); }

u16 KRMessageSetRs::SetSecList(KRSecList* secList) {
  return SetChild(*this, m_secList, KRTag_SECLIST, secList);
}

KRParseStatus KRMessageSetRs::HandleTagStart(const KRTagDictionaryEntry* const entry) {
  if (entry->tagID != KRTag_SECLIST) return MessageSet::HandleTagStart(entry);
  KRDataObjFactory* factory = GetFactory();
  if (factory == nullptr) return KRParseStatus_Fatal;
  return ReplaceAndPush(*this, m_secList, KRTag_SECLIST, factory->NewSecList(0));
}

KRBuildStatus KRMessageSetRs::Build(KRBuilder* builder) const {
  KRBuildStatus status = MessageSet::Build(builder);
  if (status != KRBuildStatus_Done || m_secList.Get() == nullptr) return status;
  if (ValidateTag(KRTag_SECLIST) == 0) return status;
  status = m_secList.Get()->BuildObject(builder, KRTag_None);
  if (status != KRBuildStatus_Done) NoteFailure(*builder, *this);
  return status;
}

KRDataObj* KRMessageSetRs::GetChild(u16 index) const {
  const u16 others = MessageSet::GetNumberOfChildren();
  return index == others ? m_secList.Get() : MessageSet::GetChild(index);
}

u16 KRMessageSetRs::GetNumberOfChildren() const {
  const u16 others = MessageSet::GetNumberOfChildren();
  return m_secList.Get() == nullptr || others == 0xffff ? others : static_cast<u16>(others + 1);
}

u16 KRMessageSetRs::DeepCopyFrom(KRMessageSetRs* source) {
  if (source != nullptr && source != this && CopyChild(m_secList, source->m_secList.Get()) == 0) {
    return 0;
  }
  return CopySetFrom(source);
}
