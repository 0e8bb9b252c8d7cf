// krofx fetch all: asks for what is new on every account of the user's banks, and keeps the
// replies.

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <memory>

#include "banks/bank_file.h"
#include "banks/file_stems.h"
#include "command_line/command_line.h"
#include "command_line/days.h"
#include "exchange/bank_visit.h"
#include "exchange/has_answer.h"
#include "exchange/profile_asker.h"
#include "exchange/refusals.h"
#include "input/buffer_copy.h"
#include "input/parsed_file.h"
#include "output/messages.h"
#include "output/output_file.h"
#include "output/safe_text.h"
#include "output/time_left.h"
#include "requests/account_choice.h"
#include "requests/arguments.h"
#include "requests/request_maker.h"
#include "requests/statement_request.h"
#include "subcommands/fetch_all.h"

namespace krofx::command {

namespace {

constexpr int kUsualOverlap = 7;
constexpr int kMostOverlap = 366;

struct Options {
  RoundOptions round;
  std::string from;
  int overlap = kUsualOverlap;
};

// Counts what is asked for, to say how much is left.
class Count {
 public:
  void Add(std::size_t accounts) { m_all += accounts; }
  // What the line of progress says of the next account.
  std::string Next(const std::string& what) {
    const auto elapsed = std::chrono::steady_clock::now() - m_begin;
    const std::string left =
        DescribeTimeLeft(elapsed, static_cast<double>(m_done), static_cast<double>(m_all));
    ++m_done;
    return what + ", " + std::to_string(m_done) + " of " + std::to_string(m_all) + left;
  }

 private:
  const std::chrono::steady_clock::time_point m_begin = std::chrono::steady_clock::now();
  std::size_t m_all = 0;
  std::size_t m_done = 0;
};

// The last day before today that the folder has a reply of, as 2026-01-31; empty for none. Today's
// does not count, so that asking again on the same day brings no less than what it replaces.
std::string LastDay(const std::string& folder, const std::string& stem) {
  const std::string today = TextOf(Today());
  std::string last;
  std::error_code error;
  for (const auto& file : std::filesystem::directory_iterator(folder, error)) {
    const std::string name = file.path().filename().string();
    if (name.size() != stem.size() + 15 || !name.starts_with(stem + "-") ||
        !name.ends_with(".ofx")) {
      continue;
    }
    const std::string day = name.substr(stem.size() + 1, 10);
    if (ParseDay(day).has_value() && day < today && day > last) last = day;
  }
  return last;
}

// Whether a reply ends within an answer. Some institutions leave out the end tags that follow.
bool BreaksOffInAnswer(const ParsedFile& reply) {
  // The path of a message set, such as "OFX/BANKMSGSRSV1", has one.
  constexpr int kMostSlashes = 1;
  const krofx::List<krofx::Mending>& mendings = reply.GetMendings();
  return std::any_of(mendings.begin(), mendings.end(), [](const krofx::Mending& mending) {
    const std::string path = ToText(mending.path);
    return mending.kind == krofx::MendingKind::kCutOff &&
           std::count(path.begin(), path.end(), '/') > kMostSlashes;
  });
}

// Why a reply does not have all that was asked for; empty when it does.
std::string FindProblem(const ParsedFile& reply) {
  if (!reply.GetProblem().empty()) return reply.GetProblem();
  if (BreaksOffInAnswer(reply)) return "the reply breaks off; nothing of it is kept";
  const bool isAnswered = HasAnswer<KRGenericStatementRs>(reply) || HasAnswer<KRInvStmtRs>(reply);
  return isAnswered ? "" : "the reply has no statement";
}

std::string FirstDay(const Options& options, const std::string& stem) {
  if (!options.from.empty()) return options.from;
  const std::string last = LastDay(options.round.folder, stem);
  if (last.empty()) return "";
  return TextOf(std::chrono::sys_days(*ParseDay(last)) - std::chrono::days(options.overlap));
}

// Asks for the accounts of one bank.
class BankAsker {
 public:
  // `banks` are all of the user's.
  BankAsker(const Bank& bank, const std::vector<Bank>& banks, const Options& options,
            bool takesVariable, Count& count)
      : m_bank(bank),
        m_banks(banks),
        m_options(options),
        m_count(count),
        m_visit(bank, options.round.subcommand, takesVariable) {}

