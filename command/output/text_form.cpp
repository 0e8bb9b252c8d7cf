// Asks the terminal for its width, and fits texts into columns.

#include "output/text_form.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdlib>

#include "output/characters.h"
#include "output/safe_text.h"

namespace krofx::command {

namespace {

constexpr std::size_t kUsualColumns = 80;
// Below this nothing can be laid out.
constexpr std::size_t kLeastColumns = 20;

constexpr std::string_view kEllipsis = "…";
constexpr std::string_view kRed = "\033[31m";
constexpr std::string_view kPlain = "\033[0m";

// The bytes of the start of a text that takes at most so many columns. Marks that go onto the last
// character are in it.
std::size_t StartThatFits(std::string_view text, std::size_t columns) {
  std::string_view left = text;
  std::size_t taken = 0;
  char32_t character = 0;
  while (!left.empty()) {
    const std::size_t end = text.size() - left.size();
    if (!TakeUtf8(left, character)) return end;
    taken += ColumnsOf(character);
    if (taken > columns) return end;
  }
  return text.size();
}

bool WantsColor() {
  const char* const refused = std::getenv("NO_COLOR");
  const char* const terminal = std::getenv("TERM");
  return (refused == nullptr || *refused == '\0') &&
         (terminal == nullptr || std::string_view(terminal) != "dumb");
}

}  // namespace

TextForm FormOfStandardOutput(bool wide) {
  TextForm form;
  form.detailed = wide;
  if (::isatty(STDOUT_FILENO) == 0) return form;
  form.color = WantsColor();
  if (wide) return form;
  struct winsize size {};
  const bool known = ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  form.columns = known ? size.ws_col : kUsualColumns;
  if (form.columns < kLeastColumns) form.columns = kLeastColumns;
  return form;
}

std::string Cut(std::string_view text, std::size_t columns) {
  if (DisplayWidth(text) <= columns) return std::string(text);
  if (columns == 0) return "";
  return std::string(text.substr(0, StartThatFits(text, columns - 1))) + std::string(kEllipsis);
}

std::vector<std::string> Wrapped(std::string_view text, std::size_t columns) {
  std::vector<std::string> lines;
  while (columns > 0 && DisplayWidth(text) > columns) {
    std::size_t end = StartThatFits(text, columns);
    // A character that is wider than the columns cannot be broken.
    if (end == 0) break;
    const std::size_t blank = text.rfind(' ', end);
    if (blank != std::string_view::npos && blank > 0) end = blank;
    lines.emplace_back(text.substr(0, end));
    text.remove_prefix(end);
    while (text.starts_with(' ')) text.remove_prefix(1);
  }
  if (!text.empty() || lines.empty()) lines.emplace_back(text);
  return lines;
}

std::string Colored(std::string_view text, bool isNegative, const TextForm& form) {
  if (!form.color || !isNegative) return std::string(text);
  return std::string(kRed).append(text).append(kPlain);
}

}  // namespace krofx::command
