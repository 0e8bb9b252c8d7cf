// The transaction wrappers: what depends on the wrapper's type.

#include "krofx/build/builder.h"
#include "krofx/envelope/envelope.h"
#include "krofx/envelope/internal/missing_tags.h"
#include "krofx/envelope/internal/routing.h"
#include "krofx/messages/signon/status.h"
#include "krofx/model/internal/aggregate.h"

using krofx::internal::AggregateTable;
using krofx::internal::BuildRows;
using krofx::internal::Excuse;
using krofx::internal::FindTransaction;
using krofx::internal::MissingTags;
using krofx::internal::NoteFailure;
using krofx::internal::Payload;
using krofx::internal::PayloadRule;
using krofx::internal::Side;
using krofx::internal::TransactionRoute;
using krofx::internal::TypeOf;
using krofx::internal::WrapperOfPayload;

namespace {

// The routing row of a wrapper, by its type.
const TransactionRoute* RouteOf(Side side, const KRDataObj& wrapper) {
  return FindTransaction(side, TypeOf(wrapper));
}

u16 ValidTagsOf(Side side, const KRDataObj& wrapper, KRArrayOfTags& tags) {
  const TransactionRoute* route = RouteOf(side, wrapper);
  tags = route == nullptr ? KRArrayOfTags() : route->valid;
  return 1;
}

// Writes the rows of the class, and then the payload under the tag of its type.
KRBuildStatus BuildWrapper(const KRDataObj& wrapper, const AggregateTable& table,
                           const Payload& payload, KRBuilder& builder) {
  KRBuildStatus status = BuildRows(wrapper, table, builder);
  if (status == KRBuildStatus_Done && payload.Get() != nullptr) {
    status = payload.Get()->BuildObject(&builder, KRTag_None);
    if (status != KRBuildStatus_Done) NoteFailure(builder, wrapper);
  }
  return status;
}

u16 SetPayload(KRDataObj& wrapper, Payload& payload, KRTransBase* given) {
  KRTransBase* named = given != nullptr ? given : payload.Get();
  const KRTagID tag = named == nullptr ? KRTag_None : named->GetType();
  payload.Set(given);
  if (given == nullptr) wrapper.ClearTag(tag);
  return wrapper.SetTag(tag);
}

u16 PayloadsPresent(const KRDataObj& wrapper, const TransactionRoute& route) {
  u16 present = 0;
  for (u8 i = 0; i < route.payloadCount; ++i) {
    present = static_cast<u16>(present + wrapper.ValidateTag(route.payloads[i].tag));
  }
  return present;
}

// Adds the tag of the payload: the first one that is valid in the wrapper and absent.
void AddPayload(const KRDataObj& wrapper, const TransactionRoute* route, MissingTags& missing) {
  if (route == nullptr) return;
  for (u8 i = 0; i < route->payloadCount; ++i) {
    const KRTagID tag = route->payloads[i].tag;
    if (wrapper.IsValidTag(tag) == 0 || wrapper.ValidateTag(tag) != 0) continue;
    missing.Add(tag);
    return;
  }
}

u16 RuleHolds(const KRDataObj& wrapper, const TransactionRoute* route) {
  if (route == nullptr || route->rule == PayloadRule::kHeld) return 1;
  const u16 present = PayloadsPresent(wrapper, *route);
  // A choice is an exclusive-or of bits: three of three satisfy it, as one does.
  return route->rule == PayloadRule::kChoice ? present % 2 : static_cast<u16>(present != 0);
}

}  // namespace

// Requests

KRTagID KRTransRq::MsgIDToTranWrapper(KRTagID tag) { return WrapperOfPayload(tag); }

KRTransBase* KRTransRq::GetActualTrans() const { return m_payload.Get(); }

u16 KRTransRq::SetActualTrans(KRTransBase* payload) {
  return SetPayload(*this, m_payload, payload);
}

KRParseStatus KRTransRq::NewRq(KRTagID tag) { return m_payload.Make(Side::kRequest, tag); }

u16 KRTransRq::GetArrayOfValidTags(KRArrayOfTags& tags) const {
  return ValidTagsOf(Side::kRequest, *this, tags);
}

KRParseStatus KRTransRq::HandleTagStart(const KRTagDictionaryEntry* const entry) {
  const KRParseStatus status = NewRq(entry->tagID);
  return status != KRParseStatus_Accepted ? status
                                          : PushAndSetObject(m_payload.Get(), entry->tagID);
}

KRBuildStatus KRTransRq::Build(KRBuilder* builder) const {
  return BuildWrapper(*this, *GetTable(), m_payload, *builder);
}

u16 KRTransRq::AllRequiredPresent() {
  if (m_payload.Get() == nullptr || ValidateTag(KRTag_TRNUID) == 0) return 0;
  return RuleHolds(*this, RouteOf(Side::kRequest, *this));
}

KRTagID KRTransRq::GetFirstMissingRequiredTag(KRTagID after) {
  const TransactionRoute* route = RouteOf(Side::kRequest, *this);
  MissingTags missing(after);
  if (ValidateTag(KRTag_TRNUID) == 0) missing.Add(KRTag_TRNUID);
  if (m_payload.Get() == nullptr || RuleHolds(*this, route) == 0) {
    AddPayload(*this, route, missing);
  }
  return missing.Found();
}

