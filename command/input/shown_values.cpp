// Most texts are shown as they are, so they are only looked at.

#include "input/shown_values.h"

#include <string>

#include "krofx/host/amounts.h"
#include "krofx/host/dates.h"
#include "krofx/host/words.h"
#include "output/byte_scan.h"
#include "output/masking.h"
#include "output/safe_text.h"

namespace krofx::command {

namespace {

// A day without a time.
constexpr std::size_t kDayCharacters = 10;

// Whether a text is that of a person as it is: printable ASCII without a reference to a character
// and without a section.
bool IsAsMeant(std::string_view text) {
  return !HasAny(
      text, [](ByteBlock block) { return block.HasOdd() || block.Has('&') || block.Has('<'); });
}

std::string_view HidePassword(std::string_view text, TextArena& arena) {
  return MayNamePassword(text) ? arena.Copy(WithoutPassword(text)) : text;
}

}  // namespace

krofx::ValueText ShownDate(const KRDateTime& date) {
  const krofx::ValueText text = krofx::ToText(date);
  // The time is left out at midnight with an offset of zero; a zone that has a name is GMT then.
  if (text.size() != kDayCharacters || date.GetTimeZone().IsEmpty() != 0) return text;
  return krofx::ValueText(std::string(text) + "T00:00:00+00:00");
}

krofx::ValueText ShownNumber(const KRPrecisionInteger& number) {
  return krofx::ToText(number, number.Decimal());
}

std::string_view ShownText(std::string_view text, const krofx::OfxText* source, TextArena& arena) {
  if (IsAsMeant(text)) return HidePassword(text, arena);
  KRString plain;
  plain.Assign(text.data(), static_cast<u16>(text.size()));
  if (source == nullptr) {
    plain.FromCDATA();
  } else {
    plain = source->ToUtf8(plain);
  }
  return FitText(arena.Copy(krofx::ToText(plain)), arena);
}

std::string_view FitText(std::string_view text, TextArena& arena) {
  return HidePassword(IsPlainText(text) ? text : arena.Copy(SafeText(text)), arena);
}

}  // namespace krofx::command
