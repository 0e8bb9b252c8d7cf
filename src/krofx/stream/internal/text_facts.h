// What has to be known of a text as a whole before it is mended: where it ends, and how its
// characters are written.

#ifndef KROFX_STREAM_INTERNAL_TEXT_FACTS_H_
#define KROFX_STREAM_INTERNAL_TEXT_FACTS_H_

#include <cstddef>
#include <string_view>

#include "krofx/reader/characters/working_text.h"
#include "krofx/reader/header/charset_choice.h"
#include "krofx/reader/mending.h"
#include "krofx/stream/internal/text_window.h"

namespace krofx::internal {

/// A text in parts, each of which ends after a '>': no tag, reference or character is cut.
class TextParts {
 public:
  /// Reads the rest of a source.
  TextParts(ByteSource& source, u32 usual, u32 most, std::size_t end = TextWindow::kNoEnd)
      : m_window(source, usual, most, end), m_text({}, 0) {}

  /// Goes on to the next part.
  /// @return false after the last one, and when it cannot be read: see HasFailed.
  bool Next();
  /// @return the bytes of the part as they came.
  std::string_view Original() const { return m_part; }
  /// @return the bytes of the part, or some of them, without control characters; good until the
  ///         next call.
  std::string_view WithoutControls(std::string_view bytes);
  /// @return where the part begins.
  std::size_t Base() const { return m_window.Base(); }
  /// @return the place of an offset in the part.
  Place PlaceOf(std::size_t offset) { return m_window.PlaceOf(offset); }
  bool HasFailed() const { return m_failed; }

 private:
  TextWindow m_window;
  std::string_view m_part;
  WorkingText m_text;
  bool m_failed = false;
};

/// The facts.
struct TextFacts {
  /// Where the text ends.
  std::size_t end = TextWindow::kNoEnd;
  /// Whether there is a control character in front of the last tag, and where the first one is.
  bool hasControl = false;
  Place control;
  /// The bytes above 127 of the body, and the place of the first one.
  HighByteCount high;
  Place firstHigh;
  bool isSecondVersion = false;
};

/// Gathers the facts of a text.
/// @param body where its body begins.
/// @return false when it cannot be read.
bool GatherFacts(TextParts& parts, std::size_t body, TextFacts& facts);

/// Finds out whether a body refers to characters that its character set does not have.
/// @return false when it cannot be read.
bool FindForeignReference(TextParts& parts, std::size_t body, const Charset& charset, bool& found);

}  // namespace krofx::internal

#endif  // KROFX_STREAM_INTERNAL_TEXT_FACTS_H_
