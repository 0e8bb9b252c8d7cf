// The tokenizer: turns the text of a buffer into header lines and tags.
//
// SGML leaves it to the document type whether a start tag opens an aggregate or an element, and OFX
// elements need no end tag. The engine decides with one item of lookahead: a start tag that text
// follows is an element, one that another tag follows is an aggregate. It knows no objects. It
// warns about unknown tags and skips them, with everything in them.
//
// The text ends at the first NUL, or else at the end of the buffer's content. Two cursors move
// forward through it, one for header lines and MIME boundaries and one for tags. They are
// independent of each other; only ResetToEndOfHeader sets one to the other. A plain KRBuffer is
// scanned in its memory; one of a derived class is read through its virtual GetCh. The same code
// scans both (parse/internal/item_scanner.h).

#ifndef KROFX_PARSE_ENGINE_H_
#define KROFX_PARSE_ENGINE_H_

#include "krofx/core/buffer.h"
#include "krofx/core/export.h"
#include "krofx/core/memory.h"
#include "krofx/core/string.h"
#include "krofx/core/tag_dictionary.h"
#include "krofx/core/tag_type.h"
#include "krofx/core/types.h"
#include "krofx/parse/internal/search_memory.h"
#include "krofx/values/keywords.h"

namespace krofx::internal {
class EngineWindow;
class PlainFeed;
class PlainText;
}  // namespace krofx::internal

/// A kind of item that the engine scans.
enum KrTagItemType : s32 {
  KrTagItemType_None = -1,     ///< Nothing was read.
  KrTagItemType_StartTag = 0,  ///< "<NAME>"
  KrTagItemType_EndTag = 1,    ///< "</NAME>"
  KrTagItemType_Text = 2,      ///< What is between tags, unless it is all white space.
  KrTagItemType_CDATA = 3,     ///< "<![CDATA[...]]>"
};

/// What a content type says about a file. The values 2 and 3 equal the types of the file classes.
enum KRMIMEType : u32 {
  KRMIMEType_Other = 0,        ///< Not OFX.
  KRMIMEType_OFXRequest = 2,   ///< An OFX request.
  KRMIMEType_OFXResponse = 3,  ///< An OFX response.
};

/// The result of a search for a MIME boundary.
enum KRBoundStatus : u32 {
  KRBoundStatus_None = 0,      ///< No boundary line was found.
  KRBoundStatus_Boundary = 1,  ///< A boundary line.
  KRBoundStatus_Closing = 2,   ///< The last boundary line, with two hyphens after the boundary.
};

/// Reads the text of one buffer, which it does not own. The text of a plain buffer may grow
/// while the engine reads it, but what was read must not change. An engine belongs to one thread;
/// warnings go to the log of the calling thread.
///
/// At most 2^31 - 1 characters of a text are read. An item's length is 16 bits: an element whose
/// text has more than 65534 characters is left out with a KRPW_TOOLONG warning, since a text that
/// is cut short could be taken for a good one.
class KROFX_API KRParseEngine : public krofx::internal::HeapObject {
 public:
  /// One scanned item.
  struct KRTagItemInfo {
    KrTagItemType type = KrTagItemType_None;
    u16 length = 0;  ///< Characters of the item's name or text; 65535 for 65535 and more.
    s32 start = 0;   ///< Position of the first character of the name or text.
    s32 end = 0;     ///< Position at which the next scan begins.
  };

  /// The longest name or text that the engine hands out.
  static constexpr u16 kMaxItemLength = 65534;

  /// Reads `buffer`, with the tag cursor at its first '<' and the header cursor at 0.
  explicit KRParseEngine(KRBuffer& buffer);
  /// Reads the same buffer from the same place. The copies then move independently.
  KRParseEngine(const KRParseEngine& other) = default;
  /// As the copy constructor.
  KRParseEngine& operator=(const KRParseEngine& other) = default;

  /// Reads the next tag that the dictionary has; an element together with its text, in which the
  /// SGML macros are replaced. A CDATA section is given whole, with its wrapper, unchanged.
  ///
  /// @param entry takes the tag's row of the dictionary; untouched when no tag was read.
  /// @param value takes an element's text; untouched otherwise.
  /// @return what was read. KRTagType_Unreadable: the text ends right after a start tag, or memory
  ///         is exhausted, with the fire alarm raised. KRTagType_EndOfInput also for a tag without
  ///         a name, and when nothing follows an unknown tag that was skipped.
  virtual KRTagType GetKRTag(KRTagDictionaryEntry& entry, KRString& value);

