// What is measured: each operation once, for the benchmarks (how long it takes) and for the counts
// (how many instructions it takes).

#ifndef KROFX_BENCH_OPERATIONS_H_
#define KROFX_BENCH_OPERATIONS_H_

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace bench {

/// One operation.
struct Operation {
  std::string name;  ///< What is done, and to which text: "parse bank".
  /// Makes what `run` uses up. Not measured.
  std::function<void()> prepare;
  /// The operation; false when it failed.
  std::function<bool()> run;
  std::size_t bytes = 0;  ///< Size of the text that is read or written; 0 for single values.
};

/// The operations on statements of `transactions` transactions, on the files of the folder
/// `examples`, and on single values.
std::vector<Operation> AllOperations(int transactions, const std::string& examples);

/// Parses a bank statement of `transactions` transactions.
Operation ParseBank(int transactions);
/// Parses two bank statements of `transactions` transactions at the same time, on two threads.
Operation ParseBankTwice(int transactions);

}  // namespace bench

#endif  // KROFX_BENCH_OPERATIONS_H_