KRDataObj* KRTransRq::GetChild(u16 index) const { return index == 0 ? m_payload.Get() : nullptr; }

u16 KRTransRq::GetNumberOfChildren() const { return 1; }

u16 KRTransRq::SetMsgSetVersion(u16 version) {
  if (m_payload.Get() != nullptr) m_payload.Get()->SetMsgSetVersion(version);
  return KRTransBase::SetMsgSetVersion(version);
}

u16 KRTransRq::DeepCopyFrom(KRTransBase* source) {
  auto* other = dynamic_cast<KRTransRq*>(source);
  if (other == nullptr || m_payload.CopyFrom(other->m_payload) == 0) return 0;
  m_messageSet = other->m_messageSet;
  return KRTransBase::DeepCopyFrom(other);
}

// Responses

KRTransBase* KRTransRs::GetActualTrans() const { return m_payload.Get(); }

u16 KRTransRs::SetActualTrans(KRTransBase* payload) {
  return SetPayload(*this, m_payload, payload);
}

void KRTransRs::DisconnectActualTrans() { m_payload.Disconnect(); }

KRParseStatus KRTransRs::NewRs(KRTagID tag) { return m_payload.Make(Side::kResponse, tag); }

u16 KRTransRs::GetArrayOfValidTags(KRArrayOfTags& tags) const {
  return ValidTagsOf(Side::kResponse, *this, tags);
}

KRParseStatus KRTransRs::HandleTagStart(const KRTagDictionaryEntry* const entry) {
  if (entry->tagID == KRTag_STATUS) return KRTransBase::HandleTagStart(entry);
  const KRParseStatus status = NewRs(entry->tagID);
  return status != KRParseStatus_Accepted ? status
                                          : PushAndSetObject(m_payload.Get(), entry->tagID);
}

KRBuildStatus KRTransRs::Build(KRBuilder* builder) const {
  return BuildWrapper(*this, *GetTable(), m_payload, *builder);
}

u16 KRTransRs::IsErrorStatus() const {
  KRStatus* status = GetStatus();
  return ValidateTag(KRTag_STATUS) != 0 && status != nullptr &&
                 status->ValidateTag(KRTag_SEVERITY) != 0 &&
                 status->GetSeverity() == KRStatusSeverity_ERROR
             ? 1
             : 0;
}

u16 KRTransRs::IsUpToDate() const {
  KRStatus* status = GetStatus();
  return ValidateTag(KRTag_STATUS) != 0 && status != nullptr &&
                 status->ValidateTag(KRTag_CODE) != 0 && status->GetCode() == 1
             ? 1
             : 0;
}

namespace {

// Whether the payload is there, or the status excuses its absence.
u16 PayloadSettled(const KRTransRs& wrapper, const TransactionRoute* route) {
  KRStatus* status = wrapper.GetStatus();
  if (route == nullptr || status == nullptr) return 1;
  const bool error = route->error == Excuse::kShown
                         ? wrapper.IsErrorStatus() != 0
                         : status->GetSeverity() == KRStatusSeverity_ERROR;
  if (route->error != Excuse::kNone && error) return 1;
  const bool upToDate =
      route->upToDate == Excuse::kShown ? wrapper.IsUpToDate() != 0 : status->GetCode() == 1;
  if (route->upToDate != Excuse::kNone && upToDate) return 1;
  return RuleHolds(wrapper, route);
}

}  // namespace

u16 KRTransRs::AllRequiredPresent() {
  if (GetStatus() == nullptr || ValidateTag(KRTag_TRNUID) == 0) return 0;
  return PayloadSettled(*this, RouteOf(Side::kResponse, *this));
}

KRTagID KRTransRs::GetFirstMissingRequiredTag(KRTagID after) {
  const TransactionRoute* route = RouteOf(Side::kResponse, *this);
  MissingTags missing(after);
  if (ValidateTag(KRTag_TRNUID) == 0) missing.Add(KRTag_TRNUID);
  if (GetStatus() == nullptr) missing.Add(KRTag_STATUS);
  if (PayloadSettled(*this, route) == 0) AddPayload(*this, route, missing);
  return missing.Found();
}

KRDataObj* KRTransRs::GetChild(u16 index) const {
  return index == 0 ? GetStatus() : index == 1 ? static_cast<KRDataObj*>(m_payload.Get()) : nullptr;
}

u16 KRTransRs::GetNumberOfChildren() const { return 2; }

u16 KRTransRs::SetMsgSetVersion(u16 version) {
  if (m_payload.Get() != nullptr) m_payload.Get()->SetMsgSetVersion(version);
  return KRTransBase::SetMsgSetVersion(version);
}

u16 KRTransRs::DeepCopyFrom(KRTransBase* source) {
  auto* other = dynamic_cast<KRTransRs*>(source);
  if (other == nullptr || m_payload.CopyFrom(other->m_payload) == 0) return 0;
  m_messageSet = other->m_messageSet;
  return KRTransBase::DeepCopyFrom(other);
}
