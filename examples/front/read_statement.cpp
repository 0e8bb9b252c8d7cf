// Reads statement files and prints accounts, transactions and balances: read_statement FILE...
#include <krofx/host.h>

#include <iomanip>
#include <iostream>

int main(int count, char** arguments) {
  bool good = count > 1;
  for (int i = 1; i < count; ++i) {
    const krofx::Reading reading = krofx::ReadFile(arguments[i]);
    for (const auto& wrapper : krofx::Each<KRTransRs>(reading)) {
      if (wrapper->IsErrorStatus() == 0) continue;
      std::cout << wrapper->GetTransUserID() << ": error " << wrapper->GetStatus()->GetCode()
                << ", " << wrapper->GetStatus()->GetMessageText() << "\n";
    }
    for (const krofx::StatementView statement : krofx::Statements(reading)) {
      std::cout << statement.Account().Number() << ", " << statement.Currency() << "\n";
      for (const krofx::TransactionView tx : statement.Transactions()) {
        std::cout << "  " << krofx::ToText(krofx::ToDay(tx.Posted())) << " " << std::setw(12)
                  << tx.Amount().value_or(KRPrecisionInteger()) << "  "
                  << (tx.Party().empty() ? tx.Memo() : tx.Party()) << "\n";
      }
      if (const auto balance = statement.Balance()) {
        std::cout << "  balance    " << std::setw(12) << *balance << "\n";
      }
    }
    if (!reading.IsRead()) std::cout << reading.problem << "\n";
    good = good && reading.IsRead();
  }
  return good ? 0 : 1;
}
