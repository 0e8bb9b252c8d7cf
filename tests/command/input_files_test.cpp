// Which files are inputs, what is said of those that cannot be read, and whether standard input
// holds anything.

#include "input/input_files.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "input/parsed_file.h"
#include "support/failing_allocation.h"
#include "support/temp_folder.h"

namespace krofx::command {
namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

// No further file can be opened while it lives.
class NoMoreFiles {
 public:
  NoMoreFiles() {
    const int next = dup(STDERR_FILENO);
    close(next);
    getrlimit(RLIMIT_NOFILE, &m_before);
    const rlimit limit{static_cast<rlim_t>(next), m_before.rlim_max};
    EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &limit), 0);
  }
  NoMoreFiles(const NoMoreFiles&) = delete;
  NoMoreFiles& operator=(const NoMoreFiles&) = delete;
  ~NoMoreFiles() { setrlimit(RLIMIT_NOFILE, &m_before); }

 private:
  rlimit m_before{};
};

// Makes a descriptor standard input while it lives, and owns it.
class StandardInput {
 public:
  explicit StandardInput(int descriptor) : m_kept(dup(STDIN_FILENO)) {
    EXPECT_EQ(dup2(descriptor, STDIN_FILENO), STDIN_FILENO);
    close(descriptor);
  }
  StandardInput(const StandardInput&) = delete;
  StandardInput& operator=(const StandardInput&) = delete;
  ~StandardInput() {
    dup2(m_kept, STDIN_FILENO);
    close(m_kept);
  }

 private:
  int m_kept;
};

bool IsTaken() {
  Names files;
  const bool any = DefaultToStandardInput(files);
  EXPECT_EQ(files, any ? Names{"-"} : Names{});
  return any;
}

TEST(Inputs, AreTheOfxFilesOfAFolder) {
  const TempFolder folder;
  fs::create_directories(folder.Path() / "deep" / "folder.ofx");
  const Names wanted = {folder.Put("a.ofx", "x"), folder.Put("b.QBO", "x"),
                        folder.Put("deep/c.qfx.gz", "x"), folder.Put("deep/folder.ofx/d.qbo", "x")};
  folder.Put("deep/e.txt", "x");
  fs::create_symlink("nowhere.ofx", folder.Path() / "gone.ofx");
  Names problems;
  EXPECT_EQ(FindInputs({folder.Path().string()}, problems), wanted);
  EXPECT_EQ(problems, Names{});
}

TEST(Inputs, SayWhichFolderCannotBeRead) {
  const TempFolder folder;
  folder.Put("a.ofx", "x");
  Names problems;
  {
    const NoMoreFiles none;
    EXPECT_EQ(FindInputs({folder.Path().string(), "-", "other.ofx"}, problems),
              (Names{"-", "other.ofx"}));
  }
  EXPECT_EQ(problems, Names{folder.Path().string() +
                            ": the directory cannot be read: " + std::strerror(EMFILE)});
}

TEST(Inputs, SayWhyAFileCannotBeRead) {
  const TempFolder folder;
  const std::string name = folder.Put("a.ofx", "some text");
  std::string problem;
  {
    const NoMoreFiles none;
    EXPECT_EQ(ReadInput(name, problem), nullptr);
    EXPECT_EQ(problem, std::strerror(EMFILE));
    EXPECT_FALSE(IsLargePlainFile(name, 2));
  }
  // The memory of the process begins with no page, so reading the file fails.
  EXPECT_EQ(ReadInput("/proc/self/mem", problem), nullptr);
  EXPECT_EQ(problem, std::strerror(EIO));
  EXPECT_FALSE(IsLargePlainFile("/proc/self/mem", 0));
}

TEST(Inputs, RefuseAFileThatIsTooLargeBeforeItIsRead) {
  const TempFolder folder;
  const std::string name = folder.Put("large.ofx", "x");
  fs::resize_file(name, std::uintmax_t{kMaxInputSize} + 1);
  std::string problem;
  EXPECT_EQ(ReadInput(name, problem), nullptr);
  EXPECT_EQ(problem, kTooLarge);
}

