// Reads the tags of a text whatever its form: OFX 1 as it is really written, OFX 2, and what is
// neither quite.
//
// The strict tokenizer (krofx/parse/internal/item_scanner.h) takes every '<' for the beginning of a
// tag. Here a '<' begins a tag only when what follows looks like one; comments, processing
// instructions and document types are passed over, and CDATA sections are text. It decides nothing
// about the tree.

#ifndef KROFX_READER_TAGS_SCANNER_H_
#define KROFX_READER_TAGS_SCANNER_H_

#include <string_view>

#include "krofx/core/string.h"
#include "krofx/core/tag_dictionary.h"
#include "krofx/core/tags.h"
#include "krofx/core/types.h"

namespace krofx::internal {

class Charset;

/// A run of text between two tags, without the white space around it.
struct TextRun {
  u32 from = 0;
  u32 to = 0;
  /// It has nothing but characters: no comment, section, reference, or '<'.
  bool plain = true;
  /// It has a '<' that opens no tag.
  bool bareLessThan = false;
  /// The text ends after it, without a line end between.
  bool cut = false;

  bool IsEmpty() const { return from == to; }
};

/// A tag, with what is around it.
struct ScannedTag {
  enum class Type : u8 { kEndOfText, kStart, kEnd };

  Type type = Type::kEndOfText;
  bool selfClosed = false;  ///< "<NAME/>": `type` is kStart.
  bool otherCase = false;   ///< The name differs from the dictionary's in case only.
  bool otherForm = false;   ///< Blanks, a prefix or attributes are in it.
  u32 at = 0;               ///< Its '<', or the end of the text.
  u32 after = 0;            ///< After its '>'.
  std::string_view name;    ///< As written, without a prefix.
  const KRTagDictionaryEntry* entry = nullptr;  ///< Null for a name that the dictionary lacks.
  TextRun front;  ///< The text in front of it that is not the text of a start tag.
  TextRun text;   ///< Of a start tag: the text after it.

  KRTagID Id() const { return entry == nullptr ? KRTag_None : entry->tagID; }
  /// @return the name as OFX writes it, or as written when OFX does not have it.
  std::string_view Name() const { return entry == nullptr ? name : std::string_view(entry->text); }
};

/// What reading the text of an element came to.
enum class TextResult : u8 {
  kRead,
  kReplaced,  ///< Read, with references in it that the strict parser does not know.
  kTooLong,   ///< More than 65534 characters.
  kNoMemory,
};

/// Walks over one text. Costs time in the length of the text, whatever the bytes are.
class Scanner {
 public:
  /// @param bytes the text, without NUL, of less than 2^31 bytes.
  /// @param xml whether it is XML, where a CDATA section is its content; else it is kept as it is.
  Scanner(std::string_view bytes, const TagDictionary& dictionary, bool xml)
      : m_bytes(bytes), m_dictionary(dictionary), m_xml(xml) {}

  /// Goes on from a position.
  void GoTo(u32 position) { m_position = position; }
  /// Takes another part of the text, from its beginning on.
  void SetText(std::string_view bytes) {
    m_commentEnd = m_sectionEnd = m_instructionEnd = {};
    Extend(bytes);
    m_position = 0;
    m_hasAhead = false;
  }
  /// Takes the same text with more at its end.
  void Extend(std::string_view bytes) {
    m_bytes = bytes;
    m_commentEnd.noneFrom = m_sectionEnd.noneFrom = m_instructionEnd.noneFrom = kNowhere;
  }
  /// @return whether the end of the text has played a part in what was read since ForgetEnd: with
  ///         more text it may be read otherwise.
  bool HasMetEnd() const { return m_hasMetEnd; }
  void ForgetEnd() { m_hasMetEnd = false; }
  /// @return where the next tag is looked for.
  u32 Position() const { return m_position; }
  /// Reads the next tag; after the last one, the end of the text.
  void Next(ScannedTag& tag);
  /// @return the tag after the text of the start tag that Next has read last, unless that closed
  ///         itself.
  const ScannedTag& Ahead() const { return m_ahead; }
  /// Takes that tag for characters of the text, and reads on to the tag after it.
  /// @param text of the start tag.
  void TakeAheadAsText(TextRun& text);

  /// Reads the text of a run: resolves references, and joins what comments and sections divide.
  /// @param charset the one that the text is in.
  TextResult ReadText(const TextRun& run, const Charset& charset, KRString& out) const;
  /// @return where the text of a run ends, without the white space and the comments at its end.
  u32 EndOfContent(const TextRun& run) const;
  /// @return the bytes of a run.
  std::string_view View(const TextRun& run) const {
    return m_bytes.substr(run.from, run.to - run.from);
  }

  /// Reads what begins at a '<', when it is a tag.
  /// @param inText whether there is text in front of it on its line, so that it may be one more
  ///        character.
  bool ReadTag(u32 open, bool inText, ScannedTag& tag) const;

 private:
  // What begins at a '<'.
  enum class Piece : u8 { kTag, kMarkup, kSection, kCharacter };

  char At(u32 position) const {
    if (position < m_bytes.size()) return m_bytes[position];
    m_hasMetEnd = true;
    return '\0';
  }
  u32 End() const { return static_cast<u32>(m_bytes.size()); }
  // What is known of the ends of one kind, so that the text is searched once, however often one is
  // asked for: from any position in [from, after) on the next one ends at `after`, and from
  // `noneFrom` on there is none.
  struct KnownEnd {
    u32 from = 0;
    u32 after = 0;
    u32 noneFrom = kNowhere;
  };
  static constexpr u32 kNowhere = ~u32{0};

  u32 SkipWhite(u32 position) const;
  const KRTagDictionaryEntry* Find(std::string_view name, KRCaseType caseType) const;
  bool ReadOpenTag(u32 start, u32 next, bool inText, ScannedTag& tag) const;
  Piece Classify(u32 open, bool inText, u32& after, ScannedTag& tag) const;
  u32 FindEnd(u32 from, std::string_view what, KnownEnd& known) const;
  TextRun ReadRun(u32 from, ScannedTag& tag) const;
  void ReadOn(TextRun& run, u32 place, bool inText, ScannedTag& tag) const;

  std::string_view m_bytes;
  const TagDictionary& m_dictionary;
  bool m_xml;
  u32 m_position = 0;
  mutable KnownEnd m_commentEnd;
  mutable KnownEnd m_sectionEnd;
  mutable KnownEnd m_instructionEnd;
  mutable bool m_hasMetEnd = false;
  // Tags of OFX were written in another form or in small letters so far. Where they are, the tags
  // that nobody knows are too.
  bool m_hasOtherForm = false;
  bool m_hasOtherCase = false;
  // The tag that ended the last run.
  ScannedTag m_ahead;
  bool m_hasAhead = false;
};

}  // namespace krofx::internal

#endif  // KROFX_READER_TAGS_SCANNER_H_
