// Measures how long it takes to read a statement into typed objects and to write it again, and, for
// comparison, how long a fast XML reader takes to build its untyped tree of the same statement.

#include <benchmark/benchmark.h>

#include <cstring>
#include <memory>
#include <pugixml.hpp>

#include "krofx/aggregates.h"
#include "krofx/build/builder.h"
#include "krofx/core/buffer.h"
#include "krofx/parse/simple_parser.h"
#include "krofx/reader/reading.h"
#include "statement_text.h"

namespace {

constexpr int kTransactions = 20000;

const std::string& Ofx() {
  static const std::string text = bench::OfxStatement(kTransactions);
  return text;
}

const std::string& Xml() {
  static const std::string text = bench::XmlStatement(kTransactions);
  return text;
}

void Fill(KRBuffer& buffer, const std::string& text) {
  buffer.WriteLarge(text.data(), static_cast<u32>(text.size()));
}

void SetRates(benchmark::State& state, const std::string& text) {
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
  state.counters["transactions/s"] = benchmark::Counter(
      static_cast<double>(state.iterations()) * kTransactions, benchmark::Counter::kIsRate);
}

// Parses text in memory into a tree of typed objects and deletes the tree. `check` also asks for
// the walk over the tree that looks for missing tags.
void Parse(benchmark::State& state, u16 check) {
  KRBuffer buffer(static_cast<u32>(Ofx().size() + 1), 0);
  Fill(buffer, Ofx());
  for (auto _ : state) {
    KRFileRs file;
    KRSimpleParser parser;
    const KRParseStatus status = parser.Parse(&buffer, &file, check);
    if (status != KRParseStatus_Accepted) state.SkipWithError("the statement was not accepted");
    benchmark::DoNotOptimize(file);
  }
  SetRates(state, Ofx());
}

void ParseTyped(benchmark::State& state) { Parse(state, 0); }
BENCHMARK(ParseTyped)->Unit(benchmark::kMillisecond);

void ParseTypedAndCheck(benchmark::State& state) { Parse(state, 1); }
BENCHMARK(ParseTypedAndCheck)->Unit(benchmark::kMillisecond);

// The same by the reader, which finds nothing to mend: what it costs over ParseTypedAndCheck is
// what asking for it costs.
void ReadClean(benchmark::State& state) {
  KRBuffer buffer(static_cast<u32>(Ofx().size() + 1), 0);
  Fill(buffer, Ofx());
  for (auto _ : state) {
    const krofx::Reading reading = krofx::Read(buffer);
    if (reading.status != KRParseStatus_Accepted) state.SkipWithError("the statement is not clean");
    benchmark::DoNotOptimize(reading.root);
  }
  SetRates(state, Ofx());
}
BENCHMARK(ReadClean)->Unit(benchmark::kMillisecond);

// The same for a statement with a private tag, which is read a second time to mend it.
void ReadMended(benchmark::State& state) {
  std::string text = Ofx();
  text.insert(text.find("<STMTTRN>"), "<INTU.BID>3000\n");
  KRBuffer buffer(static_cast<u32>(text.size() + 1), 0);
  Fill(buffer, text);
  for (auto _ : state) {
    const krofx::Reading reading = krofx::Read(buffer);
    if (reading.mendings.size() != 1) state.SkipWithError("not one mending");
    benchmark::DoNotOptimize(reading.root);
  }
  SetRates(state, text);
}
BENCHMARK(ReadMended)->Unit(benchmark::kMillisecond);

// The same work by pugixml: parses text in memory into its tree and deletes the tree.
void ParseXml(benchmark::State& state) {
  for (auto _ : state) {
    pugi::xml_document document;
    const pugi::xml_parse_result result = document.load_buffer(Xml().data(), Xml().size());
    if (!result) state.SkipWithError("the XML was not accepted");
    benchmark::DoNotOptimize(document);
  }
  SetRates(state, Xml());
}
BENCHMARK(ParseXml)->Unit(benchmark::kMillisecond);

void BuildText(benchmark::State& state) {
  KRBuffer buffer(static_cast<u32>(Ofx().size() + 1), 0);
  Fill(buffer, Ofx());
  KRFileRs file;
  KRSimpleParser parser;
  parser.Parse(&buffer, &file, 0);
  for (auto _ : state) {
    KRBuffer out(static_cast<u32>(Ofx().size() + 1), 0);
    KRBuilder builder;
    if (builder.Build(&out, &file, KRBuildStringOpt_Strict, 0) != KRBuildStatus_Done) {
      state.SkipWithError("the statement was not written");
    }
    benchmark::DoNotOptimize(out.GetBufferPtr());
  }
  SetRates(state, Ofx());
}
BENCHMARK(BuildText)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