  virtual ~KRParseEngine() = default;

  /// Reads one header line, "name: value", from the header cursor, and moves the cursor past it.
  /// Other lines are skipped, except the blank line that ends a block: the cursor moves past it and
  /// the result is 0.
  ///
  /// @param tag takes the header's id; -1, after a KRPW_BADFORMAT warning with the name as value
  ///        text, for a header that is not in the OFX header block.
  /// @param value takes the text, without white space around it.
  /// @param name takes the name as written; empty when there is no header line. Can be null.
  /// @return 1 for a header line; 0 at a blank line, at the end, and, without a move, where the
  ///         body begins with a '<'.
  u16 GetHeader(KRHeaderTag& tag, KRString& value, KRString* name);

  /// Moves the tag cursor to the header cursor.
  void ResetToEndOfHeader();
  /// @return the header cursor.
  s32 GetHeaderPos() const { return m_headerPos; }

  /// Skips the start tag that was read last, with everything before its end tag: the next end tag
  /// of its name, in any case of letters. Nested tags of the same name are not counted. Without an
  /// end tag only the start tag is skipped, with a KRPW_BADFORMAT warning. A tag that text follows
  /// is an element: only the text is skipped.
  /// @return 1; 0 at the end of the text and before anything was read.
  u16 SkipCurrentTag();

  /// Moves to the next tag that the dictionary has, and warns about everything that it skips. A tag
  /// in small letters is found and warned about.
  /// @param id takes the tag's id, 0 when nothing was found. Can be null.
  /// @return the tag's row of the dictionary, null at the end of the text.
  const KRTagDictionaryEntry* GetTagID(KRTagID* id);

  /// Says whether OFX follows, by a content type and the first 200 characters from the header
  /// cursor.
  /// @return the response type when the text has "SONRS", otherwise the request type when it has
  ///         "SONRQ"; KRMIMEType_Other when it has neither, for another content type and for null.
  KRMIMEType GetFileType(const KRString* contentType) const;

  /// Searches from the header cursor for the next line that has two hyphens and `boundary`, in
  /// exactly these letters. The cursor moves past that line, or past all lines that were searched.
  /// @return whether a boundary line was found, and which kind.
  KRBoundStatus FindMIMEBoundary(const KRString& boundary);
  /// As above, from `position`, which moves in place of the header cursor.
  KRBoundStatus FindMIMEBoundary(const KRString& boundary, s32& position) const;

  /// Reads the boundary, in small letters, out of a multipart content type.
  /// @return 1; 0, and `boundary` untouched, when it has none.
  u16 GetMIMEBoundary(const KRString& contentType, KRString& boundary) const;

  /// Copies the text from the header cursor up to the next boundary line, with the line end before
  /// it. The cursor does not move. Positions are counted in 16 bits here, so a body that ends after
  /// position 65535 is cut or empty.
  /// @return 1; 0, and `body` untouched, when there is no boundary line.
  u16 GetMIMEBody(const KRString& boundary, KRString& body) const;

  /// Looks tags up in another dictionary from now on. The caller keeps owning it, and it must
  /// outlive the engine.
  /// @return 1; 0 for null, which changes nothing.
  u16 SetDictionary(TagDictionary* dictionary);

  /// @return where the tag or header line that was read last begins, for hosts that show places:
  ///         the position of its '<', or of the first character of a text or header; -1 before
  ///         anything was read.
  s32 GetItemPosition() const;

  /// @return whether the text is read from the memory of a plain buffer, not through the GetCh of a
  ///         derived class.
  bool IsOverPlainBytes() const { return m_plain; }

  /// Reads one item of any kind from `position`. For a CDATA section it gives the content without
  /// its last character, unless the content is a single character.
  /// @param position where to begin; takes the position of the item's first character.
  /// @param length takes the item's length, at most 65534.
  /// @return 1; 0, with nothing changed, at the end of the text.
  static u16 GetOneItem(KRBuffer& buffer, s32& position, u16& length);

