// Asks the rules of presence that an aggregate has beside its required tags: those of its table, of
// which the conditions are known, and those that it checks itself.

#include "krofx/reader/records/choices.h"

#include <algorithm>
#include <span>
#include <utility>

#include "krofx/model/data_object.h"
#include "krofx/model/internal/aggregate.h"
#include "krofx/model/internal/presence_demand.h"
#include "krofx/model/internal/required_bits.h"
#include "krofx/values/utility.h"

namespace krofx::internal {

namespace {

// A child counts as what it is, also where no presence of its tag is kept.
bool IsPresent(const KRDataObj& object, KRTagID tag) {
  if (object.IsValidTag(tag) != 0 && object.ValidateTag(tag) != 0) return true;
  // The questions that objects are asked change nothing, though some are not const.
  auto& asked = const_cast<KRDataObj&>(object);
  for (u16 index = 0; index < asked.GetNumberOfChildren(); ++index) {
    KRDataObj* const child = asked.GetChild(index);
    if (child != nullptr && child->GetType() == tag) return true;
  }
  return false;
}

// Those of some tags that an object may have, and which of them it has.
struct Group {
  List<KRTagID> valid;
  List<KRTagID> present;
  List<KRTagID> absent;

  bool Add(const KRDataObj& object, const KRTagID* tags, std::size_t count) {
    for (std::size_t index = 0; index < count; ++index) {
      const KRTagID tag = tags[index];
      if (object.IsValidTag(tag) == 0) continue;
      if (!valid.Append(tag) || !(IsPresent(object, tag) ? present : absent).Append(tag)) {
        return false;
      }
    }
    for (List<KRTagID>* const list : {&valid, &present, &absent}) {
      std::sort(list->begin(), list->end());
    }
    return true;
  }
};

// What to do about a rule that fails.
// @param conditions those tags that made it apply.
KRString Advise(KRPresenceDemand demand, const Group& group, const List<KRTagID>& conditions) {
  KRString text;
  switch (demand) {
    case KRPresenceDemand_None:
      text = ListedTags(group.present, " and ");
      text += " must not be there";
      if (!conditions.empty()) {
        text += " beside ";
        text += ListedTags(conditions, " and ");
      }
      return text;
    case KRPresenceDemand_AtLeastOne:
      text = "one or more of ";
      text += ListedTags(group.valid, " and ");
      text += " must be there, and none is";
      return text;
    default:
      text = demand == KRPresenceDemand_AtMostOne ? "at most one of " : "one of ";
      text += ListedTags(group.valid, " and ");
      text += " must be there, and ";
      if (group.present.size() == 2) text += "both ";
      text += group.present.empty() ? KRString("none is") : ListedTags(group.present, " and ");
      if (!group.present.empty()) text += " are";
      return text;
  }
}

bool Note(KRPresenceDemand demand, Group& group, const List<KRTagID>& conditions,
          List<MissedChoice>& missed) {
  if (demand == KRPresenceDemand_All) return missed.Append({{}, std::move(group.absent)});
  KRString advice = Advise(demand, group, conditions);
  return missed.Append({std::move(advice), std::move(group.valid)});
}

// Notes a rule of the table if it fails. Tags of the other version are no choice.
bool CheckRule(const KRDataObj& object, const Rule& rule, List<MissedChoice>& missed) {
  // What must be there in any case is named tag by tag.
  if (rule.kind == RuleKind::kAll && rule.reported) return true;
  Group group;
  Group conditions;
  if (!group.Add(object, rule.tags, rule.count) ||
      !conditions.Add(object, rule.conditionTags, rule.conditionCount)) {
    return false;
  }
  const int held = static_cast<int>(group.present.size());
  const int met = static_cast<int>(conditions.present.size());
  if (group.valid.empty() || RuleHolds(rule, met, held)) return true;
  if (IsMetByCondition(rule) && !group.Add(object, rule.conditionTags, rule.conditionCount)) {
    return false;
  }
  return Note(DemandOf(rule.kind), group, conditions.present, missed);
}

// Notes a rule that an object does not meet and that is not in its table.
bool CheckOwnRule(const KRDataObj& object, const KRUnmetRule& rule, List<MissedChoice>& missed) {
  Group group;
  if (!group.Add(object, rule.tags, rule.count)) return false;
  return group.valid.empty() || Note(rule.demand, group, {}, missed);
}

}  // namespace

KRString ListedTags(const List<KRTagID>& tags, const char* last) {
  KRString text;
  for (std::size_t index = 0; index < tags.size(); ++index) {
    if (index > 0) text += index + 1 == tags.size() ? last : ", ";
    text += '<';
    text += KRUtility::TagToString(tags[index]);
    text += '>';
  }
  return text;
}

bool FindMissedChoices(const KRDataObj& object, List<MissedChoice>& missed) {
  const AggregateTable* const table = ObjectAccess::TableOf(object);
  if (table == nullptr) return true;
  for (const Rule& rule : std::span(table->rules, table->ruleCount)) {
    if (!CheckRule(object, rule, missed)) return false;
  }
  if (table->unmetRule == nullptr) return true;
  KRUnmetRule unmet;
  for (u16 index = 0; table->unmetRule(object, index, unmet) != 0; ++index) {
    if (!CheckOwnRule(object, unmet, missed)) return false;
  }
  return true;
}

}  // namespace krofx::internal
