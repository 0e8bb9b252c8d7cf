// Payees and the exchanges of the payee list: their tables, and which of payee, id and account go
// together.

#include "krofx/messages/billpay/payees.h"

#include <gtest/gtest.h>

#include "krofx/messages/banking/accounts.h"
#include "krofx/messages/banking/payee.h"
#include "support/aggregate_table.h"
#include "support/ofx_text.h"

namespace krofx::testing {
namespace {

TEST(PayeeTables, Payee) {
  ExpectTable<KRPayee>("PAYEE", R"(
    NAME        text32  required
    ADDR1       text32  required
    ADDR2       text32
    ADDR3       text32
    CITY        text32  required
    STATE       text5   required
    POSTALCODE  text11  required
    COUNTRY     text3
    PHONE       text32  required
  )");
}

TEST(PayeeTables, PayeeOfTheSecondVersion) {
  ExpectTable<KRPayee2>("PAYEE2", R"(
    NAME        text32  required(V2+)
    ADDR1       text32
    ADDR2       text32
    ADDR3       text32
    CITY        text32
    STATE       text5
    POSTALCODE  text11
    COUNTRY     text3
    PHONE       text32
  )");
}

TEST(PayeeTables, ExtendedPayee) {
  ExpectTable<KRExtendedPayee>("EXTDPAYEE", R"(
    PAYEEID        text12     V1
    PAYEEID2       text36     V2+
    IDSCOPE        word=USER
    NAME           text32
    DAYSTOPAY      s16        required
    NORV.DAYSWITH  s16
  )");
}

TEST(PayeeTables, WhatTheExchangesShare) {
  ExpectTable<KRPayeeBase>("", R"(
    PAYEE       child             V1
    PAYEE2      child             V2+
    BANKACCTTO  child
    PAYACCT     repeated=one,two
  )");
}

TEST(PayeeTables, Request) {
  ExpectTable<KRPayeeRq>("PAYEERQ", R"(
    PAYEEID     text12               V1
    PAYEEID2    text36               V2+
    PAYEE       child                V1
    PAYEE2      child                V2+
    BANKACCTTO  child
    PAYACCT     repeated=one,two,one
  )");
}

TEST(PayeeTables, ModificationRequest) {
  ExpectTable<KRPayeeModifyRq>("PAYEEMODRQ", R"(
    PAYEELSTID   text12            required  V1
    PAYEELSTID2  text36            required  V2+
    PAYEE        child             V1
    PAYEE2       child             V2+
    BANKACCTTO   child
    PAYACCT      repeated=one,two
  )");
}

TEST(PayeeTables, Response) {
  ExpectTable<KRPayeeRs>("PAYEERS", R"(
    PAYEELSTID   text12            required  V1
    PAYEELSTID2  text36            required  V2+
    PAYEE        child             V1
    PAYEE2       child             V2+
    BANKACCTTO   child
    EXTDPAYEE    child
    PAYACCT      repeated=one,two
  )");
}

TEST(PayeeTables, ModificationResponse) {
  ExpectTable<KRPayeeModifyRs>("PAYEEMODRS", R"(
    PAYEELSTID   text12            required  V1
    PAYEELSTID2  text36            required  V2+
    PAYEE        child             V1
    PAYEE2       child             V2+
    BANKACCTTO   child
    PAYACCT      repeated=one,two
    EXTDPAYEE    child
  )");
}

TEST(PayeeTables, Deletion) {
  constexpr char kDeletion[] = R"(
    PAYEELSTID   text12  required  V1
    PAYEELSTID2  text36  required  V2+
  )";
  ExpectTable<KRPayeeDeleteBase>("", kDeletion);
  ExpectTable<KRPayeeDeleteRq>("PAYEEDELRQ", kDeletion);
  ExpectTable<KRPayeeDeleteRs>("PAYEEDELRS", kDeletion);
}

/// Whether an aggregate with such members is complete.
template <class T>
u16 IsComplete(const std::string& members, u16 version) {
  const Parsed<T> parsed(members, version);
  EXPECT_EQ(parsed.Status(), KRParseStatus_Accepted);
  return parsed->AllRequiredPresent();
}

/// The payee, its id and the list id of a version, as short as possible.
struct Pieces {
  u16 version;
  std::string id;
  std::string listId;
  std::string payee;
  std::string account = Aggregate("BANKACCTTO", "");
};

const Pieces kPieces[] = {{1, "<PAYEEID>7", "<PAYEELSTID>3", Aggregate("PAYEE", "")},
                          {2, "<PAYEEID2>7", "<PAYEELSTID2>3", Aggregate("PAYEE2", "")}};

TEST(KRPayeeRq, NeedsEitherAnIdAloneOrAPayee) {
  for (const Pieces& p : kPieces) {
    SCOPED_TRACE(p.version);
    EXPECT_EQ(IsComplete<KRPayeeRq>("", p.version), 0);
    EXPECT_EQ(IsComplete<KRPayeeRq>(p.id, p.version), 1);
    EXPECT_EQ(IsComplete<KRPayeeRq>(p.id + p.payee, p.version), 0);
    EXPECT_EQ(IsComplete<KRPayeeRq>(p.id + p.account, p.version), 0);
    EXPECT_EQ(IsComplete<KRPayeeRq>(p.id + p.payee + p.account, p.version), 0);
    EXPECT_EQ(IsComplete<KRPayeeRq>(p.payee, p.version), 1);
    EXPECT_EQ(IsComplete<KRPayeeRq>(p.account, p.version), 0);
    EXPECT_EQ(IsComplete<KRPayeeRq>(p.payee + p.account, p.version), 1);
  }
}

TEST(KRPayeeRs, IsCompleteWithNeitherPayeeNorAccount) {
  for (const Pieces& p : kPieces) EXPECT_EQ(IsComplete<KRPayeeRs>(p.listId, p.version), 1);
}

TEST(KRPayeeRs, NeedsAPayeeBesideAnAccount) {
  for (const Pieces& p : kPieces) {
    SCOPED_TRACE(p.version);
    EXPECT_EQ(IsComplete<KRPayeeRs>(p.account, p.version), 0) << "the list id is missing";
    EXPECT_EQ(IsComplete<KRPayeeRs>(p.listId + p.payee, p.version), 1);
    EXPECT_EQ(IsComplete<KRPayeeRs>(p.listId + p.account, p.version), 0);
    EXPECT_EQ(IsComplete<KRPayeeRs>(p.listId + p.payee + p.account, p.version), 1);
  }
}

TEST(KRPayeeModifyRs, NeedsAPayeeBesideAnAccount) {
  for (const Pieces& p : kPieces) {
    SCOPED_TRACE(p.version);
    EXPECT_EQ(IsComplete<KRPayeeModifyRs>(p.listId, p.version), 1);
    EXPECT_EQ(IsComplete<KRPayeeModifyRs>(p.listId + p.account, p.version), 0);
    EXPECT_EQ(IsComplete<KRPayeeModifyRs>(p.listId + p.payee + p.account, p.version), 1);
  }
}

// An object of both versions can have both payees: only there do the two rules differ.
TEST(PayeeResponses, DifferOverTwoPayeesBesideAnAccount) {
  const std::string both = "<PAYEELSTID>3<PAYEELSTID2>3" + Aggregate("PAYEE", "") +
                           Aggregate("PAYEE2", "") + Aggregate("BANKACCTTO", "");
  const Parsed<KRPayeeRs> response(both, 3);
  EXPECT_EQ(response->AllRequiredPresent(), 0);
  const Parsed<KRPayeeModifyRs> modification(both, 3);
  EXPECT_EQ(modification->AllRequiredPresent(), 1);
}

TEST(KRPayeeModifyRq, HasNoRuleBeyondItsTable) {
  for (const Pieces& p : kPieces) {
    EXPECT_EQ(IsComplete<KRPayeeModifyRq>(p.listId, p.version), 1);
    EXPECT_EQ(IsComplete<KRPayeeModifyRq>(p.listId + p.account, p.version), 1);
    EXPECT_EQ(IsComplete<KRPayeeModifyRq>(p.account, p.version), 0);
  }
}

TEST(KRPayee, NeedsItsWholeAddressAndTheSecondVersionOnlyAName) {
  EXPECT_EQ(IsComplete<KRPayee2>("<NAME>Ada", 2), 1);
  EXPECT_EQ(IsComplete<KRPayee>("<NAME>Ada", 2), 0);
  EXPECT_EQ(IsComplete<KRPayee>("<NAME>Ada", 1), 0);
  EXPECT_EQ(IsComplete<KRPayee>("<NAME>Ada<ADDR1>1 Main St<CITY>Millbrook<STATE>NY"
                                "<POSTALCODE>12545<PHONE>8455550142",
                                1),
            1);
}

TEST(KRPayee2, NeedsNothingInAnObjectOfTheFirstVersion) {
  EXPECT_EQ(Make<KRPayee2>(1)->AllRequiredPresent(), 1);
  EXPECT_EQ(Make<KRPayee2>(2)->AllRequiredPresent(), 0);
}

TEST(KRPayee2, IsAPayee) {
  auto payee = Make<KRPayee2>(2);
  KRPayee& base = *payee;
  EXPECT_EQ(base.SetName(KRString("Ada")), 1);
  EXPECT_EQ(Str(payee->GetName()), "Ada");
  EXPECT_EQ(payee->GetType(), KRTag_PAYEE2);
}

TEST(KRPayeeBase, HoldsEitherPayeeInOnePlace) {
  const Parsed<KRPayeeRq> first(Aggregate("PAYEE", "<NAME>Ada"), 1);
  ASSERT_NE(first->GetPayee(), nullptr);
  EXPECT_EQ(first->GetPayee()->GetType(), KRTag_PAYEE);
  const Parsed<KRPayeeRq> second(Aggregate("PAYEE2", "<NAME>Ada"), 2);
  ASSERT_NE(second->GetPayee(), nullptr);
  EXPECT_EQ(second->GetPayee()->GetType(), KRTag_PAYEE2);
  EXPECT_NE(dynamic_cast<KRPayee2*>(second->GetPayee()), nullptr);
}

TEST(KRPayeeBase, LastPayeeWins) {
  const Parsed<KRPayeeRq> parsed(Aggregate("PAYEE", "<NAME>Ada") + Aggregate("PAYEE", "<NAME>Bo"));
  EXPECT_EQ(parsed.Warnings(), Lines({"EXTRAAGG " + TagNumber(KRTag_PAYEE)}));
  EXPECT_EQ(TextOf(*parsed), InLines("<PAYEE><NAME>Bo</PAYEE>"));
}

TEST(KRPayeeBase, HoldsTheAccountsWithThePayee) {
  auto request = Make<KRPayeeRq>();
  EXPECT_EQ(request->AppendPayAcct(KRString("one")), 1);
  EXPECT_EQ(request->AppendPayAcct(KRString("two")), 1);
  EXPECT_EQ(request->SetPayAcct(1, KRString("three")), 1);
  EXPECT_EQ(request->GetNumPayAcct(), 2);
  ASSERT_NE(request->GetPayAcct(1), nullptr);
  EXPECT_EQ(Str(*request->GetPayAcct(1)), "three");
  EXPECT_EQ(request->GetPayAcct(2), nullptr);
  EXPECT_EQ(TextOf(*request), "<PAYACCT>one\n<PAYACCT>three\n");
}

TEST(KRPayeeBase, AccountsAreLongAtThirtyThreeCharacters) {
  const Parsed<KRPayeeRq> fits("<PAYACCT>" + Letters(32));
  EXPECT_EQ(fits.Status(), KRParseStatus_Accepted);
  const Parsed<KRPayeeRq> tooLong("<PAYACCT>" + Letters(33));
  EXPECT_EQ(Build(*tooLong).status, KRBuildStatus_TooLong);
  ASSERT_EQ(tooLong->GetNumPayAcct(), 1);
  EXPECT_EQ(Str(*tooLong->GetPayAcct(0)), Letters(33));
}

TEST(KRExtendedPayee, CountsDaysWithASign) {
  const Parsed<KRExtendedPayee> parsed("<IDSCOPE>GLOBAL<DAYSTOPAY>-3<NORV.DAYSWITH>2");
  ASSERT_EQ(parsed.Status(), KRParseStatus_Accepted);
  EXPECT_EQ(parsed->AllRequiredPresent(), 1);
  EXPECT_EQ(parsed->GetIdScope(), KRPayeeIDScope_GLOBAL);
  EXPECT_EQ(parsed->GetDaysToPay(), -3);
  EXPECT_EQ(parsed->GetNorvDaysWith(), 2);
}

}  // namespace
}  // namespace krofx::testing
