// Hands declarations to the library that parses arguments, and words what it does not accept.

#include "command_line/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>

#include "command_line/help_text.h"
#include "command_line/nearest_name.h"
#include "output/characters.h"
#include "output/messages.h"

namespace krofx::command {

namespace {

// The subcommand that the arguments came to, from the command itself down.
const CLI::App& FindLast(const CLI::App& app) {
  const std::vector<CLI::App*> chosen = app.get_subcommands();
  return chosen.empty() ? app : FindLast(*chosen.front());
}

std::string PathOf(const CLI::App& app) {
  const CLI::App* const parent = app.get_parent();
  if (parent == nullptr) return "";
  const std::string above = PathOf(*parent);
  return above.empty() ? app.get_name() : above + " " + app.get_name();
}

std::vector<std::string> NamesOfSubcommands(const CLI::App& app) {
  std::vector<std::string> names;
  for (const CLI::App* const each : app.get_subcommands([](const CLI::App*) { return true; })) {
    // Without a group it is not meant for people.
    if (!each->get_group().empty()) names.push_back(each->get_name());
  }
  return names;
}

std::vector<std::string> NamesOfOptions(const CLI::App& app) {
  std::vector<std::string> names;
  for (const CLI::Option* const option : app.get_options()) {
    for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
  }
  return names;
}

// What was meant by the first argument that nothing takes, as the end of a message.
std::string SuggestInstead(const CLI::App& app, const CLI::App& last) {
  const std::vector<std::string> left = app.remaining(true);
  if (left.empty()) return "";
  const std::string name = left.front().substr(0, left.front().find('='));
  return SuggestNearest(name,
                        name.starts_with("--") ? NamesOfOptions(last) : NamesOfSubcommands(last));
}

// The first argument that nothing takes. What comes after an option that is not known may be a
// secret and is not named.
std::string NameUnknown(const CLI::App& app, const CLI::App& last) {
  const std::vector<std::string> left = app.remaining(true);
  if (left.empty()) return "an argument is not known";
  const std::string& first = left.front();
  if (first.starts_with("--")) return first.substr(0, first.find('=')) + " is not known";
  if (first.starts_with("-")) return first.substr(0, 2) + " is not known";
  return NamesOfSubcommands(last).empty() ? "there is an argument too many"
                                          : first + " is not a subcommand";
}

std::vector<OptionDescription> DescribeOptions(const CLI::App& app) {
  std::vector<OptionDescription> found;
  for (const CLI::Option* const option : app.get_options()) {
    OptionDescription each;
    for (const std::string& name : option->get_snames()) each.names.push_back("-" + name);
    for (const std::string& name : option->get_lnames()) each.names.push_back("--" + name);
    if (each.names.empty()) each.names.push_back(option->get_name());
    each.help = option->get_description();
    each.title = option->get_group();
    each.isPlain = option->get_positional();
    each.isRequired = option->get_required();
    each.isRepeated = option->get_expected_max() > 1;
    each.takesValue = option->get_items_expected_max() > 0;
    each.isNumber = option->get_type_name().starts_with("INT");
    found.push_back(std::move(each));
  }
  return found;
}

std::string WriteHelp(const CLI::App* app, const std::string&, CLI::AppFormatMode) {
  HelpPage page{app->get_description(),
                "krofx " + PathOf(*app),
                DescribeOptions(*app),
                {},
                app->get_footer()};
  for (const CLI::App* const each : app->get_subcommands([](const CLI::App*) { return true; })) {
    if (!each->get_group().empty()) {
      page.subcommands.emplace_back(each->get_name(), each->get_description());
    }
  }
  return LayOut(page);
}

// The library's own words name the option but not always its value, which is left out then.
std::string Describe(const CLI::App& app, const CLI::App& last, const CLI::ParseError& error) {
  std::string text = error.what();
  switch (static_cast<CLI::ExitCodes>(error.get_exit_code())) {
    case CLI::ExitCodes::ExtrasError:
      return NameUnknown(app, last);
    case CLI::ExitCodes::ArgumentMismatch:
      return text.substr(0, text.find(':')) + " takes one value";
    case CLI::ExitCodes::ConversionError: {
      // Only options without a value convert one, as in --card=maybe.
      const std::size_t name = std::min(text.find("--"), text.size());
      return text.substr(name, text.find_first_of(" :", name) - name) + " takes no value";
    }
    case CLI::ExitCodes::RequiredError:
      if (text != "A subcommand is required") return text;
      return app.remaining(true).empty() ? "a subcommand is needed" : NameUnknown(app, last);
    default:
      return text;
  }
}

bool NamesUnknownSubcommand(const CLI::App& app, const CLI::App& last) {
  const std::vector<std::string> left = app.remaining(true);
  return !left.empty() && !left.front().starts_with("-") && !NamesOfSubcommands(last).empty();
}

ExitStatus RefuseUse(const CLI::App& app, const CLI::App& last, const std::string& problem) {
  const std::string path = PathOf(last);
  const std::string whole = path.empty() ? app.get_name() : app.get_name() + " " + path;
  Complain(path.empty() ? "command line" : path,
           problem + "; see \"" + whole + " --help\"" + SuggestInstead(app, last));
  return kExitWrongUse;
}

// The arguments, the last first, as the library takes them. Of "--name=" it would take the next
// argument as the value, which is an empty one.
std::vector<std::string> Reversed(int argc, char** argv) {
  std::vector<std::string> arguments;
  bool mayBeOption = true;
  for (int index = 1; index < argc; ++index) {
    const std::string_view argument = argv[index];
    mayBeOption &= argument != "--";
    arguments.emplace_back(argument);
    if (!mayBeOption || !argument.starts_with("--") || argument.size() < 4 ||
        argument.find('=') != argument.size() - 1) {
      continue;
    }
    arguments.back().pop_back();
    arguments.emplace_back();
  }
  std::reverse(arguments.begin(), arguments.end());
  return arguments;
}

// An empty value, as a variable of the shell without one gives it, must not do what no option does.
Option Guard(const std::string& name, Option option) {
  return name.starts_with('-') ? option.RefuseEmpty() : option;
}

}  // namespace

Option Option::Required(bool required) const {
  m_option->required(required);
  return *this;
}

Option Option::Needs(Option other) const {
  m_option->needs(other.m_option);
  return *this;
}

Option Option::Excludes(Option other) const {
  m_option->excludes(other.m_option);
  return *this;
}

Option Option::OneValueEachTime() const {
  m_option->allow_extra_args(false);
  return *this;
}

Option Option::RefuseEmpty() const {
  m_option->check([](const std::string& text) {
    return std::string(text.empty() ? "its value is empty; give one, or leave it out" : "");
  });
  return *this;
}

Option Option::SpelledAs(std::span<const std::string_view> words) const {
  const auto spell = [words](std::string& text) -> std::string {
    const auto word = std::find_if(words.begin(), words.end(), [&](std::string_view each) {
      return LowerAscii(std::string_view(text)) == LowerAscii(each);
    });
    if (word != words.end()) text = *word;
    return "";
  };
  m_option->transform(CLI::Validator(spell, ""));
  return *this;
}

Option Option::InGroup(const char* title) const {
  m_option->group(title);
  return *this;
}

Subcommand Subcommand::Add(const char* name, const char* purpose) const {
  return Subcommand(m_app->add_subcommand(name, purpose));
}

Subcommand Subcommand::GetParent() const { return Subcommand(m_app->get_parent()); }

void Subcommand::RequireSubcommand() const { m_app->require_subcommand(1); }

std::string Subcommand::GetPath() const { return PathOf(*m_app); }

Option Subcommand::AddOption(const std::string& name, std::string& value,
                             const std::string& help) const {
  return Guard(name, Option(m_app->add_option(name, value, help)));
}

Option Subcommand::AddOption(const std::string& name, std::vector<std::string>& values,
                             const std::string& help) const {
  return Guard(name, Option(m_app->add_option(name, values, help)));
}

Option Subcommand::AddNumber(const std::string& name, int& value, int least, int most,
                             const std::string& help) const {
  // The library reads what begins with 0 as octal, which nobody means: it gets the number that was
  // read here.
  const auto read = [least, most](std::string& text) -> std::string {
    int number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || stop != end || number < least || number > most) {
      return "a whole number from " + std::to_string(least) + " to " + std::to_string(most) +
             " is needed";
    }
    text = std::to_string(number);
    return "";
  };
  return Option(m_app->add_option(name, value, help)->transform(CLI::Validator(read, "NUMBER")));
}

