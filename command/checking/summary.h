// What a report comes to, in one line for a person.

#ifndef KROFX_COMMAND_CHECKING_SUMMARY_H_
#define KROFX_COMMAND_CHECKING_SUMMARY_H_

#include <cstddef>
#include <string>

#include "checking/report.h"

namespace krofx::command {

/// @return such a line as "clean", "usable; 8 tags in lower case (lines 37-44), 2 unknown tags" or
///         "not usable: it is empty; download it again". What there is most of comes first.
std::string SummaryOf(const Report& report);

/// Counts what became of many files.
class VerdictCounts {
 public:
  void Add(ExitStatus verdict);
  /// @return a line such as "5000 files: 4998 clean, 2 with warnings".
  std::string Text() const;

 private:
  std::size_t m_clean = 0;
  std::size_t m_warnings = 0;
  std::size_t m_unusable = 0;
};

}  // namespace krofx::command

#endif  // KROFX_COMMAND_CHECKING_SUMMARY_H_
