// krofx request payment: asks a bill-pay service for a payment.

#include "command_line/command_line.h"
#include "requests/account_options.h"
#include "requests/order_text.h"
#include "requests/request_maker.h"
#include "requests/request_use.h"

namespace krofx::command {

namespace {

// The payee's name and address; only the first version asks for the whole address.
struct PayeeOptions {
  std::string name;
  std::string address;
  std::string city;
  std::string state;
  std::string postalCode;
  std::string country;
  std::string phone;
};

struct Options {
  SignOnOptions signOn;
  BankAccountOptions from;
  PayeeOptions payee;
  std::string payeeId;
  std::string payeeListId;
  std::string payeeAccount;
  std::string amount;
  std::string due;
  std::string memo;
  std::string bill;
};

void FillPayee(const PayeeOptions& options, RequestMaker& maker, KRPayee& payee) {
  const auto set = [&](const char* option, const std::string& given, auto setter, auto getter) {
    maker.SetText(option, given, payee, setter, getter);
  };
  set("--payee", options.name, &KRPayee::SetName, &KRPayee::GetName);
  set("--payee-address", options.address, &KRPayee::SetAddress1, &KRPayee::GetAddress1);
  set("--payee-city", options.city, &KRPayee::SetCity, &KRPayee::GetCity);
  set("--payee-state", options.state, &KRPayee::SetState, &KRPayee::GetState);
  set("--payee-postal-code", options.postalCode, &KRPayee::SetPostalCode, &KRPayee::GetPostalCode);
  if (!options.country.empty()) maker.RequireCode("--payee-country", options.country, "USA");
  set("--payee-country", options.country, &KRPayee::SetCountry, &KRPayee::GetCountry);
  set("--payee-phone", options.phone, &KRPayee::SetPhone, &KRPayee::GetPhone);
}

// What both versions have.
void FillPayment(const Options& options, RequestMaker& maker, KRPaymentInfo& payment) {
  payment.SetBankAcctFrom(MakeBankAccount(options.from, maker).release());
  maker.SetAmount("--amount", options.amount, payment, &KRPaymentInfo::SetTransactionAmount);
  maker.SetDate("--due", options.due, payment, &KRPaymentInfo::SetDtDue);
  maker.SetIdentifier("--payee-account", options.payeeAccount, payment, &KRPaymentInfo::SetPayAcct,
                      &KRPaymentInfo::GetPayAcct);
  maker.SetText("--bill", options.bill, payment, &KRPaymentInfo::SetBillRefInfo,
                &KRPaymentInfo::GetBillRefInfo);
}

std::unique_ptr<KRPaymentInfo> MakeFirstVersion(const Options& options, RequestMaker& maker) {
  auto payment = maker.Make<KRPaymentInfo>(KRTag_PMTINFO);
  FillPayment(options, maker, *payment);
  if (options.payeeAccount.empty()) maker.Fail("--payee-account is needed without --v2");
  maker.SetIdentifier("--payee-id", options.payeeId, *payment, &KRPaymentInfo::SetPayeeId,
                      &KRPaymentInfo::GetPayeeId);
  maker.SetIdentifier("--payee-list-id", options.payeeListId, *payment,
                      &KRPaymentInfo::SetPayeeListId, &KRPaymentInfo::GetPayeeListId);
  maker.SetText("--memo", options.memo, *payment, &KRPaymentInfo::SetMemo, &KRPaymentInfo::GetMemo);
  if (!options.payee.name.empty()) {
    auto payee = maker.Make<KRPayee>(KRTag_PAYEE);
    FillPayee(options.payee, maker, *payee);
    if (payee->AllRequiredPresent() == 0) {
      maker.Fail(
          "without --v2 a payee needs --payee-address, --payee-city, --payee-state, "
          "--payee-postal-code and --payee-phone");
    }
    payment->SetPayee(payee.release());
  }
  if (options.payeeId.empty() == options.payee.name.empty()) {
    maker.Fail("name the payee with either --payee or --payee-id");
  }
  return payment;
}

std::unique_ptr<KRPaymentInfo> MakeSecondVersion(const Options& options, RequestMaker& maker) {
  auto payment = maker.Make<KRPaymentInfo2>(KRTag_PMTINFO2);
  FillPayment(options, maker, *payment);
  maker.SetIdentifier("--payee-id", options.payeeId, *payment, &KRPaymentInfo2::SetPayeeId2,
                      &KRPaymentInfo2::GetPayeeId2);
  maker.SetIdentifier("--payee-list-id", options.payeeListId, *payment,
                      &KRPaymentInfo2::SetPayeeListId2, &KRPaymentInfo2::GetPayeeListId2);
  maker.SetText("--memo", options.memo, *payment, &KRPaymentInfo2::SetMemo2,
                &KRPaymentInfo2::GetMemo2);
  if (!options.payee.name.empty()) {
    auto payee = maker.Make<KRPayee2>(KRTag_PAYEE2);
    FillPayee(options.payee, maker, *payee);
    payment->SetPayee2(payee.release());
  }
  if (payment->AllRequiredPresent() == 0) {
    maker.Fail(
        "name the payee with --payee, --payee-id or --payee-list-id, not with the first two");
  }
  return payment;
}

std::string DescribePayee(const Options& options) {
  std::string payee = options.payee.name;
  if (!options.payeeId.empty()) payee = "payee " + options.payeeId;
  if (options.payeeListId.empty()) return payee;
  return payee + (payee.empty() ? "" : ", ") + "payee " + options.payeeListId + " of the list";
}

std::string Describe(const Options& options) {
  std::string order = DescribeMoney(options.amount, options.from.bank) + " from " +
                      DescribeAccount(options.from) + " to " + DescribePayee(options);
  if (!options.payeeAccount.empty()) order += ", account " + options.payeeAccount;
  return order + DescribeDue(options.due);
}

ExitStatus Request(const Options& options) {
  RequestMaker maker(options.signOn);
  maker.Concern({Service::kBillPay});
  maker.SetOrder(Describe(options));
  const bool first = maker.GetVersion() == 1;
  auto payload = maker.Make<KRPaymentRq>(KRTag_PMTRQ);
  payload->SetPmtInfo(
      (first ? MakeFirstVersion(options, maker) : MakeSecondVersion(options, maker)).release());
  return maker.Finish(std::move(payload), Service::kBillPay);
}

}  // namespace

void AddPaymentRequest(const Subcommand& parent, const std::shared_ptr<RequestUse>& use) {
  const Subcommand payment = parent.Add("payment", "Ask a bill-pay service for a payment");
  const auto options = std::make_shared<Options>();
  const auto add = [&](const char* name, std::string& value, const char* help) {
    return payment.AddOption(name, value, help);
  };
  add("--amount", options->amount, "What to pay, as 12.50").Required();
  add("--due", options->due, "When it is due, as 2026-01-31").Required();
  add("--account", options->from.account, "The number of the account that pays").Required();
  add("--bank", options->from.bank, "Its bank's routing number").Required();
  add("--branch", options->from.branch, "Its branch");
  AddAccountType(payment, "--type", options->from.type);
  const Option payee = add("--payee", options->payee.name, "The payee's name");
  add("--payee-address", options->payee.address, "His street and number").Needs(payee);
  add("--payee-city", options->payee.city, "His city").Needs(payee);
  add("--payee-state", options->payee.state, "His state").Needs(payee);
  add("--payee-postal-code", options->payee.postalCode, "His postal code").Needs(payee);
  add("--payee-country", options->payee.country, "His country, three letters").Needs(payee);
  add("--payee-phone", options->payee.phone, "His telephone").Needs(payee);
  add("--payee-id", options->payeeId, "The service's ID of the payee");
  add("--payee-list-id", options->payeeListId, "The payee's place on the user's list");
  add("--payee-account", options->payeeAccount, "The user's account with the payee");
  add("--memo", options->memo, "A note to the payee");
  add("--bill", options->bill, "What the bill is called");
  AddSignOnOptions(payment, options->signOn, use);
  OnRequest(payment, options, Request);
}

}  // namespace krofx::command