Option Subcommand::AddFlag(const std::string& name, bool& value, const std::string& help) const {
  return Option(m_app->add_flag(name, value, help));
}

Option Subcommand::GetOption(const std::string& name) const {
  return Option(m_app->get_option(name));
}

std::string Subcommand::GetName() const { return m_app->get_name(); }

std::string Subcommand::GetPurpose() const { return m_app->get_description(); }

std::string Subcommand::GetHelp() const { return m_app->help(); }

std::vector<Subcommand> Subcommand::ListSubcommands() const {
  std::vector<Subcommand> found;
  for (CLI::App* const each : m_app->get_subcommands([](CLI::App*) { return true; })) {
    if (!each->get_group().empty()) found.emplace_back(each);
  }
  return found;
}

std::vector<OptionDescription> Subcommand::ListOptions() const { return DescribeOptions(*m_app); }

void Subcommand::SetGroup(const std::string& title) const { m_app->group(title); }

void Subcommand::SetShortHelp(const std::string& usage) const {
  m_app->formatter_fn([usage](const CLI::App* app, const std::string&, CLI::AppFormatMode) {
    constexpr std::size_t kColumn = 13;
    std::string text = app->get_description() + "\n" + usage;
    std::string group;
    for (const CLI::App* const each : app->get_subcommands([](const CLI::App*) { return true; })) {
      if (each->get_group().empty()) continue;
      if (each->get_group() != group) text += each->get_group() + ":\n";
      group = each->get_group();
      std::string line = "  " + each->get_name();
      line.resize(std::max(line.size() + 1, kColumn), ' ');
      text += line + each->get_description() + "\n";
    }
    return text + app->get_footer() + "\n";
  });
}

