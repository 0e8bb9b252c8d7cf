// Lines and columns of places in a text of which only a part is in memory.

#ifndef KROFX_STREAM_INTERNAL_LINE_COUNTER_H_
#define KROFX_STREAM_INTERNAL_LINE_COUNTER_H_

#include <cstddef>
#include <string_view>

#include "krofx/reader/mending.h"

namespace krofx::internal {

/// Counts lines up to places that do not go back before the beginning of the part.
class LineCounter {
 public:
  /// @param part a part of the text that has the offset in it, or ends there.
  /// @param base the offset of its first byte.
  /// @return the place of an offset.
  Place Find(std::string_view part, std::size_t base, std::size_t offset);
  /// Counts what is before an offset, which leaves memory.
  void Pass(std::string_view part, std::size_t base, std::size_t offset);

 private:
  // Up to where lines were counted.
  struct Mark {
    std::size_t offset = 0;
    std::size_t line = 1;
    std::size_t lineStart = 0;
    bool afterReturn = false;  // A carriage return is the last byte.
  };

  static void Count(Mark& mark, std::string_view part, std::size_t base, std::size_t offset);

  // At the beginning of the part, or before it; at the place that was asked for last; and at one
  // before that. A question about an element goes back to its tag, not to the beginning.
  Mark m_passed;
  Mark m_last;
  Mark m_before;
};

}  // namespace krofx::internal

#endif  // KROFX_STREAM_INTERNAL_LINE_COUNTER_H_
