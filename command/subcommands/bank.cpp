// krofx bank: the user's banks, by the names that other subcommands take after "@".

#include <algorithm>
#include <filesystem>
#include <memory>

#include "banks/bank_file.h"
#include "banks/password_command.h"
#include "banks/places.h"
#include "banks/profile_file.h"
#include "banks/sync_tokens.h"
#include "banks/url.h"
#include "command_line/command_line.h"
#include "exchange/exchange.h"
#include "exchange/profile_asker.h"
#include "exchange/reply_keeper.h"
#include "output/characters.h"
#include "output/messages.h"
#include "output/safe_text.h"
#include "requests/account_choice.h"
#include "requests/account_options.h"
#include "requests/request_maker.h"
#include "requests/sign_on_options.h"
#include "subcommands/bank_password.h"
#include "subcommands/subcommands.h"

namespace krofx::command {

namespace {

struct AddOptions {
  Bank bank;
  Account account;
  bool card = false;
  std::string broker;
};

struct NameOptions {
  std::string name;
  bool addAccounts = false;
};

ExitStatus Fail(const char* subcommand, const std::string& problem, ExitStatus exitStatus) {
  Complain(subcommand, problem);
  return exitStatus;
}

// The bank of that name, or null after a complaint.
const Bank* Find(const char* subcommand, const BankList& list, const std::string& name) {
  std::string problem = list.problem;
  const Bank* const bank = problem.empty() ? FindBank(list, name, problem) : nullptr;
  if (bank == nullptr) Complain(subcommand, problem);
  return bank;
}

// The status of a bank that Find does not find.
ExitStatus NotFound(const BankList& list) {
  return list.problem.empty() ? kExitWrongUse : kExitUnusable;
}

// The account that the options name, if they name one.
std::string TakeAccount(const AddOptions& options, Bank& bank) {
  if (options.account.number.empty()) return "";
  Account account = options.account;
  if ((options.card ? 1 : 0) + (options.broker.empty() ? 0 : 1) + (account.bank.empty() ? 0 : 1) !=
      1) {
    return "an account needs one of --bank, --broker and --card";
  }
  if (options.card) account.kind = AccountKind::kCard;
  if (!options.broker.empty()) {
    account.kind = AccountKind::kInvestment;
    account.bank = options.broker;
  }
  bank.accounts.push_back(account);
  return "";
}

// Whether the text is a host as the profile's addresses have it: a name alone, without a port.
bool IsHost(const std::string& text) {
  return LowerAscii(Url("https://" + text + "/").host) == LowerAscii(text);
}

// Whether requests can be made of how the bank and its accounts are described; if not, after a
// complaint.
ExitStatus CheckRequests(const ExchangeOptions& exchange, const Bank& bank) {
  SignOnOptions signOn;
  signOn.subcommand = exchange.subcommand;
  signOn.use = std::make_shared<ReplyKeeper>(exchange);
  FillSignOn(signOn, bank);
  const ExitStatus complete = CompleteSignOn(signOn);
  if (complete != kExitClean) return complete;
  RequestMaker maker(signOn);
  for (const Account& account : bank.accounts) MakeAccount(account, maker);
  // What is given may hold a password.
  if (!std::all_of(bank.hosts.begin(), bank.hosts.end(), IsHost)) {
    maker.Fail("--host takes the name of a host alone, such as ofx.bank.example");
  }
  return maker.Check();
}

// Whether the bank could be asked as it is described; if not, after a complaint.
ExitStatus CheckGiven(const Bank& bank) {
  const std::string problem = FindProblem(bank);
  if (!problem.empty()) return Fail("bank add", problem, kExitWrongUse);
  ExchangeOptions exchange;
  exchange.subcommand = "bank add";
  FillExchange(exchange, bank);
  exchange.isProxyKept = false;
  // Each exchange says for itself whether a password may go over plain http.
  exchange.allowHttp = true;
  const ExitStatus prepared = Exchange(exchange).Prepare(Direction::kSend);
  return prepared == kExitClean ? CheckRequests(exchange, bank) : prepared;
}

ExitStatus Add(const AddOptions& options) {
  Bank bank = options.bank;
  if (bank.name.starts_with('@')) bank.name.erase(0, 1);
  if (!IsBankName(bank.name)) {
    return Fail("bank add", "a bank's name has letters, digits, - and _, and begins with a letter",
                kExitWrongUse);
  }
  const BankList list = ReadBanks();
  if (!list.problem.empty()) return Fail("bank add", list.problem, kExitUnusable);
  std::string ignored;
  if (FindBank(list, bank.name, ignored) != nullptr) {
    return Fail("bank add",
                "there is a bank " + bank.name +
                    " already; remove it first with \"krofx bank "
                    "remove " +
                    bank.name + "\", or edit " + BanksFile(),
                kExitUnusable);
  }
  for (std::string& file : bank.rootFiles) file = std::filesystem::absolute(file).string();
  const std::string wrong = TakeAccount(options, bank);
  if (!wrong.empty()) return Fail("bank add", wrong, kExitWrongUse);
  const ExitStatus checked = CheckGiven(bank);
  if (checked != kExitClean) return checked;
  // Without its password there the bank would not be what was asked for.
  const std::string unkept = bank.keyring ? StoreInKeyring(bank.name) : std::string();
  if (!unkept.empty()) return Fail("bank add", unkept, kExitUnusable);
  const std::string problem = AddToBanks(TextOf(bank));
  if (!problem.empty()) return Fail("bank add", problem, kExitUnusable);
  Complain("bank add", bank.name + " is added to " + BanksFile() +
                           "; try it with \"krofx bank check " + bank.name + "\"");
  return kExitClean;
}

ExitStatus List(const NameOptions&) {
  const BankList list = ReadBanks();
  if (!list.problem.empty()) return Fail("bank list", list.problem, kExitUnusable);
  if (list.banks.empty()) {
    Complain("bank list", "no bank is known; add one with \"krofx bank add\"");
  }
  std::string text;
  std::size_t width = 0;
  for (const Bank& bank : list.banks) width = std::max(width, bank.name.size());
  for (const Bank& bank : list.banks) {
    text += bank.name + std::string(width - bank.name.size(), ' ') + "  " +
            SafeLine(bank.organisation) + "  " + SafeLine(Url(bank.url).Shown()) + "  " +
            SafeLine(bank.user) + "\n";
  }
  return WriteStandardOutput(text);
}

std::string DescribePasswordSource(const Bank& bank) {
  if (!bank.passwordCommand.empty()) return "from password-command";
  return bank.keyring ? "in the keyring" : "asked for";
}

// A line of what is known of a bank; nothing without a value.
std::string Line(const std::string& label, const std::string& value) {
  if (value.empty()) return "";
  return "  " + label + std::string(13 - label.size(), ' ') + SafeLine(value) + "\n";
}

// What the profile of a bank says, in lines of a label and a value each.
std::string DescribeProfile(const Bank& bank, const Profile& profile) {
  std::string text = Line("profile", "of " + profile.DayText());
  for (const OfferedSet& set : profile.sets) {
    std::string value = set.name.family + " " + std::to_string(set.name.version);
    const std::string problem = set.url.empty() ? std::string() : FindAddressProblem(bank, set.url);
    if (!set.url.empty() && set.url != bank.url) value += " at " + Url(set.url).Shown();
    if (!problem.empty()) value += " (" + problem + ")";
    text += Line("offers", value);
  }
  for (const PasswordRules& rules : profile.realms) {
    text += Line("passwords", DescribeRules(rules));
  }
  return text;
}

ExitStatus Show(const NameOptions& options) {
  const BankList list = ReadBanks();
  const Bank* const bank = Find("bank show", list, options.name);
  if (bank == nullptr) return NotFound(list);
  std::string text = bank->name + "\n";
  const auto add = [&text](const std::string& label, const std::string& value) {
    text += Line(label, value);
  };
  add("institution", bank->organisation);
  add("number", bank->institutionId);
  add("address", Url(bank->url).Shown());
  add("user", bank->user);
  add("password", DescribePasswordSource(*bank));
  for (const Account& account : bank->accounts) add("account", NameOf(account));
  const u16 version = bank->version == 2 ? 2 : 1;
  const auto profile = bank->hasProfile ? ReadBestKeptProfile(*bank, version) : nullptr;
  if (profile != nullptr) text += DescribeProfile(*bank, *profile);
  return WriteStandardOutput(text);
}

ExitStatus Remove(const NameOptions& options) {
  const BankList list = ReadBanks();
  const Bank* const bank = Find("bank remove", list, options.name);
  if (bank == nullptr) return NotFound(list);
  const std::string problem = RemoveFromBanks(bank->name);
  if (!problem.empty()) return Fail("bank remove", problem, kExitUnusable);
  ForgetProfiles(bank->name);
  ForgetTokens(bank->name);
  Complain("bank remove", bank->name + " is no longer in " + BanksFile());
  return kExitClean;
}

// Lists what the institution has, and adds what the file lacks of it when that is wanted.
ExitStatus CompareAccounts(const Bank& bank, const std::vector<Account>& accounts,
                           bool addAccounts) {
  std::string text = bank.name + ": the sign-on works; " + std::to_string(accounts.size()) +
                     (accounts.size() == 1 ? " account\n" : " accounts\n");
  std::string missing;
  std::size_t count = 0;
  for (const Account& account : accounts) {
    const bool known =
        std::find(bank.accounts.begin(), bank.accounts.end(), account) != bank.accounts.end();
    text += "  " + SafeLine(NameOf(account)) +
            (known         ? ""
             : addAccounts ? "  (added)"
                           : "  (not in banks.toml)") +
            "\n";
    if (known) continue;
    missing += TextOf(bank.name, account);
    ++count;
  }
  if (count > 0 && addAccounts) {
    const std::string problem = AddToBanks(missing);
    if (!problem.empty()) return Fail("bank check", problem, kExitUnusable);
  }
  return WriteStandardOutput(text);
}

ExitStatus Check(const NameOptions& options) {
  const BankList list = ReadBanks();
  const Bank* const bank = Find("bank check", list, options.name);
  if (bank == nullptr) return NotFound(list);
  ExchangeOptions exchange;
  exchange.subcommand = "bank check";
  SignOnOptions signOn;
  signOn.subcommand = "bank check";
  signOn.use = std::make_shared<ReplyKeeper>(exchange);
  FillSignOn(signOn, *bank);
  const ExitStatus complete = CompleteSignOn(signOn);
  if (complete != kExitClean) return complete;
  FillExchange(exchange, *bank);
  if (bank->hasProfile) {
    const auto kept = ReadKeptProfile(*bank, VersionOfProfile(signOn));
    ProfileAnswer answer = AskForProfile(signOn, exchange, kept);
    if (answer.exitStatus != kExitClean) return answer.exitStatus;
    if (answer.profile == nullptr) *signOn.profile = answer;
  }
  std::vector<Account> accounts;
  const ExitStatus asked = AskForAccounts(signOn, exchange, accounts);
  if (asked != kExitClean) return asked;
  return CompareAccounts(*bank, accounts, options.addAccounts);
}

void AddAdd(const Subcommand& parent) {
  const Subcommand add = parent.Add("add", "Add a bank");
  const auto options = std::make_shared<AddOptions>();
  Bank& bank = options->bank;
  const auto text = [&](const char* name, auto& value, const char* help) {
    return add.AddOption(name, value, help);
  };
  text("NAME", bank.name, "What you call it, such as harbor").Required();
  text("--url", bank.url, "The institution's address").Required();
  text("--org", bank.organisation, "The institution's name in OFX").Required();
  text("--fid", bank.institutionId, "The institution's number in OFX");
  text("--user", bank.user, "Your name there").Required();
  const Option command = text("--password-command", bank.passwordCommand,
                              "A command that prints the password, as \"pass show harbor\"");
  add.AddFlag("--keyring", bank.keyring, "Keep its password in the keyring of the desktop")
      .Excludes(command);
  add.AddFlag("--client-id", bank.makesClientId, "Make a client identifier, and send it");
  add.AddNumber("--version", bank.version, 1, 2, "The version of its message sets");
  text("--host", bank.hosts, "Another host that its profile may send requests to")
      .OneValueEachTime();
  text("--root", bank.rootFiles, "File with certificates to trust, and no others")
      .OneValueEachTime();
  text("--pin", bank.pins, "ID of the certificate that its server may show").OneValueEachTime();
  text("--proxy", bank.proxy, "Proxy to go through");
  add.AddNumber("--timeout", bank.timeout, 1, 24 * 60 * 60, "Seconds that an exchange may take");
  text("--account", options->account.number, "The number of an account there")
      .InGroup("An account; \"krofx bank check NAME --add-accounts\" adds those that there are");
  const char* const group =
      "An account; \"krofx bank check NAME --add-accounts\" adds those that there are";
  const Option account = add.GetOption("--account");
  const Option routing = text("--bank", options->account.bank, "Its bank's routing number");
  const Option card = add.AddFlag("--card", options->card, "It is a card");
  const Option broker = text("--broker", options->broker, "Or its broker's ID");
  for (const Option& each :
       {routing, card, broker, text("--branch", options->account.branch, "Its branch"),
        AddAccountType(add, "--type", options->account.type)}) {
    each.Needs(account).InGroup(group);
  }
  add.OnRun(options, Add);
}

Subcommand AddNamed(const Subcommand& parent, const char* name, const char* purpose,
                    ExitStatus (*run)(const NameOptions&)) {
  const Subcommand command = parent.Add(name, purpose);
  const auto options = std::make_shared<NameOptions>();
  if (run != List) command.AddOption("NAME", options->name, "The bank's name").Required();
  if (run == Check) {
    command.AddFlag("--add-accounts", options->addAccounts, "Add the accounts that it lists");
  }
  command.OnRun(options, run);
  return command;
}

}  // namespace

void DeclareBank(const Subcommand& bank) {
  bank.RequireSubcommand();
  AddAdd(bank);
  AddNamed(bank, "list", "List the banks", List);
  AddNamed(bank, "show", "Show what is known of a bank", Show);
  AddNamed(bank, "check", "Sign on to a bank, and list its accounts", Check);
  AddBankPassword(bank);
  AddNamed(bank, "remove", "Forget a bank", Remove);
  bank.SetFooter("The banks are in banks.toml, which you can edit; \"man krofx\" says where.");
}

}  // namespace krofx::command
