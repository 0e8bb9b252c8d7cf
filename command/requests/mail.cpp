// krofx request mail: sends a letter to an institution, in general or about an account.

#include <CLI/CLI.hpp>
#include <memory>

#include "output/messages.h"
#include "requests/request_maker.h"

namespace krofx::command {

namespace {

struct Options {
  SignOnOptions signOn;
  BankAccountOptions account;
  bool card = false;
  std::string from;
  std::string to;
  std::string subject;
  std::string text;
  bool html = false;
};

std::unique_ptr<KRMail> MakeLetter(const Options& options, RequestMaker& maker) {
  auto mail = maker.Make<KRMail>(KRTag_MAIL);
  const std::string& from = options.from.empty() ? options.signOn.user : options.from;
  const std::string& to = options.to.empty() ? options.signOn.organisation : options.to;
  maker.SetText("--user", options.signOn.user, *mail, &KRMail::SetUserId, &KRMail::GetUserId);
  mail->SetDtCreated(Now());
  maker.SetText("--from", from, *mail, &KRMail::SetFrom, &KRMail::GetFrom);
  maker.SetText("--to", to, *mail, &KRMail::SetTo, &KRMail::GetTo);
  maker.SetText("--subject", options.subject, *mail, &KRMail::SetSubject, &KRMail::GetSubject);
  maker.SetText("--text", options.text, *mail, &KRMail::SetMsgBody, &KRMail::GetMsgBody);
  mail->SetIncImages(static_cast<u16>(0));
  mail->SetUseHTML(static_cast<u16>(options.html ? 1 : 0));
  return mail;
}

ExitStatus Request(const Options& options) {
  const bool about = !options.account.account.empty();
  if (about ? options.card != options.account.bank.empty()
            : options.card || !options.account.bank.empty()) {
    Complain("request", "name an account with --account and either --bank or --card");
    return kExitWrongUse;
  }
  RequestMaker maker(options.signOn);
  const bool first = maker.GetVersion() == 1;
  auto letter = MakeLetter(options, maker);
  if (!about) {
    auto payload = maker.Make<KRMailRq>(KRTag_MAILRQ);
    payload->SetMail(letter.release());
    return maker.Finish(std::move(payload), first ? KRTag_EMAILMSGSRQV1 : KRTag_EMAILMSGSRQV2,
                        KRTag_MAILTRNRQ);
  }
  auto payload = maker.Make<KRBankMailRq>(KRTag_BANKMAILRQ);
  payload->SetMail(letter.release());
  if (options.card) {
    auto account = maker.Make<KRCCAccount>(KRTag_CCACCTFROM);
    maker.SetText("--account", options.account.account, *account, &KRCCAccount::SetAccountID,
                  &KRCCAccount::GetAccountID);
    payload->SetAccount(account.release());
  } else {
    payload->SetAccount(MakeBankAccount(options.account, maker).release());
  }
  return maker.Finish(std::move(payload), first ? KRTag_BANKMSGSRQV1 : KRTag_BANKMSGSRQV2);
}

}  // namespace

void AddMailRequest(CLI::App& app, ExitStatus& exitStatus, const std::shared_ptr<RequestUse>& use) {
  CLI::App* const mail = app.add_subcommand("mail", "Send a letter to an institution");
  const auto options = std::make_shared<Options>();
  AddBankAccountOptions(*mail, options->account);
  mail->add_flag("--card", options->card, "The account is a card");
  mail->add_option("--from", options->from, "Who writes; the user, if not given");
  mail->add_option("--to", options->to, "Who is to read it; the institution, if not given");
  mail->add_option("--subject", options->subject, "The subject")->required();
  mail->add_option("--text", options->text, "The letter, up to 2160 characters")->required();
  mail->add_flag("--html", options->html, "The letter is HTML");
  AddSignOnOptions(*mail, options->signOn, use);
  mail->callback([options, &exitStatus] { exitStatus = Request(*options); });
}

}  // namespace krofx::command
