// Requests and responses: the list of message sets.

#include "krofx/envelope/request_response.h"

#include "krofx/build/builder.h"
#include "krofx/core/thread.h"
#include "krofx/envelope/internal/routing.h"
#include "krofx/model/factory.h"
#include "krofx/model/internal/aggregate.h"
#include "krofx/values/utility.h"

namespace krofx::internal {

namespace {

// Makes a message set through the factory in force; null, with the fire alarm raised, on failure.
template <Side kSide>
typename Direction<kSide>::MessageSet* MakeSet() {
  KRDataObjFactory* factory = KRDataObj::GetFactory();
  auto* set = factory == nullptr ? nullptr : Direction<kSide>::NewMessageSet(*factory);
  if (set == nullptr) KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
  return set;
}

}  // namespace

template <Side kSide>
MessageSetHolder<kSide>::MessageSetHolder() {
  SetType(KRTag_OFX);
}

template <Side kSide>
u16 MessageSetHolder<kSide>::AppendMessageSet(Set* set) {
  return AppendElement<KRDynamicArrayDataObj, KRDataObj>(*this, m_sets, set);
}

template <Side kSide>
u16 MessageSetHolder<kSide>::SetMessageSet(u16 index, Set* set) {
  return NoteElement(*this, m_sets.Set(index, set), set);
}

template <Side kSide>
u16 MessageSetHolder<kSide>::SetFactory(KRDataObjFactory* factory) {
  if (factory != nullptr) KRDataObj::SetFactory(factory);
  return 0;
}

template <Side kSide>
u16 MessageSetHolder<kSide>::GetArrayOfValidTags(KRArrayOfTags& tags) const {
  tags = MessageSetTags(kSide);
  return 1;
}

template <Side kSide>
KRParseStatus MessageSetHolder<kSide>::HandleTagStart(const KRTagDictionaryEntry* const entry) {
  return IsValidTag(entry->tagID) == 0 ? KRParseStatus_Invalid : PushMsgObject(entry->tagID);
}

template <Side kSide>
KRParseStatus MessageSetHolder<kSide>::PushMsgObject(KRTagID tag) {
  if (GetFactory() == nullptr) return KRParseStatus_Fatal;
  if (KRUtility::Find(&m_sets, tag, 1) != 0) {
    LogWarning(KRPW_EXTRAAGG, KRString(), KRString(), tag, this);
    return KRParseStatus_Invalid;
  }
  Set* set = MakeSet<kSide>();
  if (set == nullptr) return KRParseStatus_Fatal;
  set->SetType(tag);
  set->SetMsgSetVersion(GetMsgSetVersion());
  if (m_sets.Append(set) == 0) {
    delete set;
    return KRParseStatus_Invalid;
  }
  SetTag(tag);
  return PushAndSetObject(set, KRTag_None);
}

template <Side kSide>
KRBuildStatus MessageSetHolder<kSide>::Build(KRBuilder* builder) const {
  const KRArrayOfTags tags = MessageSetTags(kSide);
  for (u16 row = 0; row < tags.count; ++row) {
    const KRTagID tag = tags.table[row].tag;
    KRBuildStatus status = KRBuildStatus_Done;
    const u16 first = KRUtility::Find(&m_sets, tag, 1);
    if (first != 0 && KRUtility::Find(&m_sets, tag, static_cast<u16>(first + 1)) != 0) {
      status = KRBuildStatus_TreeNotAllowed;
    } else if (ValidateTag(tag) != 0) {
      status = m_sets.Build(builder, tag);
    }
    if (status != KRBuildStatus_Done) {
      NoteFailure(*builder, *this);
      return status;
    }
  }
  return KRBuildStatus_Done;
}

template <Side kSide>
u16 MessageSetHolder<kSide>::AllRequiredPresent() {
  const auto& sets = Direction<kSide>::kSignOnSets;
  const bool signedOn = ValidateTag(sets[0]) != 0 || ValidateTag(sets[1]) != 0;
  return signedOn && m_sets.Entries() != 0 ? 1 : 0;
}

template <Side kSide>
KRTagID MessageSetHolder<kSide>::GetFirstMissingRequiredTag(KRTagID after) {
  if (after != KRTag_None || AllRequiredPresent() != 0) return KRTag_None;
  bool second = GetMsgSetVersion() == 2;
  for (u16 index = 0; index < m_sets.Entries() && !second; ++index) {
    second = m_sets.Get(index) != nullptr && m_sets.Get(index)->GetMsgSetVersionFromTag() == 2;
  }
  return Direction<kSide>::kSignOnSets[second ? 1 : 0];
}

template <Side kSide>
u16 MessageSetHolder<kSide>::CopySetsFrom(MessageSetHolder* source) {
  if (source == nullptr) return 0;
  if (source == this) return 1;
  m_sets.DeleteAll();
  for (u16 index = 0; index < source->m_sets.Entries(); ++index) {
    Set* set = source->GetMessageSet(index);
    if (set == nullptr) continue;
    Set* copy = MakeSet<kSide>();
    if (copy == nullptr || copy->DeepCopyFrom(set) == 0 || m_sets.Set(index, copy) == 0) {
      delete copy;
      return 0;
    }
  }
  return CopyBaseMembersFrom(source);
}

template class MessageSetHolder<Side::kRequest>;
template class MessageSetHolder<Side::kResponse>;

}  // namespace krofx::internal
