// krofx request transfer: asks for a transfer within the bank or to another, once or recurring.

#include "command_line/command_line.h"
#include "command_line/nearest_name.h"
#include "requests/account_choice.h"
#include "requests/account_options.h"
#include "requests/frequencies.h"
#include "requests/order_text.h"
#include "requests/request_maker.h"
#include "requests/request_use.h"

namespace krofx::command {

namespace {

// OFX gives the number of transfers three digits.
constexpr int kMostTimes = 999;

struct End {
  BankAccountOptions bank;
  std::string card;
};

struct Options {
  SignOnOptions signOn;
  End from;
  End to;
  std::string amount;
  std::string due;
  std::string memo;
  std::string every;
  int times = 0;  ///< 0 when there is no end.
};

// What names an end of the transfer: a bank account with its bank, or a card.
bool IsNamed(const End& end) {
  return end.card.empty() ? !end.bank.account.empty() && !end.bank.bank.empty()
                          : end.bank.account.empty() && end.bank.bank.empty();
}

// A number without the blanks and hyphens that people write into it.
std::string PlainNumber(std::string number) {
  constexpr char kHardBlank[] = "\u00A0";
  for (std::size_t at = 0; (at = number.find(kHardBlank, at)) != std::string::npos;) {
    number.erase(at, sizeof kHardBlank - 1);
  }
  std::erase_if(number, [](char character) { return character == ' ' || character == '-'; });
  return number;
}

bool IsSame(const End& left, const End& right) {
  const auto isSame = [](const std::string& number, const std::string& other) {
    return PlainNumber(number) == PlainNumber(other);
  };
  return isSame(left.card, right.card) && isSame(left.bank.account, right.bank.account) &&
         isSame(left.bank.bank, right.bank.bank) && isSame(left.bank.branch, right.bank.branch) &&
         left.bank.type == right.bank.type;
}

std::unique_ptr<KRBankOrCCAccount> MakeEnd(const End& end, KRTagID bankTag, KRTagID cardTag,
                                           RequestMaker& maker) {
  if (end.card.empty()) {
    auto account = MakeBankAccount(end.bank, maker);
    account->SetType(bankTag);
    return account;
  }
  return MakeCardAccount("--" + end.bank.prefix + "card", end.card, cardTag, maker);
}

std::unique_ptr<KRXferInfo> MakeInfo(const Options& options, RequestMaker& maker) {
  auto info = maker.Make<KRXferInfo>(KRTag_XFERINFO);
  info->SetAccountFrom(
      MakeEnd(options.from, KRTag_BANKACCTFROM, KRTag_CCACCTFROM, maker).release());
  info->SetAccountTo(MakeEnd(options.to, KRTag_BANKACCTTO, KRTag_CCACCTTO, maker).release());
  if (IsSame(options.from, options.to)) {
    maker.Fail("the transfer is to the account that it comes from");
  }
  maker.SetAmount("--amount", options.amount, *info, &KRXferInfo::SetTranAmount);
  maker.SetDate("--due", options.due, *info, &KRXferInfo::SetDtDue);
  if (!options.memo.empty() && maker.GetVersion() == 1) {
    maker.Fail("--memo needs --v2");
  } else {
    maker.SetText("--memo", options.memo, *info, &KRXferInfo::SetMemo2, &KRXferInfo::GetMemo2);
  }
  return info;
}

// A model of the first version wraps a whole transfer; the second holds what is transferred.
template <class Model>
std::unique_ptr<KRTransBase> MakeModel(const Options& options, RequestMaker& maker, KRTagID tag,
                                       std::unique_ptr<KRTransferRq> transfer) {
  auto model = maker.Make<Model>(tag);
  auto instruction = maker.Make<KRRecInstruction>(KRTag_RECURRINST);
  if (instruction->SetFreq(KRString(options.every.c_str())) == 0) {
    maker.Fail("--every " + options.every +
               " is not a frequency; write WEEKLY, BIWEEKLY, TWICEMONTHLY, MONTHLY, FOURWEEKS, "
               "BIMONTHLY, QUARTERLY, SEMIANNUALLY or ANNUALLY" +
               SuggestNearest(options.every, kFrequencies));
  }
  if (options.times != 0) instruction->SetNInsts(static_cast<u16>(options.times));
  model->SetRecurrInst(instruction.release());
  if (maker.GetVersion() == 1) {
    model->SetTransferRq(transfer.release());
  } else {
    model->SetXferInfo(MakeInfo(options, maker).release());
  }
  return model;
}

template <class Once, class Model>
std::unique_ptr<KRTransBase> MakePayload(const Options& options, RequestMaker& maker, KRTagID once,
                                         KRTagID model) {
  auto transfer = maker.Make<Once>(once);
  transfer->SetXferInfo(MakeInfo(options, maker).release());
  if (options.every.empty()) return transfer;
  return MakeModel<Model>(options, maker, model, std::move(transfer));
}

std::string Describe(const End& end) {
  return end.card.empty() ? DescribeAccount(end.bank) : DescribeCard(end.card);
}

std::string Describe(const Options& options) {
  std::string order = DescribeMoney(options.amount, options.from.bank.bank) + " from " +
                      Describe(options.from) + " to " + Describe(options.to) +
                      DescribeDue(options.due);
  if (options.every.empty()) return order;
  order += ", " + options.every;
  return order +
         (options.times == 0 ? " without end" : ", " + std::to_string(options.times) + " times");
}

// Takes the rest of what names an end from the accounts of the bank, of which the end of a number
// is enough.
void Complete(const SignOnOptions& signOn, End& end, RequestMaker& maker) {
  if (!signOn.bank.has_value() || !end.card.empty() || end.bank.account.empty() ||
      !end.bank.bank.empty()) {
    return;
  }
  const std::vector<Account> found =
      ChooseAccounts(signOn, end.bank.account, StatementKind::kMoney, maker);
  if (found.size() != 1) return;
  const std::string prefix = end.bank.prefix;
  if (found.front().kind == AccountKind::kCard) {
    end = {{}, found.front().number};
  } else {
    end = {ToOptions(found.front()), ""};
  }
  end.bank.prefix = prefix;
}

ExitStatus Request(const Options& given) {
  Options options = given;
  RequestMaker maker(options.signOn);
  Complete(options.signOn, options.from, maker);
  Complete(options.signOn, options.to, maker);
  if (!IsNamed(options.from) || !IsNamed(options.to)) {
    maker.Fail(
        "name each end: --account with --bank, or --card; --to-account with --to-bank, or "
        "--to-card");
  }
  maker.SetOrder(Describe(options));
  // Two banks make it interbank; a card is the bank's own.
  const bool inter = options.from.card.empty() && options.to.card.empty() &&
                     options.from.bank.bank != options.to.bank.bank;
  const Service service = inter ? Service::kInterbank : Service::kBank;
  maker.Concern({service});
  if (inter) {
    return maker.Finish(
        MakePayload<KRInterRq, KRRecInterRq>(options, maker, KRTag_INTERRQ, KRTag_RECINTERRQ),
        service);
  }
  return maker.Finish(
      MakePayload<KRIntraRq, KRRecIntraRq>(options, maker, KRTag_INTRARQ, KRTag_RECINTRARQ),
      service);
}

}  // namespace

void AddTransferRequest(const Subcommand& parent, const std::shared_ptr<RequestUse>& use) {
  const Subcommand transfer =
      parent.Add("transfer", "Ask for a transfer, within the bank or to another");
  const auto options = std::make_shared<Options>();
  options->to.bank.prefix = "to-";
  for (End* const end : {&options->from, &options->to}) {
    AddBankAccountOptions(transfer, end->bank);
    transfer.AddOption("--" + end->bank.prefix + "card", end->card, "Or the number of a card");
  }
  transfer.AddOption("--amount", options->amount, "The amount, as 12.50").Required();
  transfer.AddOption("--due", options->due, "The day, as 2026-01-31");
  transfer.AddOption("--memo", options->memo, "A note (V2 only)");
  const Option every =
      transfer
          .AddOption("--every", options->every,
                     "Transfer again and again: WEEKLY, MONTHLY, ANNUALLY and others")
          .SpelledAs(kFrequencies);
  transfer
      .AddNumber("--times", options->times, 1, kMostTimes,
                 "How many times; without it there is no end")
      .Needs(every);
  AddSignOnOptions(transfer, options->signOn, use);
  OnRequest(transfer, options, Request);
}

}  // namespace krofx::command
