// Writing directly into the memory of a buffer gives the same text as the builder's operations.

#include <gtest/gtest.h>

#include <string>

#include "krofx/krofx.h"
#include "support/ofx_text.h"

namespace {

using krofx::testing::Built;
using krofx::testing::ContentOf;
using krofx::testing::Make;

// A host's class, so that every operation is called.
class HostBuilder : public KRBuilder {};

template <class Builder>
Built BuiltBy(KRDataObj& object, u32 initialSize, u32 growSize, KRBuildStringOpt option) {
  KRBuffer buffer(initialSize, growSize);
  Builder builder;
  const KRBuildStatus status = builder.Build(&buffer, &object, option, 0);
  return {status, ContentOf(buffer), builder.GetFailingObject()};
}

void ExpectSame(KRDataObj& object) {
  for (const KRBuildStringOpt option : {KRBuildStringOpt_Strict, KRBuildStringOpt_Lenient}) {
    const Built expected = BuiltBy<HostBuilder>(object, 0, 0, option);
    for (const u32 size : {1u, 40u, 100u, 10000u}) {
      const Built built = BuiltBy<KRBuilder>(object, size, size, option);
      EXPECT_EQ(built, expected);
      EXPECT_EQ(built.failingObject, expected.failingObject);
    }
  }
}

std::unique_ptr<KRBankTransactionList> OneTransaction() {
  auto list = Make<KRBankTransactionList>();
  list->SetDtStart("20250101");
  list->SetDtEnd("20251231");
  auto* transaction = new KRBankStatementTx;
  transaction->SetMsgSetVersion(1);
  list->AppendStatementTx(transaction);
  return list;
}

TEST(PlainWriting, WritesValuesOfEveryKind) {
  auto list = OneTransaction();
  KRBankStatementTx& transaction = *list->GetStatementTx(0);
  transaction.SetTxType(KRBankTxType_DEBIT);
  transaction.SetDateTimePosted("20250203120000.500[-5:EST]");
  transaction.SetDateTimeUser("20250203");
  transaction.SetDateTimeAvailable("20250203120000");
  transaction.SetTxAmount("-12.50");
  transaction.SetFITId("F1");
  transaction.SetName(KRString("Bread & <Butter>"));
  transaction.SetMemo(KRString("sixteen bytes ab"));
  auto* currency = new KRCurrency;
  currency->SetMsgSetVersion(1);
  currency->SetCurrencyRate(KRString("1.1"));
  transaction.SetCurrency(currency);
  ExpectSame(*list);
}

TEST(PlainWriting, StopsWhereTheOperationsStop) {
  auto list = OneTransaction();
  KRBankStatementTx& transaction = *list->GetStatementTx(0);
  transaction.SetTxType(static_cast<KRBankTxType>(9999));
  ExpectSame(*list);
  transaction.ClearTxType();
  transaction.SetCheckNum(KRString("a number that is too long"));
  ExpectSame(*list);
  transaction.ClearCheckNum();
  transaction.SetName(KRString(" \n"));
  ExpectSame(*list);
  transaction.ClearName();
  transaction.SetDateTimePosted(KRDateTime(2025, 13, 40, 0, 0, 0, 0, 0, 0));
  ExpectSame(*list);
  transaction.SetDateTimePosted(KRDateTime(2025, 1, 1, 1, 2, 3, 4, 100, 0));
  ExpectSame(*list);
  transaction.ClearDateTimePosted();
  transaction.SetTxAmount(KRPrecisionInteger(5, 40));
  ExpectSame(*list);
}

TEST(PlainWriting, WritesASectionTwiceAsTheOperationsDo) {
  auto list = OneTransaction();
  KRString text("plain");
  text.ToCDATA();
  list->GetStatementTx(0)->SetMemo(text);
  ExpectSame(*list);
}

// A host's class with one row more to write than its table has.
class HostTransaction : public KRBankStatementTx {
 public:
  KRBuildStatus Build(KRBuilder* builder) const override {
    const KRBuildStatus status = KRBankStatementTx::Build(builder);
    return status == KRBuildStatus_Done ? builder->AddTagKRULong(KRTag_SIC, 7) : status;
  }
};

TEST(PlainWriting, WritesEachObjectOfAListByItsOwnRows) {
  auto list = Make<KRBankTransactionList>();
  list->SetDtStart("20250101");
  list->SetDtEnd("20251231");
  for (int i = 0; i < 24; ++i) {
    auto* transaction = i % 5 == 3 ? new HostTransaction : new KRBankStatementTx;
    // Some rows are valid in one version only, and a version of none writes nothing.
    transaction->SetMsgSetVersion(static_cast<u16>(i % 4 == 3 ? 0 : i % 4 + 1));
    list->AppendStatementTx(transaction);
    if (i % 2 == 0) transaction->SetTxType(KRBankTxType_CREDIT);
    if (i % 3 == 0) transaction->SetMemo(KRString(i % 6 == 0 ? "a & b" : "a memo of the list"));
    if (i % 4 != 1) transaction->SetTxAmount("-0.05");
    if (i % 7 == 0) transaction->SetDateTimePosted("19991231");
  }
  ExpectSame(*list);
}

}  // namespace
