// The short way of plain elements from a text to the object that they belong to.
//
// Most elements of a text that needs mending are in order. Those that come one after the other in
// one object, each once, with a text of the common form, are put into its members as the strict
// parser puts them (krofx/parse/internal/plain_feed.h). Whatever is not so is left to the tree
// reader: an element that is empty, repeated, unknown or not of this object, a text with a
// reference, a text that its object would refuse, and each one that a value mender might change.

#ifndef KROFX_READER_STRUCTURE_ELEMENT_FEED_H_
#define KROFX_READER_STRUCTURE_ELEMENT_FEED_H_

#include <string_view>

#include "krofx/core/tag_dictionary.h"
#include "krofx/core/types.h"
#include "krofx/parse/internal/row_memo.h"

namespace krofx::internal {

/// Feeds the objects of one text.
class ElementFeed {
 public:
  ElementFeed(std::string_view text, TagDictionary& dictionary)
      : m_text(text), m_dictionary(dictionary) {}

  /// Takes another part of the text.
  void SetText(std::string_view text) { m_text = text; }
  /// Takes the plain elements that begin at a position.
  /// @param last takes the name of the last one; untouched when there is none.
  /// @return where the next tag begins that was not taken.
  u32 Run(KRDataObj& object, u32 position, std::string_view& last);

 private:
  struct Element;

  bool ReadElement(KRDataObj& object, const char* at, const char* limit, Element& element);
  bool BeginsTag(const KnownTag& tag, const char* next);
  const char* PassEnd(const char* at, const char* limit, const Element& element) const;

  std::string_view m_text;
  TagDictionary& m_dictionary;
  RowMemo m_memo;
  KnownTag m_none;
  KnownTag* m_last = &m_none;
  // The name of the end tag that was looked up last. Most texts are followed by the same one.
  std::string_view m_lastEnd;
};

}  // namespace krofx::internal

#endif  // KROFX_READER_STRUCTURE_ELEMENT_FEED_H_
