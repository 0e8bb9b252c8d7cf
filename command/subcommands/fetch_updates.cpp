// krofx fetch updates: asks what became of transfers, payments, stop checks and letters since the
// last time, and keeps the replies.
//
// A bank whose SYNCMODE is LITE tells of each thing once. So a reply is kept whatever is in it, and
// never replaced, and the token that asks for what comes after it is kept only when the reply is.

#include "subcommands/fetch_updates.h"

#include <algorithm>
#include <filesystem>
#include <memory>

#include "banks/sync_tokens.h"
#include "command_line/command_line.h"
#include "command_line/days.h"
#include "exchange/bank_visit.h"
#include "exchange/profile_asker.h"
#include "exchange/refusals.h"
#include "exchange/sync_answers.h"
#include "input/buffer_copy.h"
#include "input/parsed_file.h"
#include "output/messages.h"
#include "output/output_file.h"
#include "output/safe_text.h"
#include "requests/account_choice.h"
#include "requests/request_maker.h"
#include "requests/update_request.h"

namespace krofx::command {

namespace {

struct Options {
  RoundOptions round;
  bool again = false;
};

// A path in the folder that no file has yet: BANK-updates-DAY.ofx, or with a number after the day.
std::string FreePath(const std::string& folder, const Bank& bank) {
  const std::string stem = folder + "/" + bank.name + "-updates-" + TextOf(Today());
  std::string path = stem + ".ofx";
  std::error_code none;
  for (int number = 2; std::filesystem::exists(path, none); ++number) {
    path = stem + "." + std::to_string(number) + ".ofx";
  }
  return path;
}

// What a question is about, such as "transfers of 00718220946 CHECKING".
std::string Describe(const UpdateQuestion& question) {
  const std::string words(WordsOfUpdates(question.wrapper));
  return question.account.has_value() ? words + " of " + NameOf(*question.account) : words;
}

// Whether an answer can be to a question: on the same account, or on one of its number, since banks
// leave parts out or add some.
bool IsAnswer(const SyncAnswer& answer, const UpdateQuestion& question, bool byNumber) {
  if (question.wrapper != answer.wrapper) return false;
  if (question.account == answer.account) return true;
  return byNumber && question.account.has_value() && answer.account.has_value() &&
         question.account->number == answer.account->number;
}

// The question that an answer is to; null when it was not asked, or when it may be several.
const UpdateQuestion* FindQuestion(const std::vector<UpdateQuestion>& asked,
                                   const SyncAnswer& answer) {
  for (const bool byNumber : {false, true}) {
    const auto is = [&](const UpdateQuestion& each) { return IsAnswer(answer, each, byNumber); };
    const auto found = std::find_if(asked.begin(), asked.end(), is);
    if (found != asked.end() && std::find_if(found + 1, asked.end(), is) == asked.end()) {
      return &*found;
    }
  }
  return nullptr;
}

// Asks one bank, service by service.
class BankAsker {
 public:
  BankAsker(const Bank& bank, const Options& options, bool takesVariable)
      : m_bank(bank),
        m_options(options),
        m_visit(bank, options.round.subcommand, takesVariable),
        m_tokens(bank) {}

  ExitStatus Run() {
    ExitStatus exitStatus = m_visit.Open();
    if (exitStatus != kExitClean) return exitStatus;
    const ProfileAnswer answer = m_visit.FindProfile();
    if (answer.exitStatus != kExitClean) return answer.exitStatus;
    m_profile = answer.profile;
    if (m_profile == nullptr) {
      return Refuse("what it has news of is in its profile, and it gives none");
    }
    for (const Service service : kServicesWithNews) {
      if (m_profile->Find(service, 1) == nullptr && m_profile->Find(service, 2) == nullptr)
        continue;
      const ExitStatus asked = Ask(service);
      exitStatus = Worse(exitStatus, asked);
      // Another try with the same password could lock the sign-on.
      if (asked == kExitSignOnRefused || asked == kExitCancelled) return exitStatus;
    }
    if (!m_hasAsked) return Refuse("by its profile it has no news of orders and letters");
    return exitStatus;
  }

 private:
  ExitStatus Refuse(const std::string& reason) const {
    Complain(m_bank.name, reason);
    return kExitRefused;
  }

  ExitStatus Ask(Service service) {
    std::vector<UpdateQuestion> asked;
    const auto finish = [&](RequestMaker& maker) {
      maker.Concern({service});
      const OfferedSet* const offered = m_profile->Find(service, maker.GetVersion());
      // A version that is not offered is said by Finish.
      if (offered == nullptr) return maker.Finish();
      asked =
          AddUpdates(service, *offered, m_visit.GetAccounts(), m_tokens, m_options.again, maker);
      if (asked.empty()) return kExitClean;
      if (!offered->TellsOnce() || !m_options.again) return maker.Finish();
      return Refuse("--again is not possible for " + std::string(WordsOf(service)) +
                    ": it tells of each thing once (SYNCMODE LITE); what it told is in " +
                    m_options.round.folder);
    };
    std::unique_ptr<KRBuffer> reply;
    const std::string what(WordsOf(service));
    const ExitStatus sent = m_visit.Ask(m_bank.name + " " + what, finish, reply);
    m_hasAsked |= !asked.empty() || sent != kExitClean;
    return reply == nullptr ? sent : Take(std::move(reply), asked, what);
  }

