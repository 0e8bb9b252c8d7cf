// Amounts in cents, days of the calendar, keywords and texts.
#include <krofx/host.h>

#include <iostream>

int main() {
  using namespace std::chrono_literals;
  const auto tx = krofx::New<KRBankStatementTx>(1);
  if (tx == nullptr) return 1;
  tx->SetTxAmount(krofx::FromMinor(-6240, 2));
  tx->SetTxType(KRBankTxType_DEBIT);
  krofx::Set(*tx, &KRBankStatementTx::SetDateTimePosted, 2026y / 1 / 31);
  krofx::Set(*tx, &KRBankStatementTx::SetName, std::string_view("Grocer and more").substr(0, 6));

  std::cout << krofx::ToText(tx->GetTxAmount(), 2) << " " << krofx::ToText(tx->GetTxType()) << " "
            << krofx::ToText(tx->GetDateTimePosted()) << " " << krofx::ToText(tx->GetName())
            << "\n";
  // Exact, or nothing: half a cent is no number of cents.
  if (const auto cents = krofx::ToMinor(tx->GetTxAmount(), 2)) std::cout << *cents << " cents\n";
  if (!krofx::ToMinor(*krofx::ToAmount("0.005"), 2)) std::cout << "no number of cents\n";
  if (const auto day = krofx::ToDay(tx->GetDateTimePosted())) {
    std::cout << "day " << static_cast<unsigned>(day->day()) << "\n";
  }
  // A condition asks for the value: the amount itself is a text too, which is always there.
  if (tx->GetTxAmount().IsNegative() != 0) std::cout << "money goes out\n";
}
