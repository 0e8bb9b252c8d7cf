// Writes a request for a transfer of 62.40 between two accounts of a bank.
#include <krofx/host.h>

#include <iostream>

std::unique_ptr<KRBankAccount> Account(const krofx::Draft& draft, std::string_view number) {
  auto account = draft.New<KRBankAccount>();
  krofx::Set(*account, &KRBankAccount::SetBankID, "211370545");
  krofx::Set(*account, &KRBankAccount::SetAccountID, number);
  account->SetAccountType2(KRBankAccountType2_CHECKING);
  return account;
}

int main() {
  krofx::Draft draft(2);  // The version of the message sets.
  draft.SignOn({.user = "ada.w", .password = "secret", .organisation = "HARBORFED", .appId = "QX"});
  auto info = draft.New<KRXferInfo>();
  krofx::Give(*info, &KRXferInfo::SetBankAcctFrom, Account(draft, "00718220946"));
  krofx::Give(*info, &KRXferInfo::SetBankAcctTo, Account(draft, "00718220954"));
  info->SetTranAmount(krofx::FromMinor(6240, 2));
  auto transfer = draft.New<KRIntraRq>();
  krofx::Give(*transfer, &KRIntraRq::SetXferInfo, std::move(info));
  draft.Add(std::move(transfer));
  KRBuffer request(0, 0);
  const krofx::DraftResult result = draft.Write(request);
  for (const auto& each : result.missing) std::cerr << each.path << ": " << each.sentence << "\n";
  if (!result) std::cerr << result.problem << "\n";
  std::cout << std::string_view(request.GetBufferPtr(), request.GetBufferSize());
}
