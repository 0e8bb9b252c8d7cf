// Any bytes through the reader: nothing may crash, hang or leak; each mending has its place in the
// bytes; what is written of a tree is one text, and is written the same again when nothing is
// mended in it. (The strict parser takes values that the reader would mend.) A clean text that is
// written reads as the tree that it was written of.

#include <algorithm>
#include <string>
#include <string_view>

#include "krofx/core/buffer.h"
#include "krofx/reader/reading.h"
#include "krofx/rewriting/rewrite.h"
#include "trees.h"

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

// Whether what the references in a text stand for is itself a reference, or a CDATA section: a
// reading resolves what the tree still holds of either.
bool HasNestedReferences(std::string_view text) {
  // The longest name of a reference, and what comes before it.
  constexpr std::size_t kLongest = 10;
  constexpr std::string_view kAmpersand = "&amp;";
  for (std::size_t at = 0; (at = text.find(kAmpersand, at)) != std::string_view::npos;) {
    at += kAmpersand.size();
    if (text.substr(at, kLongest).find(';') != std::string_view::npos) return true;
  }
  return text.find("&lt;![CDATA[") != std::string_view::npos;
}

// What the builder writes of the body of a tree.
std::string BodyOf(krofx::OfxText& text) {
  const std::string written = Written(*text.root);
  return IsText(written) ? written.substr(std::min(written.find("<OFX>"), written.size()))
                         : written;
}

// Whether a text is written as it is in the tree: there are no control characters and references in
// it, which a tree may hold, and all of it is in every character set.
bool IsPlain(const std::string& body) {
  return std::all_of(body.begin(), body.end(), [](char c) {
    return c >= (c == '\r' || c == '\n' || c == '\t' ? '\0' : ' ') && c != '\x7F' && c != '&';
  });
}

void CheckRewriting(krofx::OfxText& text, krofx::TextForm form) {
  // A file of no body, or of several, is written as no text, or as several.
  if (text.root->GetNumberOfChildren() != 1) return;
  KRBuffer first(0, 0);
  if (krofx::Rewrite(text, first, {form, 203, false}) != KRBuildStatus_Done) return;
  const std::string_view bytes = BytesOf(first);
  krofx::Reading again = krofx::Read(bytes);
  Expect(again.texts.size() == 1, "one text is written as one");
  if (text.status == KRParseStatus_Accepted) {
    const std::string body = BodyOf(text);
    Expect(!IsPlain(body) || again.mendings.empty(), "a clean text is written clean");
    if (IsPlain(body)) {
      ExpectSame(body, BodyOf(again.texts[0]), "a written text reads as its tree");
    }
  }
  if (!again.mendings.empty() || HasNestedReferences(bytes) || HasBlankAtAnEnd(bytes)) return;
  KRBuffer second(0, 0);
  Expect(krofx::Rewrite(again.texts[0], second, {form, 203, false}) == KRBuildStatus_Done,
         "what was written can be written");
  ExpectSame(BytesOf(first), BytesOf(second), "a written text is written again");
}

void Run(Bytes bytes) {
  krofx::ReadOptions options;
  options.maxTexts = 50;
  krofx::Reading reading = krofx::Read(bytes, options);
  CheckRecords(reading, bytes.size());
  for (krofx::OfxText& text : reading.texts) {
    if (text.kind == krofx::TextKind::kMultipart) continue;
    // One form for each input takes half of the time.
    CheckRewriting(text, bytes.size() % 2 == 0 ? krofx::TextForm::kOfx1 : krofx::TextForm::kOfx2);
  }
}

const Target kTarget("read", &Run);

}  // namespace
