// Copies a transaction out of a file, gives it to another list, and takes it out again.
#include <krofx/host.h>

#include <iostream>

int main(int count, char** arguments) {
  if (count != 2) return 64;
  const auto list = krofx::New<KRBankTransactionList>(1);
  {
    const krofx::Reading reading = krofx::ReadFile(arguments[1]);
    for (const auto& tx : krofx::Each<KRBankStatementTx>(reading)) {
      std::unique_ptr<KRBankStatementTx> copy = krofx::Clone(*tx);
      if (copy == nullptr) return 1;  // Memory is exhausted.
      krofx::Give(*list, &KRBankTransactionList::AppendStatementTx, std::move(copy));
    }
  }  // The file is gone; the copies are the list's.
  std::cout << list->GetNumStatementTx() << " transactions\n";
  const auto first = krofx::Take(*list, &KRBankTransactionList::GetStatementTx,
                                 &KRBankTransactionList::DisconnectStatementTx, 0);
  if (first != nullptr) std::cout << "took " << krofx::ToText(first->GetFITId()) << "\n";
  std::cout << list->GetNumStatementTx() << " are left\n";
}
