// Kinds of damage that need texts of their own: tags of later versions, and texts that an element
// refuses.

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

#include "krofx/reader/reading.h"
#include "support/readings.h"

namespace krofx::testing {
namespace {

std::string Example(const std::string& name) {
  std::ifstream in(std::string(KROFX_EXAMPLES) + "/" + name, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

TEST(Kinds, LeavesOutMessageSetsOfLaterVersions) {
  const std::string later =
      "<TAX1099MSGSRSV1><TAX1099TRNRS><TRNUID>1</TRNUID><STATUS><CODE>0</CODE></STATUS>"
      "</TAX1099TRNRS></TAX1099MSGSRSV1>";
  std::string body = BankStatementFile("");
  body = body.substr(body.find("<OFX>"));
  const std::string header =
      "<?xml version=\"1.0\"?><?OFX OFXHEADER=\"200\" VERSION=\"211\" SECURITY=\"NONE\" "
      "OLDFILEUID=\"NONE\" NEWFILEUID=\"NONE\"?>";
  const Reading whole = Read(header + body);
  body.insert(body.find("</OFX>"), later + later);
  const Reading reading = Read(header + body);
  EXPECT_EQ(MendingNames(reading), Lines{"later-tag"});
  EXPECT_EQ(Written(reading.root), Written(whole.root));
}

TEST(Kinds, LeavesOutATextThatItsElementRefuses) {
  std::string text = Example("payroll-batch.ofx");
  const std::size_t at = text.find("<N.AMT>");
  const std::size_t end = text.find('\n', at);
  text.replace(at, end - at, "<N.AMT>many");
  const Reading reading = Read(text);
  EXPECT_EQ(MendingNames(reading), Lines{"text-refused"});
  text.erase(at, std::string("<N.AMT>many\n").size());
  EXPECT_EQ(WrittenBody(reading.root), WrittenBody(Read(text).root));
}

}  // namespace
}  // namespace krofx::testing
