// Builds the request for a bank statement: build_request 1|2 USER ACCOUNT START TIME
#include <krofx/host.h>

#include <cstdlib>
#include <iostream>

int main(int count, char** arguments) {
  const char* const password = std::getenv("OFX_PASSWORD");
  if (count != 6 || password == nullptr) return 64;
  krofx::Draft draft(static_cast<u16>(std::atoi(arguments[1])));
  draft.SignOn({.user = arguments[2],
                .password = password,
                .organisation = "HARBORFED",
                .institution = "40711",
                .appId = "DEMO",
                .appVersion = 10,
                .time = krofx::ToInstant(KRDateTime(arguments[5]))});
  auto account = draft.New<KRBankAccount>();
  krofx::Set(*account, &KRBankAccount::SetBankID, "211370545");
  krofx::Set(*account, &KRBankAccount::SetAccountID, arguments[3]);
  account->SetAccountType(KRBankAccountType_CHECKING);    // Taken in version 1 only,
  account->SetAccountType2(KRBankAccountType2_CHECKING);  // and this in version 2.
  auto range = draft.New<KRIncTransaction>();
  krofx::Set(*range, &KRIncTransaction::SetDtStart, arguments[4]);
  range->SetInclude(u16{1});
  auto statement = draft.New<KRBankStatementRq>();
  krofx::Give(*statement, &KRBankStatementRq::SetBankAcctFrom, std::move(account));
  krofx::Give(*statement, &KRBankStatementRq::SetIncTran, std::move(range));
  draft.Add(std::move(statement))->SetTransUserID(KRString("1"));
  KRBuffer buffer(0, 0);
  const krofx::DraftResult result = draft.Write(buffer);
  if (!result) std::cerr << result.problem << "\n";
  std::cout << std::string_view(buffer.GetBufferPtr(), buffer.GetBufferSize());
  return result ? 0 : 1;
}
