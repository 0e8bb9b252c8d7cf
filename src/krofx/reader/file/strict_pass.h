// The strict pass over a text: what KRSimpleParser and KRMIMEParser make of it.
//
// Where nothing may be mended it is the whole reading, and its warnings are recorded. Otherwise it
// only has to find out whether the text is clean, so it ends soon after the first warning.

#ifndef KROFX_READER_FILE_STRICT_PASS_H_
#define KROFX_READER_FILE_STRICT_PASS_H_

#include <cstddef>

#include "krofx/core/buffer.h"
#include "krofx/core/status.h"
#include "krofx/reader/reading.h"

namespace krofx::internal {

class Recorder;

/// What a strict pass came to.
struct StrictResult {
  KRParseStatus status = KRParseStatus_Accepted;
  /// Where the text ends, in the buffer; only for a clean one.
  std::size_t end = 0;
  /// Whether the text may have a byte above 127. False is certain.
  bool mayHaveHighBytes = true;
  /// Whether the tree says what the text says. The parser replaces a first answer in a wrapper, and
  /// a first amount or date of an element, by a second one without a warning, and passes over the
  /// commas of numbers.
  bool lossless = true;

  /// @return whether there is nothing to mend.
  bool IsWhole() const { return status == KRParseStatus_Accepted && lossless; }
};

/// Reads a text into its root and records the warnings, with their places and paths.
/// @param base where the buffer's first byte is in the file.
StrictResult ReadStrictly(KRBuffer& buffer, OfxText& text, std::size_t base, Recorder& recorder);

/// Finds out whether a text is clean; then its root is filled. Otherwise the root has to be made
/// anew.
StrictResult TryStrictly(KRBuffer& buffer, OfxText& text);

}  // namespace krofx::internal

#endif  // KROFX_READER_FILE_STRICT_PASS_H_
