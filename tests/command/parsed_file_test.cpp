// What is said of an input that cannot be used, and that missing memory is always said.

#include "input/parsed_file.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "command/owned_buffers.h"
#include "input/buffer_copy.h"
#include "input/built_text.h"
#include "input/input_files.h"
#include "krofx/host/build_reason.h"
#include "support/failing_allocation.h"
#include "support/ofx_text.h"
#include "support/temp_folder.h"

namespace krofx::command {
namespace {

constexpr char kTransaction[] =
    "<STMTTRN><TRNTYPE>DEBIT<DTPOSTED>20260102<TRNAMT>-1.50<FITID>1<NAME>Name</STMTTRN>";

std::string StrictProblemOf(const std::string& text) {
  const TempFolder folder;
  const ParsedFile file(folder.Put("file", text), Reader::kStrict);
  EXPECT_EQ(file.GetVerdict(), file.GetProblem().empty() ? kExitWarnings : kExitUnusable);
  return file.GetProblem();
}

TEST(CopyOfAText, IsWholeOrNull) {
  const std::string text(100000, 'x');
  const std::unique_ptr<KRBuffer> buffer = NewBuffer(text);
  bool isWhole = false;
  for (std::size_t nth = 1; !isWhole; ++nth) {
    const FailingAllocation failing(nth, true);
    const std::unique_ptr<KRBuffer> copy = CopyOf(*buffer);
    isWhole = copy != nullptr;
    EXPECT_TRUE(!isWhole || ViewOf(*copy) == text);
    EXPECT_EQ(isWhole, nth > 2);
  }
}

TEST(BytesOfABuffer, AreNoneWhenItsMemoryIsLost) {
  KRBuffer buffer(4, 4);
  ASSERT_EQ(Put(buffer, "text"), KRBufferOK);
  EXPECT_EQ(ViewOf(buffer), "text");
  const FailingAllocation failing(1);
  EXPECT_NE(Put(buffer, "more"), KRBufferOK);
  EXPECT_EQ(ViewOf(buffer), "");
}

TEST(ParsedFile, IsNotUsableWithoutAText) {
  const ParsedFile file("a reply", nullptr);
  EXPECT_EQ(file.GetProblem(), kNoMemoryToRead);
  EXPECT_EQ(file.GetVerdict(), kExitUnusable);
  EXPECT_EQ(file.GetKind(), "");
  EXPECT_EQ(file.GetRoot(), nullptr);
  EXPECT_TRUE(file.GetOfxFiles().empty());
}

TEST(ParsedFile, SaysThatMemoryIsMissing) {
  const std::string text = testing::BankStatementFile(kTransaction);
  bool isRead = false;
  for (std::size_t nth = 1; !isRead; nth += 1 + nth / 8) {
    std::unique_ptr<KRBuffer> buffer = NewBuffer(text);
    const FailingAllocation failing(nth, true);
    const ParsedFile file("a reply", std::move(buffer));
    isRead = file.GetVerdict() == kExitClean;
    if (!isRead) {
      EXPECT_EQ(file.GetProblem(), "memory was exhausted while reading") << nth;
    }
    ASSERT_LT(nth, 100000u);
  }
}

TEST(ParsedFile, SaysThatATextEndsTooEarly) {
  const std::string text = testing::BankStatementFile(kTransaction);
  EXPECT_EQ(StrictProblemOf(text.substr(0, text.rfind("</STMTTRNRS>"))),
            "the text ends too early: aggregates are still open; download it again");
}

TEST(ParsedFile, SaysThatAMultipartTextHasNoPart) {
  EXPECT_EQ(StrictProblemOf("Content-Type: multipart/mixed; boundary=edge\r\n\r\n--other\r\n"),
            "no part was found; the boundary of the header does not occur in the text");
}

// Of a text that is strictly rewritten.
std::string RewriteProblemOf(const std::string& text, std::string& written) {
  const ParsedFile file("a text", NewBuffer(text));
  krofx::RewriteOptions options;
  options.strict = true;
  KRBuffer out(0, 0);
  const std::string problem = RewriteText(*file.GetTexts().begin(), options, out);
  written = ViewOf(out);
  return problem;
}

TEST(RewrittenText, IsRefusedWithTheReasonAndThePlace) {
  std::string written;
  EXPECT_EQ(RewriteProblemOf(testing::BankStatementFile(kTransaction), written), "");
  EXPECT_NE(written.find("<FITID>1"), std::string::npos);
  std::string text = testing::BankStatementFile(kTransaction);
  text.replace(text.find("<FITID>1"), 8, "");
  EXPECT_EQ(RewriteProblemOf(text, written),
            std::string(krofx::ReasonOf(KRBuildStatus_MissingTag)) +
                " in <STMTTRN> (build status " + std::to_string(KRBuildStatus_MissingTag) + ")");
  EXPECT_EQ(written, "");
  // Nothing in it is to blame.
  EXPECT_EQ(
      RewriteProblemOf("Content-Type: multipart/mixed; boundary=edge\r\n\r\n--edge--\r\n", written),
      std::string(krofx::ReasonOf(KRBuildStatus_TreeNotAllowed)) + " (build status 7)");
}

}  // namespace
}  // namespace krofx::command
