// A plain buffer is scanned in its memory, with a fast path for common tags; a derived one is read
// character by character. For any text, well-formed or not, both must give the same result.

#include <random>

#include "support/engine_probe.h"

namespace {

using krofx::testing::EngineProbe;
using krofx::testing::Lines;
using krofx::testing::Str;
using krofx::testing::TextBuffer;
using krofx::testing::Warnings;

constexpr std::string_view kPieces[] = {
    "<",      "</",     ">",    "<!--",  "-->",      "<![CDATA[", "]",    "]]>",    "!",
    "[",      "/",      " ",    "\n",    "\r\n",     "\t",        "CODE", "MEMO",   "STATUS",
    "status", "XYZ",    "&lt;", "&amp",  "&",        ";",         "text", ":",      "--",
    "-",      "--b0",   "DATA", "x",     "CDATA",    "cdata",     "\r",   "<CODE>", "</CODE>",
    "<XYZ>",  "</XYZ>", "<AB>", "</AB>", "<STATUS>", "</STATUS>",
};

std::string RandomText(std::mt19937& random) {
  std::string text;
  for (std::size_t count = random() % 30 + 1; count > 0; --count) {
    text += kPieces[random() % std::size(kPieces)];
    if (random() % 300 == 0) text += '\0';
  }
  return text;
}

// Everything that an engine finds in a text: tags with their places, header lines, boundaries,
// warnings.
Lines Tell(const std::string& text, bool plain) {
  TextBuffer buffer(text, plain);
  KRParseLogger::TheKRParseLogger()->DeleteAll();
  Lines seen;
  EngineProbe tags(*buffer);
  // The end, once met, stays; an unreadable item does not end the text.
  for (KRTagType type = KRTagType_Start; type != KRTagType_EndOfInput;) {
    KRTagDictionaryEntry entry = {KRTag_None, ""};
    KRString value;
    type = tags.GetKRTag(entry, value);
    seen.push_back(std::to_string(type) + entry.text + "=" + Str(value) + " at " +
                   std::to_string(tags.GetItemPosition()));
    if (type == KRTagType_Start && seen.size() % 3 == 0) {
      seen.push_back("skip " + std::to_string(tags.SkipCurrentTag()));
    }
  }
  EngineProbe lines(*buffer);
  for (int blocks = 0; blocks < 3;) {
    KRHeaderTag tag = KRHeaderTag_None;
    KRString value;
    KRString name;
    const bool found = lines.GetHeader(tag, value, &name) != 0;
    seen.push_back(Str(name) + ":" + Str(value) + " " + std::to_string(lines.GetHeaderPos()));
    if (!found) ++blocks;
  }
  seen.push_back("boundary " + std::to_string(lines.FindMIMEBoundary("b0")) + " " +
                 std::to_string(lines.GetHeaderPos()));
  const Lines warnings = Warnings();
  seen.insert(seen.end(), warnings.begin(), warnings.end());
  return seen;
}

TEST(EngineSources, TellTheSameOfAnyText) {
  std::mt19937 random(20020901);
  for (int i = 0; i < 3000; ++i) {
    const std::string text = RandomText(random);
    ASSERT_EQ(Tell(text, true), Tell(text, false)) << "of the text " << text;
  }
}

}  // namespace
