// What is mended in the bytes of a text before its tags are looked at.
//
// A text mender is one function and one line in the table of text_menders.cpp. Each looks at the
// text as those before it left it, and makes it anew with a TextEdit, which keeps the way back to
// the original places.

#ifndef KROFX_READER_FILE_TEXT_MENDERS_H_
#define KROFX_READER_FILE_TEXT_MENDERS_H_

#include <cstddef>
#include <span>
#include <string_view>

#include "krofx/core/status.h"

namespace krofx::internal {

class Recorder;
class WorkingText;

/// One mender.
/// @return 0; 3 when memory is exhausted; 4 when the damage must not be mended.
using TextMender = KRParseStatus (*)(WorkingText& text, Recorder& recorder);

/// @return all menders, in the order in which they see a text. Afterwards it has no NUL.
std::span<const TextMender> TextMenders();

/// @return whether a text is in UTF-16 or UTF-32.
bool HasWideCharacters(std::string_view text);
/// @return the first control character of a text, which the menders take out; its size without one.
std::size_t FindControlCharacter(std::string_view text);
/// Takes the control characters out of a text, and says nothing.
/// @return false when memory is exhausted.
bool TakeOutControlCharacters(WorkingText& text);

/// The mender of a whole file, before it is divided into texts: makes UTF-8 of UTF-16 and UTF-32,
/// so that the characters of ASCII are single bytes.
KRParseStatus MendWideCharacters(WorkingText& file, Recorder& recorder);

}  // namespace krofx::internal

#endif  // KROFX_READER_FILE_TEXT_MENDERS_H_
