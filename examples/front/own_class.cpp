// Makes every transaction of a statement a Booking, and sums them up: own_class FILE
#include <krofx/host.h>

#include <cstdio>

struct Booking : KRBankStatementTx {
  bool GoesOut() const { return GetTxAmount().IsNegative() != 0; }
};

int main(int count, char** arguments) {
  if (count != 2) return 64;
  const krofx::Subclass<KRBankStatementTx, Booking> mine;
  const krofx::Reading reading = krofx::ReadFile(arguments[1]);
  int bookings = 0;
  KRPrecisionInteger in, out;
  krofx::ForEach<Booking>(reading, [&](const Booking& booking) {
    ++bookings;
    (booking.GoesOut() ? out : in) += booking.GetTxAmount();
  });
  std::printf("%d bookings, in %s, out %s\n", bookings, static_cast<const char*>(in),
              static_cast<const char*>(out));
}
