// Writes what was read as a clean text: OFX 1, or OFX 2.
//
// KRBuilder writes a tree in the character set that its texts happen to be in, cuts what is over
// its length, and knows the form of OFX 1. What is written here is complete, in one character set
// that the header names, and in either form.

#ifndef KROFX_REWRITING_REWRITE_H_
#define KROFX_REWRITING_REWRITE_H_

#include "krofx/core/buffer.h"
#include "krofx/core/export.h"
#include "krofx/core/status.h"
#include "krofx/core/types.h"
#include "krofx/reader/reading.h"

namespace krofx {

/// How to write.
struct RewriteOptions {
  /// OFX 1: SGML, in the character set 1252, or, with a character that it does not have, in UTF-8.
  /// OFX 2: XML in UTF-8, with all tags closed.
  TextForm form = TextForm::kOfx1;
  /// The version that the header of OFX 2 names, such as 203 or 220.
  u16 version = 203;
  /// Writes nothing unless all is in order: no text over its length, and nothing missing.
  bool strict = false;
};

/// Writes a text that was read after what `out` already holds. Texts are written as a person would
/// read them: see OfxText::ToUtf8. Passwords are written as they are.
/// @param failing takes the object that could not be written, null when none is to blame. May be
///        null.
/// @return 0 done; 3 there is no tree; 5 with a text that is longer in UTF-8 than a string may be;
///         7 for a multipart text, and for two message sets of one tag; else as KRBuilder::Build.
///         After a failure `out` holds what it held.
KROFX_API KRBuildStatus Rewrite(const OfxText& text, KRBuffer& out,
                                const RewriteOptions& options = {}, KRDataObj** failing = nullptr);

}  // namespace krofx

#endif  // KROFX_REWRITING_REWRITE_H_
