// The tokenizer: turns the text of a buffer into header lines and tags.
//
// SGML leaves it to the document type whether a start tag opens an aggregate or an element, and OFX
// elements need no end tag. The engine decides with one item of lookahead: a start tag with text
// behind it is an element, one with another tag behind it an aggregate. It knows no objects;
// unknown tags it warns about and skips, with everything in them.
//
// The text ends at the first NUL, or else at the end of the buffer's content. Two cursors move
// forward through it and never meet but in ResetToEndOfHeader: one for header lines and MIME
// boundaries, one for tags. A plain KRBuffer is scanned in its memory; one of a derived class is
// read through its virtual GetCh. The same scanning code does both (parse/item_scanner.h).

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
class PlainFeed;
class PlainText;
}  // namespace krofx::internal

/// A kind of item that the engine scans.
enum KrTagItemType : s32 {
  KrTagItemType_None = -1,     ///< Nothing was read.
  KrTagItemType_StartTag = 0,  ///< "<NAME>"
  KrTagItemType_EndTag = 1,    ///< "</NAME>"
  KrTagItemType_Text = 2,      ///< What stands between tags, unless it is all white space.
  KrTagItemType_CDATA = 3,     ///< "<![CDATA[...]]>"
};

/// What a content type says about a file. The values 2 and 3 equal the tags of the file classes.
enum KRMIMEType : u32 {
  KRMIMEType_Other = 0,        ///< Not OFX.
  KRMIMEType_OFXRequest = 2,   ///< An OFX request.
  KRMIMEType_OFXResponse = 3,  ///< An OFX response.
};

/// The result of a search for a MIME boundary.
enum KRBoundStatus : u32 {
  KRBoundStatus_None = 0,      ///< No boundary line was found.
  KRBoundStatus_Boundary = 1,  ///< A boundary line.
  KRBoundStatus_Closing = 2,   ///< The last boundary line, with two hyphens behind the boundary.
};

/// Reads the text of one buffer, which it does not own. The text of a plain buffer may grow
/// meanwhile; what was read must not change. An engine belongs to one thread; warnings go to the
/// log of the thread that calls.
///
/// Texts of 2^31 - 1 characters and more end there. An item's length is 16 bits: an element whose
/// text has more than 65534 characters is refused with KRPW_TOOLONG and left out, since a text cut
/// short could be taken for a good one.
class KROFX_API KRParseEngine : public krofx::internal::HeapObject {
 public:
  /// One scanned item.
  struct KRTagItemInfo {
    KrTagItemType type = KrTagItemType_None;
    u16 length = 0;  ///< Characters of the item's name or text; 65535 for that many and more.
    s32 start = 0;   ///< Position of the first character of the name or text.
    s32 end = 0;     ///< Position at which the next scan begins.
  };

  /// The longest name or text that the engine hands out.
  static constexpr u16 kMaxItemLength = 65534;

  /// Stands over `buffer`, with the tag cursor at its first '<' and the header cursor at 0.
  explicit KRParseEngine(KRBuffer& buffer);
  /// Stands over the same buffer at the same place. The copies then read on independently.
  KRParseEngine(const KRParseEngine& other) = default;
  /// As the copy constructor.
  KRParseEngine& operator=(const KRParseEngine& other) = default;

  /// Reads the next tag that the dictionary knows; an element together with its text, in which the
  /// SGML macros are replaced. A CDATA section comes whole, with its wrapper, unchanged.
  ///
  /// @param entry takes the tag's row of the dictionary; untouched when no tag was read.
  /// @param value takes an element's text; untouched otherwise.
  /// @return what was read. KRTagType_Unreadable: the text ends right behind a start tag, or memory
  ///         did not suffice for the text (the fire alarm is raised then). KRTagType_EndOfInput
  ///         also for a tag without a name, and for a skip that found nothing.
  virtual KRTagType GetKRTag(KRTagDictionaryEntry& entry, KRString& value);

  virtual ~KRParseEngine() = default;

  /// Reads one header line, "name: value", from the header cursor and moves behind it. Lines of
  /// other kinds are passed over. The end of a block, a blank line, is passed and gives 0.
  ///
  /// @param tag takes the header's id; -1, after a KRPW_BADFORMAT warning with the name as value
  ///        text, for one that is not of the OFX header block.
  /// @param value takes the text, without white space around it.
  /// @param name takes the name as written, when given; empty without a header line.
  /// @return 1 for a header line; 0 at a blank line, at the end, and, without moving, where the
  /// body
  ///         begins with a '<'.
  u16 GetHeader(KRHeaderTag& tag, KRString& value, KRString* name);

  /// Moves the tag cursor to the header cursor.
  void ResetToEndOfHeader();
  /// The header cursor.
  s32 GetHeaderPos() const { return m_headerPos; }

  /// Drops the start tag that was read last, with all that stands before its end tag: the next one
  /// of its name, in any case of letters. Nested ones of the same name are not counted. Without an
  /// end tag only the start tag is dropped, with a KRPW_BADFORMAT warning. A tag with text behind
  /// it is an element: only the text is dropped.
  /// @return 1; 0 at the end of the text and before anything was read.
  u16 SkipCurrentTag();

  /// Moves to the next tag that the dictionary knows and warns of all that it passes over. A tag in
  /// small letters is found and warned about.
  /// @param id takes the tag's id, 0 when nothing was found. May be null.
  /// @return the tag's row of the dictionary, null at the end of the text.
  const KRTagDictionaryEntry* GetTagID(KRTagID* id);

