// The seam for values: what is asked when an element's text is no value of its kind, or is one
// whose meaning is not the one that the text has.
//
// A value mender is one function and one line in the table of values/value_menders.cpp. The tree
// reader asks the menders of a value's form in the order of that table:
//
//   - those that are asked first, before the object sees the text, since the object would take it
//     for another value than the one that is written there (an amount with a comma);
//   - the others when the object has refused the text.
//
// Each mender sees what those before it made of the text. What comes out is offered to the object,
// which has the last word; a text that it refuses even then is left out, and that is said.

#ifndef KROFX_READER_VALUES_VALUE_MENDER_H_
#define KROFX_READER_VALUES_VALUE_MENDER_H_

#include <cstddef>
#include <span>
#include <string_view>

#include "krofx/core/string.h"
#include "krofx/core/tags.h"
#include "krofx/model/internal/aggregate.h"
#include "krofx/reader/mending.h"

namespace krofx::internal {

class ValueSurvey;

/// A value that a mender is asked about.
struct DoubtfulValue {
  std::string_view text;      ///< Not empty, without white space around it, references resolved.
  ValueForm form;             ///< What it must be.
  KRTagID tag;                ///< The element.
  const ValueSurvey& survey;  ///< What the other values of the text look like.
};

/// What a mender makes of a value.
class MendedValue {
 public:
  /// The value is `text`; `kind` is said.
  /// @return true.
  bool Take(MendingKind kind, std::string_view text);
  /// There is no value; `kind` is said.
  /// @return true.
  bool TakeAsAbsent(MendingKind kind);
  /// One more kind that is said.
  void Say(MendingKind kind);

  /// @return the text to take; empty for an absent value.
  const KRString& Text() const { return m_text; }
  bool IsAbsent() const { return m_text.IsEmpty() != 0; }
  std::span<const MendingKind> Kinds() const { return {m_kinds, m_count}; }

 private:
  static constexpr std::size_t kMostKinds = 6;

  KRString m_text;
  MendingKind m_kinds[kMostKinds] = {};
  std::size_t m_count = 0;
};

/// One mender.
struct ValueMender {
  ValueForm form;   ///< The values that it is asked about; with decimals, payroll amounts too.
  bool askedFirst;  ///< Before the object sees the text.
  /// Looks at a value.
  /// @param out takes what is to be taken instead.
  /// @return whether it mended the value; false leaves `out` as it was.
  bool (*mend)(const DoubtfulValue& value, MendedValue& out);
};

/// @return all menders, in the order in which they are asked.
std::span<const ValueMender> ValueMenders();

}  // namespace krofx::internal

#endif  // KROFX_READER_VALUES_VALUE_MENDER_H_
