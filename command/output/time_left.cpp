// Counts on from what is done.

#include "output/time_left.h"

#include <algorithm>

namespace krofx::command {

std::string DescribeTimeLeft(std::chrono::steady_clock::duration elapsed, double done, double all) {
  constexpr double kMostSeconds = 90;
  constexpr double kMostMinutes = 90;
  const double seconds = std::chrono::duration<double>(elapsed).count();
  if (seconds < 1 || done <= 0 || all <= 0) return "";
  const double left = seconds / done * std::max(all - done, 0.0);
  const auto about = [](double number, const char* unit) {
    return ", about " + std::to_string(static_cast<long long>(number) + 1) + unit + " left";
  };
  if (left < kMostSeconds) return about(left, " s");
  return left / 60 < kMostMinutes ? about(left / 60, " min") : about(left / 3600, " h");
}

}  // namespace krofx::command
