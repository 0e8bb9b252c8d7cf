// Keeps in mind whether the line is there.

#include "output/progress_line.h"

#include <cstdio>

namespace krofx::command {

namespace {

// To the start of the line, and clear it.
constexpr char kClear[] = "\r\033[K";

std::mutex s_mutex;
bool s_isShown = false;

}  // namespace

void ShowProgressLine(const std::string& text) {
  const std::lock_guard lock(s_mutex);
  std::fputs((kClear + text).c_str(), stderr);
  s_isShown = true;
}

WithoutProgressLine::WithoutProgressLine() : m_lock(s_mutex) {
  if (s_isShown) std::fputs(kClear, stderr);
  s_isShown = false;
}

}  // namespace krofx::command
