// The transaction wrappers: what depends on the wrapper's type.

#include "krofx/envelope/internal/transaction.h"

#include <algorithm>

#include "krofx/build/builder.h"
#include "krofx/envelope/envelope.h"
#include "krofx/envelope/internal/missing_tags.h"
#include "krofx/envelope/internal/routing.h"
#include "krofx/messages/signon/status.h"
#include "krofx/model/internal/aggregate.h"

namespace krofx::internal {

template <Side kSide>
const TransactionRoute* Transaction<kSide>::Route() const {
  return FindTransaction(kSide, TypeOf(*this));
}

template <Side kSide>
u16 Transaction<kSide>::SetActualTrans(KRTransBase* payload) {
  KRTransBase* named = payload != nullptr ? payload : m_payload.Get();
  const TransactionRoute* route = Route();
  KRTagID tag = KRTag_None;
  if (named != nullptr) {
    tag = named->GetType();
  } else if (route != nullptr && route->payloadCount == 1) {
    tag = route->payloads[0].tag;
  }
  m_payload.Set(payload);
  // Which of several payloads is set to null cannot be said.
  if (named == nullptr && tag == KRTag_None) return 0;
  if (payload == nullptr) ClearTag(tag);
  return SetTag(tag);
}

template <Side kSide>
u16 Transaction<kSide>::GetArrayOfValidTags(KRArrayOfTags& tags) const {
  const TransactionRoute* route = Route();
  tags = route == nullptr ? KRArrayOfTags() : route->valid;
  return 1;
}

template <Side kSide>
KRParseStatus Transaction<kSide>::HandleTagStart(const KRTagDictionaryEntry* const entry) {
  const KRParseStatus status = m_payload.Make(kSide, entry->tagID);
  return status != KRParseStatus_Accepted ? status
                                          : PushAndSetObject(m_payload.Get(), entry->tagID);
}

template <Side kSide>
KRBuildStatus Transaction<kSide>::Build(KRBuilder* builder) const {
  KRBuildStatus status = BuildRows(*this, *GetTable(), *builder);
  if (status == KRBuildStatus_Done && m_payload.Get() != nullptr) {
    status = m_payload.Get()->BuildObject(builder, KRTag_None);
    if (status != KRBuildStatus_Done) NoteFailure(*builder, *this);
  }
  return status;
}

template <Side kSide>
u16 Transaction<kSide>::PayloadRuleHolds() const {
  const TransactionRoute* route = Route();
  if (route == nullptr || route->rule == PayloadRule::kHeld) return 1;
  u16 present = 0;
  for (u8 i = 0; i < route->payloadCount; ++i) {
    present = static_cast<u16>(present + ValidateTag(route->payloads[i].tag));
  }
  // A choice is an exclusive-or of bits: three of three satisfy it, as one does.
  return static_cast<u16>(route->rule == PayloadRule::kChoice ? present % 2 : present != 0);
}

template <Side kSide>
void Transaction<kSide>::AddPayloadTo(MissingTags& missing) const {
  const TransactionRoute* route = Route();
  if (route == nullptr) return;
  for (u8 i = 0; i < route->payloadCount; ++i) {
    const KRTagID tag = route->payloads[i].tag;
    if (IsValidTag(tag) == 0 || ValidateTag(tag) != 0) continue;
    missing.Add(tag);
    return;
  }
}

template <Side kSide>
u16 Transaction<kSide>::SetMsgSetVersion(u16 version) {
  if (m_payload.Get() != nullptr) m_payload.Get()->SetMsgSetVersion(version);
  return KRTransBase::SetMsgSetVersion(version);
}

template <Side kSide>
u16 Transaction<kSide>::DeepCopyFrom(KRTransBase* source) {
  auto* other = dynamic_cast<Transaction*>(source);
  if (other == nullptr || m_payload.CopyFrom(other->m_payload) == 0) return 0;
  m_messageSet = other->m_messageSet;
  return KRTransBase::DeepCopyFrom(other);
}

template class Transaction<Side::kRequest>;
template class Transaction<Side::kResponse>;

// Requests

KRTagID RequestTransaction::MsgIDToTranWrapper(KRTagID tag) { return WrapperOfPayload(tag); }

u16 RequestTransaction::AllRequiredPresent() {
  if (m_payload.Get() == nullptr || ValidateTag(KRTag_TRNUID) == 0) return 0;
  return PayloadRuleHolds();
}

KRTagID RequestTransaction::GetFirstMissingRequiredTag(KRTagID after) {
  MissingTags missing(after);
  if (ValidateTag(KRTag_TRNUID) == 0) missing.Add(KRTag_TRNUID);
  if (m_payload.Get() == nullptr || PayloadRuleHolds() == 0) AddPayloadTo(missing);
  return missing.Found();
}

KRDataObj* RequestTransaction::GetChild(u16 index) const {
  return index == 0 ? m_payload.Get() : nullptr;
}

u16 RequestTransaction::GetNumberOfChildren() const { return 1; }

// Responses

KRStatus* ResponseTransaction::Status() const {
  // Every wrapper of a response is a KRTransRs, of which the status is a row.
  return static_cast<const KRTransRs*>(this)->GetStatus();
}

KRParseStatus ResponseTransaction::HandleTagStart(const KRTagDictionaryEntry* const entry) {
  return entry->tagID == KRTag_STATUS ? KRTransBase::HandleTagStart(entry)
                                      : Transaction::HandleTagStart(entry);
}

u16 ResponseTransaction::IsErrorStatus() const {
  KRStatus* status = Status();
  return ValidateTag(KRTag_STATUS) != 0 && status != nullptr &&
                 status->ValidateTag(KRTag_SEVERITY) != 0 &&
                 status->GetSeverity() == KRStatusSeverity_ERROR
             ? 1
             : 0;
}

u16 ResponseTransaction::IsUpToDate() const {
  KRStatus* status = Status();
  return ValidateTag(KRTag_STATUS) != 0 && status != nullptr &&
                 status->ValidateTag(KRTag_CODE) != 0 && status->GetCode() == 1
             ? 1
             : 0;
}

u16 ResponseTransaction::PayloadSettled() const {
  const TransactionRoute* route = Route();
  KRStatus* status = Status();
  if (route == nullptr || status == nullptr) return 1;
  const bool error = route->error == Excuse::kShown
                         ? IsErrorStatus() != 0
                         : status->GetSeverity() == KRStatusSeverity_ERROR;
  if (route->error != Excuse::kNone && error) return 1;
  const bool upToDate =
      route->upToDate == Excuse::kShown ? IsUpToDate() != 0 : status->GetCode() == 1;
  if (route->upToDate != Excuse::kNone && upToDate) return 1;
  return PayloadRuleHolds();
}

u16 ResponseTransaction::AllRequiredPresent() {
  if (Status() == nullptr || ValidateTag(KRTag_TRNUID) == 0) return 0;
  return PayloadSettled();
}

KRTagID ResponseTransaction::GetFirstMissingRequiredTag(KRTagID after) {
  MissingTags missing(after);
  if (ValidateTag(KRTag_TRNUID) == 0) missing.Add(KRTag_TRNUID);
  if (Status() == nullptr) missing.Add(KRTag_STATUS);
  if (PayloadSettled() == 0) AddPayloadTo(missing);
  return missing.Found();
}

KRDataObj* ResponseTransaction::GetChild(u16 index) const {
  return index == 0 ? Status() : index == 1 ? static_cast<KRDataObj*>(m_payload.Get()) : nullptr;
}

u16 ResponseTransaction::GetNumberOfChildren() const { return 2; }

// What a rule about several payloads asks for. The excuses of a response count: the wrapper names a
// payload among its missing tags when it needs one.

namespace {

bool IsPayload(const TransactionRoute& route, KRTagID tag) {
  return std::find(route.payloadTags, route.payloadTags + route.payloadCount, tag) !=
         route.payloadTags + route.payloadCount;
}

u16 UnmetPayloadRule(Side side, const KRDataObj& object, u16 index, KRUnmetRule& rule) {
  const TransactionRoute* route = FindTransaction(side, TypeOf(object));
  if (route == nullptr || route->payloadTags == nullptr) return 0;
  auto& wrapper = const_cast<KRDataObj&>(object);
  KRTagID missing = wrapper.GetFirstMissingRequiredTag(KRTag_None);
  while (missing != KRTag_None && !IsPayload(*route, missing)) {
    missing = wrapper.GetFirstMissingRequiredTag(missing);
  }
  if (missing == KRTag_None) return 0;
  const Rule onePayload = {RuleKind::kExclusiveOr, RuleCondition::kAlways, nullptr, 0,
                           route->payloadTags,     route->payloadCount};
  return FindUnmetRule(object, &onePayload, 1, index, rule);
}

}  // namespace

u16 UnmetRuleOfTransRq(const KRDataObj& object, u16 index, KRUnmetRule& rule) {
  return UnmetPayloadRule(Side::kRequest, object, index, rule);
}

u16 UnmetRuleOfTransRs(const KRDataObj& object, u16 index, KRUnmetRule& rule) {
  return UnmetPayloadRule(Side::kResponse, object, index, rule);
}

}  // namespace krofx::internal
