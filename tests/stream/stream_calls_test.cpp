// What a host may call on a stream before, between and after its texts.

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>

#include "stream/streamed.h"

namespace krofx::testing {
namespace {

const std::string kTwo = BankStatementFile(NumberedTransaction(1) + NumberedTransaction(2));

TEST(StreamCalls, OfAStreamThatWasMovedAreAnsweredAsAfterTheEnd) {
  Stream first;
  first.Want<KRBankStatementTx>();
  first.Open(std::string_view(kTwo));
  ASSERT_NE(first.Next(), nullptr);
  Stream second(std::move(first));
  EXPECT_NE(second.Next(), nullptr);
  Stream& left = first;  // NOLINT(bugprone-use-after-move)
  KRBuffer buffer(0, 0);
  left.Want<KRClosing>().WantTag(KRTag_STMTTRN).SetListener(nullptr);
  left.Open(buffer);
  left.Open(std::string_view(kTwo));
  EXPECT_FALSE(left.OpenFile("/dev/null"));
  EXPECT_FALSE(left.Feed(kTwo));
  left.Finish();
  left.Stop();
  EXPECT_EQ(left.Next(), nullptr);
  EXPECT_EQ(left.State(), StreamState::kEnded);
  EXPECT_EQ(left.Status(), KRParseStatus_Fatal);
  EXPECT_EQ(Str(left.Problem()), "memory was exhausted");
  EXPECT_EQ(left.Root(), nullptr);
  EXPECT_EQ(left.TakeRoot(), nullptr);
  EXPECT_TRUE(left.Warnings().empty());
  EXPECT_TRUE(left.Mendings().empty());
  EXPECT_EQ(left.Unrecorded(), 0u);
  EXPECT_FALSE(left.MayHaveCommaAmount());
  EXPECT_FALSE(left.HasRepeatedFigure());
  EXPECT_FALSE(left.HasMoreTags());
  EXPECT_EQ(left.Position(), 0u);
}

TEST(StreamCalls, MoveAStreamOverAnotherInTheMiddleOfItsText) {
  Stream first;
  first.Want<KRBankStatementTx>();
  first.Open(std::string_view(kTwo));
  ASSERT_NE(first.Next(), nullptr);
  Stream second;
  second.Open(std::string_view(kTwo));
  second = std::move(first);
  Stream& same = second;
  second = std::move(same);
  const StreamElement* const element = second.Next();
  ASSERT_NE(element, nullptr);
  EXPECT_EQ(element->Number(), 2u);
  EXPECT_EQ(second.Next(), nullptr);
  EXPECT_EQ(second.Status(), KRParseStatus_Accepted);
}

TEST(StreamCalls, OpenOneTextOnly) {
  Stream stream;
  stream.Want<KRBankStatementTx>();
  stream.Open(std::string_view(kTwo));
  ASSERT_NE(stream.Next(), nullptr);
  TextBuffer other(BankStatementFile(""));
  stream.Open(*other.Get());
  stream.Open(std::string_view("no ofx"));
  EXPECT_FALSE(stream.OpenFile("/dev/null"));
  EXPECT_FALSE(stream.Feed("no ofx"));
  EXPECT_NE(stream.Next(), nullptr);
  EXPECT_EQ(stream.Next(), nullptr);
  EXPECT_EQ(stream.Status(), KRParseStatus_Accepted);
  EXPECT_EQ(stream.Position(), kTwo.size());
  stream.Finish();
  EXPECT_EQ(stream.Status(), KRParseStatus_Accepted);
}

TEST(StreamCalls, OpenNoFileWithoutAName) {
  Stream stream;
  EXPECT_FALSE(stream.OpenFile(nullptr));
  EXPECT_EQ(stream.State(), StreamState::kEnded);
  EXPECT_EQ(stream.Status(), KRParseStatus_Invalid);
  EXPECT_EQ(Str(stream.Problem()), "no file is named");
}

TEST(StreamCalls, GiveTheTreeAtTheEndOnly) {
  Stream stream;
  stream.Want<KRBankStatementTx>();
  stream.Open(std::string_view(kTwo));
  ASSERT_NE(stream.Next(), nullptr);
  EXPECT_EQ(stream.TakeRoot(), nullptr);
  EXPECT_NE(stream.Root(), nullptr);
  stream.Stop();
  const std::unique_ptr<KRFile> root = stream.TakeRoot();
  ASSERT_NE(root, nullptr);
  EXPECT_NE(FindIn<KRBankTransactionList>(root.get()), nullptr);
  EXPECT_EQ(stream.Root(), nullptr);
}

TEST(StreamCalls, OfAMultipartTextSayThatItHasToBeTakenApart) {
  const std::string text =
      "Content-Type: multipart/x-mixed-replace; boundary=\"cut\"\r\n\r\n--cut\r\n"
      "Content-Type: application/x-ofx\r\n\r\n" +
      kTwo + "\r\n--cut--\r\n";
  for (const StreamOptions& options : {StreamOptions(), MendingOptions()}) {
    Stream stream(options);
    WantMuch(stream);
    stream.Open(std::string_view(text));
    EXPECT_EQ(stream.Next(), nullptr);
    EXPECT_EQ(stream.Status(), KRParseStatus_Invalid);
    EXPECT_NE(Str(stream.Problem()).find("multipart text"), std::string::npos)
        << Str(stream.Problem());
  }
}

TEST(StreamCalls, MendABufferAsTheyMendMemory) {
  const std::string damaged =
      BankStatementFile(NumberedTransaction(1) + "<ACME.X>1" + NumberedTransaction(2));
  for (const bool plain : {true, false}) {
    for (const std::string& text : {damaged, kTwo}) {
      TextBuffer buffer(text, plain);
      Stream stream(MendingOptions());
      WantMuch(stream);
      stream.Open(*buffer.Get());
      Streamed out;
      TakeAll(stream, out);
      EXPECT_EQ(out.texts.size(), 2u);
      const Streamed expected = StreamText(text, 0, MendingOptions());
      EXPECT_EQ(out.elements, expected.elements);
      EXPECT_EQ(stream.Status(), expected.status);
      EXPECT_EQ(stream.Mendings().size(), text == damaged ? 1u : 0u);
    }
  }
}

TEST(StreamCalls, DropTheWholeStatementsOfAMendedText) {
  std::string wrappers = "<ACME.X>1";
  for (int number = 1; number <= 5; ++number) {
    wrappers += ResponseWrapper(
        "STMTTRNRS",
        Aggregate("STMTRS", "<CURDEF>USD" + BankAccountText("BANKACCTFROM") +
                                Aggregate("LEDGERBAL", "<BALAMT>" + std::to_string(number) +
                                                           "<DTASOF>20260131")));
  }
  const std::string text = ResponseFile("BANKMSGSRS", wrappers);
  for (const std::size_t size : {std::size_t{0}, std::size_t{100}}) {
    Stream stream(MendingOptions());
    stream.Want<KRTransRs>();
    Streamed out;
    Pour(stream, text, size, out);
    ASSERT_EQ(out.texts.size(), 5u);
    EXPECT_NE(out.texts[4].find("<BALAMT>5"), std::string::npos);
    EXPECT_EQ(stream.Status(), KRParseStatus_Warnings);
    // A message set keeps one, without which it would be incomplete.
    const std::string rest = Written(stream.Root());
    EXPECT_EQ(rest.find("<BALAMT>4"), std::string::npos);
    EXPECT_NE(rest.find("<BALAMT>5"), std::string::npos);
  }
}

}  // namespace
}  // namespace krofx::testing
