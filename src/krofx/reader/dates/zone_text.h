// Time zones as they are written after a time.

#ifndef KROFX_READER_DATES_ZONE_TEXT_H_
#define KROFX_READER_DATES_ZONE_TEXT_H_

#include <string_view>

#include "krofx/core/types.h"

namespace krofx::internal {

/// A time zone as OFX has it: an offset from Greenwich and a name of three characters.
struct ZoneText {
  bool negative = false;
  u32 hours = 0;
  u32 hundredths = 0;  ///< Of an hour.
  std::string_view name;
  bool otherForm = false;  ///< It is not written as OFX has it.
};

/// Reads a time zone.
/// @param body "-3:BRT", "+5.5:IST", "+05:30", "GMT", "Z", "UTC+1"; without brackets.
/// @param zone its name is a part of `body`, or a constant.
/// @return false for what is none, for one whose offset is not known, and for one that OFX cannot
///         hold: beyond 12 hours, or not in hundredths of an hour.
bool ReadZone(std::string_view body, ZoneText& zone);

}  // namespace krofx::internal

#endif  // KROFX_READER_DATES_ZONE_TEXT_H_
