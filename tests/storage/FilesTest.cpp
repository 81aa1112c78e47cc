// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>

#include "storage/ReadFile.h"
#include "storage/ReplaceFile.h"
#include "testing/OwnFolders.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;

class Files : public ::testing::Test {
 protected:
  fs::path Own(const char* name) const { return testing::OwnFolders::Root() / name; }

  // The bytes, or the reason in angle brackets.
  static std::string Read(const fs::path& file, std::size_t most = 100) {
    const auto content = ReadFile(file, most);
    if (const auto* problem = std::get_if<FileProblem>(&content))
      return "<" + problem->predicate + ">";
    return std::get<std::string>(content);
  }

  static mode_t Mode(const fs::path& file) {
    struct stat kind {};
    return stat(file.c_str(), &kind) == 0 ? kind.st_mode & 0777 : 0;
  }
};

TEST_F(Files, AreReadWithinTheLimitOrRefusedWithAReason) {
  std::ofstream(Own("hundred")) << std::string(100, 'x');
  std::ofstream(Own("more")) << std::string(101, 'x');
  ASSERT_EQ(mkfifo(Own("pipe").c_str(), 0600), 0);
  EXPECT_EQ(Read(Own("hundred")), std::string(100, 'x'));
  EXPECT_EQ(Read(Own("hundred"), 20'000), std::string(100, 'x'));
  EXPECT_EQ(Read(Own("more")), "<is larger than 100 bytes>");
  EXPECT_EQ(std::get<std::string>(ReadFileFront(Own("more"), 100)), std::string(100, 'x'));
  EXPECT_EQ(Read(Own("none")), "<cannot be opened: No such file or directory>");
  EXPECT_EQ(Read(Own("")), "<is a folder>");
  EXPECT_EQ(Read(Own("pipe")), "<is not a regular file>");
  EXPECT_EQ(Read("/dev/zero"), "<is not a regular file>");
  EXPECT_EQ(Read("/proc/self/mem"), "<cannot be read: Input/output error>");
}

TEST_F(Files, AreReplacedWholeWithTheirModeAndThroughLinks) {
  std::ofstream(Own("old")) << "old";
  ASSERT_EQ(chmod(Own("old").c_str(), 0640), 0);
  fs::create_symlink(Own("old"), Own("link"));
  EXPECT_FALSE(ReplaceFile(Own("link"), "new", FileReaders::kEverybody));
  EXPECT_TRUE(fs::is_symlink(Own("link")));
  EXPECT_EQ(Read(Own("old")), "new");
  EXPECT_EQ(Mode(Own("old")), 0640U);
  EXPECT_FALSE(ReplaceFile(Own("old"), "own", FileReaders::kOwner));
  EXPECT_EQ(Mode(Own("old")), 0600U);
  EXPECT_FALSE(ReplaceFile("/dev/null", "nowhere", FileReaders::kEverybody));
  EXPECT_TRUE(fs::is_character_file("/dev/null"));
  const auto folder = ReplaceFile(Own(""), "x", FileReaders::kEverybody);
  ASSERT_TRUE(folder);
  EXPECT_EQ(folder->predicate, "is a folder");
  EXPECT_TRUE(ReplaceFile(Own("no/such/file"), "x", FileReaders::kEverybody));
}

TEST_F(Files, OfProcessesThatHaveEndedAreRemoved) {
  const pid_t ended = fork();
  if (ended == 0) _exit(0);
  ASSERT_EQ(waitpid(ended, nullptr, 0), ended);
  const fs::path dead = Own(("a.json." + std::to_string(ended) + ".tmp").c_str());
  const fs::path alive = Own(("a.json." + std::to_string(getpid()) + ".tmp").c_str());
  const fs::path others = Own("a.json.backup.tmp");
  for (const fs::path& file : {dead, alive, others}) std::ofstream(file) << "half";
  RemoveLeftovers(Own("a.json"));
  EXPECT_FALSE(fs::exists(dead));
  EXPECT_TRUE(fs::exists(alive));
  EXPECT_TRUE(fs::exists(others));
}

}  // namespace
}  // namespace quillon
