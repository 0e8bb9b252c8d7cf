// Asks the routing tables what travels in what.

#include "krofx/host/draft.h"

#include "krofx/build/builder.h"
#include "krofx/core/buffer.h"
#include "krofx/core/internal/whole_write.h"
#include "krofx/core/thread.h"
#include "krofx/envelope/internal/routing.h"
#include "krofx/envelope/multi_trans.h"
#include "krofx/host/build_reason.h"
#include "krofx/host/own.h"
#include "krofx/host/words.h"
#include "krofx/messages/banking/transfers.h"
#include "krofx/messages/investment/securities.h"
#include "krofx/model/internal/aggregate.h"
#include "krofx/model/internal/tag_index.h"
#include "krofx/values/utility.h"

namespace krofx {

namespace internal {

namespace {

// The first wrapper that carries a payload; KRTag_None when none does.
KRTagID WrapperOf(Side side, KRTagID payload) {
  for (const TransactionRoute& route : Transactions(side)) {
    for (u8 index = 0; index < route.payloadCount; ++index) {
      if (route.payloads[index].tag == payload) return route.wrapper;
    }
  }
  return KRTag_None;
}

// The message set of a version that has a tag right below it; KRTag_None when none does.
KRTagID SetOf(Side side, KRTagID child, u16 version) {
  const KRArrayOfTags sets = MessageSetTags(side);
  for (const MessageSetRoute& route : MessageSets(side)) {
    if (FindTagRow(sets, route.tag, version) >= 0 && FindTagRow(route.valid, child, version) >= 0) {
      return route.tag;
    }
  }
  return KRTag_None;
}

u16 AppendBody(KRFileRq& file, KRRequest* body) { return file.AppendRequest(body); }
u16 AppendBody(KRFileRs& file, KRResponse* body) { return file.AppendResponse(body); }

u16 SetSignOnOf(KRMessageSetRq& set, KRSignOnRq* signOn) { return set.SetSignOnRq(signOn); }
u16 SetSignOnOf(KRMessageSetRs& set, KRSignOnRs* signOn) { return set.SetSignOnRs(signOn); }

// Puts a payload into a wrapper: into its only place, or at the end of those of a wrapper of many.
template <class Many, class Payload, class Trans>
bool PutIn(Trans& wrapper, std::unique_ptr<KRTransBase> payload) {
  auto* const many = dynamic_cast<Many*>(&wrapper);
  if (many == nullptr) return Give(wrapper, &Trans::SetActualTrans, std::move(payload));
  auto* const one = dynamic_cast<Payload*>(payload.get());
  if (one == nullptr) return false;
  static_cast<void>(payload.release());
  return Give(*many, &Many::AppendActualTrans, std::unique_ptr<Payload>(one));
}
bool Put(KRTransRq& wrapper, std::unique_ptr<KRTransBase> payload) {
  return PutIn<KRMultiTransRq, KRInterRq>(wrapper, std::move(payload));
}
bool Put(KRTransRs& wrapper, std::unique_ptr<KRTransBase> payload) {
  return PutIn<KRMultiTransRs, KRInterRs>(wrapper, std::move(payload));
}

// A new object for a place in a file.
template <class Class>
std::unique_ptr<Class> NewAs(KRTagID tag, u16 version) {
  std::unique_ptr<Class> object = New<Class>(version);
  if (object != nullptr) object->SetType(tag);
  return object;
}

// The most entries that a list takes.
constexpr u16 kListLimit = 65535;

bool AlarmIsSet() { return KRGetFireAlarm() != KRFireAlarm_None; }

}  // namespace

template <Side kSide>
DraftOf<kSide>::DraftOf(u16 version) : m_version(version) {
  KRSetFireAlarm(KRFireAlarm_None);
  if (version != 1 && version != 2) {
    Fail(KRBuildStatus_TreeNotAllowed, "there are message sets of version 1 and 2 only");
  }
  m_file.AddDefaultOFXHeaders(version);
  std::unique_ptr<Body> body = NewAs<Body>(KRTag_OFX, version);
  // The last header is there when all are.
  const bool hasHeaders = m_file.ValidateHeader(KRHeaderTag_NEWFILEUID) != 0;
  if (body == nullptr || !hasHeaders || AlarmIsSet() || AppendBody(m_file, body.get()) == 0) {
    OutOfMemory();
    return;
  }
  m_body = body.release();
}

template <Side kSide>
void DraftOf<kSide>::Fail(KRBuildStatus status, const char* problem, KRTagID tag) {
  if (m_status != KRBuildStatus_Done) return;
  m_status = status;
  if (tag != KRTag_None) {
    m_problem = "<";
    m_problem += KRUtility::TagToString(tag);
    m_problem += "> ";
  }
  m_problem += problem;
}

template <Side kSide>
bool DraftOf<kSide>::HasRoom(u16 entries) {
  if (entries < kListLimit) return true;
  Fail(KRBuildStatus_TreeNotAllowed,
       "a list has more than 65535 entries, which is the most that a list takes");
  return false;
}

template <Side kSide>
bool DraftOf<kSide>::OutOfMemory() {
  KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
  Fail(KRBuildStatus_Fatal, ReasonOf(KRBuildStatus_Fatal));
  return false;
}

template <Side kSide>
typename Direction<kSide>::MessageSet* DraftOf<kSide>::SetFor(KRTagID child) {
  if (m_body == nullptr) return nullptr;
  const KRTagID tag = SetOf(kSide, child, m_version);
  if (tag == KRTag_None) {
    Fail(KRBuildStatus_TreeNotAllowed, "travels in no message set of this version", child);
    return nullptr;
  }
  for (u16 index = 0; index < m_body->GetNumMessageSet(); ++index) {
    MessageSet* const set = m_body->GetMessageSet(index);
    if (set->GetType() == tag) return set;
  }
  std::unique_ptr<MessageSet> set = NewAs<MessageSet>(tag, m_version);
  if (set == nullptr || m_body->AppendMessageSet(set.get()) == 0) {
    OutOfMemory();
    return nullptr;
  }
  return set.release();
}

template <Side kSide>
std::unique_ptr<typename Direction<kSide>::Sync> DraftOf<kSide>::NewSync(
    KRTagID wrapper, std::string_view token) const {
  KRDataObjFactory* const factory = KRDataObj::GetFactory();
  std::unique_ptr<Sync> sync(factory == nullptr ? nullptr
                                                : Direction<kSide>::NewSync(*factory, wrapper));
  if (sync == nullptr) return nullptr;
  sync->SetMsgSetVersion(m_version);
  sync->SetType(wrapper);
  if (sync->IsValidTag(KRTag_TOKEN2) != 0) {
    Set(*sync, &Sync::SetToken2, token);
  } else {
    Set(*sync, &Sync::SetToken, token);
  }
  if constexpr (kSide == Side::kRequest) {
    if (sync->IsValidTag(KRTag_REJECTIFMISSING) != 0) sync->SetRejectIfMissing(u16{0});
  } else {
    if (sync->IsValidTag(KRTag_LOSTSYNC) != 0) sync->SetLostSync(u16{0});
  }
  return sync;
}

template <Side kSide>
bool DraftOf<kSide>::Add(std::unique_ptr<Sync> sync) {
  if (sync == nullptr) return OutOfMemory();
  if (FindSync(kSide, sync->GetType()) == nullptr) {
    Fail(KRBuildStatus_TreeNotAllowed, "is no synchronisation", sync->GetType());
    return false;
  }
  MessageSet* const set = SetFor(sync->GetType());
  if (set == nullptr || !HasRoom(set->GetNumSync())) return false;
  return Give(*set, &MessageSet::AppendSync, std::move(sync)) || OutOfMemory();
}

template <Side kSide>
typename Direction<kSide>::Trans* DraftOf<kSide>::Add(std::unique_ptr<Trans> wrapper) {
  if (wrapper == nullptr) return nullptr;
  MessageSet* const set = SetFor(wrapper->GetType());
  if (set == nullptr || !HasRoom(set->GetNumTrans())) return nullptr;
  Trans* const added = wrapper.get();
  if (Give(*set, &MessageSet::AppendTrans, std::move(wrapper))) return added;
  OutOfMemory();
  return nullptr;
}

template <Side kSide>
std::unique_ptr<typename Direction<kSide>::Trans> DraftOf<kSide>::NewWrapper(KRTagID wrapper,
                                                                             std::string_view id) {
  KRDataObjFactory* const factory = KRDataObj::GetFactory();
  std::unique_ptr<Trans> made(factory == nullptr ? nullptr
                                                 : Direction<kSide>::NewTrans(*factory, wrapper));
  if (made == nullptr) {
    OutOfMemory();
    return nullptr;
  }
  made->SetMsgSetVersion(m_version);
  made->SetType(wrapper);
  Set(*made, &Trans::SetTransUserID, id);
  return made;
}

template <Side kSide>
std::unique_ptr<typename Direction<kSide>::Trans> DraftOf<kSide>::WrapAs(
    std::unique_ptr<KRTransBase> payload, KRTagID wrapper, std::string_view id) {
  if (payload == nullptr) {
    OutOfMemory();
    return nullptr;
  }
  const KRTagID tag = payload->GetType();
  if (wrapper == KRTag_None) wrapper = WrapperOf(kSide, tag);
  if (wrapper == KRTag_None) {
    Fail(KRBuildStatus_TreeNotAllowed, "is carried by no wrapper", tag);
    return nullptr;
  }
  std::unique_ptr<Trans> made = NewWrapper(wrapper, id);
  if (made == nullptr) return nullptr;
  if (!Put(*made, std::move(payload))) {
    Fail(KRBuildStatus_TreeNotAllowed, "may not be in that wrapper", tag);
    return nullptr;
  }
  return made;
}

template <Side kSide>
bool DraftOf<kSide>::AddSignOn(std::unique_ptr<typename Direction<kSide>::SignOn> signOn) {
  if (signOn == nullptr) return OutOfMemory();
  signOn->SetType(Direction<kSide>::kSignOn);
  MessageSet* const set = SetFor(Direction<kSide>::kSignOn);
  // The set owns it whatever the answer.
  return set != nullptr && SetSignOnOf(*set, signOn.release()) != 0;
}

template <Side kSide>
DraftResult DraftOf<kSide>::Write(KRBuffer& buffer) {
  DraftResult result;
  if (!AlarmIsSet()) WriteInto(buffer, result);
  // What is said without memory may be wrong or cut.
  if (AlarmIsSet()) {
    result.status = KRBuildStatus_Fatal;
    result.missing.Clear();
  }
  if (result.status == KRBuildStatus_Fatal) result.problem = ReasonOf(KRBuildStatus_Fatal);
  return result;
}

template <Side kSide>
void DraftOf<kSide>::WriteInto(KRBuffer& buffer, DraftResult& result) {
  result.status = m_status;
  result.problem = m_problem;
  if (m_status != KRBuildStatus_Done) return;
  result.missing = FindMissing(m_file);
  if (AlarmIsSet()) return;  // The builder would clear the alarm.
  KRDataObj* failing = nullptr;
  if (!result.missing.empty()) {
    result.status = KRBuildStatus_MissingTag;
  } else {
    result.status = BuildInto(buffer, failing);
  }
  result.problem = ReasonOf(result.status);
  if (failing != nullptr && result.status != KRBuildStatus_Done) {
    result.problem += " in <";
    result.problem += KRUtility::ObjectToString(failing);
    result.problem += ">";
  }
}

template <Side kSide>
KRBuildStatus DraftOf<kSide>::BuildInto(KRBuffer& buffer, KRDataObj*& failing) {
  KRBuffer built(16384, 16384);
  if (built.GetBufferPtr() == nullptr) return KRBuildStatus_Fatal;
  KRBuilder builder;
  const KRBuildStatus status = builder.Build(&built, &m_file, KRBuildStringOpt_Strict, 1);
  failing = builder.GetFailingObject();
  if (status != KRBuildStatus_Done) return status;
  return WriteWhole(buffer, built) ? KRBuildStatus_Done : KRBuildStatus_Fatal;
}

template class DraftOf<Side::kRequest>;
template class DraftOf<Side::kResponse>;

}  // namespace internal
}  // namespace krofx
