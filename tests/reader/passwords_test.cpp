// Passwords whose tags are damaged: what the reader says of a text shows nothing of them.

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "core/all_tags.h"
#include "krofx/core/internal/passwords.h"
#include "krofx/reader/reading.h"
#include "support/ofx_text.h"
#include "support/readings.h"

namespace krofx::testing {
namespace {

constexpr std::string_view kPassword = "Hunter2Secret";

constexpr std::string_view kHeader =
    "OFXHEADER:100\nDATA:OFXSGML\nVERSION:151\nSECURITY:NONE\nENCODING:USASCII\nCHARSET:1252\n"
    "COMPRESSION:NONE\nOLDFILEUID:NONE\nNEWFILEUID:NONE\n\n";

// A text around a tag of a password, as lines.
struct Frame {
  std::string_view tag;
  std::string_view front;
  std::string_view after;
};

constexpr Frame kFrames[] = {
    {"<USERPASS>", "<OFX>\n<SIGNONMSGSRQV1>\n<SONRQ>\n<DTCLIENT>20260615065500\n<USERID>ada.w\n",
     "\n<LANGUAGE>ENG\n<FI>\n<ORG>SEEBANK\n<FID>800\n</FI>\n<APPID>KROFX\n<APPVER>0010\n"
     "</SONRQ>\n</SIGNONMSGSRQV1>\n</OFX>\n"},
    {"<ONETIMEPASS>",
     "<OFX>\n<SIGNONMSGSRQV2>\n<SONRQ>\n<DTCLIENT>20260615065500\n<USERID>ada.w\n<USERPASS>x\n",
     "\n<LANGUAGE>ENG\n<COUNTRY>CHE\n<APPID>KROFX\n<APPVER>0010\n</SONRQ>\n</SIGNONMSGSRQV2>\n"
     "</OFX>\n"},
    {"<NEWUSERPASS>",
     "<OFX>\n<SIGNONMSGSRQV1>\n<PINCHTRNRQ>\n<TRNUID>1\n<PINCHRQ>\n<USERID>ada.w\n",
     "\n</PINCHRQ>\n</PINCHTRNRQ>\n</SIGNONMSGSRQV1>\n</OFX>\n"},
    {"<TEMPPASS>",
     "<OFX>\n<SIGNUPMSGSRSV1>\n<ENROLLTRNRS>\n<TRNUID>1\n<STATUS>\n<CODE>0\n<SEVERITY>INFO\n"
     "</STATUS>\n<ENROLLRS>\n",
     "\n<USERID>ada.w\n<DTEXPIRE>20260510\n</ENROLLRS>\n</ENROLLTRNRS>\n</SIGNUPMSGSRSV1>\n"
     "</OFX>\n"},
};

// All that one character more, less or other makes of a tag.
std::vector<std::string> Damaged(std::string_view tag) {
  constexpr std::string_view kCharacters = std::string_view(" <>/X\n\t\0\"=:[{(!?&-.p9\xc3", 23);
  std::vector<std::string> all{std::string(tag)};
  for (std::size_t at = 0; at <= tag.size(); ++at) {
    const std::string front(tag.substr(0, at));
    if (at < tag.size()) all.push_back(front + std::string(tag.substr(at + 1)));
    for (const char character : kCharacters) {
      all.push_back(front + character + std::string(tag.substr(at)));
      if (at < tag.size()) all.push_back(front + character + std::string(tag.substr(at + 1)));
    }
  }
  return all;
}

bool Shows(const KRString& text) {
  const std::string shown = Str(text);
  for (std::size_t at = 0; at + 4 <= kPassword.size(); ++at) {
    if (shown.find(kPassword.substr(at, 4)) != std::string::npos) return true;
  }
  return false;
}

bool Shows(const Reading& reading) {
  return Shows(reading.problem) ||
         std::any_of(reading.mendings.begin(), reading.mendings.end(),
                     [](const Mending& each) {
                       return Shows(each.tag) || Shows(each.was) || Shows(each.taken);
                     }) ||
         std::any_of(reading.warnings.begin(), reading.warnings.end(), [](const ReadWarning& each) {
           return Shows(each.tagText) || Shows(each.value);
         });
}

void ExpectHidden(const std::string& text, const std::string& tag) {
  for (const bool strict : {false, true}) {
    ReadOptions options;
    options.strict = strict;
    const Reading reading = Read(text, options);
    EXPECT_FALSE(Shows(reading)) << tag << (strict ? " read to the letter" : "") << '\n'
                                 << text << ::testing::PrintToString(MendingLines(reading))
                                 << ::testing::PrintToString(WarningLines(reading));
  }
}

TEST(ReadPasswords, AreStarsWhateverCharacterOfTheirTagIsDamaged) {
  for (const Frame& frame : kFrames) {
    for (const std::string& tag : Damaged(frame.tag)) {
      const std::string body =
          std::string(frame.front) + tag + std::string(kPassword) + std::string(frame.after);
      std::string line = body;
      line.erase(std::remove(line.begin(), line.end(), '\n'), line.end());
      ExpectHidden(std::string(kHeader) + body, tag);
      ExpectHidden(std::string(kHeader) + line, tag);
    }
  }
}

TEST(ReadPasswords, AreStarsWhateverCharacterOfTheTagBeforeIsDamaged) {
  for (const Frame& frame : kFrames) {
    const std::size_t before = frame.front.rfind('<');
    for (const std::string& damaged : Damaged(frame.front.substr(before))) {
      const std::string body = std::string(frame.front.substr(0, before)) + damaged +
                               std::string(frame.tag) + std::string(kPassword) +
                               std::string(frame.after);
      ExpectHidden(std::string(kHeader) + body, damaged);
    }
  }
}

TEST(ReadPasswords, AreStarsWhenTheirTagRunsIntoTheOneBefore) {
  for (const Frame& frame : kFrames) {
    for (std::size_t lost = 1; lost <= 3; ++lost) {
      for (std::size_t begun = 1; begun <= 3; ++begun) {
        std::string front(frame.front);
        front.resize(front.rfind('>') + 1 - lost + 1);
        const std::string tag(frame.tag.substr(begun));
        ExpectHidden(
            std::string(kHeader) + front + tag + std::string(kPassword) + std::string(frame.after),
            front.substr(front.rfind('<')) + tag);
      }
    }
  }
}

TEST(ReadPasswords, AreStarsAsTags) {
  for (const Frame& frame : kFrames) {
    for (const std::size_t length : {std::size_t{0}, frame.tag.size() - 2, frame.tag.size() - 1}) {
      const std::string tag = std::string(frame.tag.substr(0, length)) + '<';
      const std::string text = std::string(kHeader) + std::string(frame.front) + tag +
                               std::string(kPassword) + std::string(frame.after);
      ExpectHidden(text, tag);
    }
  }
}

TEST(ReadPasswords, AreStarsWhenTheyAreTooLong) {
  for (const Frame& frame : kFrames) {
    std::string body = std::string(frame.front) + std::string(frame.tag);
    for (int times = 0; times < 20; ++times) body += kPassword;
    ExpectHidden(std::string(kHeader) + body + std::string(frame.after), std::string(frame.tag));
  }
}

TEST(ReadPasswords, LeaveTheirTagsInWhatIsSaid) {
  std::string text = BankStatementFile("");
  text.insert(text.find("<OFX>") + 5, "<USERPAS>Hunter2Secret<TEMPPASS>Hunter2Secret");
  EXPECT_EQ(WarningLines(Read(text)), Lines{});
  const Lines lines = MendingLines(Read(text));
  const auto says = [&lines](std::string_view what) {
    return std::any_of(lines.begin(), lines.end(), [what](const std::string& line) {
      return line.find(what) != std::string::npos;
    });
  };
  EXPECT_TRUE(says("<USERPAS> \"*************\"")) << ::testing::PrintToString(lines);
  EXPECT_TRUE(says("<TEMPPASS> \"*************\"")) << ::testing::PrintToString(lines);
}

TEST(ReadPasswords, HideNoCleanValueBesideThem) {
  const Frame& frame = kFrames[0];
  std::string body = std::string(frame.front) + std::string(frame.tag) + std::string(kPassword) +
                     std::string(frame.after);
  body.replace(body.find("<LANGUAGE>ENG"), 13, "<LANGUAGE>eng");
  body.replace(body.find("20260615065500"), 14, "15 June 2026");
  const Lines lines = MendingLines(Read(std::string(kHeader) + body));
  ASSERT_FALSE(lines.empty());
  for (const std::string& line : lines) EXPECT_EQ(line.find('*'), std::string::npos) << line;
}

TEST(PasswordTags, AreNoOtherTagsOfOfx) {
  for (const std::string_view tag : kAllTags) {
    const bool isPassword = std::any_of(std::begin(kFrames), std::end(kFrames), [tag](auto& each) {
      return each.tag.substr(1, each.tag.size() - 2) == tag;
    });
    EXPECT_EQ(internal::LengthOfPasswordTag(tag) != 0, isPassword) << tag;
  }
}

TEST(PasswordTags, AreFoundWhereTheyBegin) {
  EXPECT_EQ(internal::FindPasswordTag("ada <USERPASS>x"), 4u);
  EXPECT_EQ(internal::FindPasswordTag("ada </userpas"), 4u);
  EXPECT_EQ(internal::FindPasswordTag("ada XEMPPASS>x"), 4u);
  EXPECT_EQ(internal::FindPasswordTag("a < b > c <ONE"), std::string_view::npos);
  EXPECT_EQ(internal::FindPasswordTag("USERPASS"), std::string_view::npos);
  EXPECT_EQ(internal::FindPasswordTag(""), std::string_view::npos);
}

}  // namespace
}  // namespace krofx::testing
