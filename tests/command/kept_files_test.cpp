// What is kept of banks between runs: profiles, tokens and client identifiers; and what is said
// when nothing can be kept.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <string>

#include "banks/client_id.h"
#include "banks/places.h"
#include "banks/profile_file.h"
#include "banks/sync_tokens.h"
#include "support/failing_allocation.h"
#include "support/scoped_variable.h"
#include "support/temp_folder.h"

namespace krofx::command {
namespace {

constexpr char kNoHome[] = "there is no home folder; set HOME";

Bank Harbor() {
  Bank bank;
  bank.name = "harbor";
  bank.url = "https://a.example/ofx";
  bank.organisation = "HARBORFED";
  bank.institutionId = "40711";
  bank.user = "ada.w";
  return bank;
}

// The folders of a user, in a folder of the test's own.
class KeptFiles : public testing::Test {
 protected:
  std::string InState(const std::string& name) const { return "state/krofx/" + name; }
  // Puts something in the place of a file, so that it can be neither read nor replaced.
  void PutFolder(const std::string& name) const {
    std::filesystem::remove_all(m_folder.Path() / name);
    std::filesystem::create_directories(m_folder.Path() / name);
  }
  void LetOthersWrite(const std::string& name) const {
    ASSERT_EQ(::chmod(m_folder.Name(name).c_str(), 0666), 0);
  }
  mode_t ModeOf(const std::string& name) const {
    struct stat status {};
    EXPECT_EQ(::stat(m_folder.Name(name).c_str(), &status), 0) << name;
    return status.st_mode & 07777;
  }

  TempFolder m_folder;
  ScopedVariable m_home{"HOME", m_folder.Name("home")};
  ScopedVariable m_state{"XDG_STATE_HOME", m_folder.Name("state")};
};

// No folder to keep anything in.
struct NoHome {
  ScopedVariable home{"HOME", "not/from/the/root"};
  ScopedVariable state{"XDG_STATE_HOME", "nor/this"};
};

// A folder that cannot be made, for root neither.
struct NoFolder {
  static bool IsSaid(const std::string& problem) {
    return problem.starts_with("/proc/nowhere: the folder cannot be made: ");
  }
  ScopedVariable state{"XDG_STATE_HOME", "/proc/nowhere"};
};

class Profiles : public KeptFiles {
 protected:
  static std::string Keep() {
    const std::string text =
        "OFXHEADER:100\nDATA:OFXSGML\nVERSION:102\nSECURITY:NONE\nENCODING:USASCII\nCHARSET:1252\n"
        "COMPRESSION:NONE\nOLDFILEUID:NONE\nNEWFILEUID:NONE\n\n"
        "<OFX><SIGNONMSGSRSV1><SONRS><STATUS><CODE>0<SEVERITY>INFO</STATUS><DTSERVER>20260101"
        "<LANGUAGE>ENG</SONRS></SIGNONMSGSRSV1><PROFMSGSRSV1><PROFTRNRS><TRNUID>1<STATUS><CODE>0"
        "<SEVERITY>INFO</STATUS><PROFRS><DTPROFUP>20251115<FINAME>H</PROFRS></PROFTRNRS>"
        "</PROFMSGSRSV1></OFX>";
    KRBuffer reply(0, 256);
    EXPECT_EQ(reply.WriteLarge(text.data(), static_cast<u32>(text.size())), KRBufferOK);
    return KeepProfile(Harbor(), 1, reply);
  }
  static bool IsTaken() { return ReadKeptProfile(Harbor(), 1) != nullptr; }

