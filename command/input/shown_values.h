// Values of a tree as all outputs show them.

#ifndef KROFX_COMMAND_INPUT_SHOWN_VALUES_H_
#define KROFX_COMMAND_INPUT_SHOWN_VALUES_H_

#include <string_view>

#include "krofx/host/value_text.h"
#include "krofx/krofx.h"
#include "output/text_arena.h"

namespace krofx::command {

/// A date in the form of ISO 8601: "2026-01-11", or "2026-01-11T12:00:00-05:00" when it has a time
/// or a zone. A zone that is GMT by its name alone is shown too.
/// @return empty for a date that is not valid.
krofx::ValueText ShownDate(const KRDateTime& date);

/// A number with all the places that it was given with, and a digit before the point. OFX writes it
/// without zeros around it.
/// @return empty for a number that is not valid.
krofx::ValueText ShownNumber(const KRPrecisionInteger& number);

/// A text of a tree as a person would read it, fit for output, and without what looks like a
/// password.
/// @param source the text that the tree was read from, whose character set this one is in; null for
///        a tree that was not read.
/// @param arena owns the result, unless that is `text` itself.
std::string_view ShownText(std::string_view text, const krofx::OfxText* source, TextArena& arena);

/// The same of a text that is as a person would read it: a value that is no text of a tree.
std::string_view FitText(std::string_view text, TextArena& arena);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_INPUT_SHOWN_VALUES_H_
