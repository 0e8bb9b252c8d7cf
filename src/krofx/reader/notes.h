// What a person should hear of a reading: mendings and warnings in one list, each with an English
// sentence.

#ifndef KROFX_READER_NOTES_H_
#define KROFX_READER_NOTES_H_

#include <cstddef>

#include "krofx/core/export.h"
#include "krofx/core/parse_logger.h"
#include "krofx/core/string.h"

namespace krofx {

/// One thing that was out of order in a text.
struct ReadNote {
  /// Whether it was mended: the tree holds what was meant. Otherwise the tree does not hold it.
  bool mended = false;
  std::size_t line = 0;    ///< From 1; 0 for what has no place.
  std::size_t column = 0;  ///< From 1; 0 then.
  std::size_t offset = 0;  ///< Bytes before it in what was read.
  std::size_t text = 0;    ///< Which of the texts of the file, counted from 0.
  KRString tag;            ///< The tag, or the header field; empty when none applies.
  KRString path;           ///< The aggregates around it, as of a Mending.
  /// The name of its kind, which never changes: "decimal-comma" of a mending, "KRPW_BADFORMAT" of a
  /// warning.
  KRString kind;
  /// What happened, in English, without a capital letter and a full stop. No value of the file is
  /// in it.
  const char* sentence = "";
  KRString was;    ///< What was there; stars for a password, empty for nothing.
  KRString taken;  ///< What was taken instead; empty for what was left out, and of a warning.
};

/// @return what a warning is about, in English, without a capital letter and a full stop.
KROFX_API const char* SentenceOf(KRParseWarning warning);

}  // namespace krofx

#endif  // KROFX_READER_NOTES_H_
