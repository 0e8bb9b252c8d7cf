// Does each kind of work on each kind of costly text, short and long, for an instrument that counts
// instructions: see work.py.

#include <cstdio>
#include <memory>
#include <string>

#include "counted.h"
#include "krofx/krofx.h"
#include "krofx/reader/reading.h"
#include "support/costly_texts.h"

namespace {

using krofx::testing::CostlyKind;

// How often a text repeats what makes it costly. With fewer, fixed costs hide quadratic ones.
constexpr int kShort = 400;
constexpr int kLong = 1600;

struct Text {
  const CostlyKind& kind;
  std::string bytes;
};

void Fill(KRBuffer& buffer, const std::string& bytes) {
  buffer.WriteLarge(bytes.data(), static_cast<u32>(bytes.size()));
}

std::unique_ptr<KRFile> Parse(const Text& text, KRBuffer& buffer) {
  if (text.kind.isMultipart) {
    auto file = std::make_unique<KRFile>();
    KRMIMEParser().Parse(&buffer, file.get(), 1);
    return file;
  }
  auto file = std::make_unique<KRFileRs>();
  KRSimpleParser().Parse(&buffer, file.get(), 0);
  return file;
}

void Build(KRFile& file) {
  KRBuffer out(0, 0);
  KRBuilder().Build(&out, &file, KRBuildStringOpt_Lenient, 0);
}

void Check(KRFile& file) {
  KRDataObj* holder = nullptr;
  KRTagID missing = KRTag_None;
  KRDataObj* object = &file;
  KRUtility::AllRequiredPresent(&object, &missing);
  KRUtility::GetNextMissingRequiredTag(&file, &holder, KRTag_None);
}

// Counts one piece of work on one text, and names it.
void Count(const char* work, const Text& text, const std::function<void()>& run) {
  bench::RunCounted({"", [] {},
                     [&run] {
                       run();
                       return true;
                     },
                     0});
  std::printf("%s %s, %zu\n", work, text.kind.name, text.bytes.size());
}

void CountAll(const Text& text) {
  KRBuffer buffer(0, 0);
  Fill(buffer, text.bytes);
  Count("parse", text, [&] { Parse(text, buffer); });
  krofx::Reading reading;
  Count("read", text, [&] { reading = krofx::Read(std::string_view(text.bytes)); });
  const std::unique_ptr<KRFile> parsed = Parse(text, buffer);
  KRFile& tree = reading.root != nullptr ? *reading.root : *parsed;
  Count("check", text, [&] { Check(tree); });
  Count("build", text, [&] { Build(tree); });
}

}  // namespace

int main() {
  for (const CostlyKind& kind : krofx::testing::kCostlyKinds) {
    // The first time fills what is kept for later ones.
    const Text warm{kind, kind.text(2)};
    KRBuffer buffer(0, 0);
    Fill(buffer, warm.bytes);
    Parse(warm, buffer);
    krofx::Read(std::string_view(warm.bytes));
    for (const int count : {kShort, kLong}) CountAll({kind, kind.text(count)});
  }
  KRParseLogger::TheKRParseLogger()->DeleteAll();
}
