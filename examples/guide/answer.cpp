// Answers requests of version 1 as a server does: a statement has a balance, all else is refused.
#include <krofx/host.h>

#include <iostream>

int main(int count, char** arguments) {
  if (count != 2) return 64;
  const krofx::Reading reading = krofx::ReadFile(arguments[1]);
  krofx::ResponseDraft draft(1);
  draft.SignOn({.organisation = "HARBORFED", .institution = "40711"});
  for (const auto& request : krofx::Each<KRTransRq>(reading)) {
    const auto* const rq = dynamic_cast<const KRBankStatementRq*>(request->GetActualTrans());
    if (rq == nullptr || rq->GetBankAcctFrom() == nullptr) {
      draft.Refuse(*request, 2028, "this bank gives statements only");
      continue;
    }
    auto balance = draft.New<KRLedgerBalance>();
    balance->SetBalAmt(krofx::FromMinor(128841, 2));
    krofx::Set(*balance, &KRLedgerBalance::SetDtAsOf, "20260131");
    auto rs = draft.New<KRBankStatementRs>();
    krofx::Set(*rs, &KRBankStatementRs::SetCurrencyDefault, "USD");
    krofx::Give(*rs, &KRBankStatementRs::SetBankAcctFrom, krofx::Clone(*rq->GetBankAcctFrom()));
    krofx::Give(*rs, &KRBankStatementRs::SetLedgerBal, std::move(balance));
    draft.Add(std::move(rs), *request);
  }
  KRBuffer text(0, 0);
  if (!draft.Write(text)) return 1;
  std::cout << std::string_view(text.GetBufferPtr(), text.GetBufferSize());
}
