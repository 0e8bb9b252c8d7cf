// One bank after the other is asked several times, and each with one password.

#ifndef KROFX_COMMAND_EXCHANGE_BANK_VISIT_H_
#define KROFX_COMMAND_EXCHANGE_BANK_VISIT_H_

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "banks/bank.h"
#include "exchange/reply_keeper.h"
#include "requests/sign_on_options.h"

namespace krofx::command {

class RequestMaker;

/// A bank that is asked, as often as is needed, by one sign-on.
class BankVisit {
 public:
  /// @param bank must live as long as this.
  /// @param subcommand what messages call the subcommand.
  /// @param takesVariable KROFX_PASSWORD may be this bank's.
  BankVisit(const Bank& bank, const std::string& subcommand, bool takesVariable);

  /// Completes the sign-on.
  /// @return kExitClean, or another exit status after a complaint.
  ExitStatus SignOn() { return CompleteSignOn(m_signOn); }
  /// The same, and asks for the accounts if the bank lists none.
  /// @return kExitClean, or another exit status after a complaint.
  ExitStatus Open();

  const Bank& GetBank() const { return m_bank; }
  /// @return where the requests go, as a prompt says it.
  std::string GetPlace() const { return m_signOn.use->Where(m_signOn.organisation); }
  /// @return the user's accounts there, after Open.
  const std::vector<Account>& GetAccounts() const { return m_accounts; }
  /// @return the bank's profile, which it is asked for when none is kept; none when the user wants
  /// none.
  ProfileAnswer FindProfile();

  /// Sends one request.
  /// @param progress what the line of progress calls it.
  /// @param finish puts the request together, and finishes it.
  /// @param reply takes the answer; null when there is none, or when nothing was sent.
  /// @return what `finish` does.
  ExitStatus Ask(const std::string& progress,
                 const std::function<ExitStatus(RequestMaker&)>& finish,
                 std::unique_ptr<KRBuffer>& reply);
  /// @return whether the bank may have got the last request, whatever came of it.
  bool MayHaveArrived() const { return m_mayHaveArrived; }

 private:
  const Bank& m_bank;
  ExchangeOptions m_exchange;
  SignOnOptions m_signOn;
  std::vector<Account> m_accounts;
  bool m_mayHaveArrived = false;
};

/// Which banks are asked, and where their replies are kept.
struct RoundOptions {
  std::string subcommand;  ///< What messages call the subcommand.
  std::vector<std::string> banks;
  std::string folder;
};

/// Adds the banks and the folder to a command line.
void AddRoundOptions(const Subcommand& command, RoundOptions& options);

/// Finds the banks that the options name, or all, and makes the folder.
/// @param options the folder is filled in where it is not given.
/// @param banks takes them.
/// @return kExitClean, or another exit status after a complaint.
ExitStatus PrepareRound(RoundOptions& options, std::vector<Bank>& banks);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_EXCHANGE_BANK_VISIT_H_
