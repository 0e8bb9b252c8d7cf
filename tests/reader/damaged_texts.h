// Texts with damage, each of which is made from one number.

#ifndef KROFX_TESTS_READER_DAMAGED_TEXTS_H_
#define KROFX_TESTS_READER_DAMAGED_TEXTS_H_

#include <set>
#include <string>
#include <vector>

#include "reader/damage_kinds.h"
#include "support/ofx_text.h"

namespace krofx::testing {

/// The examples that are in order, as the builder writes them.
std::vector<std::string> WholeExamples();

/// Damage done to one text.
struct DamageTrial {
  std::string text;
  std::string expected;            ///< The body that must be read from it.
  Lines names;                     ///< The kinds of damage.
  std::set<std::string> mendings;  ///< The names of the mendings that must be said.
};

/// Damages a statement, or one of some examples.
DamageTrial MakeDamage(unsigned seed, const std::vector<std::string>& examples,
                       const std::vector<Damage>& kinds);

}  // namespace krofx::testing

#endif  // KROFX_TESTS_READER_DAMAGED_TEXTS_H_
