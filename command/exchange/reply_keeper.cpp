// Keeps replies, and reads the lists of accounts in them.

#include "exchange/reply_keeper.h"

#include "banks/account_list.h"
#include "exchange/refusals.h"
#include "input/parsed_file.h"
#include "output/messages.h"
#include "requests/statement_request.h"

namespace krofx::command {

namespace {

constexpr char kLongAgo[] = "19700101";

}  // namespace

ExitStatus ReplyKeeper::Use(KRBuffer& text) {
  m_reply = m_exchange.Run(&text);
  return m_exchange.GetExitStatus();
}

ExitStatus AskForAccounts(const SignOnOptions& signOn, const ExchangeOptions& options,
                          std::vector<Account>& accounts) {
  const auto keeper = std::make_shared<ReplyKeeper>(options);
  SignOnOptions own = signOn;
  own.use = keeper;
  const ExitStatus asked = RequestAccounts(own, kLongAgo);
  if (asked != kExitClean) return asked;
  const ParsedFile reply(keeper->GetShownUrl(), keeper->TakeReply());
  ExitStatus exitStatus = ComplainOfRefusals(reply);
  if (!reply.GetProblem().empty()) {
    Complain(reply.GetName(), reply.GetProblem());
    exitStatus = Worse(exitStatus, kExitUnusable);
  }
  accounts = AccountsIn(reply);
  return exitStatus;
}

}  // namespace krofx::command
