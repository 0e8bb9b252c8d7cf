// What the file of banks may say, and what is said of a file that is wrong.

#include "banks/bank_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <map>
#include <string>

#include "banks/password_rules.h"
#include "support/failing_allocation.h"
#include "support/scoped_variable.h"
#include "support/temp_folder.h"

namespace krofx::command {
namespace {

const std::string kHarbor = "[harbor]\nurl = \"https://a.example\"\norg = \"O\"\nuser = \"ada\"\n";

std::string ProblemOf(const std::string& text) { return ParseBanks(text, "/home").problem; }

TEST(BankFile, SaysTheLineAndTheKeyThatAreWrong) {
  const std::map<std::string, std::string> problems = {
      {"timeout = 0", "timeout needs a whole number from 1 to 86400"},
      {"timeout = 86401", "timeout needs a whole number from 1 to 86400"},
      {"timeout = \"9\"", "timeout needs a whole number from 1 to 86400"},
      {"version = 3", "version needs a whole number from 1 to 2"},
      {"fid = 7", "fid needs a text in quotes"},
      {"fid = \"\"", "fid is empty"},
      {"fid = \"a\\u0007\"", "fid has a control character"},
      {"fid = \"a\\u007f\"", "fid has a control character"},
      {"keyring = \"yes\"", "keyring is true or false"},
      {"profile = 1", "profile is true or false"},
      {"root = 1", "root needs texts in quotes"},
      {"root = [\"a.pem\", 1]", "root needs texts in quotes"},
      {"client-id = 1", "client-id needs a text in quotes"},
      {"client-id = \"a b\"", "client-id is true, or up to 36 letters, digits and hyphens"},
      {"client-id = \"\u00e9\"", "client-id is true, or up to 36 letters, digits and hyphens"},
      {"client-id = \"" + std::string(37, 'a') + "\"",
       "client-id is true, or up to 36 letters, digits and hyphens"},
      {"keyring = true\npassword-command = \"pass\"",
       "harbor has both password-command and keyring; one is enough"},
      {"account = 1", "write each account under [[harbor.account]]"},
      {"account = [1]", "account is not a table; write [account]"},
      {"pass = \"x\"",
       "pass is not known; a password has no place in this file: use "
       "password-command, or keyring = true"},
      {"userpassword = \"x\"",
       "userpassword is not known; a password has no place in this file: "
       "use password-command, or keyring = true"},
      {"tiemout = 9", "tiemout is not known; did you mean timeout?"},
      {"zzz = 1\naaa = 1", "zzz is not known"},
      {"aaa = 1\nzzz = 1", "aaa is not known"},
  };
  for (const auto& [line, problem] : problems) {
    const std::string said = ProblemOf(kHarbor + line + "\n");
    EXPECT_TRUE(said.starts_with("line ")) << said;
    EXPECT_EQ(said.substr(said.find(": ") + 2), problem) << line;
  }
  EXPECT_EQ(ProblemOf(kHarbor + "zzz = 1\n"), "line 5: zzz is not known");
  EXPECT_EQ(ProblemOf("harbor = 1\n"), "line 1: harbor is not a table; write [harbor]");
  EXPECT_EQ(ProblemOf("[7bank]\n"),
            "line 1: the name of a bank has letters, digits, - and _, and begins with a letter");
  EXPECT_EQ(ProblemOf("[harbor]\norg = \"O\"\n"), "line 1: harbor needs url");
}

TEST(BankFile, SaysWhatAnAccountLacks) {
  const std::string one = "an account needs one of bank, broker, and card = true";
  const std::map<std::string, std::string> problems = {
      {"bank = \"34\"", "account needs account"},
      {"account = \"12\"", one},
      {"account = \"12\"\nbank = \"34\"\ncard = true", one},
      {"account = \"12\"\nbank = \"34\"\nbroker = \"b\"", one},
      {"account = \"12\"\ncard = true\ntype = \"SAVINGS\"",
       "branch and type are for accounts with bank"},
      {"account = \"12\"\nbroker = \"b\"\nbranch = \"1\"",
       "branch and type are for accounts with bank"},
      {"account = \"12\"\nbank = \"34\"\ntype = \"SAVING\"",
       "SAVING is not an account type; write CHECKING, SAVINGS, MONEYMRKT or CREDITLINE; did you "
       "mean SAVINGS?"},
      {"account = \"12\"\nbank = \"34\"\nnumber = \"5\"", "number is not known"},
  };
  for (const auto& [lines, problem] : problems) {
    const std::string said = ProblemOf(kHarbor + "[[harbor.account]]\n" + lines + "\n");
    EXPECT_EQ(said.substr(said.find(": ") + 2), problem) << lines;
  }
}

TEST(BankFile, RepeatsNoValueOfWhatIsNotToml) {
  for (const std::string line : {"user = secret", "user = \"secret", "user \"secret\"", "= secret",
                                 "user = \"a\" secret", "[harbor", "user = 'secret\n'"}) {
    const std::string said = ProblemOf("[harbor]\n" + line + "\n");
    EXPECT_NE(said.find("this is not TOML: "), std::string::npos) << said;
    EXPECT_EQ(said.find("secret"), std::string::npos) << said;
    EXPECT_EQ(said.find('\n'), std::string::npos) << said;
  }
}

TEST(BankFile, RefusesBytesThatAreNotUtf8) {
  for (const std::string quotes : {"'", "\"", "'''", "\"\"\""}) {
    const auto named = [&quotes](const std::string& name) {
      return kHarbor + "version = 1\ncountry = " + quotes + name + quotes + "\n";
    };
    EXPECT_EQ(ProblemOf(named("\xD6STERREICH")), "line 6: this is not UTF-8");
    EXPECT_EQ(ProblemOf(named("\xC3\x96STERREICH")), "");
  }
}

TEST(BankFile, TakesAllThatABankMaySay) {
  const BankList list =
      ParseBanks(kHarbor +
                     "client-id = true\nversion = 2\nprofile = false\nhosts = \"b.example\"\n"
                     "root = [\"a.pem\", \"/etc/b.pem\"]\ntimeout = 86400\napp-version = 9999\n"
                     "[[harbor.account]]\naccount = \"12\"\nbank = \"34\"\n"
                     "[[harbor.account]]\naccount = \"5500\"\ncard = true\n"
                     "[[harbor.account]]\naccount = \"77\"\nbroker = \"tern.example\"\n",
                 "/home/ada");
  ASSERT_EQ(list.problem, "");
  ASSERT_EQ(list.banks.size(), 1u);
  const Bank& bank = list.banks[0];
  EXPECT_TRUE(bank.makesClientId);
  EXPECT_EQ(bank.clientId, "");
  EXPECT_FALSE(bank.hasProfile);
  EXPECT_EQ(bank.timeout, 86400);
  EXPECT_EQ(bank.rootFiles, (std::vector<std::string>{"/home/ada/a.pem", "/etc/b.pem"}));
  ASSERT_EQ(bank.accounts.size(), 3u);
  EXPECT_EQ(bank.accounts[0].type, "CHECKING");
  EXPECT_EQ(bank.accounts[1].kind, AccountKind::kCard);
  EXPECT_EQ(bank.accounts[2].kind, AccountKind::kInvestment);
  EXPECT_EQ(bank.accounts[2].bank, "tern.example");
}

TEST(BankFile, FindsABankByItsNameAndSaysWhatThereIs) {
  std::string problem;
  EXPECT_EQ(FindBank({}, "@harbor", problem), nullptr);
  EXPECT_EQ(problem, "there is no bank harbor; none is known: add one with \"krofx bank add\"");
  const BankList list = ParseBanks(kHarbor, "/home");
  ASSERT_NE(FindBank(list, "@harbor", problem), nullptr);
  EXPECT_EQ(FindBank(list, "harbor", problem)->user, "ada");
  EXPECT_EQ(FindBank(list, "zzzzzz", problem), nullptr);
  EXPECT_EQ(problem, "there is no bank zzzzzz; \"krofx bank list\" names those there are");
  EXPECT_EQ(FindBank(list, "habor", problem), nullptr);
  EXPECT_EQ(problem, "there is no bank habor; did you mean harbor?");
}

TEST(PasswordRules, NameTheRuleThatAPasswordBreaks) {
  PasswordRules rules;
  EXPECT_EQ(FindBrokenRule(rules, ""), "");
  rules.least = 4;
  rules.most = 6;
  rules.special = rules.spaces = false;
  EXPECT_NE(FindBrokenRule(rules, "abc"), "");
  EXPECT_EQ(FindBrokenRule(rules, "abcd"), "");
  EXPECT_EQ(FindBrokenRule(rules, "aBc9ef"), "");
  EXPECT_NE(FindBrokenRule(rules, "abcdefg"), "");
  EXPECT_NE(FindBrokenRule(rules, "ab d"), "");
  EXPECT_NE(FindBrokenRule(rules, "ab-d"), "");
  for (const char* const kind : {"ALPHAONLY", "NUMERICONLY", "ALPHAORNUMERIC", "ALPHAANDNUMERIC"}) {
    rules.characters = kind;
    const std::string name = kind;
    EXPECT_EQ(FindBrokenRule(rules, "abcd") == "", name == "ALPHAONLY" || name == "ALPHAORNUMERIC")
        << kind;
    EXPECT_EQ(FindBrokenRule(rules, "1234") == "",
              name == "NUMERICONLY" || name == "ALPHAORNUMERIC")
        << kind;
    EXPECT_EQ(FindBrokenRule(rules, "ab12") == "",
              name == "ALPHAORNUMERIC" || name == "ALPHAANDNUMERIC")
        << kind;
  }
}

TEST(PasswordRules, SayHowLongAPasswordMustBe) {
  PasswordRules rules;
  rules.least = 1;
  EXPECT_EQ(FindBrokenRule(rules, ""), "it has at least 1 character");
  EXPECT_EQ(FindBrokenRule(rules, "x"), "");
  EXPECT_EQ(FindBrokenRule(rules, std::string(171, 'x')), "");
  rules.least = 2;
  EXPECT_EQ(FindBrokenRule(rules, "x"), "it has at least 2 characters");
  rules.least = 0;
  rules.most = 3;
  EXPECT_EQ(FindBrokenRule(rules, ""), "");
  EXPECT_EQ(FindBrokenRule(rules, "xxxx"), "it has at most 3 characters");
}

TEST(PasswordRules, TakeACharacterBeyondAsciiForALetter) {
  PasswordRules rules;
  rules.special = false;
  rules.characters = "NUMERICONLY";
  EXPECT_EQ(FindBrokenRule(rules, "12\xE9"), "it has no letters");
  rules.characters = "ALPHAONLY";
  EXPECT_EQ(FindBrokenRule(rules, "caf\xE9"), "");
  for (const char* const special : {"a{", "a[", "a@", "a`", "a/", "a:"}) {
    EXPECT_EQ(FindBrokenRule(rules, special), "it has no special characters") << special;
  }
}

TEST(PasswordRules, AreDescribedInAFewWords) {
  PasswordRules rules;
  EXPECT_EQ(DescribeRules(rules), "letters or digits, special characters, blanks");
  rules.special = rules.spaces = false;
  rules.characters = "ALPHAONLY";
  EXPECT_EQ(DescribeRules(rules), "letters, no blanks");
  rules.least = 6;
  EXPECT_EQ(DescribeRules(rules), "at least 6 letters, no blanks");
  rules.most = 32;
  rules.characters = "ALPHAANDNUMERIC";
  EXPECT_EQ(DescribeRules(rules), "6 to 32 letters and digits, both, no blanks");
  rules.least = 0;
  rules.characters = "NUMERICONLY";
  rules.mustChange = true;
  EXPECT_EQ(DescribeRules(rules),
            "at most 32 digits, no blanks; to be changed at the first sign-on");
  rules.caseMatters = rules.mustChange = false;
  EXPECT_EQ(DescribeRules(rules), "at most 32 digits, no blanks, in large or small letters alike");
}

// The file of banks in a folder of the test's own.
class BanksOnDisk : public testing::Test {
 protected:
  // Writes the file as it must be: for the user's eyes only.
  void Put(const std::string& text) const {
    std::filesystem::create_directories(m_folder.Path() / "krofx");
    ASSERT_EQ(::chmod(m_folder.Put("krofx/banks.toml", text).c_str(), 0600), 0);
  }
  std::string Get() const { return m_folder.Get("krofx/banks.toml"); }

