// The work of a parse grows linearly with any text: each kind of costly text is read at two
// lengths, through a buffer that counts the reads.

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "krofx/envelope/file_rq_rs.h"
#include "support/ofx_text.h"

namespace krofx::testing {
namespace {

std::string Repeated(int count, const std::function<std::string(int)>& part) {
  std::string text;
  for (int i = 0; i < count; ++i) text += part(i);
  return text;
}

struct Kind {
  const char* name;
  std::string (*text)(int count);
};

std::string InOfx(const std::string& body) { return HeaderBlock() + "<OFX>" + body; }

const Kind kKinds[] = {
    {"unterminated CDATA",
     [](int n) { return InOfx(Repeated(n, [](int) { return std::string("<MEMO><![CDATA[x"); })); }},
    {"unterminated comments",
     [](int n) { return InOfx(Repeated(n, [](int) { return std::string("<!-- x"); })); }},
    {"comments",
     [](int n) { return InOfx(Repeated(n, [](int) { return std::string("<!-- x -->"); })); }},
    {"macros",
     [](int n) {
       return InOfx("<MEMO>" + Repeated(n % 10000, [](int) { return std::string("&amp;"); }) +
                    Repeated(n, [](int) { return std::string("<MEMO>&lt;&am"); }));
     }},
    {"unknown tags",
     [](int n) {
       return InOfx(Repeated(n, [](int i) { return "<X." + std::to_string(i) + ">"; }));
     }},
    {"unknown tags with ends",
     [](int n) {
       return InOfx(Repeated(n, [](int i) { return "<X." + std::to_string(i) + ">"; }) +
                    Repeated(n, [n](int i) { return "</X." + std::to_string(n - 1 - i) + ">"; }));
     }},
    {"tags without end",
     [](int n) { return InOfx(Repeated(n, [](int) { return std::string("<STMTTRN"); })); }},
    {"end tags",
     [](int n) { return InOfx(Repeated(n, [](int) { return std::string("</STMTTRN>"); })); }},
    {"repeated sets",
     [](int n) {
       return InOfx(SignOnResponseSet() +
                    Repeated(n, [](int) { return std::string("<BANKMSGSRSV1></BANKMSGSRSV1>"); }));
     }},
    {"header lines",
     [](int n) {
       return Repeated(n, [](int i) { return "H" + std::to_string(i) + ": x\r\n"; }) +
              File(SignOnResponseSet());
     }},
    {"header lines without a colon",
     [](int n) {
       return Repeated(n, [](int) { return std::string("no header\r\n"); }) +
              File(SignOnResponseSet());
     }},
    {"header comments",
     [](int n) {
       return Repeated(n, [](int) { return std::string("<!-- x --> A: b\r\n"); }) +
              File(SignOnResponseSet());
     }},
    {"white space", [](int n) { return InOfx(std::string(static_cast<std::size_t>(n) * 8, ' ')); }},
};

std::size_t ReadsOf(const std::string& text) {
  ServingBuffer buffer(text);
  KRFileRs file;
  KRSimpleParser parser;
  parser.Parse(&buffer, &file, 1);
  return buffer.Reads();
}

TEST(Work, OfAParseGrowsAsTheTextDoes) {
  for (const Kind& kind : kKinds) {
    SCOPED_TRACE(kind.name);
    const std::string once = kind.text(2000);
    const std::string fourTimes = kind.text(8000);
    const double grown = static_cast<double>(fourTimes.size()) / static_cast<double>(once.size());
    const double reads =
        static_cast<double>(ReadsOf(fourTimes)) / static_cast<double>(ReadsOf(once));
    EXPECT_LT(reads, grown * 1.25);
  }
  KRParseLogger::TheKRParseLogger()->DeleteAll();
}

}  // namespace
}  // namespace krofx::testing
