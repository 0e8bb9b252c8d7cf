// The parser of multipart text: a file with a subfile for each part.
//
// It splits the text at its boundaries. A part that holds OFX goes through the object-tree parser,
// over the same engine; the text of any other part becomes the body of a plain file. So attachments
// and OFX come out of one text.

#ifndef KROFX_ENVELOPE_MIME_PARSER_H_
#define KROFX_ENVELOPE_MIME_PARSER_H_

#include <typeinfo>

#include "krofx/core/export.h"
#include "krofx/core/status.h"
#include "krofx/core/types.h"
#include "krofx/parse/simple_parser.h"

class KRFile;
class KRString;

/// Parses a MIME entity into a file with subfiles.
class KROFX_API KRMIMEParser : public KRSimpleParser {
 public:
  using KRSimpleParser::Parse;

  /// Makes a parser that uses an engine of its own for each parse.
  KRMIMEParser() { SetPlainClass(typeid(KRMIMEParser)); }

  /// Reads a MIME entity. The first header line must be the content type with the boundary; the
  /// parts follow, each with its headers. The factory makes the subfiles: a KRFileRs or KRFileRq
  /// for a part of OFX, else a KRFile with a body. GetType says which.
  ///
  /// OFX parts are always checked for missing tags. Each empties the thread's log, so only the
  /// warnings and the object with error of the last one remain. A part with status 3 is skipped,
  /// and the fire alarm stays raised when the reason was memory; any other status but 0, warnings
  /// (7) included, ends the parse, and the later parts are not read.
  ///
  /// @param file takes headers, boundary and subfiles, whatever the status. The caller keeps owning
  ///        it.
  /// @param checkRequired has no effect.
  /// @return 0 at the closing boundary; 4 when there is none, or no boundary at all; 3 exhausted
  ///         memory, a null argument or a thread that is not attached; or the status of a part.
  virtual KRParseStatus Parse(KRBuffer* buffer, KRFile* file, u16 checkRequired);

 private:
  KRParseStatus ReadPart(KRParseEngine& engine, KRBuffer* buffer, KRFile& file,
                         const KRString& boundary, bool multipart);
};

#endif  // KROFX_ENVELOPE_MIME_PARSER_H_
