// Asks the rules of presence that an aggregate's table has beside its required tags.

#include "checking/choices.h"

#include <algorithm>
#include <iterator>

#include "input/parsed_file.h"
#include "krofx/model/internal/aggregate.h"

namespace krofx::command {

namespace {

using internal::AggregateTable;
using internal::Rule;
using internal::RuleCondition;
using internal::RuleKind;

std::string TagText(KRTagID tag) { return "<" + ToText(KRUtility::TagToString(tag)) + ">"; }

std::string Listed(const std::vector<KRTagID>& tags, const char* last) {
  std::string text;
  for (std::size_t index = 0; index < tags.size(); ++index) {
    if (index > 0) text += index + 1 == tags.size() ? last : ", ";
    text += TagText(tags[index]);
  }
  return text;
}

bool IsPresent(const KRDataObj& object, KRTagID tag) {
  return object.IsValidTag(tag) != 0 && object.ValidateTag(tag) != 0;
}

// Whether the rule is asked at all: some are for aggregates with certain other tags only.
bool Applies(const KRDataObj& object, const Rule& rule) {
  if (rule.condition == RuleCondition::kAlways) return true;
  const bool any = std::any_of(rule.conditionTags, rule.conditionTags + rule.conditionCount,
                               [&object](KRTagID tag) { return IsPresent(object, tag); });
  return any == (rule.condition == RuleCondition::kWhenAny);
}

bool IsMissed(const Rule& rule, std::size_t present) {
  switch (rule.kind) {
    case RuleKind::kNone:
      return present > 0;
    case RuleKind::kAtMostOne:
      return present > 1;
    case RuleKind::kExactlyOne:
      return present != 1;
    case RuleKind::kAtLeastOne:
      return present == 0;
    case RuleKind::kAll:
      return present < rule.count;
    case RuleKind::kExclusiveOr:
      return present % 2 == 0;
  }
  return false;
}

std::string Advise(const Rule& rule, const std::vector<KRTagID>& valid,
                   const std::vector<KRTagID>& present) {
  if (rule.kind == RuleKind::kNone) return Listed(present, " and ") + " must not be there";
  if (rule.kind == RuleKind::kAll) {
    std::vector<KRTagID> absent;
    std::set_difference(valid.begin(), valid.end(), present.begin(), present.end(),
                        std::back_inserter(absent));
    return Listed(absent, " and ") + (absent.size() == 1 ? " is missing" : " are missing");
  }
  if (rule.kind == RuleKind::kAtLeastOne) {
    return "one or more of " + Listed(valid, " and ") + " must be there, and none is";
  }
  const char* const amount = rule.kind == RuleKind::kAtMostOne ? "at most one of " : "one of ";
  const std::string found = present.empty()       ? "none is"
                            : present.size() == 2 ? "both " + Listed(present, " and ") + " are"
                                                  : Listed(present, " and ") + " are";
  return amount + Listed(valid, " and ") + " must be there, and " + found;
}

}  // namespace

std::vector<MissedChoice> FindMissedChoices(const KRDataObj& object) {
  std::vector<MissedChoice> missed;
  const AggregateTable* const table = internal::ObjectAccess::TableOf(object);
  if (table == nullptr) return missed;
  for (u8 index = 0; index < table->ruleCount; ++index) {
    const Rule& rule = table->rules[index];
    if (!Applies(object, rule)) continue;
    // Tags of the other version are no choice here.
    std::vector<KRTagID> valid;
    std::vector<KRTagID> present;
    for (u8 each = 0; each < rule.count; ++each) {
      if (object.IsValidTag(rule.tags[each]) == 0) continue;
      valid.push_back(rule.tags[each]);
    }
    std::sort(valid.begin(), valid.end());
    std::copy_if(valid.begin(), valid.end(), std::back_inserter(present),
                 [&object](KRTagID tag) { return IsPresent(object, tag); });
    // What must be there in any case is named tag by tag.
    if (rule.kind == RuleKind::kAll && rule.reported) continue;
    if (valid.empty() || !IsMissed(rule, present.size())) continue;
    MissedChoice choice{Advise(rule, valid, present), {}, valid};
    for (const KRTagID tag : valid) choice.tags.push_back(ToText(KRUtility::TagToString(tag)));
    missed.push_back(std::move(choice));
  }
  return missed;
}

}  // namespace krofx::command
