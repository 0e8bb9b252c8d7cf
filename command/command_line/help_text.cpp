// Breaks the texts of a help into lines that every terminal has room for.

#include "command_line/help_text.h"

#include <algorithm>
#include <string_view>

namespace krofx::command {

namespace {

constexpr std::size_t kWidth = 80;
// Where what is said of an option or a subcommand begins.
constexpr std::size_t kColumn = 26;

// Appends the words of a text to a line that is begun, in lines that are indented.
void AddWords(std::string& text, std::string_view words, std::size_t indent) {
  std::size_t column = text.size() - (text.rfind('\n') + 1);
  bool first = true;
  for (std::size_t at = 0; at < words.size();) {
    const std::size_t end = std::min(words.find(' ', at), words.size());
    const std::string_view word = words.substr(at, end - at);
    if (!first && column + 1 + word.size() > kWidth) {
      text += "\n" + std::string(indent, ' ');
      column = indent;
    } else if (!first) {
      text += ' ';
      ++column;
    }
    text += word;
    column += word.size();
    first = false;
    at = end + 1;
  }
  text += '\n';
}

// A name with what is said of it beside it, or below it when the name is long.
void AddEntry(std::string& text, const std::string& name, const std::string& words) {
  std::string line = "  " + name;
  if (line.size() + 2 > kColumn) {
    text += line + "\n";
    line.clear();
  }
  line.resize(kColumn, ' ');
  text += line;
  AddWords(text, words, kColumn);
}

std::string NameOf(const OptionDescription& option) {
  std::string text;
  for (const std::string& name : option.names) text += (text.empty() ? "" : ", ") + name;
  if (option.isPlain) return option.isRepeated ? text + "..." : text;
  if (!option.takesValue) return text;
  return text + (option.isNumber ? " NUMBER" : " TEXT");
}

void AddOption(std::string& text, const OptionDescription& option) {
  const bool named = option.isRequired && !option.isPlain;
  AddEntry(text, NameOf(option), named ? option.help + " (required)" : option.help);
}

std::string UsageOf(const HelpPage& page) {
  std::string usage = page.command + " [OPTIONS]";
  for (const OptionDescription& option : page.options) {
    if (!option.isPlain) continue;
    const std::string name = NameOf(option);
    usage += option.isRequired ? " " + name : " [" + name + "]";
  }
  return page.subcommands.empty() ? usage : usage + " SUBCOMMAND";
}

// The titles of the options in the order in which the options come.
std::vector<std::string> TitlesOf(const HelpPage& page) {
  std::vector<std::string> titles;
  for (const OptionDescription& option : page.options) {
    if (option.isPlain || std::find(titles.begin(), titles.end(), option.title) != titles.end()) {
      continue;
    }
    titles.push_back(option.title);
  }
  return titles;
}

}  // namespace

std::string LayOut(const HelpPage& page) {
  std::string text = page.purpose + "\nUsage: ";
  AddWords(text, UsageOf(page), kColumn);
  const auto isPlain = [](const OptionDescription& option) { return option.isPlain; };
  if (std::any_of(page.options.begin(), page.options.end(), isPlain)) {
    text += "\nPositionals:\n";
    for (const OptionDescription& option : page.options) {
      if (option.isPlain) AddOption(text, option);
    }
  }
  for (const std::string& title : TitlesOf(page)) {
    text += "\n";
    AddWords(text, title + ":", 0);
    for (const OptionDescription& option : page.options) {
      if (!option.isPlain && option.title == title) AddOption(text, option);
    }
  }
  if (!page.subcommands.empty()) text += "\nSubcommands:\n";
  for (const auto& [name, purpose] : page.subcommands) AddEntry(text, name, purpose);
  if (!page.footer.empty()) text += "\n";
  for (std::string_view left = page.footer; !left.empty();) {
    const std::size_t end = std::min(left.find('\n'), left.size());
    AddWords(text, left.substr(0, end), 0);
    left.remove_prefix(std::min(end + 1, left.size()));
  }
  return text;
}

}  // namespace krofx::command
