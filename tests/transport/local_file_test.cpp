// Opening, measuring, reading, writing and removing local files.

#include "krofx/transport/files/internal/local_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "support/buffers.h"
#include "support/failing_allocation.h"
#include "support/scoped_file_size.h"
#include "support/temp_folder.h"
#include "support/wiped_memory.h"

namespace {

using krofx::internal::AppendLocalFile;
using krofx::internal::DeleteLocalFile;
using krofx::internal::kFileChunk;
using krofx::internal::LocalFile;
using krofx::internal::LocalFileExists;
using krofx::internal::LocalFileSize;
using krofx::internal::SaveToLocalFile;

// Bytes of every value, NUL among them.
std::string Bytes(std::size_t count) {
  std::string bytes(count, '\0');
  for (std::size_t i = 0; i < count; ++i) bytes[i] = static_cast<char>(i * 7 % 251);
  return bytes;
}

class LocalFileTest : public testing::Test {
 protected:
  TempFolder folder;
};

TEST_F(LocalFileTest, TakesABackslashAsASlash) {
  std::filesystem::create_directory(folder.Path() / "in");
  std::string name = folder.Put("in/reply", "abc");
  std::replace(name.begin(), name.end(), '/', '\\');
  u32 size = 0;
  EXPECT_TRUE(LocalFileSize(name.c_str(), size));
  EXPECT_EQ(size, 3u);
  EXPECT_TRUE(LocalFileExists(name.c_str()));
  DeleteLocalFile(name.c_str());
  EXPECT_FALSE(folder.Has("in/reply"));
}

TEST_F(LocalFileTest, FindsNoFileUnderNullEmptyMissingAndOverlongNames) {
  const std::string overlong = folder.Path().string() + std::string(5000, '/') + "reply";
  folder.Put("reply", "abc");
  for (const char* name :
       {static_cast<const char*>(nullptr), "", "/no/such/file", overlong.c_str()}) {
    u32 size = 42;
    EXPECT_FALSE(LocalFileExists(name));
    EXPECT_FALSE(LocalFileSize(name, size));
    EXPECT_EQ(size, 42u);
    KRBuffer target(0, 0);
    EXPECT_FALSE(AppendLocalFile(name, target));
    DeleteLocalFile(name);
  }
  EXPECT_TRUE(folder.Has("reply"));
}

TEST_F(LocalFileTest, OpensNothingButRegularFiles) {
  const std::string pipe = folder.Name("pipe");
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  for (const std::string& name : {folder.Path().string(), pipe, std::string("/dev/null")}) {
    LocalFile file;
    EXPECT_FALSE(file.OpenToRead(name.c_str())) << name;
    EXPECT_FALSE(file.OpenToWrite(name.c_str())) << name;
    EXPECT_TRUE(std::filesystem::exists(name)) << name;
    EXPECT_FALSE(LocalFileExists(name.c_str())) << name;
  }
}

TEST_F(LocalFileTest, HasNoSizeBeyond32Bits) {
  const std::string name = folder.Put("large", "");
  std::filesystem::resize_file(name, std::uintmax_t{0xffffffff});
  u32 size = 0;
  EXPECT_TRUE(LocalFileSize(name.c_str(), size));
  EXPECT_EQ(size, 0xffffffffu);
  // Not even the lower bits of one.
  for (const std::uintmax_t large :
       {std::uintmax_t{1} << 32, (std::uintmax_t{1} << 32) + 5, std::uintmax_t{1} << 40}) {
    std::filesystem::resize_file(name, large);
    EXPECT_FALSE(LocalFileSize(name.c_str(), size)) << large;
    EXPECT_EQ(size, 0xffffffffu);
  }
  EXPECT_TRUE(LocalFileExists(name.c_str()));
}

TEST_F(LocalFileTest, ReadsUpToTheEnd) {
  LocalFile file;
  ASSERT_TRUE(file.OpenToRead(folder.Put("reply", "abcde").c_str()));
  char out[4] = {};
  EXPECT_EQ(file.Read(out, 3), 3u);
  EXPECT_EQ(std::string(out, 3), "abc");
  EXPECT_EQ(file.Read(out, 4), 2u);
  EXPECT_EQ(std::string(out, 2), "de");
  EXPECT_EQ(file.Read(out, 4), 0u);
}

TEST_F(LocalFileTest, DoesNothingWhileClosed) {
  LocalFile file;
  char out[1];
  u32 size = 0;
  EXPECT_EQ(file.Read(out, 1), 0u);
  EXPECT_FALSE(file.Write("a", 1));
  EXPECT_FALSE(file.Size(size));
  KRBuffer target(0, 0);
  EXPECT_FALSE(file.AppendTo(target));
  EXPECT_TRUE(file.Close());
}

TEST_F(LocalFileTest, ReplacesWhatWasThere) {
  const std::string name = folder.Put("out", "something longer");
  {
    LocalFile file;
    ASSERT_TRUE(file.OpenToWrite(name.c_str()));
    EXPECT_TRUE(file.Write("ab", 2));
    EXPECT_TRUE(file.Close());
  }
  EXPECT_EQ(folder.Get("out"), "ab");
}

TEST_F(LocalFileTest, WritesThroughNoLink) {
  const std::string target = folder.Put("target", "what was there");
  std::filesystem::create_symlink(target, folder.Name("symbolic"));
  std::filesystem::create_symlink(folder.Name("nowhere"), folder.Name("dangling"));
  std::filesystem::create_hard_link(target, folder.Name("hard"));
  for (const char* const name : {"symbolic", "dangling", "hard"}) {
    LocalFile file;
    EXPECT_FALSE(file.OpenToWrite(folder.Name(name).c_str())) << name;
    EXPECT_TRUE(exists(std::filesystem::symlink_status(folder.Name(name)))) << name;
  }
  EXPECT_EQ(folder.Get("target"), "what was there");
  EXPECT_FALSE(folder.Has("nowhere"));
}

TEST_F(LocalFileTest, TakesFromOthersWhatTheyCouldDoWithAFileThatItReplaces) {
  const std::string name = folder.Put("out", "what was there");
  std::filesystem::permissions(name, std::filesystem::perms(0666));
  LocalFile file;
  ASSERT_TRUE(file.OpenToWrite(name.c_str()));
  EXPECT_EQ(std::filesystem::status(name).permissions(), std::filesystem::perms(0600));
  EXPECT_EQ(folder.Get("out"), "");
}

TEST_F(LocalFileTest, WritesNothingThatIsReadThroughADescriptorOfTheOldFile) {
  const std::string name = folder.Put("out", "old");
  LocalFile reader;
  ASSERT_TRUE(reader.OpenToRead(name.c_str()));
  KRBuffer source(0, 0);
  Put(source, "a request");
  ASSERT_TRUE(SaveToLocalFile(name.c_str(), source));
  EXPECT_EQ(folder.Get("out"), "a request");
  char seen[20];
  EXPECT_EQ(std::string(seen, reader.Read(seen, sizeof seen)), "old");
}

TEST_F(LocalFileTest, ClosesWhatIsOpenAlsoWhenItRefusesAFile) {
  LocalFile file;
  ASSERT_TRUE(file.OpenToWrite(folder.Name("out").c_str()));
  EXPECT_FALSE(file.OpenToWrite(folder.Path().c_str()));
  EXPECT_FALSE(file.IsOpen());
}

TEST_F(LocalFileTest, WritesNoFileOfAnotherUser) {
  const std::string name = folder.Put("SEND.DAT", "theirs");
  const uid_t other = geteuid() + 1;
  if (chown(name.c_str(), other, static_cast<gid_t>(-1)) != 0) {
    GTEST_SKIP() << "only root can give a file away";
  }
  LocalFile file;
  EXPECT_FALSE(file.OpenToWrite(name.c_str()));
  EXPECT_FALSE(file.IsOpen());
  EXPECT_EQ(folder.Get("SEND.DAT"), "theirs");
}

TEST_F(LocalFileTest, MakesFilesThatOnlyTheirOwnerReads) {
  LocalFile file;
  ASSERT_TRUE(file.OpenToWrite(folder.Name("out").c_str()));
  const auto permissions = std::filesystem::status(folder.Name("out")).permissions();
  EXPECT_EQ(permissions & std::filesystem::perms::mask,
            std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
}

class LocalFileSizes : public testing::TestWithParam<u32> {};

TEST_P(LocalFileSizes, GoThroughTheChunksWhole) {
  const TempFolder folder;
  const std::string content = Bytes(GetParam());
  KRBuffer target(0, 0);
  target += "before";
  ASSERT_TRUE(AppendLocalFile(folder.Put("in", content).c_str(), target));
  EXPECT_EQ(Content(target), "before" + content);

  KRBuffer source(0, 0);
  Put(source, content);
  ASSERT_TRUE(SaveToLocalFile(folder.Name("out").c_str(), source));
  EXPECT_EQ(folder.Get("out"), content);
  EXPECT_EQ(source.GetBufferOffset(), GetParam());
}

INSTANTIATE_TEST_SUITE_P(AroundTheChunk, LocalFileSizes,
                         testing::Values(0u, 1u, kFileChunk - 1u, u32{kFileChunk}, kFileChunk + 1u,
                                         2u * kFileChunk, 70000u));

TEST_F(LocalFileTest, SavesTheContentFromItsBeginning) {
  KRBuffer source(0, 0);
  Put(source, "abcdef");
  source.SetBufferOffset(4);
  EXPECT_TRUE(SaveToLocalFile(folder.Name("out").c_str(), source));
  EXPECT_EQ(folder.Get("out"), "abcdef");
}

TEST_F(LocalFileTest, SavesNothingInAPlaceThatTakesNothing) {
  KRBuffer source(0, 0);
  Put(source, "abc");
  EXPECT_FALSE(SaveToLocalFile(folder.Name("no/such/folder").c_str(), source));
  EXPECT_FALSE(SaveToLocalFile("/dev/full", source));
}

TEST_F(LocalFileTest, SaysThatThereIsNoRoomForAllOfIt) {
  const std::string content = Bytes(2 * kFileChunk);
  KRBuffer source(0, 0);
  Put(source, content);
  LocalFile file;
  ASSERT_TRUE(file.OpenToWrite(folder.Name("other").c_str()));
  const ScopedFileSize limit(kFileChunk + 1);
  EXPECT_FALSE(SaveToLocalFile(folder.Name("out").c_str(), source));
  EXPECT_FALSE(file.Write(content.data(), 2 * kFileChunk));
}

TEST_F(LocalFileTest, ReadsNothingWhereReadingFails) {
  // A regular file, of which the first page is never there.
  LocalFile file;
  ASSERT_TRUE(file.OpenToRead("/proc/self/mem"));
  char out[1];
  EXPECT_EQ(file.Read(out, 1), 0u);
}

TEST_F(LocalFileTest, SavesNoBufferThatLostItsContent) {
  KRBuffer source(8, 8);
  Put(source, "abc");
  {
    FailingAllocation failing(1, true);
    EXPECT_EQ(source.AllocateTo(1000), KRBufferNoMemory);
  }
  ASSERT_EQ(source.GetBufferPtr(), nullptr);
  EXPECT_FALSE(SaveToLocalFile(folder.Name("out").c_str(), source));
}

TEST_F(LocalFileTest, NeedsMemoryForAChunk) {
  const std::string name = folder.Put("file", "kept");
  KRBuffer buffer(100, 0);
  Put(buffer, "abc");
  FailingAllocation failing(1);
  EXPECT_FALSE(AppendLocalFile(name.c_str(), buffer));
  krofx::internal::AllocationFailure::FailAt(1);
  EXPECT_FALSE(SaveToLocalFile(name.c_str(), buffer));
  EXPECT_EQ(Content(buffer), "abc");
  EXPECT_EQ(folder.Get("file"), "kept");
}

TEST_F(LocalFileTest, EndsTheCopyWhenTheTargetTakesNoMore) {
  const std::string name = folder.Put("file", Bytes(5 * kFileChunk));
  KRBuffer target(100, 100);
  FailingAllocation failing(2, true);
  EXPECT_TRUE(AppendLocalFile(name.c_str(), target));
  EXPECT_NE(target.GetBufferSize(), 5u * kFileChunk);
  EXPECT_EQ(krofx::internal::AllocationFailure::Count(), 2u);
}

}  // namespace
