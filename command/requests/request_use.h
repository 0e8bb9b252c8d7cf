// What becomes of a request, and the kinds of requests there are.

#ifndef KROFX_COMMAND_REQUESTS_REQUEST_USE_H_
#define KROFX_COMMAND_REQUESTS_REQUEST_USE_H_

#include <memory>
#include <string>
#include <vector>

#include "banks/bank.h"
#include "system/exit_status.h"

class KRBuffer;

namespace krofx::command {

class Subcommand;
struct Profile;
struct SignOnOptions;

/// What is known of a bank's profile.
struct ProfileAnswer {
  /// Not kExitClean when the bank was asked in vain, which was reported.
  ExitStatus exitStatus = kExitClean;
  std::shared_ptr<const Profile> profile;  ///< Null when none is known.
};

/// What becomes of a request once it is made: it is written to a file, or sent.
class RequestUse {
 public:
  virtual ~RequestUse() = default;
  /// Adds the options of this use to a request's command line.
  virtual void AddOptions(const Subcommand& request) = 0;
  /// @return what the help of the command line says of this use, in whole lines.
  virtual const char* GetFooter() const = 0;
  /// Finds out, before the password is asked for, whether the request will be usable.
  /// @return kExitClean, or another exit status after a complaint.
  virtual ExitStatus Prepare() = 0;
  /// Takes what a bank says of the connection, where the command line leaves it open.
  virtual void TakeBank(const Bank&) {}
  /// @return the option that is missing on the command line, or an empty text.
  virtual std::string FindMissing() const { return ""; }
  /// Asks the institution for the user's accounts there.
  /// @param accounts takes them; none when this use has no institution to ask.
  /// @return kExitClean, or another exit status after a complaint.
  virtual ExitStatus ListAccounts([[maybe_unused]] const SignOnOptions& signOn,
                                  [[maybe_unused]] std::vector<Account>& accounts) {
    return kExitClean;
  }
  /// @return the profile of the bank that the sign-on names; none when the request goes elsewhere.
  virtual ProfileAnswer FindProfile(const SignOnOptions&) { return {}; }
  /// Has the request go to an address that the profile names.
  virtual void SetAddress(const std::string&) {}
  /// @param institution the institution's name.
  /// @return where the request goes, as a prompt says it.
  virtual std::string Where(const std::string& institution) const { return institution; }
  /// Takes the text, which holds the password.
  /// @return kExitClean, or another exit status after a complaint.
  virtual ExitStatus Use(KRBuffer& text) = 0;
};

/// Adds the command line that makes one kind of request for a use.
using AddRequestKind = void (*)(const Subcommand& parent, const std::shared_ptr<RequestUse>& use);
/// The request for a statement.
void AddStatementRequest(const Subcommand&, const std::shared_ptr<RequestUse>&);
/// The request for the statement of an investment account.
void AddInvestmentRequest(const Subcommand&, const std::shared_ptr<RequestUse>&);
/// The request for a payment.
void AddPaymentRequest(const Subcommand&, const std::shared_ptr<RequestUse>&);
/// The request for the list of the user's accounts.
void AddAccountsRequest(const Subcommand&, const std::shared_ptr<RequestUse>&);
/// The request for what an institution offers.
void AddProfileRequest(const Subcommand&, const std::shared_ptr<RequestUse>&);
/// The request for a transfer, once or recurring.
void AddTransferRequest(const Subcommand&, const std::shared_ptr<RequestUse>&);
/// The request to stop checks.
void AddStopCheckRequest(const Subcommand&, const std::shared_ptr<RequestUse>&);
/// The request that carries a letter.
void AddMailRequest(const Subcommand&, const std::shared_ptr<RequestUse>&);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_REQUESTS_REQUEST_USE_H_
