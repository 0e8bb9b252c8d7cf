// Any bytes through the reader: nothing may crash, hang or leak; each mending has its place in the
// bytes; what is written of a tree is one text, and is written the same again when nothing is
// mended in it. (The strict parser takes values that the reader would mend.)

#include <cstring>
#include <string_view>

#include "krofx/core/buffer.h"
#include "krofx/reader/reading.h"
#include "krofx/rewriting/rewrite.h"
#include "target.h"

namespace {

using namespace krofx::fuzz;

std::string_view BytesOf(const KRBuffer& buffer) {
  return {buffer.GetBufferPtr(), buffer.GetBufferSize()};
}

// Places are in the bytes, and clean readings say nothing.
void CheckRecords(const krofx::Reading& reading, std::size_t size) {
  for (const krofx::Mending& mending : reading.mendings) {
    Expect(mending.place.offset <= size && mending.place.line != 0, "places are in the bytes");
    Expect(krofx::FindMendingKind(mending.kind) != nullptr, "each kind of mending is a known one");
  }
  Expect(reading.status != KRParseStatus_Accepted ||
             (reading.mendings.empty() && reading.warnings.empty()),
         "clean readings say nothing");
}

void CheckRewriting(const krofx::OfxText& text, krofx::TextForm form) {
  // A file of no body, or of several, is written as no text, or as several.
  if (text.root->GetNumberOfChildren() != 1) return;
  KRBuffer first(0, 0);
  if (krofx::Rewrite(text, first, {form, 203, false}) != KRBuildStatus_Done) return;
  const krofx::Reading again = krofx::Read(BytesOf(first));
  Expect(again.texts.size() == 1, "one text is written as one");
  if (!again.mendings.empty()) return;
  // A text that is put together of references may be one more reference.
  if (std::memchr(first.GetBufferPtr(), '&', first.GetBufferSize()) != nullptr) return;
  KRBuffer second(0, 0);
  Expect(krofx::Rewrite(again.texts[0], second, {form, 203, false}) == KRBuildStatus_Done,
         "what was written can be written");
  ExpectSame(BytesOf(first), BytesOf(second), "a written text is written again");
}

void Run(Bytes bytes) {
  krofx::ReadOptions options;
  options.maxTexts = 50;
  const krofx::Reading reading = krofx::Read(bytes, options);
  CheckRecords(reading, bytes.size());
  for (const krofx::OfxText& text : reading.texts) {
    if (text.kind == krofx::TextKind::kMultipart) continue;
    CheckRewriting(text, krofx::TextForm::kOfx1);
    CheckRewriting(text, krofx::TextForm::kOfx2);
  }
}

const Target kTarget("read", &Run);

}  // namespace
