// What objects hold, as a plain tree of elements: no password, and dates and texts as they are
// shown.

#include "input/element_tree.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "command/owned_buffers.h"
#include "input/parsed_file.h"
#include "input/shown_values.h"
#include "support/ofx_text.h"

namespace krofx::command {
namespace {

// Every element of a tree, as "TAG=value", one a line.
void Append(const Element& element, std::string& text) {
  for (const Element& child : element.children) {
    if (child.isAggregate) {
      Append(child, text);
    } else {
      text.append(child.tag).append("=").append(child.value).append("\n");
    }
  }
}

std::string ElementsOf(const std::string& text) {
  const ParsedFile file("a text", NewBuffer(text));
  TextArena arena;
  std::string elements;
  for (const OfxFile& ofx : file.GetOfxFiles()) {
    Append(ReadElements(*ofx.file, arena, ofx.text), elements);
  }
  return elements;
}

std::string SignOnWith(const std::string& secret) {
  return ElementsOf(testing::File(testing::Aggregate(
      "SIGNONMSGSRQV1", testing::Aggregate("SONRQ", "<DTCLIENT>20260105120000" + secret +
                                                        "<LANGUAGE>ENG<APPID>KROFX<APPVER>0100"))));
}

TEST(ElementTree, ShowsTheUserBesideAPasswordOrAKey) {
  std::string elements = SignOnWith("<USERID>ada<USERPASS>hidden");
  EXPECT_NE(elements.find("USERID=ada\n"), std::string::npos) << elements;
  EXPECT_EQ(elements.find("hidden"), std::string::npos) << elements;
  elements = SignOnWith("<USERID>ada<USERKEY>key");
  EXPECT_NE(elements.find("USERID=ada\n"), std::string::npos) << elements;
}

TEST(ElementTree, HidesAUserThatMayBeThePassword) {
  const std::string elements = SignOnWith("<USERID>ada hidden");
  EXPECT_NE(elements.find("USERID=" + std::string(kNotShown) + "\n"), std::string::npos)
      << elements;
}

TEST(ShownTexts, AreThoseOfAPersonWhereverTheyAreFrom) {
  TextArena arena;
  EXPECT_EQ(ShownText("plain", nullptr, arena), "plain");
  EXPECT_EQ(ShownText("<![CDATA[A & B]]>", nullptr, arena), "A & B");
}

TEST(ShownDates, HaveATimeWhereTheirZoneMakesAnotherInstantOfThem) {
  const auto shown = [](const char* text) {
    KRDateTime date;
    EXPECT_EQ(KRDataConversion::StringToDateTime(text, date), 1) << text;
    return std::string(ShownDate(date));
  };
  EXPECT_EQ(shown("20260102"), "2026-01-02");
  EXPECT_EQ(shown("20260102000000[0:GMT]"), "2026-01-02T00:00:00+00:00");
  EXPECT_EQ(shown("20260102000000[-5:EST]"), "2026-01-02T00:00:00-05:00");
  EXPECT_EQ(shown("20260102000000[0.50:X]"), "2026-01-02T00:00:00+00:30");
  EXPECT_EQ(ShownDate(KRDateTime()), "");
}

}  // namespace
}  // namespace krofx::command
