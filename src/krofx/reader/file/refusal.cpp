// Recognising files of other formats by their first bytes and by the words in them.

#include "krofx/reader/file/refusal.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "krofx/core/internal/byte_search.h"
#include "krofx/values/internal/keyword_table.h"

namespace krofx::internal {

namespace {

using namespace std::string_view_literals;

// How far into a file words are looked for.
constexpr std::size_t kLookedAt = 65536;

std::size_t FindWithoutCase(std::string_view text, std::string_view word, std::size_t from = 0) {
  for (std::size_t at = from; at + word.size() <= text.size(); ++at) {
    if (EqualsWithoutCase(text.substr(at, word.size()), word)) return at;
  }
  return std::string_view::npos;
}

bool Contains(std::string_view text, std::string_view word) {
  return FindWithoutCase(text, word) != std::string_view::npos;
}

struct Signature {
  std::string_view bytes;
  const char* sentence;
};

// Files that their first bytes identify.
constexpr Signature kSignatures[] = {
    {"%PDF"sv, "this is a PDF document; download the statement again as OFX or QFX"},
    {"\xD0\xCF\x11\xE0"sv,
     "this is an old Microsoft Office file, such as an Excel sheet; download the statement again "
     "as "
     "OFX or QFX"},
    {"\x1F\x8B"sv, "this is a file that gzip compressed; unpack it and read what is in it"},
    {"BZh"sv, "this is a file that bzip2 compressed; unpack it and read what is in it"},
    {"\xFD"
     "7zXZ"sv,
     "this is a file that xz compressed; unpack it and read what is in it"},
    {"7z\xBC\xAF\x27\x1C"sv, "this is a 7-Zip archive; unpack it and read what is in it"},
    {"Rar!"sv, "this is a RAR archive; unpack it and read what is in it"},
    {"{\\rtf"sv, "this is a text document (RTF); download the statement again as OFX or QFX"},
    {"\x89PNG"sv, "this is a picture (PNG); download the statement again as OFX or QFX"},
    {"\xFF\xD8\xFF"sv, "this is a picture (JPEG); download the statement again as OFX or QFX"},
    {"GIF8"sv, "this is a picture (GIF); download the statement again as OFX or QFX"},
    {"SQLite format 3"sv,
     "this is a database (SQLite); export the statement from its program as OFX"},
    {"!Type:"sv, "this is a QIF file; download the statement again as OFX or QFX"},
    {"!Account"sv, "this is a QIF file; download the statement again as OFX or QFX"},
    {"!Option:"sv, "this is a QIF file; download the statement again as OFX or QFX"},
    {"!TRNS"sv, "this is an IIF file; download the statement again as OFX or QFX"},
    {"01,"sv, "this is probably a BAI2 file; download the statement again as OFX or QFX"},
};

struct Words {
  std::string_view first;
  std::string_view second;  // Empty: none.
  const char* sentence;
};

// Files that have these words.
constexpr Words kWords[] = {
    {":20:", ":60", "this is an MT940 statement; download it again as OFX or QFX"},
    {":20:", ":61:", "this is an MT940 or MT942 statement; download it again as OFX or QFX"},
    {"urn:iso:std:iso:20022:tech:xsd:camt", "",
     "this is a CAMT statement (ISO 20022); download it again as OFX or QFX"},
    {"<BkToCstmr", "", "this is a CAMT statement (ISO 20022); download it again as OFX or QFX"},
    {"urn:iso:std:iso:20022:tech:xsd:pain", "",
     "this is a payment order (ISO 20022), not a statement; download the statement as OFX or QFX"},
    {"<OFC>", "",
     "this is an OFC file, which came before OFX; download the statement as OFX or QFX"},
    {"<gnc-v2", "", "this is a GnuCash file; export the statement from there as OFX"},
};

bool IsHtml(std::string_view text) {
  return Contains(text, "<html") || Contains(text, "<!doctype html") ||
         (Contains(text, "<body") && Contains(text, "</"));
}

void Append(KRString& sentence, std::string_view text) {
  for (const char c : text) sentence += c;
}

// The title of a page, on one line.
KRString DescribeHtml(std::string_view text) {
  KRString sentence("this is a web page");
  const std::size_t open = FindWithoutCase(text, "<title");
  const std::size_t from = open == std::string_view::npos ? open : text.find('>', open);
  if (from != std::string_view::npos) {
    std::string_view title = text.substr(from + 1, text.find('<', from + 1) - from - 1);
    while (!title.empty() && IsWhite(title.front())) title.remove_prefix(1);
    constexpr std::size_t kMost = 120;
    title = title.substr(0, std::min(title.find_first_of("\r\n"), kMost));
    while (!title.empty() && IsWhite(title.back())) title.remove_suffix(1);
    if (!title.empty()) {
      Append(sentence, ", \"");
      Append(sentence, title);
      Append(sentence, "\"");
    }
  }
  Append(sentence,
         ", not a statement; log in to the institution again and download the statement once more");
  return sentence;
}

// How many of the first lines have the same number of a separator, and at least one.
bool IsTable(std::string_view text, char separator) {
  constexpr std::size_t kLines = 5;
  std::size_t lines = 0;
  std::size_t alike = 0;
  std::ptrdiff_t before = 0;
  while (!text.empty() && lines < kLines) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    if (line.size() < 2) continue;
    const std::ptrdiff_t count = std::count(line.begin(), line.end(), separator);
    ++lines;
    if (count >= 2 && (before == 0 || count == before)) ++alike;
    before = count;
  }
  return lines != 0 && alike == lines;
}

bool IsText(std::string_view text) {
  return std::none_of(text.begin(), text.end(), [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte < 0x20 && c != '\t' && c != '\n' && c != '\r' && c != '\f';
  });
}

const char* DescribeZip(std::string_view text) {
  if (Contains(text, "xl/") || Contains(text, "[Content_Types].xml")) {
    return "this is a Microsoft Office file, such as an Excel sheet; download the statement again "
           "as "
           "OFX or QFX";
  }
  if (Contains(text, "opendocument")) {
    return "this is an OpenDocument file, such as a spreadsheet; download the statement again as "
           "OFX "
           "or QFX";
  }
  return "this is a ZIP archive; unpack it and read what is in it";
}

const char* DescribePlainText(std::string_view text) {
  for (const Words& words : kWords) {
    if (Contains(text, words.first) && (words.second.empty() || Contains(text, words.second))) {
      return words.sentence;
    }
  }
  const char first = text.front();
  if (first == '{' || first == '[') {
    return "this is JSON, not OFX; download the statement as OFX or QFX";
  }
  if (Contains(text, "OFXHEADER") || Contains(text, "<?OFX")) {
    return "there is an OFX header with no OFX text after it; the download broke off: download "
           "the "
           "statement again";
  }
  if (text.starts_with("<?xml") || text.starts_with('<')) {
    return "this is XML of another kind, not OFX; download the statement as OFX or QFX";
  }
  for (const char separator : {';', ',', '\t', '|'}) {
    if (IsTable(text, separator)) {
      return "this is a table (CSV), not OFX; download the statement again as OFX or QFX";
    }
  }
  return "this is a text without any OFX in it; download the statement as OFX or QFX";
}

}  // namespace

KRString DescribeForeignFile(std::string_view bytes) {
  std::string_view text = bytes.substr(0, kLookedAt);
  if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
  while (!text.empty() && (IsWhite(text.front()) || text.front() == '\0')) text.remove_prefix(1);
  if (text.empty()) {
    return bytes.empty() ? "it is empty; download it again"
                         : "there is nothing but blanks in it; download it again";
  }
  if (text.starts_with("PK\x03\x04")) return DescribeZip(text);
  for (const Signature& signature : kSignatures) {
    if (text.starts_with(signature.bytes)) return signature.sentence;
  }
  if (!IsText(text.substr(0, 4096))) {
    return "this is no text, and so not OFX; download the statement as OFX or QFX";
  }
  return IsHtml(text) ? DescribeHtml(text) : KRString(DescribePlainText(text));
}

}  // namespace krofx::internal
