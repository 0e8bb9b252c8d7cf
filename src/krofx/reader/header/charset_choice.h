// Which character set a text is in: what it declares, unless its bytes say otherwise.

#ifndef KROFX_READER_HEADER_CHARSET_CHOICE_H_
#define KROFX_READER_HEADER_CHARSET_CHOICE_H_

#include <cstddef>
#include <string_view>

#include "krofx/core/status.h"
#include "krofx/reader/characters/charset.h"

namespace krofx::internal {

struct Header;
class Recorder;
class WorkingText;

/// What a text declares.
struct DeclaredCharset {
  std::string_view encoding;     ///< ENCODING of an OFX 1 header.
  std::string_view charset;      ///< CHARSET of an OFX 1 header.
  std::string_view xmlEncoding;  ///< The encoding of an XML declaration.
  bool xml = false;              ///< It is OFX 2.
};

/// What was chosen.
struct ChosenCharset {
  bool ascii = true;     ///< The text has no byte above 127.
  bool lies = false;     ///< It is in another set than it declares.
  bool unknown = false;  ///< What it declares is no character set.
  std::size_t high = 0;  ///< The first byte above 127.
};

/// Chooses.
/// @param charset takes the character set.
/// @return false when memory is exhausted.
bool ChooseCharset(std::string_view text, const DeclaredCharset& declared, Charset& charset,
                   ChosenCharset& chosen);

/// Chooses for a text with its header, says what is not in order, and makes the text UTF-8 when it
/// refers to characters that its own set does not have.
/// @return 0; 3 when memory is exhausted; 4 when something must not be mended.
KRParseStatus SettleCharset(WorkingText& text, Header& header, Recorder& recorder, Charset& charset,
                            ChosenCharset& chosen);

}  // namespace krofx::internal

#endif  // KROFX_READER_HEADER_CHARSET_CHOICE_H_
