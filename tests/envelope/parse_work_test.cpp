// The work of a parse grows linearly with any text: each kind of costly text is read at two
// lengths, through a buffer that counts the reads. bench/work.py counts the instructions of
// reading, checking and writing too.

#include <gtest/gtest.h>

#include <string>

#include "krofx/envelope/file_rq_rs.h"
#include "krofx/envelope/mime_parser.h"
#include "support/costly_texts.h"
#include "support/parse_text.h"

namespace krofx::testing {
namespace {

std::size_t ReadsOf(const CostlyKind& kind, const std::string& text) {
  ServingBuffer buffer(text);
  if (kind.isMultipart) {
    KRFile file;
    KRMIMEParser().Parse(&buffer, &file, 1);
  } else {
    KRFileRs file;
    KRSimpleParser().Parse(&buffer, static_cast<KRDataObj*>(&file), 1);
  }
  return buffer.Reads();
}

TEST(Work, OfAParseGrowsAsTheTextDoes) {
  for (const CostlyKind& kind : kCostlyKinds) {
    SCOPED_TRACE(kind.name);
    const std::string once = kind.text(500);
    const std::string fourTimes = kind.text(2000);
    const double grown = static_cast<double>(fourTimes.size()) / static_cast<double>(once.size());
    const double reads =
        static_cast<double>(ReadsOf(kind, fourTimes)) / static_cast<double>(ReadsOf(kind, once));
    EXPECT_LT(reads, grown * 1.25);
  }
  KRParseLogger::TheKRParseLogger()->DeleteAll();
}

}  // namespace
}  // namespace krofx::testing
