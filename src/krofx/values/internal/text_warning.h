// Warnings about the text of a value.

#ifndef KROFX_VALUES_INTERNAL_TEXT_WARNING_H_
#define KROFX_VALUES_INTERNAL_TEXT_WARNING_H_

#include <cstddef>

#include "krofx/core/parse_logger.h"

namespace krofx::internal {

/// Logs a warning on the thread's logger, if it has one. It is never inlined, so that the parsers
/// of values stay small.
///
/// @param warning what is wrong.
/// @param text the offending text, which becomes the value text; may be null when `length` is 0.
/// @param length the number of its characters; a text that is too long for a KRString is cut.
/// @param operation becomes the tag text.
[[gnu::cold, gnu::noinline]] void WarnAboutText(KRParseWarning warning, const char* text,
                                                std::size_t length, const char* operation);

}  // namespace krofx::internal

#endif  // KROFX_VALUES_INTERNAL_TEXT_WARNING_H_
