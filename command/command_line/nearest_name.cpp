// Finds the nearest name by the count of single changes that lead to it.

#include "command_line/nearest_name.h"

#include <algorithm>
#include <numeric>
#include <utility>
#include <vector>

#include "output/characters.h"

namespace krofx::command {

namespace {

bool Same(char left, char right) { return LowerAscii(left) == LowerAscii(right); }

template <class Name>
std::string FindIn(std::string_view given, std::span<const Name> known) {
  const Name* best = nullptr;
  std::size_t least = 0;
  for (const Name& name : known) {
    const std::size_t distance = EditDistance(given, name);
    if (best != nullptr && distance >= least) continue;
    best = &name;
    least = distance;
  }
  if (best == nullptr || least * 3 > std::max(given.size(), best->size())) return "";
  return std::string(*best);
}

}  // namespace

std::size_t EditDistance(std::string_view left, std::string_view right) {
  // Rows of the table of distances between the starts of both texts: this one and two before it.
  std::vector<std::size_t> before;
  std::vector<std::size_t> last(right.size() + 1);
  std::iota(last.begin(), last.end(), 0);
  for (std::size_t row = 1; row <= left.size(); ++row) {
    std::vector<std::size_t> next(right.size() + 1, row);
    for (std::size_t column = 1; column <= right.size(); ++column) {
      const bool same = Same(left[row - 1], right[column - 1]);
      next[column] = std::min({last[column] + 1, next[column - 1] + 1,
                               last[column - 1] + static_cast<std::size_t>(same ? 0 : 1)});
      if (row > 1 && column > 1 && Same(left[row - 1], right[column - 2]) &&
          Same(left[row - 2], right[column - 1])) {
        next[column] = std::min(next[column], before[column - 2] + 1);
      }
    }
    before = std::exchange(last, std::move(next));
  }
  return last.back();
}

std::string FindNearest(std::string_view given, std::span<const std::string_view> known) {
  return FindIn(given, known);
}

std::string FindNearest(std::string_view given, std::span<const std::string> known) {
  return FindIn(given, known);
}

}  // namespace krofx::command
