// The command line as subcommands see it: they declare their options and what runs with them.
//
// One source includes the library that parses arguments, and everything else this header, since the
// library's headers take longer to compile than all that a subcommand does.

#ifndef KROFX_COMMAND_COMMAND_LINE_COMMAND_LINE_H_
#define KROFX_COMMAND_COMMAND_LINE_COMMAND_LINE_H_

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "system/exit_status.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace krofx::command {

/// An option that was declared: a handle, valid as long as the command line is.
class Option {
 public:
  explicit Option(CLI::Option* option) : m_option(option) {}

  /// The option must be given.
  Option Required(bool required = true) const;
  /// The option can only be given together with the other one.
  Option Needs(Option other) const;
  /// The option and the other one exclude each other.
  Option Excludes(Option other) const;
  /// The option takes one value each time that it is given.
  Option OneValueEachTime() const;
  /// An empty value is wrong use, which it always is for an option with hyphens.
  Option RefuseEmpty() const;
  /// A value that is one of the words, in small letters or capitals, becomes that word. Any other
  /// value stays as it is.
  /// @param words live as long as the command line.
  Option SpelledAs(std::span<const std::string_view> words) const;
  /// The help lists the option under this title.
  Option InGroup(const char* title) const;

 private:
  CLI::Option* m_option;
};

/// What there is to know of an option that was declared.
struct OptionDescription {
  std::vector<std::string> names;  ///< With their hyphens, or the name of a plain argument.
  std::string help;
  std::string title;  ///< That the help lists it under.
  bool isPlain = false;
  bool isRequired = false;
  bool isRepeated = false;
  bool takesValue = false;
  bool isNumber = false;
};

/// What runs when a subcommand is the one that was asked for.
class Action {
 public:
  virtual ~Action() = default;
  virtual ExitStatus Run() = 0;
};

/// A subcommand, or the command itself: a handle, valid as long as the command line is.
///
/// The variables that options are bound to must live until the command line has run; those inside
/// an object that OnRun is given do.
class Subcommand {
 public:
  explicit Subcommand(CLI::App* app) : m_app(app) {}

  /// Adds a subcommand to this one.
  /// @param purpose what the help says of it, in one line.
  Subcommand Add(const char* name, const char* purpose) const;
  /// @return the one that this one was added to.
  Subcommand GetParent() const;
  /// One of the subcommands that were added must be named.
  void RequireSubcommand() const;
  /// @return the names from the first subcommand to this one, such as "request transfer".
  std::string GetPath() const;

  /// Adds an option with a text as its value, which is not empty. A name without hyphens is that of
  /// a plain argument, which may be empty.
  Option AddOption(const std::string& name, std::string& value, const std::string& help) const;
  /// The same with several texts.
  Option AddOption(const std::string& name, std::vector<std::string>& values,
                   const std::string& help) const;
  /// Adds an option with a whole number as its value, in decimal digits and in a range.
  Option AddNumber(const std::string& name, int& value, int least, int most,
                   const std::string& help) const;
  /// Adds an option without a value, which makes `value` true.
  Option AddFlag(const std::string& name, bool& value, const std::string& help) const;
  /// An option that was added to this subcommand.
  Option GetOption(const std::string& name) const;

  /// @return the name alone, such as "transfer".
  std::string GetName() const;
  /// @return what the help says of it, in one line.
  std::string GetPurpose() const;
  /// @return all that --help prints.
  std::string GetHelp() const;
  /// @return those that were added to this one, in that order, without those that no help lists.
  std::vector<Subcommand> ListSubcommands() const;
  /// @return the options that were added to this one, and --help.
  std::vector<OptionDescription> ListOptions() const;
  /// The help lists the subcommand under this title; under none when it is empty.
  void SetGroup(const std::string& title) const;
  /// The help of the command itself is this text and the subcommands under their titles.
  void SetShortHelp(const std::string& usage) const;

  /// What the help says after the options: a line for each paragraph, however long.
  void SetFooter(const std::string& text) const;

  /// Says what runs when this subcommand is the one that was asked for.
  void OnRun(std::unique_ptr<Action> action) const;
  /// The same for a function and the options that it takes, which are kept for it.
  template <class Options>
  void OnRun(const std::shared_ptr<Options>& options, ExitStatus (*run)(const Options&)) const {
    struct Call final : Action {
      Call(std::shared_ptr<Options> given, ExitStatus (*function)(const Options&))
          : kept(std::move(given)), called(function) {}
      ExitStatus Run() override { return called(*kept); }
      std::shared_ptr<Options> kept;
      ExitStatus (*called)(const Options&);
    };
    OnRun(std::make_unique<Call>(options, run));
  }

 private:
  CLI::App* m_app;
};

/// The whole command line.
class CommandLine {
 public:
  CommandLine(const char* name, const char* purpose, const char* version);
  ~CommandLine();
  CommandLine(const CommandLine&) = delete;
  CommandLine& operator=(const CommandLine&) = delete;

  /// @return the command itself.
  Subcommand GetCommand() const;
  /// Reads the arguments and runs what they ask for. Help and the version go to standard output;
  /// errors are reported on standard error, without values, which may be secrets.
  ExitStatus Run(int argc, char** argv) const;

 private:
  std::unique_ptr<CLI::App> m_app;
};

}  // namespace krofx::command

#endif  // KROFX_COMMAND_COMMAND_LINE_COMMAND_LINE_H_
