// The two result enumerations that every layer uses: the results of parse operations and of build
// operations. They are in the lowest layer because containers return them too.

#ifndef KROFX_CORE_STATUS_H_
#define KROFX_CORE_STATUS_H_

#include "krofx/core/types.h"

/// Result of every parse operation.
enum KRParseStatus : u32 {
  /// Accepted; parsing continues.
  KRParseStatus_Accepted = 0,
  /// The tag was offered to a plain file, which holds no OFX body.
  KRParseStatus_PlainFile = 1,
  /// Never produced; the number is reserved.
  KRParseStatus_Unused = 2,
  /// Memory is exhausted, no parser is attached, or a child is null.
  KRParseStatus_Fatal = 3,
  /// The tag or its value is not acceptable here.
  KRParseStatus_Invalid = 4,
  /// An end tag does not match the open aggregate.
  KRParseStatus_EndTagMismatch = 5,
  /// The parser's stack of objects is full.
  KRParseStatus_StackFull = 6,
  /// The whole parse finished, and warnings were logged on the way.
  KRParseStatus_Warnings = 7,
};

/// Result of every build operation.
enum KRBuildStatus : u32 {
  /// Written.
  KRBuildStatus_Done = 0,
  /// The fire alarm is set (memory was exhausted), or a subfile refused a header.
  KRBuildStatus_Fatal = 1,
  /// The value has no text form.
  KRBuildStatus_NoTextForm = 2,
  /// There is no buffer, no object, or no text for the tag.
  KRBuildStatus_NullArgument = 3,
  /// An empty string or a null pointer was given where text is needed.
  KRBuildStatus_EmptyText = 4,
  /// A string is longer than its spec length, in strict mode.
  KRBuildStatus_TooLong = 5,
  /// The array does not know how to write its elements.
  KRBuildStatus_NoArrayWriter = 6,
  /// The tree of objects is not allowed.
  KRBuildStatus_TreeNotAllowed = 7,
  /// A string is not valid though it is not over-long, in strict mode.
  KRBuildStatus_NotValid = 8,
  /// A required tag is missing; found at the end of a build.
  KRBuildStatus_MissingTag = 9,
};

#endif  // KROFX_CORE_STATUS_H_
