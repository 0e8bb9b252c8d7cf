// Which character set a text is in: what it declares, unless its bytes say otherwise.

#ifndef KROFX_READER_HEADER_CHARSET_CHOICE_H_
#define KROFX_READER_HEADER_CHARSET_CHOICE_H_

#include <cstddef>
#include <string_view>

#include "krofx/core/status.h"
#include "krofx/core/types.h"
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

/// How the bytes above 127 of a text go together. A text may be counted in parts; none of them may
/// end inside a character.
class HighByteCount {
 public:
  /// Counts those of the next part.
  void Count(std::string_view part);
  /// @return whether there are any.
  bool Any() const { return m_whole != 0 || m_broken != 0; }
  /// @return the first one, from the beginning of the text.
  std::size_t First() const { return m_first; }
  /// Characters of UTF-8, and bytes that belong to none.
  std::size_t Whole() const { return m_whole; }
  std::size_t Broken() const { return m_broken; }

 private:
  std::size_t m_passed = 0;
  std::size_t m_first = 0;
  std::size_t m_whole = 0;
  std::size_t m_broken = 0;
};

/// Chooses for a text whose bytes above 127 are known; as for a text.
bool ChooseCharset(const HighByteCount& bytes, const DeclaredCharset& declared, Charset& charset,
                   ChosenCharset& chosen);

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

/// @return what a text with its header declares.
DeclaredCharset DeclaredIn(const Header& header);

/// Says what is not in order in the choice for a text.
/// @param high where in the file the first byte above 127 is.
/// @return false when it must not be mended.
bool SayCharset(const WorkingText& text, const Header& header, const Charset& charset,
                const ChosenCharset& chosen, std::size_t high, Recorder& recorder);

/// Writes a text anew in UTF-8 from a position on.
/// @param charset the one that it is in.
/// @return false when memory is exhausted.
bool MakeUtf8(WorkingText& text, u32 from, const Charset& charset);

}  // namespace krofx::internal

#endif  // KROFX_READER_HEADER_CHARSET_CHOICE_H_