  TempFolder m_folder;
  ScopedVariable m_config{"XDG_CONFIG_HOME", m_folder.Path().string()};
};

const std::string kHalden = "[halden]\nurl = \"https://b.example\"\norg = \"P\"\nuser = \"bob\"\n";

TEST_F(BanksOnDisk, KeepWhatTheUserWroteWhenABankComesOrGoes) {
  EXPECT_EQ(AddToBanks(kHarbor), "");
  EXPECT_EQ(Get(), kHarbor);
  Put("# mine\n" + kHarbor + "[[harbor.account]]\naccount = \"1\"\ncard = true");
  EXPECT_EQ(AddToBanks(kHalden), "");
  EXPECT_EQ(RemoveFromBanks("harbor"), "");
  EXPECT_EQ(Get(), "# mine\n" + kHalden);
}

TEST_F(BanksOnDisk, StayAsTheyAreWhenAChangeWouldNotDoWhatItShould) {
  const std::string byHand =
      m_folder.Name("krofx/banks.toml") + " cannot be changed safely; edit it by hand";
  // A bank that no line of its own begins.
  const std::string dotted =
      "harbor.url = \"https://a.example\"\nharbor.org = \"O\"\nharbor.user = \"ada\"\n";
  // One with a line of a text that looks like the start of another.
  const std::string test = kHarbor + "password-command = \"\"\"\\\n[ -e key ] && cat key\"\"\"\n";
  for (const std::string& harbor : {dotted, test}) {
    Put(harbor + kHalden);
    EXPECT_EQ(RemoveFromBanks("harbor"), byHand);
    EXPECT_EQ(Get(), harbor + kHalden);
  }
  // A bank that is there already, and an account of none.
  Put(kHalden);
  const std::string account = "\n[[other.account]]\naccount = \"1\"\n";
  for (const std::string& text : {kHalden, account}) {
    EXPECT_EQ(AddToBanks(text), byHand);
    EXPECT_EQ(Get(), kHalden);
  }
}

TEST_F(BanksOnDisk, StayAsTheyAreWhenTheyCannotBeRead) {
  Put(kHarbor + "wrong\n");
  EXPECT_NE(AddToBanks(kHalden), "");
  EXPECT_NE(RemoveFromBanks("harbor"), "");
  EXPECT_EQ(Get(), kHarbor + "wrong\n");
  Put(kHarbor);
  ASSERT_EQ(::chmod(m_folder.Name("krofx/banks.toml").c_str(), 0640), 0);
  const std::string open = "others can read or change it";
  EXPECT_NE(AddToBanks(kHalden).find(open), std::string::npos);
  EXPECT_NE(RemoveFromBanks("harbor").find(open), std::string::npos);
  EXPECT_EQ(Get(), kHarbor);
}

TEST_F(BanksOnDisk, StayAsTheyAreWhenTheyCannotBeWritten) {
  Put(kHarbor);
  std::size_t failed = 0;
  for (std::size_t nth = 1;; ++nth, ++failed) {
    std::string problem;
    {
      const FailingAllocation failing(nth, true);
      problem = AddToBanks(kHalden);
    }
    if (problem.empty()) break;
    EXPECT_NE(problem.find("not enough memory"), std::string::npos) << problem;
    EXPECT_EQ(Get(), kHarbor);
  }
  EXPECT_GE(failed, 3U);
  EXPECT_EQ(Get(), kHarbor + "\n" + kHalden);
  // The same when something else is in the place of the file, or of its folder.
  const ScopedVariable empty("XDG_CONFIG_HOME", m_folder.Name("empty"));
  EXPECT_EQ(AddToBanks(kHarbor), "");
  const ScopedVariable nowhere("XDG_CONFIG_HOME", "/proc/nowhere");
  EXPECT_TRUE(AddToBanks(kHalden).starts_with("/proc/nowhere: the folder cannot be made: "));
}

}  // namespace
}  // namespace krofx::command
