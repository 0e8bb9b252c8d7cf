// Signs on to banks, and asks them.

#include "exchange/bank_visit.h"

#include "banks/bank_file.h"
#include "banks/places.h"
#include "exchange/profile_asker.h"
#include "output/messages.h"
#include "requests/request_maker.h"

namespace krofx::command {

namespace {

// Those that are named, or all.
ExitStatus ChooseBanks(const RoundOptions& options, std::vector<Bank>& chosen) {
  const BankList list = ReadBanks();
  std::string problem = list.problem;
  if (problem.empty() && list.banks.empty()) {
    problem = "no bank is known; add one with \"krofx bank add\"";
  }
  if (!problem.empty()) {
    Complain(options.subcommand, problem);
    return kExitUnusable;
  }
  if (options.banks.empty()) chosen = list.banks;
  for (const std::string& name : options.banks) {
    const Bank* const bank = FindBank(list, name, problem);
    if (bank == nullptr) {
      Complain(options.subcommand, problem);
      return kExitWrongUse;
    }
    chosen.push_back(*bank);
  }
  return kExitClean;
}

}  // namespace

BankVisit::BankVisit(const Bank& bank, const std::string& subcommand, bool takesVariable)
    : m_bank(bank), m_accounts(bank.accounts) {
  m_exchange.subcommand = subcommand;
  FillExchange(m_exchange, bank);
  m_signOn.subcommand = subcommand;
  m_signOn.takesVariable = takesVariable;
  m_signOn.use = std::make_shared<ReplyKeeper>(m_exchange);
  FillSignOn(m_signOn, bank);
}

ExitStatus BankVisit::Open() {
  const ExitStatus complete = SignOn();
  if (complete != kExitClean || !m_accounts.empty()) return complete;
  return AskForAccounts(m_signOn, m_exchange, m_accounts);
}

ProfileAnswer BankVisit::FindProfile() {
  if (!m_bank.hasProfile) return {};
  std::optional<ProfileAnswer>& answer = *m_signOn.profile;
  if (!answer.has_value()) answer = command::FindProfile(m_signOn, m_exchange);
  return *answer;
}

ExitStatus BankVisit::Ask(const std::string& progress,
                          const std::function<ExitStatus(RequestMaker&)>& finish,
                          std::unique_ptr<KRBuffer>& reply) {
  ExchangeOptions exchange = m_exchange;
  exchange.progress = progress;
  const auto keeper = std::make_shared<ReplyKeeper>(exchange);
  SignOnOptions signOn = m_signOn;
  signOn.use = keeper;
  RequestMaker maker(signOn);
  const ExitStatus asked = finish(maker);
  reply = keeper->TakeReply();
  m_mayHaveArrived = keeper->MayHaveArrived();
  return asked;
}

void AddRoundOptions(const Subcommand& command, RoundOptions& options) {
  options.subcommand = command.GetPath();
  command.AddOption("BANK", options.banks, "Banks, as @harbor; without them all that are known");
  command.AddOption("--folder", options.folder, "The folder of the replies");
}

ExitStatus PrepareRound(RoundOptions& options, std::vector<Bank>& banks) {
  const ExitStatus chosen = ChooseBanks(options, banks);
  if (chosen != kExitClean) return chosen;
  if (options.folder.empty() && !DataFolder().empty()) {
    options.folder = DataFolder() + "/statements";
  }
  const std::string problem = MakePrivateFolder(options.folder);
  if (problem.empty()) return kExitClean;
  Complain(options.subcommand, problem);
  return kExitUnusable;
}

}  // namespace krofx::command
