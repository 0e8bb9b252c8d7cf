// The first bytes of the formats that institutions and browsers deliver in place of OFX.

#include "input/foreign_format.h"

#include <algorithm>
#include <cctype>

namespace krofx::command {

namespace {

using namespace std::string_view_literals;

struct Format {
  std::string_view start;
  const char* description;
};

constexpr char kHtml[] =
    "it is a web page, not OFX; sign on at the institution and download the statement again";
constexpr char kXml[] = "it is XML without OFX in it; download the statement as OFX or QFX";
constexpr char kOfxOfVersion2[] =
    "it is OFX of version 2, which only the reader that mends reads: leave out --strict";
constexpr char kCompressed[] = "it is compressed; unpack it first";

constexpr Format kFormats[] = {
    {"%PDF"sv, "it is a PDF document, not OFX; download the statement as OFX or QFX"},
    {"\x1f\x8b"sv, kCompressed},
    {"PK\x03\x04"sv, kCompressed},
    {"BZh"sv, kCompressed},
    {"\xfd\x37zXZ"sv, kCompressed},
    {"<!DOCTYPE HTML"sv, kHtml},
    {"<HTML"sv, kHtml},
    {"<?XML"sv, kXml},
    {"!TYPE:"sv, "it is QIF, not OFX; download the statement as OFX or QFX"},
};

constexpr std::string_view kByteOrderMark = "\xef\xbb\xbf";

}  // namespace

const char* DescribeForeignFormat(std::string_view text) {
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
  for (const Format& format : kFormats) {
    const std::string_view start = text.substr(0, format.start.size());
    const bool same = std::equal(start.begin(), start.end(), format.start.begin(),
                                 format.start.end(), [](char a, char b) {
                                   return std::toupper(static_cast<unsigned char>(a)) ==
                                          std::toupper(static_cast<unsigned char>(b));
                                 });
    if (!same) continue;
    const bool isOfx = format.description == kXml && text.find("<OFX>") != std::string_view::npos;
    return isOfx ? kOfxOfVersion2 : format.description;
  }
  return nullptr;
}

}  // namespace krofx::command
