// krofx request mail: sends a letter to an institution, in general or about an account.

#include "command_line/command_line.h"
#include "requests/account_options.h"
#include "requests/order_text.h"
#include "requests/request_maker.h"
#include "requests/request_use.h"

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
  maker.SetIdentifier("--user", options.signOn.user, *mail, &KRMail::SetUserId, &KRMail::GetUserId);
  mail->SetDtCreated(Now());
  if (options.from.empty()) {
    maker.SetIdentifier("--user", options.signOn.user, *mail, &KRMail::SetFrom, &KRMail::GetFrom);
  } else {
    maker.SetText("--from", options.from, *mail, &KRMail::SetFrom, &KRMail::GetFrom);
  }
  if (options.to.empty()) {
    maker.SetIdentifier("--org", options.signOn.organisation, *mail, &KRMail::SetTo,
                        &KRMail::GetTo);
  } else {
    maker.SetText("--to", options.to, *mail, &KRMail::SetTo, &KRMail::GetTo);
  }
  maker.SetText("--subject", options.subject, *mail, &KRMail::SetSubject, &KRMail::GetSubject);
  maker.SetText("--text", options.text, *mail, &KRMail::SetMsgBody, &KRMail::GetMsgBody);
  mail->SetIncImages(static_cast<u16>(0));
  mail->SetUseHTML(static_cast<u16>(options.html ? 1 : 0));
  return mail;
}

std::string Describe(const Options& options) {
  std::string order =
      "letter to " + (options.to.empty() ? options.signOn.organisation : options.to);
  if (!options.account.account.empty()) {
    order += " about " + (options.card ? DescribeCard(options.account.account)
                                       : DescribeAccount(options.account));
  }
  return order + ": " + options.subject;
}

ExitStatus Request(const Options& options) {
  RequestMaker maker(options.signOn);
  const bool about = !options.account.account.empty();
  const Service service = about ? Service::kBank : Service::kMail;
  maker.Concern({service});
  if (about ? options.card != options.account.bank.empty()
            : options.card || !options.account.bank.empty()) {
    maker.Fail("name an account with --account and either --bank or --card");
  }
  maker.SetOrder(Describe(options));
  auto letter = MakeLetter(options, maker);
  if (!about) {
    auto payload = maker.Make<KRMailRq>(KRTag_MAILRQ);
    payload->SetMail(letter.release());
    return maker.Finish(std::move(payload), service, KRTag_MAILTRNRQ);
  }
  auto payload = maker.Make<KRBankMailRq>(KRTag_BANKMAILRQ);
  payload->SetMail(letter.release());
  if (options.card) {
    payload->SetAccount(
        MakeCardAccount("--account", options.account.account, KRTag_CCACCTFROM, maker).release());
  } else {
    payload->SetAccount(MakeBankAccount(options.account, maker).release());
  }
  return maker.Finish(std::move(payload), service);
}

}  // namespace

void AddMailRequest(const Subcommand& parent, const std::shared_ptr<RequestUse>& use) {
  const Subcommand mail = parent.Add("mail", "Send a letter to an institution");
  const auto options = std::make_shared<Options>();
  AddBankAccountOptions(mail, options->account);
  mail.AddFlag("--card", options->card, "The account is a card");
  mail.AddOption("--from", options->from, "Who writes; the user, if not given");
  mail.AddOption("--to", options->to, "Who is to read it; the institution, if not given");
  mail.AddOption("--subject", options->subject, "The subject").Required();
  mail.AddOption("--text", options->text, "The letter, up to 2160 characters").Required();
  mail.AddFlag("--html", options->html, "The letter is HTML");
  AddSignOnOptions(mail, options->signOn, use);
  OnRequest(mail, options, Request);
}

}  // namespace krofx::command
