// Sums of amounts: exact, and aware of their own limit.

#ifndef KROFX_COMMAND_OUTPUT_EXACT_DECIMAL_H_
#define KROFX_COMMAND_OUTPUT_EXACT_DECIMAL_H_

#include <optional>
#include <string>
#include <string_view>

namespace krofx::command {

/// An exact decimal of up to 38 digits. The library's decimals wrap around at their limit; sums of
/// a person's money must rather be refused.
class ExactDecimal {
 public:
  ExactDecimal() = default;

  /// Reads an optional sign and digits with at most one point among them.
  /// @return nothing for any other text, and for one that is too long.
  static std::optional<ExactDecimal> Parse(std::string_view text);

  /// Adds. The result has the places of the number with more of them.
  /// @return false, and nothing changes, when the sum does not fit.
  bool Add(ExactDecimal other);
  /// Less than 0, 0 or more than 0, as this number is less than, equal to or greater than the
  /// other.
  int Compare(const ExactDecimal& other) const;
  bool IsNegative() const { return m_value < 0; }
  /// Gives the number at least so many places; it stays as it is when it would not fit then.
  void Widen(unsigned places);
  unsigned GetPlaces() const { return m_places; }
  /// @return the number with all its places, such as "-0.50".
  std::string Text() const;

 private:
  __extension__ using Wide = __int128;

  bool ScaleTo(unsigned places);

  Wide m_value = 0;
  unsigned m_places = 0;
};

}  // namespace krofx::command

#endif  // KROFX_COMMAND_OUTPUT_EXACT_DECIMAL_H_
