// The table of a modification: that of the class it modifies, with one required row at most.

#ifndef KROFX_TESTS_PAYROLL_REQUIRING_H_
#define KROFX_TESTS_PAYROLL_REQUIRING_H_

#include <sstream>
#include <string>
#include <string_view>

#include "support/aggregate_table.h"

namespace krofx::testing {

/// `table` with only the row of `tag` required, or none for an empty tag.
inline std::string Requiring(std::string_view tag, const std::string& table) {
  std::string result;
  for (const std::string& line : SplitAt(table, '\n')) {
    std::istringstream words(line);
    std::string word;
    std::string row;
    while (words >> word) {
      if (word != "required") row += (row.empty() ? "" : " ") + word;
    }
    if (!tag.empty() && row.starts_with(std::string(tag) + " ")) row += " required";
    result += row + "\n";
  }
  return result;
}

}  // namespace krofx::testing

#endif  // KROFX_TESTS_PAYROLL_REQUIRING_H_
