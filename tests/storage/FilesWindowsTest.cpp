// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <windows.h>
// There it is another name of a function of the system's.
#undef ReplaceFile

#include <fstream>

#include "storage/ReadFile.h"
#include "storage/ReplaceFile.h"
#include "testing/OwnFolders.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;

// Names beyond any one code page.
class Files : public ::testing::Test {
 protected:
  Files() { fs::create_directories(folder_); }

  // The bytes, or the reason in angle brackets.
  static std::string Read(const fs::path& file) {
    const auto content = ReadFile(file, 100);
    if (const auto* problem = std::get_if<FileProblem>(&content))
      return "<" + problem->predicate + ">";
    return std::get<std::string>(content);
  }

  const fs::path folder_ = testing::OwnFolders::Root() / L"m\u00FC\u0142 \u03B1";
  const fs::path file_ = folder_ / L"\u017C \u03B2.json";
};

TEST_F(Files, AreReadWithinTheLimitOrRefusedWithAReason) {
  std::ofstream(file_, std::ios::binary) << "a\r\n" + std::string(97, '\x1A');
  EXPECT_EQ(Read(file_), "a\r\n" + std::string(97, '\x1A'));
  std::ofstream(file_, std::ios::app) << 'x';
  EXPECT_EQ(Read(file_), "<is larger than 100 bytes>");
  EXPECT_EQ(Read(folder_ / "none"), "<cannot be opened: No such file or directory>");
  EXPECT_EQ(Read(folder_), "<is a folder>");
}

TEST_F(Files, AreReplacedWholeOrLeftAsTheyWere) {
  EXPECT_FALSE(ReplaceFile(file_, "old\n", FileReaders::kOwner));
  EXPECT_FALSE(ReplaceFile(file_, "new\n", FileReaders::kOwner));
  EXPECT_EQ(Read(file_), "new\n");
  EXPECT_EQ(ReplaceFile(folder_, "x", FileReaders::kOwner)->predicate, "is a folder");

  const HANDLE held =
      CreateFileW(file_.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  ASSERT_NE(held, INVALID_HANDLE_VALUE);
  const auto in_use = ReplaceFile(file_, "newer\n", FileReaders::kOwner);
  CloseHandle(held);
  ASSERT_TRUE(in_use);
  EXPECT_THAT(in_use->predicate, ::testing::StartsWith("cannot be written: "));
  EXPECT_NE(in_use->code.value(), 0);
  EXPECT_EQ(Read(file_), "new\n");
  EXPECT_EQ(std::distance(fs::directory_iterator(folder_), {}), 1) << "a file is left over";

  const auto nowhere = ReplaceFile(folder_ / "no" / "such", "x", FileReaders::kOwner);
  ASSERT_TRUE(nowhere);
  EXPECT_EQ(nowhere->code, std::errc::no_such_file_or_directory) << nowhere->predicate;
}

TEST_F(Files, OfProcessesThatHaveEndedAreRemoved) {
  const fs::path dead = folder_ / L"\u017C.json.999999996.tmp";  // no system counts that far
  const fs::path alive =
      folder_ / (L"\u017C.json." + std::to_wstring(GetCurrentProcessId()) + L".tmp");
  for (const fs::path& file : {dead, alive}) std::ofstream(file) << "half";
  RemoveLeftovers(folder_ / L"\u017C.json");
  EXPECT_FALSE(fs::exists(dead));
  EXPECT_TRUE(fs::exists(alive));
}

}  // namespace
}  // namespace quillon