  ExitStatus Run() {
    ExitStatus exitStatus = m_visit.Open();
    if (exitStatus != kExitClean) return exitStatus;
    const std::vector<Account>& accounts = m_visit.GetAccounts();
    if (m_bank.accounts.empty()) m_count.Add(accounts.size());
    const std::vector<std::string> stems = FileStemsOf(m_bank, accounts, m_banks);
    for (std::size_t index = 0; index < accounts.size(); ++index) {
      const ExitStatus asked = Ask(accounts[index], stems[index]);
      exitStatus = Worse(exitStatus, asked);
      // Another try with the same password could lock the sign-on.
      if (asked == kExitSignOnRefused || asked == kExitCancelled) break;
    }
    return exitStatus;
  }

 private:
  ExitStatus Ask(const Account& account, const std::string& stem) {
    if (stem.empty()) {
      Complain(m_bank.name + " " + NameOf(account), "not enough memory to name the reply");
      return kExitUnusable;
    }
    const StatementSpan span{FirstDay(m_options, stem), "", false};
    const auto finish = [&](RequestMaker& maker) {
      return account.kind == AccountKind::kInvestment ? FinishInvestments({account}, span, maker)
                                                      : FinishStatements({account}, span, maker);
    };
    std::unique_ptr<KRBuffer> reply;
    const ExitStatus asked =
        m_visit.Ask(m_count.Next(m_bank.name + " " + NameOf(account)), finish, reply);
    return asked == kExitClean ? Keep(std::move(reply), account, stem) : asked;
  }

  // Keeps a reply that can be used. If another one were kept, the days in it would count as read.
  ExitStatus Keep(std::unique_ptr<KRBuffer> text, const Account& account,
                  const std::string& stem) const {
    const std::string name = m_bank.name + " " + NameOf(account);
    const std::unique_ptr<KRBuffer> copy = CopyOf(*text);
    if (copy == nullptr) {
      Complain(name, "not enough memory to keep the reply");
      return kExitUnusable;
    }
    const ParsedFile reply(name, std::move(text));
    const ExitStatus refused = ComplainOfRefusals(reply);
    ForgetOlderProfile(m_bank, reply);
    if (refused != kExitClean) return refused;
    const std::string problem = FindProblem(reply);
    if (!problem.empty()) {
      Complain(name, problem);
      return kExitUnusable;
    }
    const std::string path = m_options.round.folder + "/" + stem + "-" + TextOf(Today()) + ".ofx";
    const ExitStatus written = WriteOutput(*copy, path, Privacy::kPrivate);
    return written != kExitClean
               ? written
               : WriteStandardOutput(SafeLine(name) + ": " + SafeLine(path) + "\n");
  }

  const Bank& m_bank;
  const std::vector<Bank>& m_banks;
  const Options& m_options;
  Count& m_count;
  BankVisit m_visit;
};

ExitStatus FetchAll(const Options& given) {
  Options options = given;
  if (!options.from.empty() && ToOfxDate(ResolveDay(options.from)).empty()) {
    Complain(options.round.subcommand, DescribeNoDate("--from", options.from));
    return kExitWrongUse;
  }
  std::vector<Bank> banks;
  const ExitStatus prepared = PrepareRound(options.round, banks);
  if (prepared != kExitClean) return prepared;
  const std::vector<Bank> all = ReadBanks().banks;
  Count count;
  for (const Bank& bank : banks) count.Add(bank.accounts.size());
  ExitStatus exitStatus = kExitClean;
  for (const Bank& bank : banks) {
    const ExitStatus asked = BankAsker(bank, all, options, banks.size() == 1, count).Run();
    exitStatus = Worse(exitStatus, asked);
    if (asked == kExitCancelled) break;
  }
  return exitStatus;
}

}  // namespace

void AddFetchAll(const Subcommand& parent) {
  const Subcommand all =
      parent.Add("all", "Ask for what is new on all accounts of your banks, and keep the replies");
  const auto options = std::make_shared<Options>();
  AddRoundOptions(all, options->round);
  all.AddOption("--from", options->from, "First day, as 2026-01-31 or -30d");
  all.AddNumber("--overlap", options->overlap, 0, kMostOverlap,
                "Days before the last time that are asked for again; 7 without this");
  all.SetFooter(
      std::string("Without --from an account is asked for all that it has the first time, and then "
                  "for what is new since the last day that a reply is kept of.\n"
                  "Exit status: 0 all kept, 2 a reply is not usable, ") +
      kExchangeStatuses);
  all.OnRun(options, FetchAll);
}

}  // namespace krofx::command