  /// Judges by a content type and by the first 200 characters from the header cursor whether OFX
  /// follows. "SONRS" wins over "SONRQ".
  /// @return KRMIMEType_Other for null, for another content type, and when neither word is there.
  KRMIMEType GetFileType(const KRString* contentType) const;

  /// Searches the next line with two hyphens and `boundary`, in exactly these letters, from the
  /// header cursor, which moves behind the line, or behind the lines that were looked at.
  KRBoundStatus FindMIMEBoundary(const KRString& boundary);
  /// The same from `position`, which moves instead.
  KRBoundStatus FindMIMEBoundary(const KRString& boundary, s32& position) const;

  /// Takes the boundary, in small letters, out of a multipart content type.
  /// @return 0, and `boundary` untouched, when it names none.
  u16 GetMIMEBoundary(const KRString& contentType, KRString& boundary) const;

  /// Takes the text from the header cursor up to the next boundary line, with the line end before
  /// it. The cursor stays. Positions are counted in 16 bits here, so a body that ends beyond 65535
  /// comes out cut or empty.
  /// @return 0, and `body` untouched, when there is no boundary line.
  u16 GetMIMEBody(const KRString& boundary, KRString& body) const;

  /// Looks tags up in another dictionary from now on. It stays the caller's and must outlive the
  /// engine.
  /// @return 1; 0 for null, which changes nothing.
  u16 SetDictionary(TagDictionary* dictionary);

  /// Where the tag or header line that was read last begins, for hosts that show places: position
  /// of its '<', of a text's or header's first character; -1 before anything was read.
  s32 GetItemPosition() const;

  /// Whether the text is read from the memory of a plain buffer, not through a derived one's GetCh.
  bool IsOverPlainBytes() const { return m_plain; }

  /// Reads one item of any kind from `position`. Of a CDATA section it reports the content, one
  /// character short unless it has only one.
  /// @param position where to begin; takes the item's first character.
  /// @param length takes the item's length, at most 65534.
  /// @return 1; 0, with nothing changed, at the end of the text.
  static u16 GetOneItem(KRBuffer& buffer, s32& position, u16& length);

 protected:
  /// Reads one item; `item.end` is where it begins. With `contentOnly` not 0 a CDATA section is
  /// reported by its content, as GetOneItem tells.
  /// @return 1; 0 at the end of the text.
  static u16 GetOneItemFromKRBuffer(KRBuffer& buffer, KRTagItemInfo& item, u16 contentOnly);
  /// 1 for an item that is a comment, "<!--...-->" without a '>' inside.
  static u16 IsCommentTag(KRBuffer& buffer, KRTagItemInfo& item);
  /// Reads the next item that is no comment.
  /// @return 1; 0 at the end of the text.
  static u16 GetKRTagInternal(KRBuffer& buffer, KRTagItemInfo& item);
  /// 1 for blank, line feed, carriage return and tab; 0 for all else, NUL included.
  static u16 IsWhiteSpace(char character);
  /// 1 for a text of nothing but white space, an empty one and null.
  static u16 IsWhiteSpace(const char* text);
  /// The first position from `position` that holds no white space; at the latest the text's end.
  static s32 SkipWhiteSpaces(KRBuffer& buffer, s32 position);
  /// The first position from `position` that holds white space; at the latest the text's end.
  static s32 FindWhiteSpaces(KRBuffer& buffer, s32 position);
  /// Steps back from `position`, one character first, over white space: gives the position behind
  /// the character met, or that of a NUL met (-1 at the buffer's start).
  static s32 FindPreviousNonWhiteSpace(KRBuffer& buffer, s32 position);

  /// The kind of the current item.
  KrTagItemType CurrTagItemType() const { return m_currentItem.type; }
  /// The kind of the item behind the current one, which is read when it was not yet.
  KrTagItemType NextTagType();
  /// Moves to the next item that is no comment.
  /// @return 1; 0 at the end of the text.
  u16 GetKrTagItem();
  /// Moves to the next item and takes its text, when it is a text or CDATA section.
  /// @return 1; 0, without moving, for any other item; 0 when memory did not suffice.
  u16 GetTagData(KRString& out, u16 expand, u16 wipe);
  /// Takes the current item's text.
  /// @param expand not 0 to replace the SGML macros.
  /// @param wipe 1 for a secret: no unexpanded copy of it is left in memory.
  /// @return 1; 0 when memory did not suffice or the text is too long to be handed out.
  u16 CopyCurrTagItemToBuffer(KRString& out, u16 expand, u16 wipe) const;
  /// Copies a text with its SGML macros ("&lt;", in any case of letters) replaced. What is no known
  /// macro stands as it is.
  /// @return 1; 0 when memory did not suffice.
  u16 ExpandSgmlMacros(const KRString& in, KRString& out) const;

 private:
  friend class krofx::internal::PlainFeed;

  // These run over the source of text that the buffer calls for: see parse/text_source.h.
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
  // What GetItemPosition answers from: the first character behind '<' and '/' of a tag, or a place
  // as it is.
  s32 m_itemPosition = -1;
  krofx::internal::SearchMemory m_searches;
};

#endif  // KROFX_PARSE_ENGINE_H_
