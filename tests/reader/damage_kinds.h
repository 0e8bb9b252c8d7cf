// Kinds of damage that are done to whole texts.

#ifndef KROFX_TESTS_READER_DAMAGE_KINDS_H_
#define KROFX_TESTS_READER_DAMAGE_KINDS_H_

#include <functional>
#include <string>
#include <vector>

#include "reader/damage_document.h"

namespace krofx::testing {

/// A text with damage, and the text that must be read from it: the whole one, without what the
/// damage lost.
struct DamagedText {
  Document damaged;
  Document expected;
};

/// One kind of damage.
struct Damage {
  std::string name;
  /// Of each group one damage is done to a text. Groups are done in the order of the alphabet.
  std::string group;
  /// The kind of the mending that must be said; empty for a form that needs none.
  std::string mending;
  /// Does the damage.
  /// @return false, with the text as it was, when it cannot be done to this text.
  std::function<bool(Dice& dice, DamagedText& text)> inflict;
};

/// All of them: to the header and the form of the whole text, to tags, and to values.
std::vector<Damage> AllDamage();
std::vector<Damage> DamageToForm();
std::vector<Damage> DamageToTags();
std::vector<Damage> DamageToValues();

}  // namespace krofx::testing

#endif  // KROFX_TESTS_READER_DAMAGE_KINDS_H_
