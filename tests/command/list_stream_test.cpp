// Texts whose lists are not held: what is said of them is what a whole reading says, and those that
// a stream would read otherwise are left to it.

#include "input/list_stream.h"

#include <gtest/gtest.h>

#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "command/owned_buffers.h"
#include "input/parsed_file.h"
#include "showing/document_output.h"
#include "support/failing_allocation.h"
#include "support/ofx_text.h"
#include "support/redirected_stream.h"
#include "support/temp_folder.h"

namespace krofx::command {
namespace {

using Use = ListStream::Use;

std::string Transaction(std::size_t number, const std::string& name = "Name") {
  return "<STMTTRN><TRNTYPE>DEBIT<DTPOSTED>20260102<TRNAMT>-1.50<FITID>" + std::to_string(number) +
         "<NAME>" + name + "</STMTTRN>";
}

std::string Statement(const std::string& transactions) {
  return testing::BankStatementFile(transactions);
}

std::string Replaced(std::string text, const std::string& from, const std::string& to) {
  const std::size_t at = text.find(from);
  EXPECT_NE(at, std::string::npos) << from;
  return at == std::string::npos ? text : text.replace(at, from.size(), to);
}

// Surveys a text of any size as one that a tree does not take.
ListStream::Surveyed Survey(const std::string& text, Use use) {
  return ListStream::Survey("", NewBuffer(text), {use, nullptr, true});
}

// Expects what a survey says to be what a whole reading says.
void ExpectSameNotes(const ListStream::Surveyed& surveyed, const std::string& text, Use use) {
  const TempFolder folder;
  const ParsedFile whole(folder.Put("file", text),
                         use == Use::kStrict ? Reader::kStrict : Reader::kMending);
  EXPECT_EQ(surveyed.status, whole.GetStatus());
  ASSERT_EQ(surveyed.warnings.size(), whole.GetWarnings().size());
  std::size_t at = 0;
  for (const ReadWarning& warning : surveyed.warnings) {
    const Warning& other = whole.GetWarnings()[at++];
    EXPECT_EQ(ToText(warning.tagText), other.tag);
    EXPECT_EQ(ToText(warning.value), other.value);
    // A reading names the first tag that is missing in a text, without a place.
    if (warning.warning == KRPW_MISSINGTAG) continue;
    EXPECT_EQ(warning.place.line, other.place.line);
    EXPECT_EQ(warning.place.column, other.place.column);
  }
  ASSERT_EQ(surveyed.mendings.size(), whole.GetMendings().size());
  auto mending = whole.GetMendings().begin();
  for (const Mending& each : surveyed.mendings) {
    EXPECT_EQ(each.kind, mending->kind);
    EXPECT_EQ(ToText(each.path), ToText(mending->path));
    EXPECT_EQ(each.place.column, mending->place.column);
    ++mending;
  }
}

TEST(ListStream, SaysWhatAWholeReadingSays) {
  const std::string clean = Statement(Transaction(1) + Transaction(2));
  const std::string missing = Replaced(Replaced(clean, "<FITID>1", ""), "<FITID>2", "");
  const std::string texts[] = {
      clean,
      missing,
      Statement(Transaction(1, std::string(40, 'n')) + Transaction(2)),
      Replaced(clean, "<TRNAMT>-1.50", "<TRNAMT>-1,50"),
      Replaced(clean, "<TRNAMT>-1.50", "<TRNAMT>-1.50<TRNAMT>-7"),
      Replaced(clean, "<NAME>", "<INTU.X>1<NAME>"),
      Replaced(clean, "</BANKTRANLIST>",
               "</BANKTRANLIST><BANKTRANLIST><DTSTART>20260201"
               "<DTEND>20260228" +
                   Transaction(3) + "</BANKTRANLIST>"),
      clean.substr(0, clean.find("<LEDGERBAL>") + 20),
  };
  for (const std::string& text : texts) {
    SCOPED_TRACE(text);
    const ListStream::Surveyed surveyed = Survey(text, Use::kMended);
    ASSERT_NE(surveyed.stream, nullptr);
    ExpectSameNotes(surveyed, text, Use::kMended);
    EXPECT_EQ(surveyed.stream->HasMissing(), &text == &texts[1] || &text == std::end(texts) - 1);
  }
}

TEST(ListStream, LeavesToAWholeReadingWhatItWouldReadOtherwise) {
  const std::string clean = Statement(Transaction(1));
  const std::size_t begin = clean.find("<STMTRS>");
  const std::string answer = clean.substr(begin, clean.find("</STMTTRNRS>") - begin);
  const std::string none = Replaced(answer, Transaction(1), "");
  struct Case {
    std::string text;
    Use use;
  };
  const Case cases[] = {
      // All tags that are missing are asked for, which takes a tree.
      {Replaced(Replaced(clean, "<FITID>1", ""), "<NAME>", "<INTU.X>1<NAME>"),
       Use::kAllThatIsMissing},
      // Warnings are for a tree that has all elements.
      {Replaced(clean, "<FITID>1", ""), Use::kStrict},
      // Of two answers in a wrapper the last one is taken.
      {Replaced(clean, answer, answer + answer), Use::kStrict},
      {Replaced(clean, answer, answer + none), Use::kStrict},
      // Further texts.
      {clean + "\n" + clean, Use::kMended},
      // Nothing to stream.
      {Replaced(clean, Transaction(1), ""), Use::kMended},
      {"no OFX", Use::kMended},
  };
  for (const Case& each : cases) {
    EXPECT_EQ(Survey(each.text, each.use).stream, nullptr) << each.text;
  }
  EXPECT_EQ(ListStream::Survey("/nowhere", nullptr, {Use::kMended, nullptr, true}).stream, nullptr);
}

TEST(ListStream, LeavesATextInTwoCharacterSetsToAWholeReading) {
  // The stream sees a part of a file at a time.
  const std::string gap(600000, '\n');
  const std::string utf8 = Transaction(1, "Caf\u00e9");
  const TempFolder folder;
  for (const Use use : {Use::kMended, Use::kStrict}) {
    const auto isStreamed = [&](const std::string& transactions) {
      return ListStream::Survey(folder.Put("file", Statement(transactions)), nullptr,
                                {use, nullptr, true})
                 .stream != nullptr;
    };
    EXPECT_TRUE(isStreamed(utf8 + gap + utf8));
    EXPECT_FALSE(isStreamed(utf8 + gap + Transaction(2, "Caf\xe9")));
  }
}

TEST(ListStream, IsWholeOrNullWhenMemoryIsMissing) {
  const std::string text = Replaced(
      Replaced(Statement(Transaction(1, std::string(40, 'n')) + Transaction(2)), "<FITID>1", ""),
      "<TRNAMT>-1.50", "<TRNAMT>-1,50");
  const std::shared_ptr<KRBuffer> buffer = NewBuffer(text);
  const ListStream::Way way{Use::kMended, nullptr, true};
  internal::AllocationFailure::FailAt(0);
  ASSERT_NE(ListStream::Survey("", buffer, way).stream, nullptr);
  const std::size_t count = internal::AllocationFailure::Count();
  std::size_t refused = 0;
  // The first ones, and the last ones, among which are those of what was out of order.
  for (std::size_t nth = 1; nth <= count; nth += nth < 50 || nth + 100 > count ? 1 : 29) {
    const FailingAllocation failing(nth);
    const ListStream::Surveyed surveyed = ListStream::Survey("", buffer, way);
    if (surveyed.stream == nullptr) {
      ++refused;
      continue;
    }
    EXPECT_EQ(surveyed.warnings.size(), 2u) << nth;
    EXPECT_EQ(surveyed.mendings.size(), 1u) << nth;
    EXPECT_EQ(surveyed.stream->CountElements(), 2u) << nth;
  }
  EXPECT_GT(refused, 0u);
}

// A file of more than the size that makes summaries stream it.
class StreamedFile : public ::testing::Test {
 protected:
  std::string Large(std::size_t count) const {
    std::string transactions;
    for (std::size_t number = 1; number <= count; ++number) {
      transactions += Transaction(number, "A name of some length, as usual");
    }
    return m_folder.Put("large.ofx", Statement(transactions));
  }
  // How many rows a document has, up to one of a number.
  static std::size_t CountRows(const Document& document, std::size_t last = 1000000) {
    std::size_t count = 0;
    for (const Section& section : document.sections) {
      for (const Table& table : section.tables) {
        table.ForEachRow([&](Row) { return ++count < last; });
      }
    }
    return count;
  }
  std::string ComplaintOf(const Document& document) {
    {
      const RedirectedStream errors(STDERR_FILENO, m_folder.Name("err"));
      m_exitStatus = ReportChange(document);
    }
    return m_folder.Get("err");
  }

