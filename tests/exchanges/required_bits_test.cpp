// The search for missing tags by bits gives the same result as each object's own operations.

#include "krofx/model/internal/required_bits.h"

#include <gtest/gtest.h>

#include "krofx/krofx.h"

namespace {

using krofx::internal::AggregateTable;
using krofx::internal::ObjectAccess;
using krofx::internal::RequiredBits;

// Compares both ways for an object with every set of two valid tags, and with all except two.
void ExpectAgreement(KRDataObj& object) {
  const AggregateTable* const table = ObjectAccess::TableOf(object);
  ASSERT_NE(table, nullptr);
  // The first object of a class and version is asked itself, and only later ones are compared.
  RequiredBits bits;
  for (const u16 version : {u16{0}, u16{1}, u16{2}}) {
    object.SetMsgSetVersion(version);
    for (const bool others : {false, true}) {
      for (u16 first = 0; first < table->valid.count; ++first) {
        for (u16 second = first; second < table->valid.count; ++second) {
          for (u16 row = 0; row < table->valid.count; ++row) {
            const KRTagID tag = table->valid.table[row].tag;
            if (object.IsValidTag(tag) == 0) continue;
            if ((row == first || row == second) != others) {
              object.SetTag(tag);
            } else {
              object.ClearTag(tag);
            }
          }
          EXPECT_EQ(bits.AllPresentIn(object, *table), object.AllRequiredPresent() != 0)
              << table->className << " version " << version << " rows " << first << ", " << second;
        }
      }
    }
  }
}

TEST(RequiredBits, AgreeWithTheObjects) {
  KRBankStatementTx transaction;
  ExpectAgreement(transaction);
  KRBankTransactionList list;
  ExpectAgreement(list);
  KRClosing closing;
  ExpectAgreement(closing);
  KRPaymentInfo payment;
  ExpectAgreement(payment);
  KRInvBuy purchase;
  ExpectAgreement(purchase);
  KRXferInfo transfer;
  ExpectAgreement(transfer);
  KREnrollRs enrolled;  // needs nothing
  ExpectAgreement(enrolled);
}

}  // namespace
