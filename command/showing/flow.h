// What comes in and goes out: sums of amounts by their sign.

#ifndef KROFX_COMMAND_SHOWING_FLOW_H_
#define KROFX_COMMAND_SHOWING_FLOW_H_

#include <cstddef>
#include <string>
#include <string_view>

#include "output/exact_decimal.h"
#include "output/text_form.h"

namespace krofx::command {

/// The sums of some amounts of one currency. All three have the same places.
class Flow {
 public:
  /// The three sums as exact texts, such as "9258.49", "-5279.17" and "3979.32". Each is empty when
  /// the sums have more digits than can be counted.
  struct Texts {
    std::string in;
    std::string out;
    std::string net;
  };

  /// Counts a transaction, and adds its amount if it has one.
  void Add(std::string_view amount);
  /// Adds what another one has counted.
  void Add(const Flow& other);

  std::size_t GetCount() const { return m_count; }
  Texts GetTexts() const;

 private:
  std::size_t m_count = 0;
  ExactDecimal m_in;
  ExactDecimal m_out;
  bool m_fits = true;
};

/// What separates the parts of a line of totals.
inline constexpr std::string_view kTotalsGap = "   ";

/// @param things what is counted, in the plural.
/// @return a line of totals, such as "61 transactions   in 9258.49   out -5279.17   net 3979.32".
std::string FlowLine(const Flow& flow, std::string_view things, const TextForm& form);
/// @return a sum in such a line. An empty one is too large.
std::string SumText(const std::string& sum, const TextForm& form);

/// @param things their name in the plural.
/// @return a number of things, such as "1 transaction" or "61 transactions".
std::string CountOf(std::size_t count, std::string_view things);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_SHOWING_FLOW_H_
