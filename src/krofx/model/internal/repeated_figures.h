// How often a parse has read an amount, another number or a date that an object had already, for
// readers that must not lose the first one: the parse itself says nothing of it.

#ifndef KROFX_MODEL_INTERNAL_REPEATED_FIGURES_H_
#define KROFX_MODEL_INTERNAL_REPEATED_FIGURES_H_

#include <cstddef>

#include "krofx/core/export.h"
#include "krofx/model/internal/aggregate.h"

namespace krofx::internal {

/// @return whether an object holds one value of a kind, and it is a number or a date.
inline bool IsFigure(const ValueKind& kind) {
  const bool isForm = IsNumber(kind.form) || IsMoment(kind.form);
  return isForm && !kind.isRepeated;
}

/// @return how many figures of this thread's parses took the place of another so far.
KROFX_API std::size_t& RepeatedFigures();

}  // namespace krofx::internal

#endif  // KROFX_MODEL_INTERNAL_REPEATED_FIGURES_H_
