// Any bytes as the headers of a file with an empty body: see trees.h for what must hold. Each
// header that is held is found by its name.

#include <string>

#include "krofx/envelope/file_rq_rs.h"
#include "trees.h"

namespace {

using namespace krofx::fuzz;

void Run(Bytes bytes) {
  const std::string text = std::string(bytes) + "\r\n\r\n<OFX></OFX>";
  CheckFile<KRFileRs>(text);

  KRFileRs file;
  ReadInto<KRSimpleParser>(file, text, true);
  for (u16 i = 0; i < file.GetNumberMIMEHeaders(); ++i) {
    KRString name(file.GetMIMEHeader(i)->name);
    Expect(file.GetMIMEHeader(&name) == file.GetMIMEHeader(i), "a header is found by its name");
  }
}

const Target kTarget("header", &Run);

}  // namespace
