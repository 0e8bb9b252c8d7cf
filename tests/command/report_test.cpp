// What a report of check says in lines.

#include "checking/report.h"

#include <gtest/gtest.h>

#include "support/temp_folder.h"

namespace krofx::command {
namespace {

TEST(Report, CountsWhatIsMissingBeyondWhatItLists) {
  const TempFolder folder;
  Report report(folder.Put("file.ofx",
                           "OFXHEADER:100\nDATA:OFXSGML\nVERSION:102\nSECURITY:NONE\n"
                           "ENCODING:USASCII\nCHARSET:1252\nCOMPRESSION:NONE\nOLDFILEUID:NONE\n"
                           "NEWFILEUID:NONE\n\n<OFX><SIGNONMSGSRSV1><SONRS><STATUS><CODE>0"
                           "<SEVERITY>INFO</STATUS><LANGUAGE>ENG</SONRS></SIGNONMSGSRSV1></OFX>"),
                Reader::kMending);
  EXPECT_EQ(report.verdict, kExitWarnings);
  const std::string listed = DetailsOf(report);
  EXPECT_TRUE(listed.ends_with("missing: <DTSERVER> is missing in OFX/SIGNONMSGSRSV1/SONRS\n"))
      << listed;
  report.missing.unlisted = 7;
  EXPECT_EQ(DetailsOf(report), listed + report.file.GetName() + ": missing: 7 more\n");
}

}  // namespace
}  // namespace krofx::command
