// Files that are written whole or not at all.

#include "output/output_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <string>

#include "support/redirected_stream.h"
#include "support/scoped_file_size.h"
#include "support/temp_folder.h"

namespace krofx::command {
namespace {

const std::string kNew = "new text";

class OutputFile : public testing::Test {
 protected:
  // Writes "new text" without showing what is complained of, which is in the file "err".
  ExitStatus Write(const std::string& name, Privacy privacy = Privacy::kUsual,
                   Existing existing = Existing::kReplaced) {
    KRBuffer text(0, 64);
    EXPECT_EQ(text.WriteLarge(kNew.data(), static_cast<u32>(kNew.size())), KRBufferOK);
    const RedirectedStream errors(STDERR_FILENO, m_errors.Name("err"));
    return WriteOutput(text, name, privacy, existing);
  }
  std::string Said() const { return m_errors.Get("err"); }

  TempFolder m_folder;
  TempFolder m_errors;
};

TEST_F(OutputFile, StaysAsItWasOnAFullDisk) {
  const std::string name = m_folder.Put("statement", "old");
  {
    const ScopedFileSize full(4);
    EXPECT_EQ(Write(name), kExitUnusable);
  }
  EXPECT_EQ(m_folder.Get("statement"), "old");
  EXPECT_EQ(m_folder.Entries(), 1U);
  EXPECT_EQ(Write(name), kExitClean);
  EXPECT_EQ(m_folder.Get("statement"), kNew);
}

TEST_F(OutputFile, IsNotReplacedWhereItIsToBeKept) {
  const std::string name = m_folder.Put("id", "old");
  EXPECT_EQ(Write(name, Privacy::kPrivate, Existing::kKept), kExitUnusable);
  EXPECT_EQ(Said(), "krofx: " + name + ": it cannot be written: File exists\n");
  EXPECT_EQ(m_folder.Get("id"), "old");
  EXPECT_EQ(m_folder.Entries(), 1U);
  EXPECT_EQ(Write(m_folder.Name("other"), Privacy::kPrivate, Existing::kKept), kExitClean);
  EXPECT_EQ(m_folder.Get("other"), kNew);
  EXPECT_EQ(m_folder.Entries(), 2U);
}

TEST_F(OutputFile, IsThePersonsAloneWhenItHoldsASecret) {
  const std::string name = m_folder.Put("reply", "old");
  const auto mode = [&name] {
    struct stat status {};
    EXPECT_EQ(::stat(name.c_str(), &status), 0);
    return status.st_mode & 07777;
  };
  ASSERT_EQ(::chmod(name.c_str(), 0664), 0);
  EXPECT_EQ(Write(name), kExitClean);
  EXPECT_EQ(mode(), 0664U);
  EXPECT_EQ(Write(name, Privacy::kPrivate), kExitClean);
  EXPECT_EQ(mode(), 0600U);
}

TEST_F(OutputFile, TakesThePlaceOfWhatALinkNames) {
  const std::string name = m_folder.Put("statement", "old");
  std::filesystem::create_symlink("statement", m_folder.Name("link"));
  EXPECT_EQ(Write(m_folder.Name("link")), kExitClean);
  EXPECT_EQ(m_folder.Get("statement"), kNew);
  EXPECT_TRUE(std::filesystem::is_symlink(m_folder.Name("link")));
}

TEST_F(OutputFile, LeavesWhatIsNoFileAlone) {
  EXPECT_EQ(Write(m_folder.Path().string()), kExitUnusable);
  EXPECT_NE(Said().find("it is not a plain file and is left alone"), std::string::npos) << Said();
  EXPECT_EQ(Write(m_folder.Name("no/such/folder")), kExitUnusable);
  EXPECT_EQ(m_folder.Entries(), 0U);
  const std::string pipe = m_folder.Name("pipe");
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_EQ(Write(pipe), kExitUnusable);
  EXPECT_TRUE(std::filesystem::is_fifo(pipe));
  EXPECT_EQ(m_folder.Entries(), 1U);
}

TEST_F(OutputFile, SaysWhenStandardOutputIsFull) {
  std::fflush(stdout);
  for (const char* const name : {"", "-"}) {
    ExitStatus written = kExitClean;
    {
      const RedirectedStream output(STDOUT_FILENO, "/dev/full");
      written = Write(name);
    }
    EXPECT_EQ(written, kExitUnusable);
    EXPECT_EQ(Said(), "krofx: standard output: No space left on device\n");
    {
      const RedirectedStream output(STDOUT_FILENO, m_folder.Name("out"));
      written = Write(name);
    }
    EXPECT_EQ(written, kExitClean);
    EXPECT_EQ(m_folder.Get("out"), kNew);
  }
}

}  // namespace
}  // namespace krofx::command