 protected:
  /// Reads one item from position `item.end`. With `contentOnly` not 0 it gives the content of a
  /// CDATA section, as GetOneItem does.
  /// @return 1; 0 at the end of the text.
  static u16 GetOneItemFromKRBuffer(KRBuffer& buffer, KRTagItemInfo& item, u16 contentOnly);
  /// Says whether an item is a comment, "<!--...-->" without a '>' inside.
  /// @return 1 when it is; 0 when it is not.
  static u16 IsCommentTag(KRBuffer& buffer, KRTagItemInfo& item);
  /// Reads the next item that is not a comment.
  /// @return 1; 0 at the end of the text.
  static u16 GetKRTagInternal(KRBuffer& buffer, KRTagItemInfo& item);
  /// Says whether a character is white space: blank, line feed, carriage return or tab.
  /// @return 1 when it is; 0 when it is not, NUL included.
  static u16 IsWhiteSpace(char character);
  /// Says whether a text has nothing but white space.
  /// @return 1 when it has nothing else, is empty or is null; 0 otherwise.
  static u16 IsWhiteSpace(const char* text);
  /// @return the first position from `position` on without white space; at the latest the text's
  ///         end.
  static s32 SkipWhiteSpaces(KRBuffer& buffer, s32 position);
  /// @return the first position from `position` on with white space; at the latest the text's end.
  static s32 FindWhiteSpaces(KRBuffer& buffer, s32 position);
  /// Steps back from `position`, one character first, over white space.
  /// @return the position after the character where it stops, or the position of a NUL where it
  ///         stops; -1 at the buffer's start.
  static s32 FindPreviousNonWhiteSpace(KRBuffer& buffer, s32 position);

  /// @return the kind of the current item.
  KrTagItemType CurrTagItemType() const { return m_currentItem.type; }
  /// @return the kind of the item after the current one, which is read if it has not been read yet.
  KrTagItemType NextTagType();
  /// Moves to the next item that is not a comment.
  /// @return 1; 0 at the end of the text.
  u16 GetKrTagItem();
  /// Moves to the next item and copies its text, if it is a text or CDATA section. The parameters
  /// are those of CopyCurrTagItemToBuffer.
  /// @return 1; 0, without a move, for any other item; 0 when memory is exhausted.
  u16 GetTagData(KRString& out, u16 expand, u16 wipe);
  /// Copies the current item's text.
  /// @param expand not 0 to replace the SGML macros.
  /// @param wipe 1 for a secret: no unexpanded copy of it is left in memory.
  /// @return 1; 0 when memory is exhausted or the text has more than kMaxItemLength characters.
  u16 CopyCurrTagItemToBuffer(KRString& out, u16 expand, u16 wipe) const;
  /// Copies a text with its SGML macros ("&lt;", in any case of letters) replaced. What is not a
  /// known macro is copied as it is.
  /// @return 1; 0 when memory is exhausted.
  u16 ExpandSgmlMacros(const KRString& in, KRString& out) const;

 private:
  friend class krofx::internal::EngineWindow;
  friend class krofx::internal::PlainFeed;

  // These work on the source of text for the buffer's class: see parse/internal/text_source.h.
  template <class Text>
  bool MoveToNext(const Text& text);
  template <class Text>
  bool FillLookahead(const Text& text);
  template <class Text>
  const KRTagDictionaryEntry* LookUp(const Text& text, KRTagID& id) const;
  template <class Text>
  const KRTagDictionaryEntry* FindTag(const Text& text, KRTagID& id);
  template <class Text>
  bool Skip(const Text& text);
  template <class Text>
  bool SkipToEndTag(const Text& text, const KRTagItemInfo& start);
  template <class Text>
  bool CopyItem(const Text& text, KRString& out, bool expand) const;
  template <class Text>
  void RefuseOverlong(const Text& text, const KRTagDictionaryEntry& entry);
  const KRTagDictionaryEntry* ReadCommon(const krofx::internal::PlainText& text, KRString& value,
                                         KRTagType& type);
  template <class Text>
  KRTagType ReadTag(const Text& text, KRTagDictionaryEntry& entry, KRString& value);
  template <class Text>
  bool ReadHeader(const Text& text, KRHeaderTag& tag, KRString& value, KRString& name);

  TagDictionary* m_ownDictionary;
  KRBuffer* m_buffer;
  // Whether the buffer is a plain one, whose memory may be read; its class does not change.
  bool m_plain;
  KRTagItemInfo m_currentItem;
  KRTagItemInfo m_nextItem;
  TagDictionary* m_dictionary;
  s32 m_headerPos = 0;
  // GetItemPosition works from this: the first character after the '<' and '/' of a tag, or the
  // position of a text or header line.
  s32 m_itemPosition = -1;
  krofx::internal::SearchMemory m_searches;
};

#endif  // KROFX_PARSE_ENGINE_H_
