// Reading time zones.

#include "krofx/reader/dates/zone_text.h"

#include "krofx/reader/values/digit_cursor.h"
#include "krofx/values/internal/keyword_table.h"

namespace krofx::internal {

namespace {

constexpr std::size_t kNameLength = 3;

// Names with an offset that all understand alike, or that OFX itself gives them.
struct NamedZone {
  std::string_view written;
  std::string_view name;
  bool negative;
  u32 hours;
};
constexpr NamedZone kNamed[] = {
    {"GMT", "GMT", false, 0}, {"UTC", "UTC", false, 0}, {"UT", {}, false, 0},
    {"Z", {}, false, 0},      {"EST", "EST", true, 5},  {"EDT", "EDT", true, 4},
    {"CST", "CST", true, 6},  {"CDT", "CDT", true, 5},  {"MST", "MST", true, 7},
    {"MDT", "MDT", true, 6},  {"PST", "PST", true, 8},  {"BRT", "BRT", true, 3},
    {"WET", "WET", false, 0}, {"CET", "CET", false, 1}, {"CEST", {}, false, 2},
    {"EET", "EET", false, 2}, {"EEST", {}, false, 3},   {"HKT", "HKT", false, 8},
    {"JST", "JST", false, 9}, {"AEST", {}, false, 10},  {"NZST", {}, false, 12},
};

const NamedZone* FindNamed(std::string_view text) {
  for (const NamedZone& named : kNamed) {
    if (EqualsWithoutCase(named.written, text)) return &named;
  }
  return nullptr;
}

// Takes minutes as hundredths of an hour.
bool TakeMinutes(u32 minutes, ZoneText& zone) {
  constexpr u32 kMinutes = 60;
  zone.otherForm = true;
  zone.hundredths = minutes * 100 / kMinutes;
  return minutes < kMinutes && minutes * 100 % kMinutes == 0;
}

// Whether the text after an offset begins with minutes: ":30", and then a name or nothing.
bool BeginsWithMinutes(std::string_view rest) {
  if (!rest.starts_with(':') || DigitCursor(rest.substr(1)).CountDigits() != 2) return false;
  return rest.size() == 3 || std::string_view(": ").find(rest[3]) != std::string_view::npos;
}

// "5", "05", "0530", with ".5" or ":30" after it.
bool ReadOffset(DigitCursor& cursor, ZoneText& zone) {
  u32 digits;
  const std::size_t count = cursor.CountDigits();
  if (count == 0 || count > 4) return false;
  if (count > 2) {
    cursor.TakeDigits(count - 2, zone.hours);
    cursor.TakeDigits(2, digits);
    return TakeMinutes(digits, zone);
  }
  cursor.TakeDigits(count, zone.hours);
  if (cursor.Take('.')) {
    const std::size_t places = cursor.CountDigits();
    if (places < 1 || places > 2) return false;
    cursor.TakeDigits(places, zone.hundredths);
    if (places == 1) zone.hundredths *= 10;
    return true;
  }
  if (!BeginsWithMinutes(cursor.Rest())) return true;
  cursor.Take(':');
  cursor.TakeDigits(2, digits);
  return TakeMinutes(digits, zone);
}

bool ReadName(DigitCursor& cursor, ZoneText& zone) {
  const bool blanks = cursor.TakeBlanks();
  if (cursor.AtEnd()) return true;
  if (!cursor.Take(':') && !blanks) return false;
  zone.otherForm = zone.otherForm || blanks;
  zone.name = cursor.Rest();
  if (zone.name.size() != kNameLength) {
    zone.name = {};
    zone.otherForm = true;
  }
  return true;
}

// An offset of zero without a name would be taken for no zone at all.
void NameMeanTime(ZoneText& zone) {
  const bool isMeanTime = zone.hours == 0 && zone.hundredths == 0 && zone.name.empty();
  if (isMeanTime && zone.otherForm) zone.name = "GMT";
}

}  // namespace

bool ReadZone(std::string_view body, ZoneText& zone) {
  DigitCursor cursor(body);
  zone.otherForm = cursor.TakeBlanks();
  const std::string_view letters = cursor.TakeLetters();
  const NamedZone* const named = letters.empty() ? nullptr : FindNamed(letters);
  if (!letters.empty()) {
    zone.otherForm = true;
    if (named == nullptr) return false;
    if (cursor.AtEnd()) {
      zone.negative = named->negative;
      zone.hours = named->hours;
      zone.name = named->name;
      NameMeanTime(zone);
      return true;
    }
    // "UTC+1", and never "EST+1".
    if (named->hours != 0) return false;
    cursor.TakeBlanks();
  }
  zone.negative = cursor.Take('-');
  if (!zone.negative) cursor.Take('+');
  if (cursor.TakeBlanks()) zone.otherForm = true;
  if (!ReadOffset(cursor, zone) || !ReadName(cursor, zone)) return false;
  NameMeanTime(zone);
  constexpr u32 kMostHours = 12;
  return zone.hours < kMostHours || (zone.hours == kMostHours && zone.hundredths == 0);
}

}  // namespace krofx::internal
