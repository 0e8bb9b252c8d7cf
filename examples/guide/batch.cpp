// Asks for a statement and, since the last time, for transfers, in one file: batch TOKEN
#include <krofx/host.h>

#include <iostream>

std::unique_ptr<KRBankAccount> Account(const krofx::Draft& draft) {
  auto account = draft.New<KRBankAccount>();
  krofx::Set(*account, &KRBankAccount::SetBankID, "211370545");
  krofx::Set(*account, &KRBankAccount::SetAccountID, "00718220946");
  account->SetAccountType(KRBankAccountType_CHECKING);
  return account;
}

int main(int count, char** arguments) {
  if (count != 2) return 64;
  krofx::Draft draft(1);
  draft.SignOn({.user = "ada.w", .password = "not-a-real-password", .appId = "QX"});
  auto statement = draft.New<KRBankStatementRq>();
  krofx::Give(*statement, &KRBankStatementRq::SetBankAcctFrom, Account(draft));
  draft.Add(std::move(statement));
  auto sync = draft.NewSync(KRTag_INTRASYNCRQ, arguments[1]);
  krofx::Give(*sync, &KRSyncRq::SetAccount, Account(draft));
  draft.Add(std::move(sync));
  KRBuffer text(0, 0);
  const krofx::DraftResult result = draft.Write(text);
  std::cerr << result.problem;
  std::cout << std::string_view(text.GetBufferPtr(), text.GetBufferSize());
  return result ? 0 : 1;
}
