// The short way of a tag from the text to the object that it belongs to.
//
// The contract of data objects hands each tag through several virtual operations, any of which a
// host may override. Nearly all objects of a parse override none: their class has a table, and what
// the operations do is look into it. For these, and for text in memory that holds nothing unusual,
// the feed does at once what the operations would do one by one: it finds the row of the tag, has
// the text converted into the member, and sets the presence bit.
//
// What it meets that is not of this kind it leaves as it is to the ordinary way: an object of a
// class that overrides an operation, a tag that is unknown or out of place, a value of an unusual
// form or over its length. So it logs nothing but what the making of a child may log.

#ifndef KROFX_PARSE_INTERNAL_PLAIN_FEED_H_
#define KROFX_PARSE_INTERNAL_PLAIN_FEED_H_

#include <cstddef>
#include <string_view>

#include "krofx/core/status.h"
#include "krofx/core/string.h"
#include "krofx/core/tag_dictionary.h"
#include "krofx/core/types.h"
#include "krofx/model/internal/aggregate.h"
#include "krofx/parse/internal/row_memo.h"

class KRParseEngine;
class KRParser;

namespace krofx::internal {

/// Feeds the tags of one parse.
class PlainFeed {
 public:
  /// Serves a parser whose operations and whose engine's are those of the library: no host's class
  /// overrides them.
  PlainFeed(KRParser& parser, KRParseEngine& engine) : m_parser(parser), m_engine(engine) {}

  /// Takes tags from the engine and gives them to the current object of the parser, until one comes
  /// that is left to the ordinary way.
  /// @param entry takes the last tag that was read; untouched when none was.
  /// @param value takes the text of the last element; untouched when none was read.
  /// @param elementBefore in and out: the tag of the element that was read last, when nothing came
  ///        behind it; else KRTag_None.
  /// @return 0; else the status with which an object refused the start tag `entry`.
  KRParseStatus Run(KRTagDictionaryEntry& entry, KRString& value, KRTagID& elementBefore);

 private:
  // The object that receives tags.
  struct Target {
    KRDataObj* object;
    const AggregateTable* table;
    u16 version;
  };

  bool FindTarget(Target& target) const;
  KRParseStatus Start(Target& target, const KnownTag& tag);
  void Push(const Target& target, KRDataObj& child);

  KRParser& m_parser;
  KRParseEngine& m_engine;
  RowMemo m_memo;
};

}  // namespace krofx::internal

#endif  // KROFX_PARSE_INTERNAL_PLAIN_FEED_H_
