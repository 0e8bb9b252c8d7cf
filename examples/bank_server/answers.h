// Makes the bank's data into OFX objects for a response. Each function returns an object of the
// given message-set version, which the caller owns. Like all examples, they assume that there is
// enough memory.

#ifndef KROFX_EXAMPLES_BANK_SERVER_ANSWERS_H_
#define KROFX_EXAMPLES_BANK_SERVER_ANSWERS_H_

#include <krofx/krofx.h>

#include <set>
#include <string>

#include "bank.h"

namespace bank_server {

/// The current factory, which makes all objects.
inline KRDataObjFactory& Factory() { return *KRDataObj::GetFactory(); }

/// A text for the library.
inline KRString Text(const std::string& text) { return KRString(text.c_str()); }

/// Which days of an account are wanted, both ends included.
struct Days {
  KRDateTime start;
  KRDateTime end;
  bool Contain(const std::string& day) const;
};

/// The days that a request names: without a start, from the first booking; without an end, until
/// `now`. False when the end is before the start.
bool WantedDays(const KRIncTransaction& wanted, const KRDateTime& now, Days& days);

/// A status with its code, its severity and the words for it.
KRStatus* MakeStatus(u16 version, s32 code);
/// What the bank offers.
KRProfileRs* MakeProfile(u16 version, const Bank& bank);
/// The user's accounts.
KRAccountInfoRs* MakeAccountList(u16 version, const User& user);
/// What happened since the user last asked; null for a synchronisation that this bank does not
/// have.
KRSyncRs* MakeSync(u16 version, KRSyncRq& request, User& user, const Bank& bank);
/// Fills the statement of a bank account or a card; without `days` there are no bookings in it.
void FillStatement(KRGenericStatementRs& statement, const Account& account, const Days* days,
                   const KRDateTime& now);
/// The trades of some days.
KRInvTranList* MakeTrades(u16 version, const InvestmentAccount& account, const Days& days);
/// What an investment account holds.
KRInvPosList* MakePositions(u16 version, const InvestmentAccount& account, const Bank& bank);
/// The cash of an investment account.
KRInvBal* MakeInvestmentBalance(u16 version, const InvestmentAccount& account);
/// Descriptions of securities, by their CUSIPs.
KRSecList* MakeSecurities(u16 version, const Bank& bank, const std::set<std::string>& cusips);

}  // namespace bank_server

#endif  // KROFX_EXAMPLES_BANK_SERVER_ANSWERS_H_