  const std::string m_profile = InState("banks/harbor/profile-v1.ofx");
};

TEST_F(Profiles, AreTakenAsTheyWereKept) {
  EXPECT_FALSE(IsTaken());
  EXPECT_EQ(Keep(), "");
  const auto profile = ReadKeptProfile(Harbor(), 1);
  ASSERT_NE(profile, nullptr);
  EXPECT_EQ(profile->DayText(), "2025-11-15");
  EXPECT_EQ(ModeOf(m_profile), 0600U);
  EXPECT_EQ(ModeOf(m_profile + ".from"), 0600U);
  EXPECT_EQ(ModeOf(InState("banks/harbor")), 0700U);
  ForgetProfiles("harbor");
  EXPECT_FALSE(IsTaken());
}

TEST_F(Profiles, AreNotTakenWhenOthersCanChangeThemOrTheirNotes) {
  EXPECT_EQ(Keep(), "");
  LetOthersWrite(m_profile);
  EXPECT_FALSE(IsTaken());
  EXPECT_EQ(Keep(), "");
  EXPECT_TRUE(IsTaken());
  LetOthersWrite(m_profile + ".from");
  EXPECT_FALSE(IsTaken());
  EXPECT_EQ(Keep(), "");
  EXPECT_TRUE(IsTaken());
}

TEST_F(Profiles, AreOnlyOfTheAddressAndTheInstitutionTheyCameFrom) {
  EXPECT_EQ(Keep(), "");
  for (std::string Bank::*const part : {&Bank::url, &Bank::organisation, &Bank::institutionId}) {
    Bank other = Harbor();
    other.*part += "x";
    EXPECT_EQ(ReadKeptProfile(other, 1), nullptr);
  }
  EXPECT_EQ(ReadKeptProfile(Harbor(), 2), nullptr);
  EXPECT_TRUE(IsTaken());
}

TEST_F(Profiles, CountAsNoneWithoutANoteThatCanBeRead) {
  EXPECT_EQ(Keep(), "");
  std::filesystem::remove(m_folder.Name(m_profile + ".from"));
  EXPECT_FALSE(IsTaken());
  EXPECT_EQ(Keep(), "");
  PutFolder(m_profile + ".from");
  EXPECT_FALSE(IsTaken());
}

TEST_F(Profiles, SayWhenTheyCannotBeKept) {
  PutFolder(m_profile);
  EXPECT_EQ(Keep(), "nothing is kept");
  EXPECT_FALSE(m_folder.Has(m_profile + ".from"));
  std::filesystem::remove(m_folder.Name(m_profile));
  // A note that cannot be written leaves none, so that the profile is not taken.
  PutFolder(m_profile + ".from/something");
  EXPECT_EQ(Keep(), "nothing is kept");
  EXPECT_FALSE(IsTaken());
  std::filesystem::remove_all(m_folder.Name(m_profile + ".from"));
  {
    const FailingAllocation failing(3, true);  // After those of the reply.
    EXPECT_EQ(Keep(), "not enough memory");
  }
  EXPECT_FALSE(IsTaken());
  {
    const NoFolder nowhere;
    EXPECT_TRUE(NoFolder::IsSaid(Keep()));
    EXPECT_FALSE(IsTaken());
  }
  {
    const NoHome nobody;
    EXPECT_EQ(Keep(), kNoHome);
    EXPECT_FALSE(IsTaken());
    // With no place there is nothing to remove, and nothing else is removed.
    ForgetProfiles("harbor");
  }
  EXPECT_TRUE(m_folder.Has(m_profile));
}

class Tokens : public KeptFiles {
 protected:
  static std::string Keep(const std::string& token) {
    const Bank bank = Harbor();
    SyncTokens tokens(bank);
    tokens.Set(kKey, token);
    return tokens.Save();
  }
  static std::string Kept(const Bank& bank = Harbor()) { return SyncTokens(bank).Get(kKey); }

  static inline const std::string kKey = "1\tINTRASYNCRQ";
  const std::string m_tokens = InState("tokens/harbor");
};

TEST_F(Tokens, AreKeptForWhomTheyCameFromAlone) {
  EXPECT_EQ(Kept(), "0");
  EXPECT_EQ(Keep("17"), "");
  EXPECT_EQ(Kept(), "17");
  EXPECT_EQ(ModeOf(m_tokens), 0600U);
  for (std::string Bank::*const part :
       {&Bank::url, &Bank::organisation, &Bank::institutionId, &Bank::user}) {
    Bank other = Harbor();
    other.*part += "x";
    EXPECT_EQ(Kept(other), "0");
  }
  ForgetTokens("harbor");
  EXPECT_EQ(Kept(), "0");
}

TEST_F(Tokens, KeepTheirLinesWhateverTheBankPutsIntoThem) {
  EXPECT_EQ(Keep("a\nb\tc"), "");
  EXPECT_EQ(Kept(), "a b c");
  Account account;
  account.number = "1\n2";
  account.bank = "3\t4";
  EXPECT_EQ(SyncTokens::KeyOf(2, "INTRASYNCRQ", &account), "2\tINTRASYNCRQ\t3 4\t\t1 2\t");
  EXPECT_EQ(SyncTokens::KeyOf(2, "MAILSYNCRQ", nullptr), "2\tMAILSYNCRQ");
}

TEST_F(Tokens, AskForAllAgainWhenTheirFileIsDamaged) {
  EXPECT_EQ(Keep("17"), "");
  const std::string whole = m_folder.Get(m_tokens);
  // A line that has no token is passed over, and the others count.
  m_folder.Put(m_tokens, whole.substr(0, whole.find('\n') + 1) + "no token\n\n" +
                             whole.substr(whole.find('\n') + 1));
  EXPECT_EQ(Kept(), "17");
  m_folder.Put(m_tokens, "");
  EXPECT_EQ(Kept(), "0");
  PutFolder(m_tokens);
  EXPECT_EQ(Kept(), "0");
}

TEST_F(Tokens, SayWhenTheyCannotBeKept) {
  PutFolder(m_tokens);
  EXPECT_EQ(Keep("17"), "how far its news were fetched is not kept");
  std::filesystem::remove(m_folder.Name(m_tokens));
  EXPECT_EQ(Keep("17"), "");
  {
    const NoFolder nowhere;
    EXPECT_TRUE(NoFolder::IsSaid(Keep("18")));
  }
  {
    const NoHome nobody;
    EXPECT_EQ(Kept(), "0");
    EXPECT_EQ(Keep("18"), kNoHome);
    ForgetTokens("harbor");
  }
  {
    const Bank bank = Harbor();
    SyncTokens tokens(bank);
    tokens.Set(kKey, "18");
    const FailingAllocation failing(1, true);
    EXPECT_EQ(tokens.Save(), "not enough memory");
  }
  // What was kept before is still there.
  EXPECT_EQ(Kept(), "17");
}

class ClientIds : public KeptFiles {
 protected:
  static std::string Ask(std::string& problem) {
    problem.clear();
    return ClientIdOf(Harbor(), problem);
  }

