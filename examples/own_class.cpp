// Replaces a class of the library by one of its own: every transaction of a parsed
// statement is a Booking, and ProcessResponse reaches each of them.
//
//   own_class FILE

#include <krofx/krofx.h>

#include <cstdio>

#include "read_file.h"

namespace {

// What a host keeps of the transactions.
struct Totals {
  int bookings = 0;
  KRPrecisionInteger in;
  KRPrecisionInteger out;
};
Totals totals;

// A transaction that books itself.
class Booking : public KRBankStatementTx {
 public:
  u16 ProcessResponse() override {
    ++totals.bookings;
    const KRPrecisionInteger zero;
    (GetTxAmount() < zero ? totals.out : totals.in) += GetTxAmount();
    // Goes on to the children of the transaction, its payee among them.
    return KRBankStatementTx::ProcessResponse();
  }
};

// A factory that makes bookings, and everything else as the library does.
class BookingFactory : public KRDataObjFactory {
 public:
  KRBankStatementTx* NewBankStatementTx(u16 version) override {
    Booking* booking = new Booking;
    if (booking != nullptr) booking->SetMsgSetVersion(version != 0 ? version : GetVersion());
    return booking;
  }
};

}  // namespace

int main(int count, char** arguments) {
  if (count != 2) {
    std::fprintf(stderr, "usage: own_class FILE\n");
    return 64;
  }
  KRBuffer buffer(0, 0);
  if (!ReadFile(arguments[1], buffer)) return 1;

  BookingFactory factory;
  KRDataObj::SetFactory(&factory);
  {
    KRFileRs file;
    KRSimpleParser parser;
    const KRParseStatus status = parser.Parse(&buffer, &file, 0);
    if (status == KRParseStatus_Accepted || status == KRParseStatus_Warnings) {
      file.ProcessResponse();
    }
  }
  // The program owns the factory, so the library must forget it before it is destroyed.
  KRDataObj::SetFactory(nullptr);

  std::printf("%d bookings, in %s, out %s\n", totals.bookings, static_cast<const char*>(totals.in),
              static_cast<const char*>(totals.out));
  return 0;
}
