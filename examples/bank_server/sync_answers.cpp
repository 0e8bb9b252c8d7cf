// What happened since a client last asked: the transfers that were made.

#include "answers.h"

#include <cstdlib>

namespace bank_server {
namespace {

// An end of a transfer, under the tag that says which.
KRBankOrCCAccount* MakeEnd(u16 version, const Account& account, KRTagID bankTag, KRTagID cardTag) {
  if (account.IsCard()) {
    KRCCAccount* card = Factory().NewCCAccount(version);
    card->SetType(cardTag);
    card->SetAccountID(Text(account.number));
    return card;
  }
  KRBankAccount* inBank = Factory().NewBankAccount(version);
  inBank->SetType(bankTag);
  inBank->SetBankID(Text(account.bank));
  inBank->SetAccountID(Text(account.number));
  inBank->SetAccountType(Text(account.type));
  inBank->SetAccountType2(Text(account.type));
  return inBank;
}

KRTransRs* MakeTransfer(u16 version, const Order& order) {
  KRXferInfo* info = Factory().NewXferInfo(version);
  info->SetAccountFrom(MakeEnd(version, *order.from, KRTag_BANKACCTFROM, KRTag_CCACCTFROM));
  info->SetAccountTo(MakeEnd(version, *order.to, KRTag_BANKACCTTO, KRTag_CCACCTTO));
  info->SetTranAmount(order.amount);
  KRIntraRs* made = Factory().NewIntraRs(version);
  made->SetCurrencyDefault(Bank::kCurrency);
  made->SetServerTransactionID(Text(order.serverId));
  made->SetServerTransactionID2(Text(order.serverId));
  made->SetXferInfo(info);
  made->SetDtPosted(order.when);
  KRTransRs* wrapper = Factory().NewTransRs(version);
  wrapper->SetType(KRTag_INTRATRNRS);
  wrapper->SetTransUserID(Text(order.requestId));
  wrapper->SetStatus(MakeStatus(version, kDone));
  wrapper->SetActualTrans(made);
  return wrapper;
}

// The number of orders that the client knows of.
std::size_t Known(const KRSyncRq& request) {
  if (request.ValidateTag(KRTag_REFRESH) != 0) return 0;
  const char* const token = request.ValidateTag(KRTag_TOKEN2) != 0
                                ? static_cast<const char*>(request.GetToken2())
                                : static_cast<const char*>(request.GetToken());
  return std::strtoul(token, nullptr, 10);
}

}  // namespace

KRSyncRs* MakeSync(u16 version, KRSyncRq& request, User& user, const Bank& bank) {
  const Account* const account =
      request.GetAccount() == nullptr ? nullptr : Bank::Find(user, *request.GetAccount());
  if (request.GetType() != KRTag_INTRASYNCRQ || account == nullptr) return nullptr;
  KRSyncRs* answer = Factory().NewSyncRs(version);
  answer->SetType(KRTag_INTRASYNCRS);
  const std::string token = std::to_string(bank.Orders().size());
  answer->SetToken(Text(token));
  answer->SetToken2(Text(token));
  const std::size_t known = Known(request);
  // A client that knows of more than there is has asked before this program began.
  const bool lost = known > bank.Orders().size();
  answer->SetLostSync(static_cast<u16>(lost ? 1 : 0));
  KRAccount* named = KRAccount::NewAcctFrom(request.GetAccount()->GetType());
  named->DeepCopyFrom(request.GetAccount());
  answer->SetAccount(named);
  for (std::size_t index = lost ? 0 : known; index < bank.Orders().size(); ++index) {
    const Order& order = bank.Orders()[index];
    if (order.from == account) answer->AppendTrans(MakeTransfer(version, order));
  }
  return answer;
}

}  // namespace bank_server
