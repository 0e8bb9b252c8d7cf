// Passwords on their way from the user: what is taken, what is refused, and from which commands.

#include "banks/password.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <string>

#include "banks/password_command.h"
#include "support/scoped_variable.h"
#include "support/temp_folder.h"

namespace krofx::command {
namespace {

constexpr char kTooLong[] = "the password is longer than the 171 characters that OFX takes";
constexpr char kControlCharacter[] = "the password has a control character";
constexpr char kNotKept[] =
    "the keyring did not take the password; it needs the command secret-tool and a desktop session";

// What is read from an open file with this text.
struct Taken {
  explicit Taken(const std::string& text) {
    TempFolder folder;
    const FileDescriptor file(::open(folder.Put("password", text).c_str(), O_RDONLY | O_CLOEXEC));
    problem = password.ReadFrom(file.Get());
    // What cannot be used is not there for the next request either.
    EXPECT_EQ(problem.empty(), *password.Get() != '\0') << problem;
    char next = 0;
    while (::read(file.Get(), &next, 1) == 1) rest += next;
  }

  Password password;
  std::string problem;
  std::string rest;  // What the file still has.
};

TEST(Password, IsTheFirstLineAndTheRestIsNotRead) {
  for (const std::string end : {"\nnext line\n", "\r\nnext line\n"}) {
    const Taken taken("open sesame" + end);
    EXPECT_EQ(taken.problem, "");
    EXPECT_STREQ(taken.password.Get(), "open sesame");
    EXPECT_EQ(taken.rest, "next line\n");
  }
  EXPECT_STREQ(Taken("open sesame").password.Get(), "open sesame");
  EXPECT_STREQ(Taken("open sesame\r").password.Get(), "open sesame");
}

TEST(Password, IsRefusedWhenItIsEmptyOrHasAControlCharacter) {
  for (const std::string empty : {"", "\n", "\r\n", "\r", "\nsecond line"}) {
    EXPECT_EQ(Taken(empty).problem, "the password is empty");
  }
  for (const std::string& control : {std::string("a\tb\n"), std::string("a\0b\n", 4),
                                     std::string("\0\n", 2), std::string("a\rb\n")}) {
    EXPECT_EQ(Taken(control).problem, kControlCharacter);
  }
}

TEST(Password, HasNoMoreCharactersThanOfxTakes) {
  // The euro sign takes three bytes in UTF-8, and one in a request.
  std::string most;
  for (std::size_t count = 0; count < Password::kMaxLength; ++count) most += "\u20ac";
  const Taken taken(most + "\n");
  EXPECT_EQ(taken.problem, "");
  EXPECT_EQ(taken.password.Get(), std::string(Password::kMaxLength, '\x80'));
  EXPECT_EQ(Taken(most + "x").problem, kTooLong);
  EXPECT_EQ(Taken(std::string(Password::kMaxBytes, 'x')).problem, kTooLong);
  EXPECT_EQ(Taken(std::string(100000, 'x')).problem, kTooLong);
}

TEST(Password, HasOnlyCharactersThatARequestHas) {
  for (const std::string other : {"pass\u0142", "\U0001F600", "pass\xE9", "\xE2\x82"}) {
    EXPECT_EQ(Taken(other).problem,
              "the password has a character that the request's character set, Windows 1252, does "
              "not have");
  }
}

TEST(Password, SaysWhyItCannotBeRead) {
  Password password;
  EXPECT_EQ(password.ReadFrom(-1), "the password cannot be read: Bad file descriptor");
  const FileDescriptor folder(::open("/", O_RDONLY | O_CLOEXEC));
  EXPECT_EQ(password.ReadFrom(folder.Get()), "the password cannot be read: Is a directory");
}

TEST(Password, LeavesNothingInTheEnvironment) {
  const char* const name = "KROFX_TEST_PASSWORD";
  const auto take = [name](const std::string& value, Password& password) {
    ::setenv(name, value.c_str(), 1);
    const char* const place = std::getenv(name);
    std::string problem = password.TakeFromEnvironment(name);
    EXPECT_EQ(std::getenv(name), nullptr);
    // The bytes are gone too, which everyone who may look at the process could read.
    EXPECT_EQ(std::string(place, value.size()), std::string(value.size(), '\0'));
    return problem;
  };
  Password password;
  EXPECT_EQ(take("caf\u00e9", password), "");
  EXPECT_STREQ(password.Get(), "caf\xE9");
  Password none;
  EXPECT_EQ(take(std::string(Password::kMaxBytes + 1, 'x'), none), kTooLong);
  EXPECT_STREQ(none.Get(), "");
  EXPECT_EQ(take("", none), "the password is empty");
  EXPECT_EQ(none.TakeFromEnvironment(name),
            "the environment has no " + std::string("KROFX_TEST_PASSWORD"));
}

TEST(Password, IsWrittenAsItWasTyped) {
  const Taken typed("\u20ac caf\u00e9");
  int ends[2];
  ASSERT_EQ(::pipe2(ends, O_CLOEXEC), 0);
  const FileDescriptor reading(ends[0]);
  FileDescriptor writing(ends[1]);
  EXPECT_TRUE(typed.password.WriteTo(writing.Get()));
  writing.Close();
  Password again;
  EXPECT_EQ(again.ReadFrom(reading.Get()), "");
  EXPECT_TRUE(again == typed.password);
  EXPECT_FALSE(again == Taken("\u20ac cafe").password);
  EXPECT_FALSE(typed.password.WriteTo(-1));
}

// No file can be opened.
class NoDescriptors {
 public:
  NoDescriptors() {
    ::getrlimit(RLIMIT_NOFILE, &m_before);
    const rlimit none{0, m_before.rlim_max};
    EXPECT_EQ(::setrlimit(RLIMIT_NOFILE, &none), 0);
  }
  NoDescriptors(const NoDescriptors&) = delete;
  NoDescriptors& operator=(const NoDescriptors&) = delete;
  ~NoDescriptors() { ::setrlimit(RLIMIT_NOFILE, &m_before); }