  const std::string m_id = InState("client-ids/harbor");
};

TEST_F(ClientIds, AreMadeOnceAndKept) {
  std::string problem;
  const std::string id = Ask(problem);
  EXPECT_EQ(problem, "");
  EXPECT_EQ(id.size(), 36U);
  EXPECT_EQ(m_folder.Get(m_id), id + "\n");
  EXPECT_EQ(ModeOf(m_id), 0600U);
  EXPECT_EQ(Ask(problem), id);
  // That of the file of banks comes first.
  Bank given = Harbor();
  given.clientId = "of-the-file";
  EXPECT_EQ(ClientIdOf(given, problem), "of-the-file");
}

TEST_F(ClientIds, AreNotSentWhenTheyCannotBeKept) {
  std::string problem;
  const auto unkept = [&problem] { return Ask(problem).empty() && !problem.empty(); };
  // A file that is there is never replaced, since a bank may know the user by what was in it.
  std::filesystem::create_directories(m_folder.Path() / InState("client-ids"));
  m_folder.Put(m_id, "");
  EXPECT_TRUE(unkept());
  EXPECT_EQ(problem, m_folder.Name(m_id) + ": the client identifier cannot be kept");
  EXPECT_EQ(m_folder.Get(m_id), "");
  PutFolder(m_id);
  EXPECT_TRUE(unkept());
  std::filesystem::remove(m_folder.Name(m_id));
  {
    const FailingAllocation failing(1, true);
    EXPECT_TRUE(unkept());
  }
  EXPECT_FALSE(m_folder.Has(m_id));
  {
    const NoFolder nowhere;
    EXPECT_TRUE(unkept());
    EXPECT_TRUE(NoFolder::IsSaid(problem));
  }
  const NoHome nobody;
  EXPECT_TRUE(unkept());
  EXPECT_EQ(problem, kNoHome);
}

TEST_F(ClientIds, GoIntoARequestWholeOrNotAtAll) {
  const std::string text = "VERSION:102\n\n<OFX><APPVER>5\n</SONRQ>";
  KRBuffer request(0, 256);
  ASSERT_EQ(request.WriteLarge(text.data(), static_cast<u32>(text.size())), KRBufferOK);
  const std::string id(36, 'x');
  for (const std::size_t nth : {1U, 2U}) {
    const FailingAllocation failing(nth, true);
    EXPECT_EQ(WithClientId(request, id), nullptr);
  }
  const std::unique_ptr<KRBuffer> given = WithClientId(request, id);
  ASSERT_NE(given, nullptr);
  EXPECT_EQ(given->GetBufferSize(), text.size() + id.size() + sizeof "<CLIENTUID>");
}

TEST(Places, AreInTheHomeOfTheUserUnlessAVariableNamesOthers) {
  const ScopedVariable home("HOME", "/home/ada");
  {
    const ScopedVariable state("XDG_STATE_HOME", "/var/state");
    const ScopedVariable data("XDG_DATA_HOME", "/var/data");
    const ScopedVariable config("XDG_CONFIG_HOME", "/var/config");
    EXPECT_EQ(StateFolder(), "/var/state/krofx");
    EXPECT_EQ(DataFolder(), "/var/data/krofx");
    EXPECT_EQ(BanksFile(), "/var/config/krofx/banks.toml");
  }
  // What is not from the root counts as not set.
  for (const char* const named : {"", "relative/folder", "~/state"}) {
    const ScopedVariable state("XDG_STATE_HOME", named);
    const ScopedVariable data("XDG_DATA_HOME", named);
    const ScopedVariable config("XDG_CONFIG_HOME", named);
    EXPECT_EQ(StateFolder(), "/home/ada/.local/state/krofx");
    EXPECT_EQ(DataFolder(), "/home/ada/.local/share/krofx");
    EXPECT_EQ(BanksFile(), "/home/ada/.config/krofx/banks.toml");
    const ScopedVariable nowhere("HOME", "home");
    EXPECT_EQ(StateFolder(), "");
    EXPECT_EQ(DataFolder(), "");
    EXPECT_EQ(BanksFile(), "");
  }
}

}  // namespace
}  // namespace krofx::command
