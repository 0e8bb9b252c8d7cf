// Requests and responses: the list of message sets.

#include "krofx/envelope/request_response.h"

#include "krofx/build/builder.h"
#include "krofx/core/thread.h"
#include "krofx/model/factory.h"
#include "krofx/values/utility.h"

namespace krofx::internal {

namespace {

KRMessageSetRq* MakeSet(KRDataObjFactory& factory, KRMessageSetRq*) {
  return factory.NewMessageSetRq(0);
}
KRMessageSetRs* MakeSet(KRDataObjFactory& factory, KRMessageSetRs*) {
  return factory.NewMessageSetRs(0);
}

template <class Set>
Set* MakeSet() {
  KRDataObjFactory* factory = KRDataObj::GetFactory();
  Set* set = factory == nullptr ? nullptr : MakeSet(*factory, static_cast<Set*>(nullptr));
  if (set == nullptr) KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
  return set;
}

}  // namespace

template <class Set, Side kSide>
MessageSetHolder<Set, kSide>::MessageSetHolder() {
  SetType(KRTag_OFX);
}

template <class Set, Side kSide>
u16 MessageSetHolder<Set, kSide>::SetMessageSet(u16 index, Set* set) {
  return NoteElement(*this, m_sets.Set(index, set), set);
}

template <class Set, Side kSide>
u16 MessageSetHolder<Set, kSide>::SetFactory(KRDataObjFactory* factory) {
  if (factory != nullptr) KRDataObj::SetFactory(factory);
  return 0;
}

template <class Set, Side kSide>
u16 MessageSetHolder<Set, kSide>::GetArrayOfValidTags(KRArrayOfTags& tags) const {
  tags = MessageSetTags(kSide);
  return 1;
}

template <class Set, Side kSide>
KRParseStatus MessageSetHolder<Set, kSide>::HandleTagStart(
    const KRTagDictionaryEntry* const entry) {
  return IsValidTag(entry->tagID) == 0 ? KRParseStatus_Invalid : PushMsgObject(entry->tagID);
}

template <class Set, Side kSide>
KRParseStatus MessageSetHolder<Set, kSide>::PushMsgObject(KRTagID tag) {
  if (GetFactory() == nullptr) return KRParseStatus_Fatal;
  if (KRUtility::Find(&m_sets, tag, 1) != 0) {
    LogWarning(KRPW_EXTRAAGG, KRString(), KRString(), tag, this);
    return KRParseStatus_Invalid;
  }
  Set* set = MakeSet<Set>();
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

template <class Set, Side kSide>
KRBuildStatus MessageSetHolder<Set, kSide>::Build(KRBuilder* builder) const {
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

template <class Set, Side kSide>
u16 MessageSetHolder<Set, kSide>::AllRequiredPresent() {
  constexpr KRTagID kFirst = kSide == Side::kRequest ? KRTag_SIGNONMSGSRQV1 : KRTag_SIGNONMSGSRSV1;
  constexpr KRTagID kSecond = kSide == Side::kRequest ? KRTag_SIGNONMSGSRQV2 : KRTag_SIGNONMSGSRSV2;
  const bool signedOn = ValidateTag(kFirst) != 0 || ValidateTag(kSecond) != 0;
  return signedOn && m_sets.Entries() != 0 ? 1 : 0;
}

template <class Set, Side kSide>
u16 MessageSetHolder<Set, kSide>::CopySetsFrom(MessageSetHolder* source) {
  if (source == nullptr) return 0;
  if (source == this) return 1;
  m_sets.DeleteAll();
  for (u16 index = 0; index < source->m_sets.Entries(); ++index) {
    Set* set = source->GetMessageSet(index);
    if (set == nullptr) continue;
    Set* copy = MakeSet<Set>();
    if (copy == nullptr || copy->DeepCopyFrom(set) == 0 || m_sets.Set(index, copy) == 0) {
      delete copy;
      return 0;
    }
  }
  return CopyBaseMembersFrom(source);
}

template class MessageSetHolder<KRMessageSetRq, Side::kRequest>;
template class MessageSetHolder<KRMessageSetRs, Side::kResponse>;

}  // namespace krofx::internal