void Subcommand::SetFooter(const std::string& text) const { m_app->footer(text); }

void Subcommand::OnRun(std::unique_ptr<Action> action) const {
  // The status comes to CommandLine::Run as the library's own way out of a parse.
  m_app->callback([kept = std::shared_ptr<Action>(std::move(action))] {
    const ExitStatus exitStatus = kept->Run();
    if (exitStatus != kExitClean) throw CLI::RuntimeError(exitStatus);
  });
}

CommandLine::CommandLine(const char* name, const char* purpose, const char* version)
    : m_app(std::make_unique<CLI::App>(purpose, name)) {
  m_app->require_subcommand(1);
  m_app->formatter_fn(WriteHelp);
  m_app->set_version_flag("--version", version);
}

CommandLine::~CommandLine() = default;

Subcommand CommandLine::GetCommand() const { return Subcommand(m_app.get()); }

ExitStatus CommandLine::Run(int argc, char** argv) const {
  try {
    m_app->parse(Reversed(argc, argv));
    return kExitClean;
  } catch (const CLI::RuntimeError& ended) {
    return static_cast<ExitStatus>(ended.get_exit_code());
  } catch (const CLI::Success& asked) {
    const CLI::App& last = FindLast(*m_app);
    // The help of a command that there is not is not that of the one above it.
    if (NamesUnknownSubcommand(*m_app, last)) {
      return RefuseUse(*m_app, last, NameUnknown(*m_app, last));
    }
    std::ostringstream text;
    m_app->exit(asked, text, text);
    return WriteStandardOutput(text.str());
  } catch (const CLI::ParseError& error) {
    const CLI::App& last = FindLast(*m_app);
    return RefuseUse(*m_app, last, Describe(*m_app, last, error));
  }
}

}  // namespace krofx::command
