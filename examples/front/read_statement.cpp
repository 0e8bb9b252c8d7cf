// Reads statement files and prints accounts, transactions and balances: read_statement FILE...
#include <krofx/host.h>

#include <cstdio>
#include <string>

const char* OrZero(const std::optional<KRPrecisionInteger>& amount) {
  return amount ? static_cast<const char*>(*amount) : "0";
}

int main(int count, char** arguments) {
  bool good = count > 1;
  for (int i = 1; i < count; ++i) {
    const krofx::Reading reading = krofx::ReadFile(arguments[i]);
    krofx::ForEach<KRTransRs>(reading, [](const KRTransRs& wrapper) {
      if (wrapper.IsErrorStatus() == 0) return;
      std::printf("%s: error %d, %s\n", static_cast<const char*>(wrapper.GetTransUserID()),
                  wrapper.GetStatus()->GetCode(),
                  static_cast<const char*>(wrapper.GetStatus()->GetMessageText()));
    });
    for (const krofx::StatementView statement : krofx::Statements(reading)) {
      std::printf("%s, %s\n", std::string(statement.Account().Number()).c_str(),
                  std::string(statement.Currency()).c_str());
      for (const krofx::TransactionView tx : statement.Transactions()) {
        const std::string party(tx.Party().empty() ? tx.Memo() : tx.Party());
        std::printf("  %s %12s  %s\n", krofx::ToText(krofx::ToDay(tx.Posted())).c_str(),
                    OrZero(tx.Amount()), party.c_str());
      }
      if (statement.Balance()) std::printf("  balance    %12s\n", OrZero(statement.Balance()));
    }
    if (!reading.IsRead()) std::printf("%s\n", static_cast<const char*>(reading.problem));
    good = good && reading.IsRead();
  }
  return good ? 0 : 1;
}
