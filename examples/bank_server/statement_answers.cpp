// Statements of bank accounts and cards.

#include "answers.h"

namespace bank_server {
namespace {

// Each version has one of the two memos, and only its setter succeeds.
KRBankStatementTx* MakeBooking(u16 version, const Booking& booking) {
  KRBankStatementTx* made = Factory().NewBankStatementTx(version);
  made->SetTxType(Text(booking.type));
  made->SetDateTimePosted(Text(booking.posted));
  made->SetTxAmount(Text(booking.amount));
  made->SetFITId(Text(booking.id));
  if (!booking.check.empty()) made->SetCheckNum(Text(booking.check));
  if (!booking.name.empty()) made->SetName(Text(booking.name));
  if (!booking.memo.empty()) {
    made->SetMemo(Text(booking.memo));
    made->SetMemo2(Text(booking.memo));
  }
  return made;
}

}  // namespace

bool Days::Contain(const std::string& day) const {
  return DayOf(start) <= DayOf(day) && DayOf(day) <= DayOf(end);
}

bool WantedDays(const KRIncTransaction& wanted, const KRDateTime& now, Days& days) {
  const bool hasStart = wanted.ValidateTag(KRTag_DTSTART) != 0;
  days.start = hasStart ? wanted.GetDtStart() : KRDateTime(Bank::kAccountsDay);
  days.end = wanted.ValidateTag(KRTag_DTEND) != 0 ? wanted.GetDtEnd() : now;
  return DayOf(days.start) <= DayOf(days.end);
}

void FillStatement(KRGenericStatementRs& statement, const Account& account, const Days* days,
                   const KRDateTime& now) {
  const u16 version = statement.GetMsgSetVersion();
  statement.SetCurrencyDefault(Bank::kCurrency);
  if (days != nullptr) {
    KRBankTransactionList* list = Factory().NewBankTransactionList(version);
    list->SetDtStart(days->start);
    list->SetDtEnd(days->end);
    for (const Booking& booking : account.bookings) {
      if (days->Contain(booking.posted)) list->AppendStatementTx(MakeBooking(version, booking));
    }
    statement.SetBankTranList(list);
  }
  KRLedgerBalance* ledger = Factory().NewLedgerBalance(version);
  ledger->SetBalAmt(account.Balance());
  ledger->SetDtAsOf(now);
  statement.SetLedgerBal(ledger);
  KRAvailableBalance* available = Factory().NewAvailableBalance(version);
  available->SetBalAmt(account.Available());
  available->SetDtAsOf(now);
  statement.SetAvailBal(available);
}

}  // namespace bank_server
