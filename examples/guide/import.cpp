// Imports a file: all transactions with their accounts, and what was out of order in the file.
#include <krofx/host.h>

#include <iostream>

using krofx::ToDay, krofx::ToText;

int main(int count, char** arguments) {
  if (count != 2) return 64;
  const krofx::Reading reading = krofx::ReadFile(arguments[1]);
  for (const krofx::StatementView statement : krofx::Statements(reading)) {
    const std::string_view account = statement.Account().Number();
    for (const krofx::TransactionView tx : statement.Transactions()) {
      std::cout << account << " " << ToText(ToDay(tx.Posted())) << " " << ToText(tx.Amount(), 2)
                << " " << tx.Currency() << " " << tx.Party() << "\n";
    }
    for (const krofx::InvestmentTransactionView tx : statement.InvestmentTransactions()) {
      if (tx.Money() != nullptr) continue;  // It is one of Transactions too.
      std::cout << account << " " << ToText(ToDay(tx.Traded())) << " " << ToText(tx.Total(), 2)
                << " " << tx.Currency() << " " << tx.Security() << "\n";
    }
  }
  for (const krofx::ReadNote& note : reading.Warnings()) {
    std::cout << note.line << ":" << note.column << " " << note.tag << " " << note.sentence << "\n";
  }
  for (const auto& tag : reading.Missing()) std::cout << tag.path << ": " << tag.sentence << "\n";
  if (!reading.IsRead()) std::cout << reading.problem << "\n";
  return reading.IsRead() ? 0 : 1;
}
