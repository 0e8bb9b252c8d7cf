// The pattern of every aggregate: setters, elements, children, writing by presence.

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "krofx/messages/banking/statements.h"
#include "krofx/messages/signon/signon.h"
#include "krofx/model/factory.h"
#include "support/ofx_text.h"

namespace {

using namespace krofx::testing;

KRTagDictionaryEntry Entry(KRTagID tag) {
  return {tag, KRTagDictionary::TheKRTagDictionary()->GetTagString(tag)};
}

TEST(Aggregate, ChangesNothingForAValueThatIsNone) {
  auto list = Make<KRBankTransactionList>();
  EXPECT_EQ(list->SetDtStart("20260101"), 1);
  EXPECT_EQ(list->SetDtStart("yesterday"), 0);
  EXPECT_EQ(list->ValidateTag(KRTag_DTSTART), 1);
  EXPECT_EQ(list->SetDtEnd("yesterday"), 0);
  EXPECT_EQ(list->ValidateTag(KRTag_DTEND), 0);
}

TEST(Aggregate, TakesNoDateThatDoesNotExist) {
  auto transaction = Make<KRBankStatementTx>();
  EXPECT_EQ(transaction->SetDateTimePosted(KRDateTime(2026, 1, 31, 12, 0, 0, 0, 0, 0)), 1);
  EXPECT_EQ(transaction->SetDateTimePosted(KRDateTime(2026, 2, 31, 12, 0, 0, 0, 0, 0)), 0);
  EXPECT_EQ(transaction->SetDateTimePosted(KRDateTime(2026, 1, 31, 24, 0, 0, 0, 0, 0)), 0);
  EXPECT_EQ(TextOf(*transaction), "<DTPOSTED>20260131120000\n");
  EXPECT_EQ(transaction->SetDateTimeUser(KRDateTime()), 0);
  EXPECT_EQ(transaction->ValidateTag(KRTag_DTUSER), 0);
}

TEST(Aggregate, KeepsAnOverLongTextAndSaysSo) {
  auto transaction = Make<KRBankStatementTx>();
  TakeWarnings();
  const std::string text(300, 'x');
  EXPECT_EQ(transaction->SetMemo(KRString(text.c_str())), 1);
  EXPECT_EQ(TakeWarnings(), Lines{"TOOLONG " + TagNumber(KRTag_MEMO) + " \"" + text + "\""});
  EXPECT_EQ(Str(transaction->GetMemo()), text);
  EXPECT_EQ(transaction->ValidateTag(KRTag_MEMO), 1);
}

TEST(Aggregate, AnswersThreeForAnEmptyTextAndNotesNothing) {
  auto transaction = Make<KRBankStatementTx>();
  EXPECT_EQ(transaction->SetMemo(KRString()), 3);
  EXPECT_EQ(transaction->ValidateTag(KRTag_MEMO), 0);
  EXPECT_EQ(transaction->SetMemo2(KRString("not in V1")), 0);
}

TEST(Aggregate, ReadsElementsAndRefusesOthers) {
  auto transaction = Make<KRBankStatementTx>();
  TakeWarnings();
  const KRTagDictionaryEntry amount = Entry(KRTag_TRNAMT);
  EXPECT_EQ(transaction->HandleTagElement(&amount, KRString("12.50")), KRParseStatus_Accepted);
  EXPECT_EQ(transaction->HandleTagElement(&amount, "13.50"), KRParseStatus_Accepted);
  EXPECT_EQ(transaction->ValidateTag(KRTag_TRNAMT), 1);
  EXPECT_EQ(TakeWarnings(), Lines());
  EXPECT_EQ(transaction->HandleTagElement(&amount, KRString("a lot")), KRParseStatus_Invalid);
  // The conversion warns first, and then the object that knows the tag.
  EXPECT_EQ(TakeWarnings(),
            (Lines{"BADFORMAT \"a lot\"", "BADFORMAT " + TagNumber(KRTag_TRNAMT) + " \"a lot\""}));
  const KRTagDictionaryEntry foreign = Entry(KRTag_CODE);
  EXPECT_EQ(transaction->HandleTagElement(&foreign, KRString("1")), KRParseStatus_Invalid);
  const KRTagDictionaryEntry child = Entry(KRTag_CURRENCY);
  EXPECT_EQ(transaction->HandleTagElement(&child, KRString("1")), KRParseStatus_Invalid);
  EXPECT_EQ(transaction->HandleTagStart(&amount), KRParseStatus_Invalid);
  EXPECT_EQ(transaction->HandleTagStart(&foreign), KRParseStatus_Invalid);
}

TEST(Aggregate, LeavesTheBitOverANullChild) {
  auto transaction = Make<KRBankStatementTx>();
  EXPECT_EQ(transaction->SetCurrency(Make<KRCurrency>().release()), 1);
  EXPECT_EQ(transaction->SetCurrency(nullptr), 1);
  EXPECT_EQ(transaction->GetCurrency(), nullptr);
  EXPECT_EQ(transaction->ValidateTag(KRTag_CURRENCY), 1);
  EXPECT_EQ(TextOf(*transaction), "");
}

TEST(Aggregate, TakesTheLastOfTwoSingleChildrenWithAWarning) {
  const Parsed<KRBankStatementTx> transaction(
      "<CURRENCY><CURRATE>1.0<CURSYM>USD</CURRENCY><CURRENCY><CURRATE>2.0<CURSYM>CAD</CURRENCY>");
  EXPECT_EQ(transaction.Status(), KRParseStatus_Warnings);
  EXPECT_EQ(transaction.Warnings(), Lines{"EXTRAAGG " + TagNumber(KRTag_CURRENCY)});
  EXPECT_NE(TextOf(*transaction).find("CAD"), std::string::npos);
  EXPECT_EQ(TextOf(*transaction).find("USD"), std::string::npos);
}

TEST(Aggregate, NotesAChildByItsStartTag) {
  const Parsed<KRBankTransactionList> list("<STMTTRN></STMTTRN>");
  EXPECT_EQ(list.Status(), KRParseStatus_Accepted);
  EXPECT_EQ(list->ValidateTag(KRTag_STMTTRN), 1);
  EXPECT_EQ(list->GetStatementTx(0)->GetType(), KRTag_STMTTRN);
  EXPECT_EQ(list->GetStatementTx(0)->GetMsgSetVersion(), 1);
}

TEST(Aggregate, NotesAnAppendedChildAndRefusesNull) {
  auto list = Make<KRBankTransactionList>();
  EXPECT_EQ(list->AppendStatementTx(nullptr), 0);
  EXPECT_EQ(list->ValidateTag(KRTag_STMTTRN), 0);
  EXPECT_EQ(list->AppendStatementTx(Make<KRBankStatementTx>().release()), 1);
  EXPECT_EQ(list->SetStatementTx(0, Make<KRBankStatementTx>().release()), 1);
  EXPECT_EQ(list->GetNumStatementTx(), 1);
  EXPECT_EQ(list->GetNumberOfChildren(), 1);
  EXPECT_EQ(list->GetChild(0), list->GetStatementTx(0));
  EXPECT_EQ(list->GetChild(1), nullptr);
  const std::unique_ptr<KRBankStatementTx> held(list->GetStatementTx(0));
  list->ClearStatementTx();
  EXPECT_EQ(list->GetNumStatementTx(), 0);
}

TEST(Aggregate, WritesOnlyWhatIsPresentRequiredOrNot) {
  auto list = Make<KRBankTransactionList>();
  EXPECT_EQ(TextOf(*list), "");
  list->SetDtEnd("20260131");
  EXPECT_EQ(list->AllRequiredPresent(), 0);
  EXPECT_EQ(TextOf(*list).substr(0, 7), "<DTEND>");
  list->ClearDtEnd();
  EXPECT_EQ(TextOf(*list), "");
}

TEST(Aggregate, CannotWriteATextThatIsNotedAndEmpty) {
  auto transaction = Make<KRBankStatementTx>();
  EXPECT_EQ(transaction->SetTag(KRTag_MEMO), 1);
  EXPECT_EQ(Build(*transaction).status, KRBuildStatus_EmptyText);
}

TEST(Aggregate, PassesOverTheGapsOfAList) {
  auto list = Make<KRBankTransactionList>();
  auto* last = Make<KRBankStatementTx>().release();
  EXPECT_EQ(list->SetStatementTx(2, last), 1);
  last->SetMemo("lunch");
  EXPECT_EQ(TextOf(*list), InLines("<STMTTRN><MEMO>lunch</STMTTRN>"));
  KRBankTransactionList copy;
  EXPECT_EQ(copy.DeepCopyFrom(list.get()), 1);
  EXPECT_EQ(TextOf(copy), TextOf(*list));
}

TEST(Aggregate, NamesTheInnermostObjectThatCannotBeWritten) {
  auto list = Make<KRBankTransactionList>();
  auto* transaction = Make<KRBankStatementTx>().release();
  transaction->SetMemo(KRString(std::string(300, 'x').c_str()));
  list->AppendStatementTx(transaction);
  const Built built = Build(*list, KRBuildStringOpt_Strict);
  EXPECT_EQ(built.status, KRBuildStatus_TooLong);
  EXPECT_EQ(built.failingObject, transaction);
}

TEST(Aggregate, HandsItsVersionToItsChildren) {
  auto list = Make<KRBankTransactionList>();
  auto* transaction = Make<KRBankStatementTx>().release();
  list->AppendStatementTx(transaction);
  transaction->SetCurrency(Make<KRCurrency>().release());
  EXPECT_EQ(list->SetMsgSetVersion(2), 1);
  EXPECT_EQ(transaction->GetMsgSetVersion(), 2);
  EXPECT_EQ(transaction->GetCurrency()->GetMsgSetVersion(), 2);
}

TEST(Aggregate, WritesByTheTableOfAHostsSubclass) {
  // The subclass has fewer valid tags, in another order, so their bits are different.
  class Own : public KRBankTransactionList {
   public:
    u16 GetArrayOfValidTags(KRArrayOfTags& tags) const override {
      static constexpr KRTagTableEntry kOwn[] = {{KRTag_STMTTRN, 0xffff}, {KRTag_DTEND, 0xffff}};
      tags = {kOwn, 2};
      return 1;
    }
  };
  Own list;
  list.SetMsgSetVersion(1);
  EXPECT_EQ(list.SetDtStart("20260101"), 0);
  EXPECT_EQ(list.SetDtEnd("20260131"), 1);
  EXPECT_EQ(TextOf(list).substr(0, 7), "<DTEND>");
  const KRTagDictionaryEntry end = Entry(KRTag_DTEND);
  Own read;
  read.SetMsgSetVersion(1);
  EXPECT_EQ(read.HandleTagElement(&end, KRString("20260131")), KRParseStatus_Accepted);
  EXPECT_EQ(TextOf(read), TextOf(list));
}

}  // namespace
