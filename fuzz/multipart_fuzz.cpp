// Any bytes as a multipart text: see trees.h for what must hold. The headers of parts are not
// written, so a written text is not the one to read; but each part that is OFX is written as a text
// of its own, which is written again of the tree that is read from it.

#include <memory>
#include <string>

#include "krofx/envelope/file_rq_rs.h"
#include "krofx/envelope/mime_parser.h"
#include "trees.h"

namespace {

using namespace krofx::fuzz;

// Without a parent a part is a file of its own, written with the headers of OFX.
template <class File>
void CheckPart(File& part) {
  part.SetParent(nullptr);
  std::string strict = Written(part, KRBuildStringOpt_Strict);
  // Its other headers are not written, but the blank line that ends them is.
  if (strict.starts_with("\r\n")) strict.erase(0, 2);
  CheckWrittenAgain<KRSimpleParser>(strict, [&part] {
    auto file = std::make_unique<File>();
    file->SetMsgSetVersion(part.GetMsgSetVersion());
    return file;
  });
}

void Run(Bytes bytes) {
  CheckFile<KRFile, KRMIMEParser, false>(bytes);
  KRFile file;
  file.SetMsgSetVersion(VersionFor(bytes));
  const KRParseStatus status = ReadInto<KRMIMEParser>(file, bytes, true);
  if (status != KRParseStatus_Accepted && status != KRParseStatus_Warnings) return;
  for (u16 index = 0; index < file.GetNumberOfSubfiles(); ++index) {
    KRFile* const part = file.GetSubfile(index);
    if (auto* const response = dynamic_cast<KRFileRs*>(part)) CheckPart(*response);
    if (auto* const request = dynamic_cast<KRFileRq*>(part)) CheckPart(*request);
  }
}

const Target kTarget("multipart", &Run);

}  // namespace
