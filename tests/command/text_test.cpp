// Texts as they are shown: characters, lines that fit, days, and sums that say when they do not
// fit.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "banks/client_id.h"
#include "command_line/days.h"
#include "output/characters.h"
#include "output/exact_decimal.h"
#include "output/json.h"
#include "output/safe_text.h"
#include "output/text_form.h"
#include "showing/flow.h"
#include "support/pseudo_terminal.h"
#include "support/redirected_stream.h"
#include "support/scoped_variable.h"
#include "support/temp_folder.h"

namespace krofx::command {
namespace {

using Lines = std::vector<std::string>;
using std::chrono::year_month_day;

year_month_day Day(int year, unsigned month, unsigned day) {
  return {std::chrono::year(year), std::chrono::month(month), std::chrono::day(day)};
}

TEST(Characters, TakesOnlyWhatIsUtf8) {
  for (const std::string whole :
       {"A", "\u00e9", "\u20ac", "\U0001F600", "\uD7FF", "\uE000", "\U0010FFFF"}) {
    std::string_view text = whole;
    char32_t character = 0;
    ASSERT_TRUE(TakeUtf8(text, character)) << whole;
    EXPECT_TRUE(text.empty());
    std::string again;
    AppendUtf8(again, character);
    EXPECT_EQ(again, whole);
  }
  // A byte that continues nothing, one that nothing begins with, cut ones, longer ones than need
  // be, halves of pairs, and numbers that no character has.
  for (const std::string broken :
       {"\x80", "\xFF", "\xC3", "\xE2\x82", "\xC3(", "\xE2\x82(", "\xC1\x81", "\xE0\x80\x80",
        "\xF0\x80\x80\x80", "\xED\xA0\x80", "\xED\xBF\xBF", "\xF4\x90\x80\x80"}) {
    std::string_view text = broken;
    char32_t character = 7;
    EXPECT_FALSE(TakeUtf8(text, character));
    EXPECT_EQ(text, broken);
    EXPECT_EQ(character, char32_t{7});
  }
}

TEST(Characters, FoldsLettersOfAllKindsAndLeavesTheRest) {
  EXPECT_EQ(FoldCase("CAF\u00c9 \u0141 1"), "caf\u00e9 \u0142 1");
  EXPECT_EQ(FoldCase("CAF\xC9"), "caf\xC9");
  EXPECT_EQ(LowerAscii("CAF\u00c9"), "caf\u00c9");
}

TEST(Characters, HaveAByteInCodePage1252OrNone) {
  std::string bytes;
  EXPECT_TRUE(ToCodePage1252("a\u20ac\u00e9\u0178", bytes));
  EXPECT_EQ(bytes, "a\x80\xE9\x9F");
  for (const char* const text : {"\u0141", "\u0081", "\U0001F600", "\xE9"}) {
    EXPECT_FALSE(ToCodePage1252(std::string_view(text), bytes)) << text;
  }
  EXPECT_EQ(FromCodePage1252(0x80), U'\u20ac');
  EXPECT_EQ(FromCodePage1252(0x81), kReplacementCharacter);
  EXPECT_EQ(FromCodePage1252(0xE9), U'\u00e9');
  EXPECT_EQ(FromCodePage1252('a'), U'a');
}

TEST(TextForm, CutsWhatIsTooWide) {
  EXPECT_EQ(Cut("abc", 3), "abc");
  EXPECT_EQ(Cut("abcd", 3), "ab\u2026");
  EXPECT_EQ(Cut("abcd", 0), "");
  // Wide characters take two columns.
  EXPECT_EQ(Cut("\u4e2d\u6587\u5b57", 6), "\u4e2d\u6587\u5b57");
  EXPECT_EQ(Cut("\u4e2d\u6587\u5b57", 5), "\u4e2d\u6587\u2026");
  EXPECT_EQ(Cut("\u4e2d\u6587\u5b57", 4), "\u4e2d\u2026");
  // What follows is no character: nothing of it is shown.
  EXPECT_EQ(Cut("\u4e2d\u6587\xE5\xAD", 3), "\u4e2d\u2026");
  EXPECT_EQ(Cut("\u4e2d\xE5\xAD", 1), "\u2026");
}

TEST(TextForm, WrapsAtBlanksWhereItCan) {
  EXPECT_EQ(Wrapped("", 5), Lines{""});
  EXPECT_EQ(Wrapped("a line", 0), Lines{"a line"});
  EXPECT_EQ(Wrapped("a line", 6), Lines{"a line"});
  EXPECT_EQ(Wrapped("one two three", 7), (Lines{"one two", "three"}));
  EXPECT_EQ(Wrapped("one   two", 4), (Lines{"one ", "two"}));
  EXPECT_EQ(Wrapped("abcdefgh", 3), (Lines{"abc", "def", "gh"}));
  EXPECT_EQ(Wrapped(" abcdefgh", 4), (Lines{" abc", "defg", "h"}));
  EXPECT_EQ(Wrapped("abc   ", 3), Lines{"abc"});
  EXPECT_EQ(Wrapped("\u4e2d\u6587", 1), Lines{"\u4e2d\u6587"});
}

TEST(TextForm, ColorsNegativeAmountsWhereThereAreColors) {
  EXPECT_EQ(Colored("-1", true, {0, false}), "-1");
  EXPECT_EQ(Colored("1", false, {0, true}), "1");
  const std::string red = Colored("-1", true, {0, true});
  EXPECT_NE(red.find("-1"), std::string::npos);
  EXPECT_TRUE(red.starts_with('\x1b') && red.ends_with('m')) << red;
}

TEST(TextForm, IsThatOfTheTerminal) {
  const ScopedVariable terminalName("TERM", "xterm");
  const ScopedVariable noColor("NO_COLOR", "");
  const auto form = [](const PseudoTerminal& terminal, bool wide = false) {
    const RedirectedStream output(STDOUT_FILENO, terminal.Name());
    return FormOfStandardOutput(wide);
  };
  const PseudoTerminal usual(132);
  EXPECT_EQ(form(usual).columns, 132u);
  EXPECT_TRUE(form(usual).color);
  EXPECT_FALSE(form(usual).detailed);
  EXPECT_EQ(form(usual, true).columns, TextForm{}.columns);
  EXPECT_TRUE(form(usual, true).detailed);
  // Nothing can be laid out in less.
  EXPECT_EQ(form(PseudoTerminal(7)).columns, 20u);
  // It may not know how wide it is.
  EXPECT_EQ(form(PseudoTerminal(0)).columns, 80u);
  {
    const ScopedVariable refused("NO_COLOR", "1");
    EXPECT_FALSE(form(usual).color);
  }
  {
    const ScopedVariable dumb("TERM", "dumb");
    EXPECT_FALSE(form(usual).color);
    ::unsetenv("TERM");
    EXPECT_TRUE(form(usual).color);
  }
  const TempFolder folder;
  const RedirectedStream output(STDOUT_FILENO, folder.Name("out"));
  const TextForm file = FormOfStandardOutput(false);
  EXPECT_FALSE(file.color);
  EXPECT_EQ(file.columns, TextForm{}.columns);
}

TEST(Flow, AddsByTheSignAndKeepsThePlaces) {
  Flow flow;
  for (const char* const amount : {"9258.49", "-5279.17", "", "0.5"}) flow.Add(amount);
  EXPECT_EQ(flow.GetCount(), 4u);
  EXPECT_EQ(FlowLine(flow, "transactions", {}),
            "4 transactions   in 9258.99   out -5279.17   net 3979.82");
  Flow both;
  both.Add("-.125");
  both.Add(flow);
  EXPECT_EQ(FlowLine(both, "transactions", {}),
            "5 transactions   in 9258.990   out -5279.295   net 3979.695");
}

TEST(Flow, SaysThatASumDoesNotFitInsteadOfAWrongOne) {
  const std::string most(38, '9');
  const std::string tooLarge = "   in too large   out too large   net too large";
  Flow twice;
  twice.Add(most);
  EXPECT_EQ(FlowLine(twice, "transactions", {}),
            "1 transaction   in " + most + "   out 0   net " + most);
  const Flow once = twice;
  twice.Add(most);
  EXPECT_EQ(FlowLine(twice, "transactions", {}), "2 transactions" + tooLarge);
  Flow both = once;
  both.Add(once);
  EXPECT_EQ(FlowLine(both, "transactions", {}), "2 transactions" + tooLarge);
  Flow out;
  out.Add("-" + most);
  both = out;
  both.Add(out);
  EXPECT_EQ(FlowLine(both, "transactions", {}), "2 transactions" + tooLarge);
  both = twice;
  both.Add(out);
  EXPECT_EQ(FlowLine(both, "transactions", {}), "3 transactions" + tooLarge);
  Flow places;
  places.Add(most);
  places.Add("-.1");
  EXPECT_EQ(FlowLine(places, "transactions", {}), "2 transactions" + tooLarge);
  for (const char* const amount : {"12,50", "1.2.3", "abc", "1e5", "-", "."}) {
    Flow wrong;
    wrong.Add(amount);
    EXPECT_EQ(FlowLine(wrong, "transactions", {}), "1 transaction" + tooLarge) << amount;
  }
}

TEST(ExactDecimal, ReadsWhatFitsAndNothingElse) {
  const auto shown = [](const std::string& text) {
    const std::optional<ExactDecimal> number = ExactDecimal::Parse(text);
    return number ? number->Text() : "none";
  };
  EXPECT_EQ(shown("+1.50"), "1.50");
  EXPECT_EQ(shown("-.05"), "-0.05");
  EXPECT_EQ(shown("7."), "7");
  const std::string most = "170141183460469231731687303715884105727";
  EXPECT_EQ(shown(most), most);
  EXPECT_EQ(shown("-" + most), "-" + most);
  EXPECT_EQ(shown(most.substr(0, 38) + "8"), "none");
  EXPECT_EQ(shown(std::string(40, '9')), "none");
  for (const char* const wrong : {"", "+", "-", ".", "1.2.3", "--1", "+-1", "1 ", "1,5", "1e5"}) {
    EXPECT_EQ(shown(wrong), "none") << wrong;
  }
}

TEST(ExactDecimal, ComparesNumbersThatFitNoCommonPlaces) {
  const auto compare = [](const std::string& left, const std::string& right) {
    return ExactDecimal::Parse(left)->Compare(*ExactDecimal::Parse(right));
  };
  const std::string large(38, '9');
  const std::string fine = "." + std::string(37, '0') + "1";
  EXPECT_EQ(compare("1.50", "1.5"), 0);
  EXPECT_EQ(compare("-2", "1.5"), -1);
  EXPECT_EQ(compare("2.25", "2"), 1);
  EXPECT_EQ(compare(large, fine), 1);
  EXPECT_EQ(compare("-" + large, fine), -1);
  EXPECT_EQ(compare(fine, large), -1);
  EXPECT_EQ(compare(fine, "-" + large), 1);
  ExactDecimal sum = *ExactDecimal::Parse(fine);
  EXPECT_FALSE(sum.Add(*ExactDecimal::Parse(large)));
  EXPECT_EQ(sum.Text(), "0" + fine);
  sum = *ExactDecimal::Parse(large);
  sum.Widen(2);
  EXPECT_EQ(sum.Text(), large);
}

TEST(Flow, NamesOneThing) {
  EXPECT_EQ(CountOf(1, "transactions"), "1 transaction");
  EXPECT_EQ(CountOf(1, "securities"), "1 security");
  EXPECT_EQ(CountOf(1, "taxes"), "1 tax");
  EXPECT_EQ(CountOf(1, "staff"), "1 staff");
  EXPECT_EQ(CountOf(0, "taxes"), "0 taxes");
}

TEST(Days, AreReadAsPeopleWriteThem) {
  const year_month_day today = Day(2024, 3, 31);
  EXPECT_EQ(ParseDay("today", today), today);
  EXPECT_EQ(ParseDay("2026-01-31", today), Day(2026, 1, 31));
  EXPECT_EQ(ParseDay("20260131", today), Day(2026, 1, 31));
  EXPECT_EQ(ParseDay("-31d", today), Day(2024, 2, 29));
  EXPECT_EQ(ParseDay("-1w", today), Day(2024, 3, 24));
  EXPECT_EQ(ParseDay("-1m", today), Day(2024, 2, 29));
  EXPECT_EQ(ParseDay("-13m", today), Day(2023, 2, 28));
  EXPECT_EQ(ParseDay("-1y", Day(2024, 2, 29)), Day(2023, 2, 28));
  for (const char* const wrong :
       {"",          "-",          "-d",         "-1",       "-1q",      "-xd",
        "2026-1-31", "2026/01/31", "2026-02-29", "20261301", "20260100", "00000101",
        "2026013",   "202601311",  "2o260131",   "20260i31", "202601e1", "-99999999999d",
        "-999999y",  "2026-0131",  "202601-31"}) {
    EXPECT_EQ(ParseDay(wrong, today), std::nullopt) << wrong;
  }
}

TEST(ClientId, GoesIntoTheSignOnOfARequest) {
  const auto with = [](const std::string& text) {
    KRBuffer request(0, 256);
    EXPECT_EQ(request.WriteLarge(text.data(), static_cast<u32>(text.size())), KRBufferOK);
    const std::unique_ptr<KRBuffer> given(WithClientId(request, "abc"));
    return given == nullptr
               ? std::string("none")
               : std::string(given->GetBufferPtr(), given->GetBufferPtr() + given->GetBufferSize());
  };
  EXPECT_EQ(with("VERSION:102\n\n<OFX><APPVER>5\n</SONRQ>"),
            "VERSION:103\n\n<OFX><APPVER>5\n<CLIENTUID>abc\n</SONRQ>");
  // Another version has it already.
  EXPECT_EQ(with("VERSION:151\n\n<OFX><APPVER>5\n</SONRQ>"),
            "VERSION:151\n\n<OFX><APPVER>5\n<CLIENTUID>abc\n</SONRQ>");
  EXPECT_EQ(with("VERSION:102\n\n<OFX>"), "none");
  EXPECT_EQ(with("VERSION:102\n\n<OFX><APPVER>5"), "none");
}

TEST(Json, GathersTheValuesOfAKeyThatComesAgain) {
  Json object = Json::Object();
  object.SetAgain("a", 1);
  EXPECT_EQ(object.Text(0), "{\n  \"a\": 1\n}");
  object.SetAgain("a", "x");
  object.SetAgain("a", true);
  EXPECT_EQ(object.Text(0), "{\n  \"a\": [\n    1,\n    \"x\",\n    true\n  ]\n}");
}

TEST(SafeText, TakesOverNoTerminal) {
  EXPECT_EQ(SafeText("a\r\nb\rc\td"), "a\nb\nc d");
  EXPECT_EQ(SafeLine("a\r\nb\n\nc"), "a b  c");
  EXPECT_EQ(SafeText("a\x1b[31m\x7f"), "a\ufffd[31m\ufffd");
  EXPECT_EQ(SafeText("caf\xE9 \x80"), "caf\u00e9 \u20ac");
  EXPECT_EQ(SafeText("caf\u00e9"), "caf\u00e9");
  // Characters that turn the direction of a line, or that nobody sees; and those beside them.
  for (const char* const harmful : {"\u200B", "\u200F", "\u2028", "\u202E", "\u2060", "\u206F",
                                    "\u061C", "\uFEFF", "\u0080", "\u009F"}) {
    EXPECT_EQ(SafeText(std::string(harmful) + "abc"), "\ufffdabc") << harmful;
  }
  for (const std::string shown : {"\u00A0", "\u200A", "\u2010", "\u2027", "\u202F", "\u205F",
                                  "\u2070", "\u061B", "\u061D", "\uFEFE"}) {
    EXPECT_EQ(SafeText(shown), shown);
  }
  EXPECT_TRUE(IsPlainText("abc"));
  EXPECT_FALSE(IsPlainText("a\nc"));
  EXPECT_EQ(DisplayWidth("\u4e2d e\u0301"), 4u);
  EXPECT_EQ(Shortened("abcdef", 6), "abcdef");
  EXPECT_EQ(Shortened("abcdefg", 6), "abcdef...");
  // Bytes that are no character have no width, and end what is counted.
  EXPECT_EQ(DisplayWidth("\u4e2d\xE5"), 2u);
  EXPECT_EQ(Shortened("\u4e2d\xE5", 2), "\u4e2d\xE5");
}

}  // namespace
}  // namespace krofx::command
