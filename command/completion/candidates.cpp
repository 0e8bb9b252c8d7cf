// Follows the words to the subcommand that they lead to, and lists what fits there.

#include "completion/candidates.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <span>
#include <string_view>

#include "banks/account_list.h"
#include "banks/bank_file.h"
#include "command_line/command_line.h"
#include "input/parsed_file.h"
#include "requests/account_choice.h"
#include "requests/frequencies.h"
#include "showing/layout.h"
#include "showing/transaction_columns.h"

namespace krofx::command {

namespace {

// What the words before the last one came to.
struct Place {
  Subcommand subcommand;
  std::vector<std::string> plain;            // The words that are neither options nor values.
  std::optional<OptionDescription> pending;  // The option whose value is typed.
};

bool HasName(const OptionDescription& option, std::string_view name) {
  return std::find(option.names.begin(), option.names.end(), name) != option.names.end();
}

std::optional<OptionDescription> FindOption(const Subcommand& subcommand, const std::string& word) {
  for (OptionDescription& option : subcommand.ListOptions()) {
    if (HasName(option, word)) return std::move(option);
  }
  return std::nullopt;
}

bool TakesPlain(const Subcommand& subcommand, std::string_view name) {
  const std::vector<OptionDescription> options = subcommand.ListOptions();
  return std::any_of(options.begin(), options.end(),
                     [name](const OptionDescription& each) { return HasName(each, name); });
}

Place Follow(const Subcommand& command, std::span<const std::string> words) {
  Place place{command, {}, std::nullopt};
  for (const std::string& word : words) {
    if (place.pending.has_value()) {
      place.pending.reset();
    } else if (word.size() > 1 && word.starts_with('-')) {
      place.pending = FindOption(place.subcommand, word);
      if (place.pending.has_value() && !place.pending->takesValue) place.pending.reset();
    } else {
      const std::vector<Subcommand> below = place.subcommand.ListSubcommands();
      const auto found = std::find_if(below.begin(), below.end(), [&word](const Subcommand& each) {
        return each.GetName() == word;
      });
      if (found != below.end()) {
        place.subcommand = *found;
      } else {
        place.plain.push_back(word);
      }
    }
  }
  return place;
}

template <class Texts>
std::vector<std::string> ListOf(const Texts& texts) {
  return std::vector<std::string>(std::begin(texts), std::end(texts));
}

std::vector<std::string> BankNames(const char* prefix) {
  std::vector<std::string> names;
  for (const Bank& bank : ReadBanks().banks) {
    names.push_back(prefix + bank.name + "\t" + bank.organisation);
  }
  return names;
}

// An account with what it is. Of a card, whose number is not shown, it is the end, which is enough.
std::string Describe(const Account& account) {
  if (account.kind == AccountKind::kCard) {
    constexpr std::size_t kShown = 4;
    const std::string& number = account.number;
    return number.substr(number.size() - std::min(number.size(), kShown)) + "\tcard";
  }
  return account.number + "\t" + (account.type.empty() ? account.bank : account.type);
}

// Of the bank that is named before, or of the files.
std::vector<std::string> AccountNumbers(const std::vector<std::string>& plain) {
  std::vector<std::string> numbers;
  const auto add = [&numbers](const std::vector<Account>& accounts) {
    for (const Account& account : accounts) numbers.push_back(Describe(account));
  };
  for (const std::string& word : plain) {
    if (word.starts_with('@')) {
      std::string ignored;
      const BankList list = ReadBanks();
      const Bank* const bank = FindBank(list, word, ignored);
      if (bank != nullptr) add(bank->accounts);
    } else {
      add(AccountsIn(ParsedFile(word)));
    }
  }
  return numbers;
}

std::vector<std::string> ValuesOf(const Place& place) {
  const std::string& option = place.pending->names.front();
  const std::string path = place.subcommand.GetPath();
  const bool asks =
      path.starts_with("request") || path.starts_with("fetch") || path.starts_with("bank");
  if (option == "--table") return ListOf(TableKeys());
  if (option == "--every") return ListOf(kFrequencies);
  if (option == "--by") return {"month", "week", "name", "type", "account", "currency"};
  if (option == "--type" && !asks) return TransactionTypes();
  if (option.ends_with("-type")) return ListOf(kBankAccountTypes);
  if (option == "--account") return AccountNumbers(place.plain);
  for (const char* const file :
       {"--output", "--directory", "--root", "--save-reply", "--save-headers", "--folder"}) {
    if (HasName(*place.pending, file)) return {kFileNames};
  }
  return {};
}

std::vector<std::string> WordsAt(const Place& place, bool optionWanted) {
  std::vector<std::string> words;
  const std::string path = place.subcommand.GetPath();
  if (optionWanted) {
    for (const OptionDescription& option : place.subcommand.ListOptions()) {
      for (const std::string& name : option.names) {
        if (name.starts_with("--")) words.push_back(name + "\t" + option.help);
      }
    }
    return words;
  }
  for (const Subcommand& each : place.subcommand.ListSubcommands()) {
    words.push_back(each.GetName() + "\t" + each.GetPurpose());
  }
  if (TakesPlain(place.subcommand, "BANK") && place.plain.empty()) return BankNames("@");
  if (path.starts_with("bank ") && path != "bank add" && TakesPlain(place.subcommand, "NAME")) {
    return BankNames("");
  }
  if (TakesPlain(place.subcommand, "SHELL")) return {"bash", "zsh", "fish"};
  for (const char* const file : {"FILE", "OLD", "NEW"}) {
    if (TakesPlain(place.subcommand, file)) return {kFileNames};
  }
  return words;
}

}  // namespace

std::vector<std::string> FindCandidates(const Subcommand& command,
                                        const std::vector<std::string>& words) {
  const std::string last = words.empty() ? "" : words.back();
  std::span<const std::string> before = words;
  if (!before.empty()) before = before.first(before.size() - 1);
  // "krofx help" takes the names of subcommands as they are.
  if (!before.empty() && before.front() == "help") before = before.subspan(1);
  const Place place = Follow(command, before);
  std::vector<std::string> found =
      place.pending.has_value() ? ValuesOf(place) : WordsAt(place, last.starts_with('-'));
  std::erase_if(found, [&last](const std::string& each) {
    return each != kFileNames && !each.starts_with(last);
  });
  return found;
}

}  // namespace krofx::command
