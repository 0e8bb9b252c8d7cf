// Makes every transaction that is read one of the host's own class.
#include <krofx/host.h>

#include <iostream>

class Booking : public KRBankStatementTx {
 public:
  bool IsLarge() const { return krofx::ToMinor(GetTxAmount(), 2).value_or(0) < -100000; }
  std::string_view category = "unsorted";
};

int main(int count, char** arguments) {
  if (count != 2) return 64;
  const krofx::Subclass<KRBankStatementTx, Booking> mine;  // In force to the end of the scope.
  krofx::Reading reading = krofx::ReadFile(arguments[1]);
  // Here all elements of all transactions are in.
  for (const auto& booking : krofx::Each<Booking>(reading)) {
    if (booking->GetTxType() == KRBankTxType_CHECK) booking->category = "checks";
  }
  for (const auto& booking : krofx::Each<Booking>(reading)) {
    std::cout << krofx::ToText(booking->GetTxAmount(), 2) << " " << booking->category
              << (booking->IsLarge() ? " large" : "") << "\n";
  }
}