  ExitStatus Take(std::unique_ptr<KRBuffer> text, const std::vector<UpdateQuestion>& asked,
                  const std::string& what) {
    const std::string name = m_bank.name + " " + what;
    const std::unique_ptr<KRBuffer> copy = CopyOf(*text);
    if (copy == nullptr) {
      Complain(name, "not enough memory to keep the reply");
      return kExitUnusable;
    }
    const ParsedFile reply(name, std::move(text));
    ExitStatus exitStatus = ComplainOfRefusals(reply);
    const std::vector<SyncAnswer> answers = SyncAnswersIn(reply);
    // One order may be refused with a status of sign-ons in a reply that still has news.
    const bool isRefused = exitStatus == kExitSignOnRefused || reply.GetKind() == "request";
    if (isRefused && answers.empty()) return exitStatus;
    ForgetOlderProfile(m_bank, reply);
    const bool whole = reply.GetProblem().empty() && !reply.BreaksOff();
    if (!whole) {
      Complain(name, reply.GetProblem().empty() ? "the reply breaks off" : reply.GetProblem());
      exitStatus = Worse(exitStatus, kExitUnusable);
    }
    std::size_t count = 0;
    for (const SyncAnswer& answer : answers) count += answer.count;
    if (count > 0 || !whole) {
      const ExitStatus kept =
          Keep(*copy, name, whole ? std::to_string(count) + " new" : "kept as it came");
      if (kept != kExitClean) return Worse(exitStatus, kept);
    } else if (!answers.empty()) {
      exitStatus = Worse(exitStatus, WriteStandardOutput(SafeLine(name) + ": nothing new\n"));
    }
    return whole ? Worse(exitStatus, Note(answers, asked, name)) : exitStatus;
  }

  ExitStatus Keep(const KRBuffer& text, const std::string& name, const std::string& what) const {
    const std::string path = FreePath(m_options.round.folder, m_bank);
    const ExitStatus written = WriteOutput(text, path, Privacy::kPrivate, Existing::kKept);
    if (written != kExitClean) return written;
    return WriteStandardOutput(SafeLine(name) + ": " + what + ", " + SafeLine(path) + "\n");
  }

  // Notes how far the news came, and says where some are missing.
  ExitStatus Note(const std::vector<SyncAnswer>& answers, const std::vector<UpdateQuestion>& asked,
                  const std::string& name) {
    ExitStatus exitStatus = kExitClean;
    const auto complain = [&](const UpdateQuestion& question, const std::string& text,
                              ExitStatus worse) {
      Complain(name, Describe(question) + ": " + text);
      exitStatus = Worse(exitStatus, worse);
    };
    std::size_t known = 0;
    for (const SyncAnswer& answer : answers) {
      const UpdateQuestion* const question = FindQuestion(asked, answer);
      if (question == nullptr) continue;
      ++known;
      if (answer.error.empty()) {
        // A token that comes with an error would pass over news that did not come.
        if (!answer.token.empty()) m_tokens.Set(question->key, answer.token);
      } else {
        complain(*question, "the institution could not synchronize, error " + answer.error,
                 kExitRefused);
      }
      if (answer.isLost) {
        complain(*question,
                 "the institution no longer has all that happened since the last time, so that "
                 "some is missing here (LOSTSYNC); look at the statement of the account",
                 kExitWarnings);
      }
    }
    if (known < asked.size()) {
      Complain(name, "the institution answered " + std::to_string(known) + " of " +
                         std::to_string(asked.size()) + " questions; the rest is asked again");
      exitStatus = Worse(exitStatus, kExitRefused);
    }
    const std::string problem = m_tokens.Save();
    if (problem.empty()) return exitStatus;
    Complain(name, problem);
    return Worse(exitStatus, kExitUnusable);
  }

  const Bank& m_bank;
  const Options& m_options;
  BankVisit m_visit;
  SyncTokens m_tokens;
  std::shared_ptr<const Profile> m_profile;
  bool m_hasAsked = false;
};

ExitStatus FetchUpdates(const Options& given) {
  Options options = given;
  std::vector<Bank> banks;
  ExitStatus exitStatus = PrepareRound(options.round, banks);
  if (exitStatus != kExitClean) return exitStatus;
  for (const Bank& bank : banks) {
    const ExitStatus asked = BankAsker(bank, options, banks.size() == 1).Run();
    exitStatus = Worse(exitStatus, asked);
    if (asked == kExitCancelled) break;
  }
  return exitStatus;
}

}  // namespace

void AddFetchUpdates(const Subcommand& fetch) {
  const Subcommand updates = fetch.Add(
      "updates", "Ask what became of orders and letters since the last time, and keep the replies");
  const auto options = std::make_shared<Options>();
  AddRoundOptions(updates, options->round);
  updates.AddFlag("--again", options->again,
                  "Ask for all that there was, where the bank keeps that (SYNCMODE FULL)");
  updates.SetFooter(
      std::string("Transfers, payments, stop checks, payees and letters are asked for, as far as "
                  "the bank's profile offers them. A bank with SYNCMODE LITE tells of each thing "
                  "once: no reply is ever replaced.\n"
                  "Exit status: 0 done, 1 the bank no longer has all of it, 2 a reply is not "
                  "usable, ") +
      kExchangeStatuses);
  updates.OnRun(options, FetchUpdates);
}

}  // namespace krofx::command
