// Any bytes through the reader: nothing may crash, hang or leak; each mending has its place in the
// bytes; what is written of a tree is one text, and is written the same again when nothing is
// mended in it. (The strict parser takes values that the reader would mend.)

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "krofx/core/buffer.h"
#include "krofx/reader/reading.h"
#include "krofx/rewriting/rewrite.h"

namespace {

std::string_view BytesOf(const KRBuffer& buffer) {
  return {buffer.GetBufferPtr(), buffer.GetBufferSize()};
}

// Places are in the bytes, and clean readings say nothing.
void CheckRecords(const krofx::Reading& reading, std::size_t size) {
  for (const krofx::Mending& mending : reading.mendings) {
    if (mending.place.offset > size || mending.place.line == 0) std::abort();
    if (krofx::FindMendingKind(mending.kind) == nullptr) std::abort();
  }
  if (reading.status == KRParseStatus_Accepted &&
      (!reading.mendings.empty() || !reading.warnings.empty())) {
    std::abort();
  }
}

void CheckRewriting(const krofx::OfxText& text, krofx::TextForm form) {
  // A file of no body, or of several, is written as no text, or as several.
  if (text.root->GetNumberOfChildren() != 1) return;
  KRBuffer first(0, 0);
  if (krofx::Rewrite(text, first, {form, 203, false}) != KRBuildStatus_Done) return;
  const krofx::Reading again = krofx::Read(BytesOf(first));
  if (again.texts.size() != 1) std::abort();
  if (!again.mendings.empty()) return;
  // A text that is put together of references may be one more reference.
  if (std::memchr(first.GetBufferPtr(), '&', first.GetBufferSize()) != nullptr) return;
  KRBuffer second(0, 0);
  if (krofx::Rewrite(again.texts[0], second, {form, 203, false}) != KRBuildStatus_Done)
    std::abort();
  if (BytesOf(first) != BytesOf(second)) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  krofx::ReadOptions options;
  options.maxTexts = 50;
  const krofx::Reading reading = krofx::Read(bytes, options);
  CheckRecords(reading, size);
  for (const krofx::OfxText& text : reading.texts) {
    if (text.kind == krofx::TextKind::kMultipart) continue;
    CheckRewriting(text, krofx::TextForm::kOfx1);
    CheckRewriting(text, krofx::TextForm::kOfx2);
  }
  return 0;
}
