// What is measured: each operation once, for the benchmarks (how long it takes) and for the counts
// (how many instructions it takes).

#ifndef KROFX_BENCH_OPERATIONS_H_
#define KROFX_BENCH_OPERATIONS_H_

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "partner.h"

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
/// Calculates with a few numbers, without memory, to see what the machine allows.
Operation Calculate();
/// Runs an operation while a second thread or process runs another one.
Operation AtTheSameTime(Partner::Kind kind, const Operation& own, const Operation& other);

}  // namespace bench

#endif  // KROFX_BENCH_OPERATIONS_H_
