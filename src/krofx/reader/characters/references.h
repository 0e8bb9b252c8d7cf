// Character references: "&eacute;", "&#233;", "&#xE9;".
//
// The strict parser knows "&lt;", "&gt;", "&amp;" and "&nbsp;". Files that are made by web software
// have those of HTML and XML too.

#ifndef KROFX_READER_CHARACTERS_REFERENCES_H_
#define KROFX_READER_CHARACTERS_REFERENCES_H_

#include <cstddef>
#include <string_view>

#include "krofx/core/types.h"

namespace krofx::internal {

class Charset;

/// Reads the references of one text.
class ReferenceReader {
 public:
  /// A reference.
  struct Found {
    std::size_t length = 0;  ///< Bytes of it in the text; 0 when there is none.
    std::size_t count = 0;   ///< Bytes of its character.
    bool known = false;      ///< It is one that the form of the text has.
  };

  /// @param charset the one in which characters are written.
  /// @param xml whether the text is XML, which has numbers, quotes and apostrophes.
  ReferenceReader(std::string_view text, const Charset& charset, bool xml)
      : m_text(text), m_charset(charset), m_xml(xml) {}

  /// Reads what begins at the '&' at `place`.
  /// @param bytes takes the character; room for Charset::kLongest bytes.
  /// @return nothing for an '&' that is a character of the text, and for a character that the
  ///         character set does not have.
  Found Read(std::size_t place, char* bytes) const;

 private:
  std::string_view m_text;
  const Charset& m_charset;
  bool m_xml;
};

/// The character that a reference names.
/// @param name what is between '&' and ';'.
/// @return 0 when it is none.
char32_t CharacterOf(std::string_view name);

/// @return whether a text has a reference to a character that a character set does not have.
bool HasForeignReference(std::string_view text, const Charset& charset);

}  // namespace krofx::internal

#endif  // KROFX_READER_CHARACTERS_REFERENCES_H_
