// What a rule of presence asks for, in the words of the public interface.

#ifndef KROFX_MODEL_INTERNAL_PRESENCE_DEMAND_H_
#define KROFX_MODEL_INTERNAL_PRESENCE_DEMAND_H_

#include "krofx/model/internal/aggregate.h"
#include "krofx/values/utility.h"

namespace krofx::internal {

/// @return how many tags of its group a rule of a kind asks for.
constexpr KRPresenceDemand DemandOf(RuleKind kind) {
  switch (kind) {
    case RuleKind::kNone:
      return KRPresenceDemand_None;
    case RuleKind::kAtMostOne:
      return KRPresenceDemand_AtMostOne;
    case RuleKind::kExactlyOne:
    case RuleKind::kExclusiveOr:
      return KRPresenceDemand_ExactlyOne;
    case RuleKind::kAtLeastOne:
      return KRPresenceDemand_AtLeastOne;
    case RuleKind::kAll:
      break;
  }
  return KRPresenceDemand_All;
}

/// @return whether an object that does not meet a rule can also meet it by a tag of the condition.
constexpr bool IsMetByCondition(const Rule& rule) {
  return rule.kind == RuleKind::kAtLeastOne && rule.condition == RuleCondition::kUnlessAny;
}

}  // namespace krofx::internal

#endif  // KROFX_MODEL_INTERNAL_PRESENCE_DEMAND_H_
