// Asks the rules of presence that an aggregate's table has beside its required tags.

#include "krofx/reader/records/choices.h"

#include <algorithm>
#include <utility>

#include "krofx/model/data_object.h"
#include "krofx/model/internal/aggregate.h"
#include "krofx/model/internal/required_bits.h"
#include "krofx/values/utility.h"

namespace krofx::internal {

namespace {

bool IsPresent(const KRDataObj& object, KRTagID tag) {
  return object.IsValidTag(tag) != 0 && object.ValidateTag(tag) != 0;
}

// How many of the tags that make the rule apply are there.
int CountConditions(const KRDataObj& object, const Rule& rule) {
  if (rule.condition == RuleCondition::kAlways) return 0;
  return static_cast<int>(std::count_if(rule.conditionTags,
                                        rule.conditionTags + rule.conditionCount,
                                        [&object](KRTagID tag) { return IsPresent(object, tag); }));
}

// What to do about a rule that fails.
KRString Advise(const Rule& rule, const List<KRTagID>& valid, const List<KRTagID>& present,
                const List<KRTagID>& absent) {
  KRString text;
  switch (rule.kind) {
    case RuleKind::kNone:
      text = ListedTags(present, " and ");
      text += " must not be there";
      return text;
    case RuleKind::kAll:
      text = ListedTags(absent, " and ");
      text += absent.size() == 1 ? " is missing" : " are missing";
      return text;
    case RuleKind::kAtLeastOne:
      text = "one or more of ";
      text += ListedTags(valid, " and ");
      text += " must be there, and none is";
      return text;
    default:
      text = rule.kind == RuleKind::kAtMostOne ? "at most one of " : "one of ";
      text += ListedTags(valid, " and ");
      text += " must be there, and ";
      if (present.size() == 2) text += "both ";
      text += present.empty() ? KRString("none is") : ListedTags(present, " and ");
      if (!present.empty()) text += " are";
      return text;
  }
}

// Takes a rule down if it fails. Tags of the other version are no choice.
bool CheckRule(const KRDataObj& object, const Rule& rule, List<MissedChoice>& missed) {
  List<KRTagID> valid;
  List<KRTagID> present;
  List<KRTagID> absent;
  for (u8 index = 0; index < rule.count; ++index) {
    const KRTagID tag = rule.tags[index];
    if (object.IsValidTag(tag) != 0 && !valid.Append(tag)) return false;
  }
  std::sort(valid.begin(), valid.end());
  for (const KRTagID tag : valid) {
    if (!(IsPresent(object, tag) ? present : absent).Append(tag)) return false;
  }
  // What must be there in any case is named tag by tag.
  if (rule.kind == RuleKind::kAll && rule.reported) return true;
  const int held = static_cast<int>(present.size());
  if (valid.empty() || RuleHolds(rule, CountConditions(object, rule), held)) return true;
  KRString advice = Advise(rule, valid, present, absent);
  return missed.Append({std::move(advice), std::move(valid)});
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
  for (u8 index = 0; index < table->ruleCount; ++index) {
    if (!CheckRule(object, table->rules[index], missed)) return false;
  }
  return true;
}

}  // namespace krofx::internal
