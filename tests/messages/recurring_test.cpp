// Recurring transfers: the tables, and the child of each version.

#include "krofx/messages/banking/recurring.h"

#include <gtest/gtest.h>

#include "krofx/messages/banking/transfers.h"

#include "support/aggregate_table.h"
#include "support/ofx_text.h"

namespace krofx::testing {
namespace {

constexpr char kRecInstruction[] = R"(
    NINSTS  u16
    FREQ    word=MONTHLY  required
)";

constexpr char kRecIntraRq[] = R"(
    RECURRINST  child  required
    INTRARQ     child  required  V1
    XFERINFO    child  required  V2+
)";

constexpr char kRecInterRq[] = R"(
    RECURRINST  child  required
    INTERRQ     child  required  V1
    XFERINFO    child  required  V2+
)";

constexpr char kRecIntraModifyRq[] = R"(
    RECSRVRTID   text36   required  V1
    RECSRVRTID2  text36   required  V2+
    RECURRINST   child    required
    INTRARQ      child    required  V1
    XFERINFO     child    required  V2+
    MODPENDING   boolean  required
)";

constexpr char kRecInterModifyRq[] = R"(
    RECSRVRTID   text36   required  V1
    RECSRVRTID2  text36   required  V2+
    RECURRINST   child    required
    INTERRQ      child
    XFERINFO     child    required  V2+
    MODPENDING   boolean  required
)";

constexpr char kRecTransferCancel[] = R"(
    RECSRVRTID   text36   required  V1
    RECSRVRTID2  text36   required  V2+
    CANPENDING   boolean  required
)";

constexpr char kRecIntraRs[] = R"(
    RECSRVRTID   text36  required  V1
    RECSRVRTID2  text36  required  V2+
    RECURRINST   child   required
    INTRARS      child   required  V1
    XFERINFO     child   required  V2+
)";

constexpr char kRecInterRs[] = R"(
    RECSRVRTID   text36  required  V1
    RECSRVRTID2  text36  required  V2+
    RECURRINST   child   required
    INTERRS      child   required  V1
    XFERINFO     child   required  V2+
)";

constexpr char kRecIntraModifyRs[] = R"(
    RECSRVRTID   text36   required  V1
    RECSRVRTID2  text36   required  V2+
    RECURRINST   child    required
    INTRARS      child
    XFERINFO     child    required  V2+
    MODPENDING   boolean  required
)";

constexpr char kRecInterModifyRs[] = R"(
    RECSRVRTID   text36   required  V1
    RECSRVRTID2  text36   required  V2+
    RECURRINST   child    required
    INTERRS      child
    XFERINFO     child    required  V2+
    MODPENDING   boolean  required
)";

TEST(RecurringTables, Instruction) { ExpectTable<KRRecInstruction>("RECURRINST", kRecInstruction); }

TEST(RecurringTables, Requests) {
  ExpectTable<KRRecIntraRq>("RECINTRARQ", kRecIntraRq);
  ExpectTable<KRRecInterRq>("RECINTERRQ", kRecInterRq);
  ExpectTable<KRRecIntraModifyRq>("RECINTRAMODRQ", kRecIntraModifyRq);
  ExpectTable<KRRecInterModifyRq>("RECINTERMODRQ", kRecInterModifyRq);
  ExpectTable<KRRecTransferCancel>("", kRecTransferCancel);
  ExpectTable<KRRecIntraCancelRq>("RECINTRACANRQ", kRecTransferCancel);
  ExpectTable<KRRecInterCancelRq>("RECINTERCANRQ", kRecTransferCancel);
}

TEST(RecurringTables, Responses) {
  ExpectTable<KRRecIntraRs>("RECINTRARS", kRecIntraRs);
  ExpectTable<KRRecInterRs>("RECINTERRS", kRecInterRs);
  ExpectTable<KRRecIntraModifyRs>("RECINTRAMODRS", kRecIntraModifyRs);
  ExpectTable<KRRecInterModifyRs>("RECINTERMODRS", kRecInterModifyRs);
  ExpectTable<KRRecIntraCancelRs>("RECINTRACANRS", kRecTransferCancel);
  ExpectTable<KRRecInterCancelRs>("RECINTERCANRS", kRecTransferCancel);
}

TEST(KRRecIntraRq, TakesOnlyTheChildOfItsVersion) {
  const Parsed<KRRecIntraRq> first(Aggregate("XFERINFO", "<TRNAMT>1"), 1);
  EXPECT_EQ(first->GetXferInfo(), nullptr);
  EXPECT_NE(first.Warnings(), Lines());
  const Parsed<KRRecIntraRq> second(Aggregate("INTRARQ", Aggregate("XFERINFO", "<TRNAMT>1")), 2);
  EXPECT_EQ(second->GetTransferRq(), nullptr);
  EXPECT_NE(second.Warnings(), Lines());
}

TEST(KRRecIntraRq, HoldsAWholeTransferInTheFirstVersion) {
  const std::string text = Aggregate("RECURRINST", "<NINSTS>12<FREQ>MONTHLY") +
                           Aggregate("INTRARQ", Aggregate("XFERINFO", "<TRNAMT>1"));
  const Parsed<KRRecIntraRq> model(text, 1);
  EXPECT_EQ(model.Status(), KRParseStatus_Accepted);
  EXPECT_EQ(model->AllRequiredPresent(), 1);
  EXPECT_NE(model->GetIntraRq(), nullptr);
  EXPECT_EQ(model->GetTransferRq(), model->GetIntraRq());
  EXPECT_EQ(TextOf(*model), InLines(text));
}

TEST(KRRecIntraRq, WritesOnlyTheChildOfItsVersion) {
  auto model = Make<KRRecIntraRq>(1);
  auto* request = new KRIntraRq;
  EXPECT_EQ(model->SetIntraRq(request), 1);
  EXPECT_EQ(model->SetXferInfo(new KRXferInfo), 0);
  EXPECT_EQ(TextOf(*model), InLines(Aggregate("INTRARQ", "")));
  model->SetMsgSetVersion(2);
  EXPECT_EQ(TextOf(*model), "");
}

TEST(KRRecInstruction, WritesTheNumberFirst) {
  const Parsed<KRRecInstruction> instruction("<FREQ>WEEKLY<NINSTS>3");
  EXPECT_EQ(TextOf(*instruction), "<NINSTS>3\n<FREQ>WEEKLY\n");
}

TEST(RecurringModels, AcceptTheWrappedTransferInBothVersionsWhereItIsOptional) {
  const std::string request = Aggregate("INTERRQ", "");
  EXPECT_EQ(Parsed<KRRecInterModifyRq>(request, 2).Status(), KRParseStatus_Accepted);
  EXPECT_EQ(Parsed<KRRecInterModifyRq>(request, 1)->IsValidTag(KRTag_INTERRQ), 1);
  EXPECT_EQ(Parsed<KRRecIntraModifyRq>(Aggregate("INTRARQ", ""), 2)->GetTransferRq(), nullptr);
}

}  // namespace
}  // namespace krofx::testing
