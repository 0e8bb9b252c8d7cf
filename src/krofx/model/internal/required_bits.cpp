// Working out what a class requires, and the comparison of presence sets with it.

#include "krofx/model/internal/required_bits.h"

#include <cstdint>

namespace krofx::internal {

namespace {

// Adds the bit of a tag if the tag is valid in the version.
void Add(PresenceBits& bits, const KRArrayOfTags& valid, KRTagID tag, u16 version) {
  const int position = FindTagRow(valid, tag, version);
  if (position >= 0 && position < PresenceBits::kCount) bits.Set(position);
}

}  // namespace

void RequiredBits::Fill(Place& place, const AggregateTable& table, u16 version) {
  place = Place();
  place.table = &table;
  place.version = version;
  place.isFilled = true;
  place.held.Set(0);
  if (!table.rulesOnly) {
    place.isNever = version == 0 && table.required.count != 0;
    for (u16 row = 0; row < table.required.count; ++row) {
      const KRTagTableEntry& entry = table.required.table[row];
      if ((entry.versions & version) == 0) continue;
      if (FindTagRow(table.valid, entry.tag, version) < 0) place.isNever = true;
      Add(place.required, table.valid, entry.tag, version);
    }
  }
  if (table.ruleCount > kMostRules) return;
  for (u8 i = 0; i < table.ruleCount; ++i) {
    const Rule& rule = table.rules[i];
    RuleBits& bits = place.rules[i];
    for (u8 tag = 0; tag < rule.count; ++tag) Add(bits.tags, table.valid, rule.tags[tag], version);
    for (u8 tag = 0; tag < rule.conditionCount; ++tag) {
      Add(bits.condition, table.valid, rule.conditionTags[tag], version);
    }
  }
}

bool RequiredBits::RulesHoldIn(const Place& place, const KRDataObj& object) {
  const AggregateTable& table = *place.table;
  if (table.ruleCount > kMostRules) return RulesHold(Presence(object), table) != 0;
  const PresenceBits& presence = ObjectAccess::PresenceOf(object);
  for (u8 i = 0; i < table.ruleCount; ++i) {
    const RuleBits& bits = place.rules[i];
    const bool isConditional = table.rules[i].condition != RuleCondition::kAlways;
    const int conditions = isConditional ? presence.CountCommon(bits.condition) : 0;
    if (!RuleHolds(table.rules[i], conditions, presence.CountCommon(bits.tags))) return false;
  }
  return true;
}

void RequiredBits::Remember(Place& place, const PresenceBits& presence) {
  if (place.table->ruleCount > kMostRules) return;
  place.held = PresenceBits();
  for (int bit = 0; bit < PresenceBits::kCount; ++bit) place.allowed.Set(bit);
  const auto take = [&place, &presence](const PresenceBits& asked) {
    for (int bit = asked.NextFrom(0); bit < PresenceBits::kCount; bit = asked.NextFrom(bit + 1)) {
      if (presence.Has(bit)) {
        place.held.Set(bit);
      } else {
        place.allowed.Clear(bit);
      }
    }
  };
  take(place.required);
  for (const RuleBits& rule : place.rules) {
    take(rule.tags);
    take(rule.condition);
  }
}

bool RequiredBits::WorkOut(const PresenceBits& presence, KRDataObj& object,
                           const AggregateTable& table) {
  constexpr std::size_t kTableAlignment = 64;
  const u16 version = ObjectAccess::VersionOf(object);
  Place& place = m_places[reinterpret_cast<std::uintptr_t>(&table) / kTableAlignment % kPlaces];
  if (place.table != &table || place.version != version) {
    place.table = &table;
    place.version = version;
    place.isFilled = false;
    // Nothing is between them.
    place.held.Set(0);
    place.allowed = PresenceBits();
    return object.AllRequiredPresent() != 0;
  }
  if (!place.isFilled) Fill(place, table, version);
  m_last = &place;
  if (place.isNever || !presence.Contains(place.required) || !RulesHoldIn(place, object)) {
    return false;
  }
  Remember(place, presence);
  return true;
}

}  // namespace krofx::internal
