// The parser's question whether a file's headers allow its body to be read.
//
// The files stand above the parser, which meets them as data objects only, so they bring the
// answer: a function that they install when they are linked in.

#ifndef KROFX_PARSE_FILE_HEADERS_H_
#define KROFX_PARSE_FILE_HEADERS_H_

#include "krofx/core/export.h"
#include "krofx/core/types.h"

class KRDataObj;

namespace krofx::internal {

/// Judges the headers of a root whose type is that of a request or response file. 0 forbids reading
/// the body. `root` need not be a file: any object may bear such a type. Allows all until the files
/// install theirs.
KROFX_API extern u16 (*validateFileHeaders)(KRDataObj& root);

}  // namespace krofx::internal

#endif  // KROFX_PARSE_FILE_HEADERS_H_