TEST(Inputs, SayThatMemoryIsMissing) {
  const TempFolder folder;
  const std::string name = folder.Put("a.ofx", "some text");
  for (const std::size_t nth : {1u, 2u}) {
    std::string problem;
    const FailingAllocation failing(nth, true);
    EXPECT_EQ(ReadInput(name, problem), nullptr);
    EXPECT_EQ(problem, kNoMemoryToRead);
  }
}

TEST(Inputs, AreLargePlainFilesWhenTheyArePlainFilesOfThatSize) {
  const TempFolder folder;
  const std::string name = folder.Put("a.ofx", "four");
  EXPECT_TRUE(IsLargePlainFile(name, 4));
  EXPECT_FALSE(IsLargePlainFile(name, 5));
  EXPECT_FALSE(IsLargePlainFile(folder.Put("a.gz", "\x1f\x8b packed"), 4));
  EXPECT_FALSE(IsLargePlainFile(folder.Path().string(), 0));
  EXPECT_FALSE(IsLargePlainFile(folder.Name("missing"), 0));
  EXPECT_FALSE(IsLargePlainFile("-", 0));
  // Nobody waits for what would come.
  const std::string pipe = folder.Name("pipe");
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_FALSE(IsLargePlainFile(pipe, 0));
}

TEST(StandardInputByDefault, IsTakenWhenAPipeOrASocketHoldsAnything) {
  int ends[2];
  ASSERT_EQ(::pipe(ends), 0);
  {
    ASSERT_EQ(write(ends[1], "x", 1), 1);
    const StandardInput input(ends[0]);
    EXPECT_TRUE(IsTaken());
    char byte = 0;
    ASSERT_EQ(read(STDIN_FILENO, &byte, 1), 1);
    close(ends[1]);
    EXPECT_FALSE(IsTaken()) << "a pipe that was closed";
  }
  ASSERT_EQ(::socketpair(AF_UNIX, SOCK_STREAM, 0, ends), 0);
  {
    ASSERT_EQ(write(ends[1], "x", 1), 1);
    const StandardInput input(ends[0]);
    EXPECT_TRUE(IsTaken());
    close(ends[1]);
  }
}

TEST(StandardInputByDefault, IsTakenOfAFileThatIsNotAtItsEnd) {
  const TempFolder folder;
  const StandardInput input(open(folder.Put("a.ofx", "x").c_str(), O_RDONLY));
  EXPECT_TRUE(IsTaken());
  ASSERT_EQ(lseek(STDIN_FILENO, 0, SEEK_END), 1);
  EXPECT_FALSE(IsTaken());
}

TEST(StandardInputByDefault, HoldsNothingWhenItIsADeviceOrClosed) {
  {
    const StandardInput input(open("/dev/null", O_RDONLY));
    EXPECT_FALSE(IsTaken());
  }
  const StandardInput input(open("/dev/null", O_RDONLY));
  close(STDIN_FILENO);
  EXPECT_FALSE(IsTaken());
}

volatile sig_atomic_t signals = 0;
volatile sig_atomic_t writeEnd = -1;

// The pipe is written into when the second signal comes.
void CountSignal(int) {
  signals = signals + 1;
  if (signals == 2 && write(writeEnd, "x", 1) != 1) abort();
}

TEST(StandardInputByDefault, IsWaitedForThroughSignals) {
  int ends[2];
  ASSERT_EQ(::pipe(ends), 0);
  writeEnd = ends[1];
  signals = 0;
  const StandardInput input(ends[0]);
  struct sigaction action {};
  struct sigaction before {};
  action.sa_handler = CountSignal;
  ASSERT_EQ(sigaction(SIGALRM, &action, &before), 0);
  const itimerval often{{0, 1000}, {0, 1000}};
  ASSERT_EQ(setitimer(ITIMER_REAL, &often, nullptr), 0);
  EXPECT_TRUE(IsTaken());
  const itimerval never{};
  setitimer(ITIMER_REAL, &never, nullptr);
  sigaction(SIGALRM, &before, nullptr);
  EXPECT_GE(signals, 2);
  close(ends[1]);
}

}  // namespace
}  // namespace krofx::command
