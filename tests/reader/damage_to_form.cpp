// Damage to the header, the line ends and the characters of a text.

#include <algorithm>
#include <sstream>

#include "reader/damage_kinds.h"

namespace krofx::testing {

namespace {

bool HasHeader(const DamagedText& text) { return !text.damaged.header.empty(); }

// Replaces each line end of the header.
bool DivideHeader(DamagedText& text, const std::string& divider, const std::string& end) {
  if (!HasHeader(text)) return false;
  std::istringstream lines(text.damaged.header);
  std::string header;
  for (std::string line; std::getline(lines, line);) {
    if (line.ends_with('\r')) line.pop_back();
    if (!line.empty()) header += (header.empty() ? "" : divider) + line;
  }
  text.damaged.header = header + end;
  return true;
}

bool PutInFront(DamagedText& text, const std::string& front) {
  text.damaged.front = front;
  return HasHeader(text);
}

bool MakeXml(DamagedText& text) {
  text.damaged.header =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<?OFX OFXHEADER=\"200\" VERSION=\"211\" "
      "SECURITY=\"NONE\" OLDFILEUID=\"NONE\" NEWFILEUID=\"NONE\"?>\n";
  text.damaged.closed = true;
  return true;
}

Damage OfForm(const std::string& name, const std::string& group, const std::string& mending,
              std::function<bool(DamagedText&)> inflict) {
  return {name, group, mending,
          [inflict = std::move(inflict)](Dice&, DamagedText& text) { return inflict(text); }};
}

Damage OfLineEnds(const std::string& name, const std::string& lineEnd, bool indented) {
  return OfForm(name, "line ends", "", [=](DamagedText& text) {
    text.damaged.lineEnd = lineEnd;
    text.damaged.indented = indented;
    return true;
  });
}

bool Widen(Dice& dice, DamagedText& text) {
  const std::string bytes = text.damaged.Text();
  const bool ascii = std::all_of(bytes.begin(), bytes.end(),
                                 [](char c) { return static_cast<unsigned char>(c) < 0x80; });
  text.damaged.encoding =
      dice.Below(2) == 0 ? Encoding::kUtf16LittleEndian : Encoding::kUtf16BigEndian;
  if (!ascii) text.damaged.encoding = Encoding::kBytes;
  return ascii;
}

}  // namespace

std::vector<Damage> DamageToForm() {
  return {
      OfForm("no header", "header", "header-missing",
             [](DamagedText& text) {
               text.damaged.header.clear();
               return true;
             }),
      OfForm("header on one line", "header", "header-layout",
             [](DamagedText& text) { return DivideHeader(text, " ", "\r\n"); }),
      OfForm("header without blanks", "header", "header-layout",
             [](DamagedText& text) { return DivideHeader(text, "", "\r\n"); }),
      OfForm("blank lines in the header", "header", "header-layout",
             [](DamagedText& text) { return DivideHeader(text, "\r\n\r\n", "\r\n\r\n"); }),
      OfForm("no blank line after the header", "header", "",
             [](DamagedText& text) { return DivideHeader(text, "\r\n", "\r\n"); }),
      OfForm("unknown header field", "header", "header-field-unknown",
             [](DamagedText& text) { return DivideHeader(text, "\r\n", "\r\nMADEBY:US\r\n\r\n"); }),
      OfForm("HTTP in front", "header", "text-in-front",
             [](DamagedText& text) {
               return PutInFront(text, "HTTP/1.1 200 OK\r\nServer: x\r\n\r\n");
             }),
      OfForm("a word in front", "header", "",
             [](DamagedText& text) { return PutInFront(text, "Your statement follows\r\n"); }),
      OfForm("byte order mark", "header", "byte-order-mark",
             [](DamagedText& text) { return PutInFront(text, "\xEF\xBB\xBF"); }),
      OfForm("XML", "header", "", &MakeXml),
      OfForm("closed elements", "ends of elements", "",
             [](DamagedText& text) {
               text.damaged.closed = true;
               return true;
             }),
      OfForm("small letters", "tags", "letter-case",
             [](DamagedText& text) {
               text.damaged.lowerCase = true;
               return true;
             }),
      OfForm("blanks in tags", "tags", "",
             [](DamagedText& text) {
               text.damaged.blanksInTags = true;
               return true;
             }),
      OfLineEnds("line feeds", "\n", false),
      OfLineEnds("carriage returns", "\r", false),
      OfLineEnds("one line", "", false),
      OfLineEnds("indentation", "\n", true),
      {"UTF-16", "wide", "wide-characters", &Widen},
  };
}

}  // namespace krofx::testing
