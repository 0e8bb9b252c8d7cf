// A class that exists only as ten lines of schema: it parses, builds, copies, knows what is
// required, and comes from the factory.

#include <gtest/gtest.h>

#include <memory>

#include "krofx/messages/banking/vault.h"
#include "krofx/messages/signon/signon.h"
#include "krofx/model/factory.h"
#include "support/ofx_text.h"

namespace {

using namespace krofx::testing;

constexpr const char* kText =
    "<ACCTID>B-17<BALAMT>12.50<DTOPEN>20260101000000<CURRENCY><CURRATE>1.0<CURSYM>USD</CURRENCY>";

TEST(VaultBox, ReadsAndWritesItsRows) {
  const Parsed<KRVaultBox> box(kText);
  EXPECT_EQ(box.Status(), KRParseStatus_Accepted);
  EXPECT_EQ(box.Warnings(), Lines());
  EXPECT_EQ(Str(box->GetBoxNumber()), "B-17");
  EXPECT_EQ(box->GetRent(), KRPrecisionInteger("12.50"));
  ASSERT_NE(box->GetCurrency(), nullptr);
  EXPECT_EQ(box->GetCurrency()->GetType(), KRTag_CURRENCY);
  const Parsed<KRVaultBox> again(TextOf(*box));
  EXPECT_EQ(TextOf(*again), TextOf(*box));
  EXPECT_EQ(box->GetType(), KRTag_ACCTINFO);
}

TEST(VaultBox, KnowsWhatIsRequired) {
  auto box = Make<KRVaultBox>(2);
  EXPECT_EQ(box->AllRequiredPresent(), 0);
  EXPECT_EQ(box->GetFirstMissingRequiredTag(KRTag_None), KRTag_ACCTID);
  EXPECT_EQ(box->SetBoxNumber(KRString("B-17")), 1);
  EXPECT_EQ(box->GetFirstMissingRequiredTag(KRTag_None), KRTag_BALAMT);
  EXPECT_EQ(box->SetRent(KRString("12.50")), 1);
  EXPECT_EQ(box->AllRequiredPresent(), 1);
}

TEST(VaultBox, KeepsItsRule) {
  auto box = Make<KRVaultBox>(2);
  box->SetBoxNumber(KRString("B-17"));
  box->SetRent(KRString("12.50"));
  EXPECT_EQ(box->SetDtOpen("20260101"), 1);
  EXPECT_EQ(box->AllRequiredPresent(), 1);
  EXPECT_EQ(box->SetMemo2(KRString("spare key")), 1);
  EXPECT_EQ(box->AllRequiredPresent(), 0);
}

TEST(VaultBox, KeepsItsVersions) {
  auto box = Make<KRVaultBox>(1);
  EXPECT_EQ(box->SetMemo2(KRString("spare key")), 0);
  EXPECT_EQ(box->IsValidTag(KRTag_MEMO2), 0);
}

TEST(VaultBox, SaysWhichRowsArePresent) {
  const Parsed<KRVaultBox> box(kText);
  EXPECT_EQ(box->HasBoxNumber(), 1);
  EXPECT_EQ(box->HasDtOpen(), 1);
  EXPECT_EQ(box->HasMemo2(), 0);
  EXPECT_EQ(box->HasCurrency(), 1);
  EXPECT_EQ(box->HasKeyHolder(), 0);
  EXPECT_EQ(box->AppendKeyHolder(KRString("A. Jones")), 1);
  EXPECT_EQ(box->HasKeyHolder(), 1);
  box->ClearBoxNumber();
  EXPECT_EQ(box->HasBoxNumber(), 0);
  EXPECT_EQ(Str(box->GetBoxNumber()), "B-17");
}

TEST(VaultBox, CopiesDeeply) {
  const Parsed<KRVaultBox> box(kText);
  KRVaultBox copy;
  EXPECT_EQ(copy.DeepCopyFrom(box.Get()), 1);
  EXPECT_EQ(TextOf(copy), TextOf(*box));
  EXPECT_NE(copy.GetCurrency(), box->GetCurrency());
}

TEST(VaultBox, ComesFromTheFactory) {
  KRDataObjFactory factory(2);
  const std::unique_ptr<KRVaultBox> box(factory.NewVaultBox(0));
  ASSERT_NE(box, nullptr);
  EXPECT_EQ(box->GetMsgSetVersion(), 2);
}

}  // namespace
