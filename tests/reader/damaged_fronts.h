// Texts with damage in front of their body: to the header, and to the whole text before it is read.

#ifndef KROFX_TESTS_READER_DAMAGED_FRONTS_H_
#define KROFX_TESTS_READER_DAMAGED_FRONTS_H_

#include <string>
#include <vector>

#include "support/ofx_text.h"

namespace krofx::testing {

/// One text for each way to damage a header, and some for several at once. With the private tag
/// in the body none of them is clean, so all are mended.
inline std::vector<std::string> TextsWithDamagedFronts() {
  const std::string whole = BankStatementFile("<ACME.X>1");
  const std::string header = whole.substr(0, whole.find('<'));
  const std::string body = whole.substr(header.size());
  const auto with = [&whole](const char* was, const std::string& is) {
    std::string text = whole;
    return text.replace(text.find(was), std::string(was).size(), is);
  };
  std::string oneLine = header;
  std::erase(oneLine, '\r');
  std::erase(oneLine, '\n');
  std::string cut = "Content-Type: multipart/x; boundary=CUT\r\n\r\n--cut\r\n\r\n" + whole;
  return {
      body,
      "Dear customer\n" + body,
      "Dear customer\n" + whole,
      "\r\n \r\n" + whole,
      oneLine + body,
      with("DATA:OFXSGML\r\n", "DATA:OFXSGML\r\n\r\n"),
      with("DATA:OFXSGML\r\n", "DATA:OFXSGML\r\nBANK:Harbor\r\n"),
      with("DATA:OFXSGML\r\n", "DATA:OFXSGML and so on\r\n"),
      with("NEWFILEUID:NONE\r\n\r\n", "NEWFILEUID:NONE and so on\r\n\r\n"),
      with("NEWFILEUID:NONE\r\n\r\n", "NEWFILEUID:NONE\r\n"),
      with("VERSION:102", "VERSION:300"),
      with("OFXHEADER:100", "OFXHEADER:1"),
      with("COMPRESSION:NONE", "COMPRESSION:TYPE1"),
      with("SECURITY:NONE\r\n", ""),
      with("CHARSET:1252", "CHARSET:KLINGON"),
      with("<CURDEF>USD", "<CURDEF>USD<MKTGINFO>Caf\xE9 &#322; \xC3\xA9"),
      "<?xml version=\"1.0\"?>\n" + whole,
      "Dear customer <?OFX OFXHEADER=\"200\" VERSION=\"203\"?>" + body,
      "\xEF\xBB\xBF" + whole,
      "\xEF\xBB\xBF Dear customer " + oneLine + body,
      std::string("\0\x01", 2) + whole,
      cut,
  };
}

}  // namespace krofx::testing

#endif  // KROFX_TESTS_READER_DAMAGED_FRONTS_H_