  TempFolder m_folder;
  ExitStatus m_exitStatus = kExitClean;
};

TEST_F(StreamedFile, SaysThatItWasChangedWhileItWasRead) {
  ParsedFile file(Large(2500), Reader::kMending, Holding::kSummary);
  ASSERT_NE(file.GetStream(), nullptr);
  const Document document = MakeDocument(file, false);
  EXPECT_EQ(CountRows(document), 2500u);
  EXPECT_EQ(CountRows(document, 3), 3u);
  EXPECT_EQ(ComplaintOf(document), "");
  EXPECT_EQ(m_exitStatus, kExitClean);
  for (const std::size_t count : {2499u, 2501u}) {
    const Document changed = MakeDocument(file, false);
    Large(count);
    CountRows(changed);
    EXPECT_EQ(ComplaintOf(changed),
              "krofx: " + file.GetName() + ": it was changed while it was read\n");
    EXPECT_EQ(m_exitStatus, kExitUnusable);
  }
}

TEST_F(StreamedFile, IsHeldWhenItIsSmallAndOutOfOrder) {
  const std::string name = Large(2500);
  const std::string text = m_folder.Get("large.ofx");
  for (const Reader reader : {Reader::kMending, Reader::kStrict}) {
    m_folder.Put("large.ofx", Replaced(text, "<FITID>7<", "<"));
    ParsedFile file(name, reader, Holding::kSummary);
    EXPECT_EQ(file.GetStream(), nullptr);
    EXPECT_EQ(file.GetWarnings().size(), 1u);
    EXPECT_EQ(CountRows(MakeDocument(file, false)), 2500u);
  }
}

}  // namespace
}  // namespace krofx::command
