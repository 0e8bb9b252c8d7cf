// What must be present in the objects of a class, as bits of their presence sets.
//
// A tree of tens of thousands of objects has a dozen classes. When the search for missing tags
// meets the second object of one of them in a version, it works out which bits the table of
// required tags and the rules name. After that it compares bits. The first object is asked, since
// in a small tree it is the only one of its class.

#ifndef KROFX_MODEL_INTERNAL_REQUIRED_BITS_H_
#define KROFX_MODEL_INTERNAL_REQUIRED_BITS_H_

#include <cstddef>

#include "krofx/core/types.h"
#include "krofx/model/internal/aggregate.h"
#include "krofx/model/internal/presence_bits.h"

namespace krofx::internal {

/// @return whether a rule holds for an object that has `conditions` of the rule's condition tags
///         and `present` of its tags.
bool RuleHolds(const Rule& rule, int conditions, int present);

/// The answers of KRDataObj::AllRequiredPresent for objects that are checked by their table.
class RequiredBits {
 public:
  RequiredBits() = default;
  RequiredBits(const RequiredBits&) = delete;
  RequiredBits& operator=(const RequiredBits&) = delete;

  /// @return whether everything required is present in an object of which `table` is the plain
  ///         table.
  bool AllPresentIn(KRDataObj& object, const AggregateTable& table) {
    const PresenceBits& presence = ObjectAccess::PresenceOf(object);
    const Place& place = *m_last;
    if (place.table == &table && place.version == ObjectAccess::VersionOf(object) &&
        presence.Contains(place.held) && place.allowed.Contains(presence)) {
      return true;
    }
    return WorkOut(presence, object, table);
  }

 private:
  static constexpr std::size_t kPlaces = 8;
  // Most classes have one rule or two; the rules of a class with more are tested one by one.
  static constexpr std::size_t kMostRules = 4;

  struct RuleBits {
    PresenceBits tags;
    PresenceBits condition;
  };
  struct Place {
    const AggregateTable* table = nullptr;
    u16 version = 0;
    // What is required has been worked out.
    bool isFilled = false;
    // No object is complete: a required tag is not valid in the version, or the version is unknown.
    bool isNever = false;
    PresenceBits required;
    // What the last complete object had of the bits that are asked about, and all bits but those
    // that it lacked. An object between the two is complete too. At first none is between them.
    PresenceBits held;
    PresenceBits allowed;
    RuleBits rules[kMostRules];
  };

  bool WorkOut(const PresenceBits& presence, KRDataObj& object, const AggregateTable& table);
  static void Fill(Place& place, const AggregateTable& table, u16 version);
  static bool RulesHoldIn(const Place& place, const KRDataObj& object);
  static void Remember(Place& place, const PresenceBits& presence);

  Place m_places[kPlaces];
  // The one that was asked last.
  const Place* m_last = m_places;
};

}  // namespace krofx::internal

#endif  // KROFX_MODEL_INTERNAL_REQUIRED_BITS_H_
