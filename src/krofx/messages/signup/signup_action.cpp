// Operations of a sign-up action that differ from other aggregates': its type decides which of its
// two accounts is used.

#include "krofx/build/builder.h"
#include "krofx/core/parse_logger.h"
#include "krofx/messages/signup/signup.h"
#include "krofx/model/internal/aggregate.h"

using krofx::internal::ChildSlot;
using krofx::internal::LogWarning;
using krofx::internal::MissingTagOf;
using krofx::internal::NoteFailure;
using krofx::internal::Presence;
using krofx::internal::Rule;
using krofx::internal::RuleCondition;
using krofx::internal::RuleKind;
using krofx::internal::TypeOf;

namespace {

constexpr KRTagID kTargets[] = {KRTag_BANKACCTTO, KRTag_CCACCTTO, KRTag_INVACCTTO};
constexpr KRTagID kSources[] = {KRTag_BANKACCTFROM, KRTag_CCACCTFROM, KRTag_INVACCTFROM};

// An action that names only one of the two has only its rule.
constexpr Rule kRules[] = {
    {RuleKind::kExactlyOne, RuleCondition::kAlways, nullptr, 0, kTargets, 3, true},
    {RuleKind::kExactlyOne, RuleCondition::kAlways, nullptr, 0, kSources, 3, true},
};
constexpr const Rule& kOneTarget = kRules[0];
constexpr const Rule& kOneSource = kRules[1];

bool NamesTarget(KRTagID action) { return action == KRTag_SVCADD || action == KRTag_SVCCHG; }
bool NamesSource(KRTagID action) { return action == KRTag_SVCDEL || action == KRTag_SVCCHG; }

bool IsTarget(KRTagID tag) {
  return tag == kTargets[0] || tag == kTargets[1] || tag == kTargets[2];
}

KRBuildStatus BuildAccount(const KRDataObj& action, const ChildSlot& slot, KRBuilder& builder) {
  const KRDataObj* account = slot.Get();
  if (account == nullptr || action.ValidateTag(slot.Get()->GetType()) == 0) {
    return KRBuildStatus_Done;
  }
  return account->BuildObject(&builder, KRTag_None);
}

}  // namespace

namespace krofx::internal {

u16 UnmetRuleOfAction(const KRDataObj& object, u16 index, KRUnmetRule& rule) {
  const KRTagID type = TypeOf(object);
  const u16 count = static_cast<u16>((NamesTarget(type) ? 1 : 0) + (NamesSource(type) ? 1 : 0));
  return FindUnmetRule(object, NamesTarget(type) ? kRules : kRules + 1, count, index, rule);
}

}  // namespace krofx::internal

u16 KRAction::AllRequiredPresent() { return GetFirstMissingRequiredTag(KRTag_None) == KRTag_None; }

KRTagID KRAction::GetFirstMissingRequiredTag(KRTagID after) {
  const KRTagID type = GetType();
  const Presence presence(*this);
  KRTagID missing[2] = {KRTag_None, KRTag_None};
  if (NamesTarget(type)) missing[0] = MissingTagOf(presence, kOneTarget);
  if (NamesSource(type)) missing[1] = MissingTagOf(presence, kOneSource);
  // An action of any other type is never complete, whatever it holds.
  if (!NamesTarget(type) && !NamesSource(type)) missing[0] = kTargets[0];
  bool passed = after == KRTag_None;
  for (const KRTagID tag : missing) {
    if (tag == KRTag_None) continue;
    if (passed) return tag;
    passed = tag == after;
  }
  return KRTag_None;
}

KRParseStatus KRAction::HandleTagStart(const KRTagDictionaryEntry* const entry) {
  if (GetParser() == nullptr) return KRParseStatus_Fatal;
  const KRTagID tag = entry->tagID;
  const bool target = IsTarget(tag);
  if (target && NamesTarget(GetType())) return KRDataObj::HandleTagStart(entry);
  // A target that is not allowed here logs a warning, and is then handled like a source, which also
  // refuses it.
  if (target) LogWarning(KRPW_INVALIDAGG, KRString(), KRString(), tag, this);
  if (NamesSource(GetType())) {
    return target ? KRParseStatus_Fatal : KRDataObj::HandleTagStart(entry);
  }
  LogWarning(KRPW_INVALIDAGG, KRString(), KRString(), tag, this);
  return KRParseStatus_Invalid;
}

KRBuildStatus KRAction::Build(KRBuilder* builder) const {
  const KRTagID type = TypeOf(*this);
  KRBuildStatus status = KRBuildStatus_Done;
  if (NamesSource(type)) status = BuildAccount(*this, m_accountFrom, *builder);
  if (status == KRBuildStatus_Done && NamesTarget(type)) {
    status = BuildAccount(*this, m_accountTo, *builder);
  }
  if (status == KRBuildStatus_Done && ValidateTag(KRTag_PREAUTHTOKEN) != 0) {
    status = builder->AddTagKRString(KRTag_PREAUTHTOKEN, m_preauthToken);
  }
  if (status != KRBuildStatus_Done) NoteFailure(*builder, *this);
  return status;
}
