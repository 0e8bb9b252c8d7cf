// Looks for statements, and for objects of a class wherever they are.
#include <krofx/host.h>

#include <iostream>

int main(int count, char** arguments) {
  if (count != 2) return 64;
  const krofx::Reading reading = krofx::ReadFile(arguments[1]);
  for (const krofx::StatementView statement : krofx::Statements(reading)) {
    std::cout << statement.Account().Number() << " " << statement.Currency() << " "
              << krofx::ToText(statement.Balance(), 2) << "\n";
    for (const krofx::PositionView position : statement.Positions()) {
      std::cout << position.Security() << " " << krofx::ToText(position.Value(), 2) << "\n";
    }
  }
  for (const auto& tx : krofx::Each<KRBankStatementTx>(reading)) {
    const auto* const statement = tx.Ancestor<KRGenericStatementRs>();
    if (statement == nullptr || tx->HasCheckNum() == 0) continue;
    std::cout << "check " << krofx::ToText(tx->GetCheckNum()) << " in " << tx.Path() << "\n";
  }
  int errors = 0;
  krofx::ForEach<KRStatus>(reading, [&errors](const KRStatus& status) {
    if (status.GetSeverity() == KRStatusSeverity_ERROR) ++errors;
  });
  std::cout << errors << " errors\n";
}
