// Measures how long the operations take, and, for comparison, how long a fast XML reader takes to
// build its untyped tree of the same statement and to delete it.

#include <benchmark/benchmark.h>

#include <memory>
#include <pugixml.hpp>

#include "operations.h"
#include "statement_text.h"

namespace {

constexpr int kTransactions = 20000;

void Measure(benchmark::State& state, const bench::Operation& operation) {
  for (auto _ : state) {
    state.PauseTiming();
    operation.prepare();
    state.ResumeTiming();
    if (!operation.run()) {
      state.SkipWithError("the operation failed");
      break;
    }
  }
  if (operation.bytes != 0) {
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(operation.bytes));
  }
}

benchmark::internal::Benchmark* Register(const bench::Operation& operation) {
  return benchmark::RegisterBenchmark(operation.name.c_str(), Measure, operation)
      ->Unit(operation.bytes > 1000000 ? benchmark::kMillisecond : benchmark::kMicrosecond);
}

// Registers an operation alone, on two threads and in two processes, all by the clock on the wall.
// `make` makes one that shares nothing with the others.
template <class Make>
void RegisterTwice(Make make) {
  bench::Operation alone = make();
  for (const auto kind : {bench::Partner::Kind::kThread, bench::Partner::Kind::kProcess}) {
    Register(bench::AtTheSameTime(kind, make(), make()))->UseRealTime();
  }
  alone.name = "one thread " + alone.name;
  Register(alone)->UseRealTime();
}

bench::Operation ParseXml() {
  auto text = std::make_shared<std::string>(bench::XmlStatement(kTransactions));
  return {"parse XML", [] {},
          [text] {
            pugi::xml_document document;
            return static_cast<bool>(document.load_buffer(text->data(), text->size()));
          },
          text->size()};
}

}  // namespace

int main(int argc, char** argv) {
  Register(ParseXml());
  for (const bench::Operation& operation :
       bench::AllOperations(kTransactions, KROFX_EXAMPLES_FOLDER)) {
    Register(operation);
  }
  Register(bench::ParseBank(1000));
  Register(bench::ParseBank(60000));
  RegisterTwice([] { return bench::ParseBank(kTransactions); });
  RegisterTwice(bench::Calculate);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
