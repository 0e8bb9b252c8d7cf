// File names in `file:` URLs and back.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "krofx/transport/contract/net_request.h"
#include "krofx/transport/files/internal/file_url.h"

namespace {

// The name, or "no" for a URL that names none.
std::string NameOf(const std::string& url) {
  std::vector<char> out(url.size() + 1, '#');
  const u16 result = KRNetRequest::ConvertFileURLToLocalFileName(out.data(), url.c_str());
  if (result == 0) {
    EXPECT_EQ(out[0], '\0') << url;
    return "no";
  }
  EXPECT_EQ(result, 1);
  return out.data();
}

std::string UrlOf(const std::string& name) {
  std::vector<char> out(name.size() + 8, '#');
  EXPECT_EQ(KRNetRequest::ConvertLocalFileNameToFileURL(out.data(), name.c_str()), 1);
  return out.data();
}

TEST(HasFileScheme, LooksAtTheFirstFiveCharactersIgnoringCase) {
  for (const char* url : {"file:", "file:x", "FILE:x", "FiLe:///c|/a"}) {
    EXPECT_EQ(KRNetRequest::HasFileScheme(url), 1) << url;
  }
  for (const char* url : {"", "f", "file", "file;", "files:x", "http:x", " file:x", "fi|e:x"}) {
    EXPECT_EQ(KRNetRequest::HasFileScheme(url), 0) << url;
  }
}

TEST(HasFileScheme, IsNotInANullUrl) { EXPECT_EQ(KRNetRequest::HasFileScheme(nullptr), 0); }

TEST(FileUrlToName, MatchesTheSchemeWithoutRegardToCase) {
  EXPECT_EQ(NameOf("FILE:/x"), "x");
  EXPECT_EQ(NameOf("FILE:x"), "") << "the character after the scheme is skipped";
}

TEST(FileUrlToName, SkipsTheCharacterBehindTheSchemeWhateverItIs) {
  EXPECT_EQ(NameOf("file:c|/a.ofx"), ":\\a.ofx");
  EXPECT_EQ(NameOf("file:?a"), "a");
}

TEST(FileUrlToName, SkipsOneMoreSlashOnly) {
  EXPECT_EQ(NameOf("file:/a"), "a");
  EXPECT_EQ(NameOf("file://a"), "a");
  EXPECT_EQ(NameOf("file:///a"), "\\a");
  EXPECT_EQ(NameOf("file:x/a"), "a");
}

TEST(FileUrlToName, KeepsOneLeadingBackslashOfThreeSlashes) {
  EXPECT_EQ(NameOf("file:///c|/a"), "\\c:\\a");
  EXPECT_EQ(NameOf("file:///tmp/x"), "\\tmp\\x");
}

TEST(FileUrlToName, TurnsSlashesAndBarsAndNothingElse) {
  EXPECT_EQ(NameOf("file://c|/dir/a b%20.ofx:1\\2"), "c:\\dir\\a b%20.ofx:1\\2");
}

TEST(FileUrlToName, SucceedsWhenNothingIsLeft) {
  for (const char* url : {"file:/", "file://", "file:x"}) EXPECT_EQ(NameOf(url), "") << url;
}

TEST(FileUrlToName, ReadsNothingBehindABareScheme) { EXPECT_EQ(NameOf("file:"), ""); }

TEST(FileUrlToName, GivesNoNameForOtherUrls) {
  EXPECT_EQ(NameOf("http://x/y"), "no");
  EXPECT_EQ(NameOf(""), "no");
}

TEST(FileUrlToName, RefusesNullPointers) {
  char out[4] = "abc";
  EXPECT_EQ(KRNetRequest::ConvertFileURLToLocalFileName(out, nullptr), 0);
  EXPECT_STREQ(out, "");
  EXPECT_EQ(KRNetRequest::ConvertFileURLToLocalFileName(nullptr, "file:/x"), 0);
}

TEST(FileUrlToName, RefusesANameThatHasNoRoom) {
  char out[4] = "abc";
  EXPECT_TRUE(krofx::internal::FileUrlToName(out, sizeof out, "file:/123"));
  EXPECT_STREQ(out, "123");
  EXPECT_FALSE(krofx::internal::FileUrlToName(out, sizeof out, "file:/1234"));
  EXPECT_STREQ(out, "");
}

TEST(NameToFileUrl, CopiesAUrlWhole) {
  EXPECT_EQ(UrlOf("file:whatever:\\x"), "file:whatever:\\x");
  EXPECT_EQ(UrlOf("FILE:///c|/A"), "FILE:///c|/A");
}

TEST(NameToFileUrl, WritesASecondSlashBeforeDrivesAndBackslashes) {
  EXPECT_EQ(UrlOf("c:\\dir\\a.ofx"), "file://c|/dir/a.ofx");
  EXPECT_EQ(UrlOf("\\dir\\a.ofx"), "file:///dir/a.ofx");
  EXPECT_EQ(UrlOf("\\\\host\\a"), "file:////host/a");
  EXPECT_EQ(UrlOf("a\\b"), "file:/a/b");
  EXPECT_EQ(UrlOf("/tmp/x"), "file://tmp/x") << "a slash is not looked at";
}

TEST(NameToFileUrl, TurnsColonsAndBackslashesEverywhere) {
  EXPECT_EQ(UrlOf("ab:c\\d:|/"), "file:/ab|c/d||/");
}

TEST(NameToFileUrl, WritesShortNames) {
  EXPECT_EQ(UrlOf(""), "file:/");
  EXPECT_EQ(UrlOf("a"), "file:/a");
  EXPECT_EQ(UrlOf(":"), "file:/|");
  EXPECT_EQ(UrlOf("\\"), "file:///");
}

TEST(NameToFileUrl, ComesBackFromTheUrl) {
  for (const char* name : {"c:\\dir\\a.ofx", "dir\\a.ofx", "\\\\host\\a", "\\tmp\\x", "a"}) {
    EXPECT_EQ(NameOf(UrlOf(name)), name);
  }
}

TEST(NameToFileUrl, RefusesNullPointers) {
  char out[8] = "kept";
  EXPECT_EQ(KRNetRequest::ConvertLocalFileNameToFileURL(out, nullptr), 0);
  EXPECT_STREQ(out, "kept");
  EXPECT_EQ(KRNetRequest::ConvertLocalFileNameToFileURL(nullptr, "a"), 0);
}

}  // namespace
