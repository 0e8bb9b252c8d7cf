// What all requests share: the sign-on, the file around it, and the password.

#ifndef KROFX_COMMAND_REQUESTS_REQUEST_MAKER_H_
#define KROFX_COMMAND_REQUESTS_REQUEST_MAKER_H_

#include <CLI/CLI.hpp>
#include <memory>
#include <string>

#include "exit_status.h"
#include "krofx/krofx.h"

namespace krofx::command {

/// What becomes of a request once it is made: it is written to a file, or sent.
class RequestUse {
 public:
  virtual ~RequestUse() = default;
  /// Adds the options of this use to a request's command line.
  virtual void AddOptions(CLI::App& request) = 0;
  /// What the help of the command line says of this use, in whole lines.
  virtual const char* GetFooter() const = 0;
  /// Finds out, before the password is asked for, whether the request will be usable.
  /// @return kExitClean, or another exit status behind a complaint.
  virtual ExitStatus Prepare() = 0;
  /// Takes the text, which holds the password.
  /// @return kExitClean, or another exit status behind a complaint.
  virtual ExitStatus Use(KRBuffer& text) = 0;
};

/// Adds the command line that makes one kind of request for a use.
using AddRequestKind = void (*)(CLI::App& app, ExitStatus& exitStatus,
                                const std::shared_ptr<RequestUse>& use);
/// The request for a statement.
void AddStatementRequest(CLI::App&, ExitStatus&, const std::shared_ptr<RequestUse>&);
/// The request for the statement of an investment account.
void AddInvestmentRequest(CLI::App&, ExitStatus&, const std::shared_ptr<RequestUse>&);
/// The request for a payment.
void AddPaymentRequest(CLI::App&, ExitStatus&, const std::shared_ptr<RequestUse>&);
/// The request for the list of the user's accounts.
void AddAccountsRequest(CLI::App&, ExitStatus&, const std::shared_ptr<RequestUse>&);
/// The request for what an institution offers.
void AddProfileRequest(CLI::App&, ExitStatus&, const std::shared_ptr<RequestUse>&);
/// The request for a transfer, once or recurring.
void AddTransferRequest(CLI::App&, ExitStatus&, const std::shared_ptr<RequestUse>&);
/// The request to stop checks.
void AddStopCheckRequest(CLI::App&, ExitStatus&, const std::shared_ptr<RequestUse>&);
/// The request that carries a letter.
void AddMailRequest(CLI::App&, ExitStatus&, const std::shared_ptr<RequestUse>&);

/// What every request needs from the user.
struct SignOnOptions {
  std::string organisation;
  std::string institutionId;
  std::string user;
  std::string applicationId = "KROFX";
  u16 applicationVersion = 100;
  std::string language = "ENG";
  std::string country;
  bool secondVersion = false;
  int passwordFd = -1;
  std::string passwordVariable;
  bool mayBeAnonymous = false;  ///< Without a user the sign-on is one of nobody.
  std::shared_ptr<RequestUse> use;
};

/// Adds the options of the sign-on, and those of the use, to a request's command line.
void AddSignOnOptions(CLI::App& request, SignOnOptions& options,
                      const std::shared_ptr<RequestUse>& use);

/// A request under construction. The first thing that goes wrong is kept, and the rest does
/// nothing.
class RequestMaker {
 public:
  explicit RequestMaker(const SignOnOptions& options) : m_options(options) {}

  /// The message-set version: 1 or 2.
  u16 GetVersion() const { return m_options.secondVersion ? 2 : 1; }

  /// Makes an object of this version.
  template <class Object>
  std::unique_ptr<Object> Make(KRTagID tag) const {
    auto object = std::make_unique<Object>();
    object->SetType(tag);
    object->SetMsgSetVersion(GetVersion());
    return object;
  }

  /// Checks a text against the length that OFX allows, and notes what is wrong by the option's
  /// name.
  void Require(const char* option, const KRString& held, const std::string& given);
  /// Notes a problem.
  void Fail(const std::string& problem);

  /// Sets a text that was given, and checks its length. The setters of texts are alike in all
  /// classes.
  template <class Object, class Setter, class Getter>
  void SetText(const char* option, const std::string& given, Object& object, Setter set,
               Getter get) {
    if (given.empty()) return;
    (object.*set)(KRString(given.c_str()));
    Require(option, (object.*get)(), given);
  }
  /// Sets an amount from the text of an option; `set` takes the text and answers as a setter does.
  template <class Set>
  void SetAmount(const char* option, const std::string& given, Set set) {
    if (set(KRString(given.c_str())) == 0) {
      Fail(std::string(option) + " is no amount that can be used; write it as 12.50");
    }
  }
  /// Notes a date that was not understood.
  void RequireDate(const char* option, u16 taken) {
    if (taken == 0) Fail(std::string(option) + " is no date; write it as 2026-01-31");
  }

  /// Puts a payload into its wrapper and message set, adds the sign-on with the password, and hands
  /// the text to its use.
  /// @param wrapper the wrapper's tag, for payloads that do not tell it.
  ExitStatus Finish(std::unique_ptr<KRTransBase> payload, KRTagID messageSet,
                    KRTagID wrapper = KRTag_None);

 private:
  std::unique_ptr<KRMessageSetRq> MakeSignOn();
  bool IsAnonymous() const { return m_options.mayBeAnonymous && m_options.user.empty(); }
  void AddPassword(KRSignOnRq& signOn);

  const SignOnOptions& m_options;
  std::string m_problem;
};

/// A bank account of the user, as the command line names it.
struct BankAccountOptions {
  std::string account;
  std::string bank;
  std::string branch;
  std::string type = "CHECKING";
  std::string prefix;  ///< Stands before the names of the options, as "to-".
};

/// Adds the options of a bank account to a command line.
void AddBankAccountOptions(CLI::App& request, BankAccountOptions& options);

/// Now, in universal time, in the form of OFX.
KRString Now();

/// Makes the account that BANKACCTFROM names; what is wrong with it is noted in `maker`.
std::unique_ptr<KRBankAccount> MakeBankAccount(const BankAccountOptions& options,
                                               RequestMaker& maker);

/// A date of the command line, as OFX writes it, and with or without hyphens.
KRString DateArgument(std::string text);

/// Which transactions a statement is to have. Empty texts leave a side of the span open.
std::unique_ptr<KRIncTransaction> MakeSpan(const std::string& from, const std::string& to,
                                           bool include, RequestMaker& maker);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_REQUESTS_REQUEST_MAKER_H_
