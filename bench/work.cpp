// Does each kind of work on each kind of costly text, at three lengths, for an instrument that
// counts instructions: krofx_work [TIMES], with texts that are so many times as long; see work.py.

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "counted.h"
#include "krofx/host.h"
#include "support/costly_texts.h"

namespace {

using krofx::testing::CostlyKind;

// How often a text repeats what makes it costly: see work.py.
constexpr int kLengths[] = {20, 80, 320};

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

// Hears of everything: a stream without a listener finds out less.
class Listener final : public krofx::StreamListener {
  void OnWarning(const krofx::ReadWarning& /*warning*/) override {}
};

// Element by element, through a window that is smaller than most of the texts.
void Stream(const Text& text) {
  krofx::StreamOptions options;
  options.mends = true;
  options.window = 256;
  Listener listener;
  krofx::Stream stream(options);
  stream.SetListener(&listener);
  stream.Want<KRBankStatementTx>();
  stream.Want<KRTransRs>();
  stream.Open(std::string_view(text.bytes));
  for (const krofx::StreamElement& element : stream) {
    element.Path();
    element.Account();
  }
}

void Build(KRFile& file) {
  KRBuffer out(0, 0);
  KRBuilder().Build(&out, &file, KRBuildStringOpt_Lenient, 0);
}

void Rewrite(const krofx::Reading& reading) {
  if (reading.texts.empty()) return;
  KRBuffer out(0, 0);
  krofx::Rewrite(reading.texts[0], out);
  krofx::Rewrite(reading.texts[0], out, {.form = krofx::TextForm::kOfx2});
}

void Check(KRFile& file) {
  KRDataObj* holder = nullptr;
  KRTagID missing = KRTag_None;
  KRDataObj* object = &file;
  KRUtility::AllRequiredPresent(&object, &missing);
  KRUtility::GetNextMissingRequiredTag(&file, &holder, KRTag_None);
}

// As a host that looks at everything, and names where it is, and what securities are called.
void Walk(const KRFile& file) {
  for (const auto& found : krofx::Each<KRDataObj>(file)) found.Path();
  for (const krofx::StatementView& statement : krofx::Statements(file)) {
    for (const auto& position : statement.Positions()) position.Security();
    for (const auto& transaction : statement.InvestmentTransactions()) transaction.Security();
  }
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
  // A stream refuses a multipart text.
  if (!text.kind.isMultipart) Count("stream", text, [&] { Stream(text); });
  const std::unique_ptr<KRFile> parsed = Parse(text, buffer);
  KRFile& tree = reading.root != nullptr ? *reading.root : *parsed;
  Count("check", text, [&] { Check(tree); });
  Count("find what is missing", text, [&] {
    reading.Warnings();
    krofx::FindMissing(tree);
  });
  Count("walk", text, [&] { Walk(tree); });
  Count("build", text, [&] { Build(tree); });
  Count("rewrite", text, [&] { Rewrite(reading); });
}

}  // namespace

int main(int count, char** arguments) {
  const int times = count > 1 ? std::atoi(arguments[1]) : 1;
  for (const CostlyKind& kind : krofx::testing::kCostlyKinds) {
    // The first time fills what is kept for later ones.
    const Text warm{kind, kind.text(2)};
    KRBuffer buffer(0, 0);
    Fill(buffer, warm.bytes);
    Parse(warm, buffer);
    krofx::Read(std::string_view(warm.bytes));
    Stream(warm);
    for (const int length : kLengths) CountAll({kind, kind.text(length * times)});
  }
  KRParseLogger::TheKRParseLogger()->DeleteAll();
}
