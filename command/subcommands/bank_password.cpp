// krofx bank password: has an institution change the user's password.

#include "subcommands/bank_password.h"

#include <climits>
#include <memory>
#include <optional>

#include "banks/bank_file.h"
#include "banks/password_command.h"
#include "command_line/command_line.h"
#include "exchange/bank_visit.h"
#include "exchange/has_answer.h"
#include "exchange/refusals.h"
#include "input/parsed_file.h"
#include "output/messages.h"
#include "requests/request_maker.h"
#include "system/interruption.h"

namespace krofx::command {

namespace {

constexpr char kSubcommand[] = "bank password";

struct Options {
  std::string name;
  int newPasswordFd = -1;
};

ExitStatus Fail(const std::string& problem, ExitStatus exitStatus) {
  Complain(kSubcommand, problem);
  return exitStatus;
}

// Changes the password of one bank.
class Changer {
 public:
  Changer(const Bank& bank, const Options& options)
      : m_bank(bank), m_options(options), m_visit(bank, kSubcommand, true) {}

  ExitStatus Run() {
    const ExitStatus complete = m_visit.SignOn();
    if (complete != kExitClean) return complete;
    std::unique_ptr<KRBuffer> text;
    const ExitStatus sent = m_visit.Ask(
        m_bank.name, [this](RequestMaker& maker) { return Request(maker); }, text);
    if (text != nullptr) return Take(std::move(text));
    if (m_visit.MayHaveArrived()) SayUnknown();
    return sent;
  }

 private:
  ExitStatus Request(RequestMaker& maker) {
    maker.Concern({Service::kSignOn});
    if (maker.GetRules() != nullptr && !maker.GetRules()->canChange) {
      return Fail(m_bank.name +
                      " does not change passwords on request, by its profile; change it "
                      "where the institution says",
                  kExitRefused);
    }
    maker.TakePassword();
    if (!maker.HasFailed()) {
      const ExitStatus read = ReadNew(maker.GetRules());
      if (read != kExitClean) return read;
    }
    auto payload = maker.Make<KRPinChangeRq>(KRTag_PINCHRQ);
    maker.SetText("user", m_bank.user, *payload, &KRPinChangeRq::SetUserId,
                  &KRPinChangeRq::GetUserId);
    KRUserPassword secret;  // Wipes its memory.
    secret = m_new.Get();
    payload->SetNewUserPass(secret);
    if (!maker.HasFailed()) m_signals.emplace();
    return maker.Finish(std::move(payload), Service::kSignOn);
  }

  ExitStatus ReadNew(const PasswordRules* rules) {
    const std::string prompt = "New password of " + m_bank.user + " at " + m_visit.GetPlace();
    const bool asks = m_options.newPasswordFd < 0;
    Password again;
    std::string problem = asks ? m_new.Ask(prompt) : m_new.ReadFrom(m_options.newPasswordFd);
    if (problem.empty() && asks) problem = again.Ask(prompt + ", again");
    if (m_new.WasCancelled() || again.WasCancelled()) return Fail(problem, kExitCancelled);
    if (!problem.empty()) return Fail(problem, kExitUnusable);
    if (asks && !(again == m_new)) return Fail("the two are not the same", kExitUnusable);
    const std::string loss = FindLoss(m_new.Get());
    if (!loss.empty()) return Fail("the new one cannot be used: " + loss, kExitUnusable);
    const std::string broken = rules == nullptr ? "" : FindBrokenRule(*rules, m_new.Get());
    if (broken.empty()) return kExitClean;
    return Fail("the new password cannot be used: by the profile of " + m_bank.name + " " + broken,
                kExitUnusable);
  }

  ExitStatus Take(std::unique_ptr<KRBuffer> text) {
    const ParsedFile reply(m_bank.name, std::move(text));
    const ExitStatus refused = ComplainOfRefusals(reply);
    if (refused != kExitClean) return refused;
    if (!reply.GetProblem().empty()) {
      Complain(m_bank.name, reply.GetProblem());
      SayUnknown();
      return kExitUnusable;
    }
    if (!HasAnswer<KRPinChangeRs>(reply)) {
      Complain(m_bank.name, "the reply does not say that the password is changed");
      SayUnknown();
      return kExitRefused;
    }
    Complain(kSubcommand, "the password of " + m_bank.user + " at " + m_bank.name + " is changed");
    if (m_bank.keyring) return StoreNew();
    if (!m_bank.passwordCommand.empty()) {
      Complain(kSubcommand, "now change it where password-command takes it from");
    }
    return kExitClean;
  }

  ExitStatus StoreNew() const {
    const std::string problem = StoreInKeyring(m_bank.name, m_new);
    if (problem.empty()) return kExitClean;
    return Fail(problem + "; the old one is still there", kExitUnusable);
  }

  // The institution may have it when no answer came.
  void SayUnknown() const {
    Complain(kSubcommand,
             "whether the password is changed is not known: try the new one with "
             "\"krofx bank check " +
                 m_bank.name + "\", once, and then the old one");
  }

  const Bank& m_bank;
  const Options& m_options;
  BankVisit m_visit;
  Password m_new;
  // Holds signals back from the request on, until the user knows which password counts and the new
  // one is kept.
  std::optional<Interruption> m_signals;
};

ExitStatus ChangePassword(const Options& options) {
  const BankList list = ReadBanks();
  if (!list.problem.empty()) return Fail(list.problem, kExitUnusable);
  std::string problem;
  const Bank* const bank = FindBank(list, options.name, problem);
  return bank == nullptr ? Fail(problem, kExitWrongUse) : Changer(*bank, options).Run();
}

}  // namespace

void AddBankPassword(const Subcommand& bank) {
  const Subcommand password = bank.Add("password", "Change your password at a bank");
  const auto options = std::make_shared<Options>();
  password.AddOption("NAME", options->name, "The bank's name").Required();
  password.AddNumber("--new-password-fd", options->newPasswordFd, 0, INT_MAX,
                     "Read the new password from this open file; else it is asked for twice");
  password.SetFooter(
      std::string("The new password has to keep the rules of the bank's profile. In the keyring it "
                  "takes the place of the old one.\n"
                  "Exit status: 0 changed, 2 not usable or not kept, ") +
      kExchangeStatuses);
  password.OnRun(options, ChangePassword);
}

}  // namespace krofx::command
