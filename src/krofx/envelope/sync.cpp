// The synchronisation wrappers: what depends on the wrapper's type.

#include "krofx/envelope/envelope.h"
#include "krofx/envelope/internal/missing_tags.h"
#include "krofx/envelope/internal/routing.h"
#include "krofx/envelope/internal/synchronisation.h"
#include "krofx/model/internal/aggregate.h"
#include "krofx/model/internal/row_access.h"

namespace krofx::internal {

template <Side kSide>
const SyncRoute* Synchronisation<kSide>::Route() const {
  return FindSync(kSide, TypeOf(*this));
}

template <Side kSide>
u16 Synchronisation<kSide>::GetArrayOfValidTags(KRArrayOfTags& tags) const {
  const SyncRoute* route = Route();
  tags = route == nullptr ? KRArrayOfTags() : route->valid;
  return 1;
}

template <Side kSide>
KRParseStatus Synchronisation<kSide>::HandleTagStart(const KRTagDictionaryEntry* const entry) {
  // An investment account replaces the account without a warning, unlike the other two.
  if (entry->tagID == KRTag_INVACCTFROM) {
    const Row* const account = FindRow(*GetTable(), KRTag_INVACCTFROM);
    if (account != nullptr) SlotOf(*account, *this).Set(nullptr);
  }
  return KRDataObj::HandleTagStart(entry);
}

template <Side kSide>
u16 Synchronisation<kSide>::AllRequiredPresent() {
  return GetFirstMissingRequiredTag(KRTag_None) == KRTag_None ? 1 : 0;
}

template <Side kSide>
u16 Synchronisation<kSide>::CopySyncFrom(Synchronisation* source) {
  if (CopyAggregate(*this, source) == 0) return 0;
  m_messageSet = source->m_messageSet;
  return 1;
}

template <Side kSide>
KRTagID Synchronisation<kSide>::TokenTag() const {
  return IsValidTag(KRTag_TOKEN2) != 0 ? KRTag_TOKEN2 : KRTag_TOKEN;
}

template <Side kSide>
void Synchronisation<kSide>::AddNeedsTo(MissingTags& missing) const {
  const SyncRoute* route = Route();
  if (route == nullptr) return;
  // One account too many is also reported as a missing one, since the contract has no other result
  // for it.
  if (route->eitherAccount && ValidateTag(KRTag_CCACCTFROM) == ValidateTag(KRTag_BANKACCTFROM)) {
    missing.Add(KRTag_BANKACCTFROM);
  }
  for (u8 i = 0; i < route->needsCount; ++i) {
    if (ValidateTag(route->needs[i]) == 0) missing.Add(route->needs[i]);
  }
}

namespace {

constexpr KRTagID kAccounts[] = {KRTag_BANKACCTFROM, KRTag_CCACCTFROM};
constexpr KRTagID kWays[] = {KRTag_TOKEN, KRTag_TOKENONLY, KRTag_REFRESH};
constexpr KRTagID kWays2[] = {KRTag_TOKEN2, KRTag_TOKENONLY, KRTag_REFRESH};

template <u8 kCount>
constexpr Rule OneOf(const KRTagID (&tags)[kCount]) {
  return {RuleKind::kExactlyOne, RuleCondition::kAlways, nullptr, 0, tags, kCount};
}

// The rule of the accounts is last: a wrapper without one has only the rules before it.
constexpr Rule kRequestRules[] = {OneOf(kWays), OneOf(kAccounts)};
constexpr Rule kRequestRules2[] = {OneOf(kWays2), OneOf(kAccounts)};
constexpr Rule kResponseRules[] = {OneOf(kAccounts)};

}  // namespace

template class Synchronisation<Side::kRequest>;
template class Synchronisation<Side::kResponse>;

KRTagID RequestSynchronisation::MsgIDToSyncWrapper(KRTagID tag) { return SyncOfPayload(tag); }

KRTagID RequestSynchronisation::GetFirstMissingRequiredTag(KRTagID after) {
  MissingTags missing(after);
  // Presence counts, not the value: a TOKENONLY of N is a way of synchronising too. Two tokens are
  // as bad as none.
  const int ways = (ValidateTag(KRTag_TOKEN) != ValidateTag(KRTag_TOKEN2) ? 1 : 0) +
                   ValidateTag(KRTag_TOKENONLY) + ValidateTag(KRTag_REFRESH);
  if (ways != 1) missing.Add(TokenTag());
  if (ValidateTag(KRTag_REJECTIFMISSING) == 0) missing.Add(KRTag_REJECTIFMISSING);
  AddNeedsTo(missing);
  return missing.Found();
}

KRTagID ResponseSynchronisation::GetFirstMissingRequiredTag(KRTagID after) {
  MissingTags missing(after);
  if (ValidateTag(KRTag_TOKEN) == 0 && ValidateTag(KRTag_TOKEN2) == 0) missing.Add(TokenTag());
  AddNeedsTo(missing);
  return missing.Found();
}

u16 UnmetRuleOfSyncRq(const KRDataObj& object, u16 index, KRUnmetRule& rule) {
  const SyncRoute* route = FindSync(Side::kRequest, TypeOf(object));
  if (route == nullptr) return 0;
  const Rule* rules = object.IsValidTag(KRTag_TOKEN2) != 0 ? kRequestRules2 : kRequestRules;
  return FindUnmetRule(object, rules, route->eitherAccount ? 2 : 1, index, rule);
}

u16 UnmetRuleOfSyncRs(const KRDataObj& object, u16 index, KRUnmetRule& rule) {
  const SyncRoute* route = FindSync(Side::kResponse, TypeOf(object));
  const bool hasRule = route != nullptr && route->eitherAccount;
  return FindUnmetRule(object, kResponseRules, hasRule ? 1 : 0, index, rule);
}

}  // namespace krofx::internal

u16 KRSyncRq::DeepCopyFrom(KRSyncRq* source) { return CopySyncFrom(source); }

u16 KRSyncRs::DeepCopyFrom(KRSyncRs* source) { return CopySyncFrom(source); }
