// What is in front of the body: the header of OFX 1 or OFX 2, as it really comes.
//
// The strict parser wants nine fields, one a line, with a blank line after them. Here the fields
// are looked for by their names wherever they are in front of the body, so that they may be on
// one line, with or without blanks, in any order, after the headers of a web server, or missing.

#ifndef KROFX_READER_HEADER_HEADER_H_
#define KROFX_READER_HEADER_HEADER_H_

#include <optional>
#include <string_view>

#include "krofx/core/tag_dictionary.h"
#include "krofx/core/types.h"
#include "krofx/reader/reading.h"
#include "krofx/values/keywords.h"

namespace krofx::internal {

class Charset;
class Recorder;
class WorkingText;

/// The header of a text. Views are of the text.
struct Header {
  static constexpr u16 kFields = KRHeaderTag_NEWFILEUID + 1;

  TextForm form = TextForm::kOfx1;
  /// The fields, by KRHeaderTag; empty for one that is missing.
  std::string_view fields[kFields];
  /// The encoding that an XML declaration names; empty without one.
  std::string_view xmlEncoding;
  /// Where the body begins: its first tag.
  u32 body = 0;

  /// Whether the text has message sets of the second version; nothing when it has to be looked for.
  std::optional<bool> isSecondVersion;

  /// The first byte of the text that the views are of.
  const char* base = nullptr;

  std::string_view Field(KRHeaderTag tag) const { return fields[tag]; }
};

/// Where the body of a text begins: the first tag of the envelope of OFX.
/// @return false when there is none.
bool FindBody(std::string_view text, const TagDictionary& dictionary, u32& body);

/// @return whether a text, or a part of it that ends after a '>', has message sets of the second
///         version.
bool HasSecondVersion(std::string_view text);

/// Finds the header in front of `header.body`, and says what is not in order.
/// @return false when that must not be mended.
bool ReadHeader(const WorkingText& text, Recorder& recorder, Header& header);

/// Gives a file the fields of a header: those that the library knows, as they are; its usual values
/// for the others.
/// @param charset the one that the texts of the tree are in.
/// @param ascii whether they are all in ASCII.
/// @return 0; 3 when memory is exhausted; 4 when something must not be mended.
KRParseStatus GiveHeader(const WorkingText& text, const Header& header, const Charset& charset,
                         bool ascii, Recorder& recorder, KRFile& file);

}  // namespace krofx::internal

#endif  // KROFX_READER_HEADER_HEADER_H_