 private:
  rlimit m_before{};
};

// What is wrong with what a command prints, of which then nothing is left.
std::string ProblemOf(const std::string& command) {
  Password password;
  std::string problem = ReadFromCommand(command, password);
  EXPECT_STREQ(password.Get(), "") << command;
  return problem;
}

TEST(PasswordCommand, GivesTheFirstLineThatItPrints) {
  for (const char* const command :
       {"echo open sesame", "printf 'open sesame'", "echo open sesame; yes"}) {
    Password password;
    EXPECT_EQ(ReadFromCommand(command, password), "") << command;
    EXPECT_STREQ(password.Get(), "open sesame");
  }
}

TEST(PasswordCommand, SaysWhatIsWrongWithALineThatMoreLinesFollow) {
  // It is krofx that ends such a command, by the pipe that it closes.
  EXPECT_EQ(ProblemOf("yes ''"), "the password is empty");
  EXPECT_EQ(ProblemOf("printf 'a\\tb\\n'; yes"), kControlCharacter);
  EXPECT_EQ(ProblemOf("yes | tr -d '\\n'"), kTooLong);
}

TEST(PasswordCommand, DoesNotCountWhenItFails) {
  EXPECT_EQ(ProblemOf("echo open sesame; exit 3"), "password-command ended with status 3");
  EXPECT_EQ(ProblemOf("echo open sesame; kill -TERM $$"), "password-command ended with status 143");
  for (const std::string command : {"/nowhere/at/all", "/dev/null"}) {
    EXPECT_EQ(ProblemOf(command + " 2>&-"), "password-command cannot be run");
  }
  EXPECT_EQ(ProblemOf(": " + std::string(200000, 'x')),
            "password-command cannot be run: Argument list too long");
  const NoDescriptors none;
  EXPECT_EQ(ProblemOf("echo open sesame"), "Too many open files");
}

std::string g_sentinel;
volatile std::sig_atomic_t g_signals = 0;

TEST(PasswordCommand, IsWaitedForWhateverSignalsCome) {
  const TempFolder folder;
  struct sigaction noting {};
  struct sigaction before {};
  // Enough of them come that some come while the end of the command is waited for.
  noting.sa_handler = [](int) {
    g_signals = g_signals + 1;
    if (g_signals == 200) ::unlink(g_sentinel.c_str());
  };
  ::sigaction(SIGUSR1, &noting, &before);
  for (const char* const status : {"0", "3"}) {
    g_signals = 0;
    g_sentinel = folder.Put("sentinel", "");
    const std::string signals =
        "while [ -e '" + g_sentinel + "' ]; do kill -USR1 $PPID; done; exit ";
    Password password;
    EXPECT_EQ(ReadFromCommand("echo open sesame; exec >&-; " + signals + status, password),
              status[0] == '0' ? "" : "password-command ended with status 3");
    EXPECT_STREQ(password.Get(), status[0] == '0' ? "open sesame" : "");
  }
  ::sigaction(SIGUSR1, &before, nullptr);
}

// A keyring's command that says what it was asked, or keeps what it is given.
class Keyring : public testing::Test {
 protected:
  Keyring() {
    const std::string tool = m_folder.Put("secret-tool",
                                          "#!/bin/sh\n"
                                          "for each; do asked=\"$asked<$each>\"; done\n"
                                          "if [ \"$1\" = lookup ]; then echo \"$asked\"; exit; fi\n"
                                          "cat >\"$0.kept\"\n"
                                          "echo \"$asked\" >\"$0.asked\"\n");
    EXPECT_EQ(::chmod(tool.c_str(), 0700), 0);
  }

  TempFolder m_folder;
  ScopedVariable m_path{"PATH", m_folder.Path().string() + ":/usr/bin:/bin"};
};

TEST_F(Keyring, IsAskedForTheBankWhateverItsNameHas) {
  for (const std::string name : {"harbor", "o'brien", "a' $(exit 9) ; b", "--label=x"}) {
    Password password;
    EXPECT_TRUE(ReadFromKeyring(name, password));
    EXPECT_EQ(password.Get(), "<lookup><application><krofx><bank><" + name + ">");
  }
}

TEST_F(Keyring, TakesAPasswordWithoutTheEndOfALine) {
  const Taken typed("caf\u00e9");
  EXPECT_EQ(StoreInKeyring("o'brien", typed.password), "");
  EXPECT_EQ(m_folder.Get("secret-tool.kept"), "caf\u00e9");
  EXPECT_EQ(m_folder.Get("secret-tool.asked"),
            "<store><--label=krofx><application><krofx><bank><o'brien>\n");
}

TEST_F(Keyring, SaysWhenItDidNotTakeThePassword) {
  const Taken typed("caf\u00e9");
  EXPECT_EQ(StoreInKeyring(std::string(200000, 'x'), typed.password), kNotKept);
  {
    const NoDescriptors none;
    EXPECT_EQ(StoreInKeyring("harbor", typed.password), "Too many open files");
  }
  const ScopedVariable path("PATH", m_folder.Name("none"));
  EXPECT_EQ(StoreInKeyring("harbor", typed.password), kNotKept);
  Password password;
  EXPECT_FALSE(ReadFromKeyring("harbor", password));
}

}  // namespace
}  // namespace krofx::command
