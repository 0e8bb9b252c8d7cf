// The names of the time zones of North America, for noticing a wrong one.

#ifndef KROFX_VALUES_INTERNAL_NAMED_ZONES_H_
#define KROFX_VALUES_INTERNAL_NAMED_ZONES_H_

#include <string_view>

#include "krofx/core/types.h"

namespace krofx::internal {

/// @return whether a zone name, which must not be empty, fits an offset of whole hours. Any name
///         fits an offset without known names.
inline bool IsNameOfOffset(std::string_view name, s16 offset) noexcept {
  constexpr s16 kFirst = -4;
  // For each hour westwards: the zone's standard time, and the daylight time of the next zone to
  // the west.
  struct Names {
    std::string_view standard;
    std::string_view daylight;
  };
  constexpr Names kNames[] = {
      {"AST", "EDT"}, {"EST", "CDT"}, {"CST", "MDT"}, {"MST", "PDT"}, {"PST", "YDT"},
  };
  constexpr s16 kLast = kFirst - static_cast<s16>(sizeof kNames / sizeof kNames[0]) + 1;
  if (offset > kFirst || offset < kLast) return true;
  const Names& known = kNames[kFirst - offset];
  // Comparing a fixed length compiles to no function call.
  const auto is = [name](std::string_view other) {
    return name.size() == 3 && name[0] == other[0] && name[1] == other[1] && name[2] == other[2];
  };
  return is(known.standard) || is(known.daylight);
}

}  // namespace krofx::internal

#endif  // KROFX_VALUES_INTERNAL_NAMED_ZONES_H_
