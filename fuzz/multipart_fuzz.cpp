// Any bytes as a multipart text: see trees.h for what must hold. The headers of parts are not
// written, so a written text is not the one to read.

#include "krofx/envelope/file_rq_rs.h"
#include "krofx/envelope/mime_parser.h"
#include "trees.h"

namespace {

const krofx::fuzz::Target kTarget("multipart",
                                  &krofx::fuzz::CheckFile<KRFile, KRMIMEParser, false>);

}  // namespace
