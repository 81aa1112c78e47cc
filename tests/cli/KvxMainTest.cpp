// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <vector>

#include "cli/KvxMain.h"
#include "storage/FilePath.h"
#include "testing/OwnFolders.h"

namespace quillon {
namespace {

using ::testing::HasSubstr;

std::string PathOf(const std::string& name) {
  return (testing::OwnFolders::Root() / FilePath(name)).string();
}

std::string Written(const std::string& name, const std::string& bytes) {
  std::ofstream(PathOf(name), std::ios::binary) << bytes;
  return PathOf(name);
}

std::string Contents(const std::string& name) {
  std::ifstream file(PathOf(name), std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// A text with zeros in it.
template <std::size_t N>
std::string Raw(const char (&bytes)[N]) {
  return {bytes, N - 1};
}

struct Ran {
  int status;
  std::string out, err;
};

Ran Kvx(const std::vector<std::string>& arguments) {
  std::ostringstream out, err;
  const int status = KvxMain(arguments, out, err);
  return {status, out.str(), err.str()};
}

// `made` is a path; `more` are further words of the command line.
Ran Make(const std::string& device, const std::string& image, const std::string& made,
         const std::vector<std::string>& more = {}) {
  std::vector<std::string> words{"make", "--device", device, "--from", image, "-o", made};
  words.insert(words.end(), more.begin(), more.end());
  return Kvx(words);
}

const std::string kHex =
    ":0400000002820304"
    "71\n"
    ":01010000AA54\n"
    ":00000001FF\n";

TEST(KvxMain, MakesAFileFromIntelHex) {
  EXPECT_EQ(Make("0910", Written("image.HEX", kHex), PathOf("made.kvx")).status, 0);
  EXPECT_EQ(Contents("made.kvx"), Raw("\x10\x09"
                                      "\x00\x04\x00\x00\x02\x82\x03\x04"
                                      "\x00\x01\x01\x00\xAA"
                                      "\x01"));
  EXPECT_EQ(Kvx({"check", PathOf("made.kvx")}).status, 0);
  EXPECT_EQ(Kvx({"info", PathOf("made.kvx")}).out,
            "Device id   0910\n"
            "Kind        firmware of the board\n"
            "Records     2\n"
            "Size        5 bytes\n"
            "Addresses   0x0000-0x0003\n"
            "Addresses   0x0100-0x0100\n"
            "Gap         0x0004-0x00FF\n");
}

TEST(KvxMain, MakesFilesForTheNodeSystemFromBytes) {
  const std::string image = Written("image.bin", std::string(57, 'x'));
  EXPECT_EQ(Make("0800", image, PathOf("core.kvx"), {"--core"}).status, 0);
  EXPECT_EQ(Contents("core.kvx"),
            Raw("\x00\x08\x00\x00\x00\x39\x00\x00") + std::string(57, 'x') + "\x01");
  EXPECT_THAT(Kvx({"info", PathOf("core.kvx")}).out, HasSubstr("node I/O system (core)\n"));

  EXPECT_EQ(Make("1200", image, PathOf("nodes.kvx"), {"--node-version", "0130"}).status, 0);
  EXPECT_EQ(Contents("nodes.kvx"), Raw("\x00\x12\x30\x01\x00\x38\x00\x00") + std::string(56, 'x') +
                                       Raw("\x00\x01\x00\x38x\x01"))
      << "no more than 56 bytes of a record reach a node";
  EXPECT_THAT(Kvx({"info", PathOf("nodes.kvx")}).out, HasSubstr("nodes, version 1.30\n"));
}

TEST(KvxMain, ChecksSayWhatIsWrong) {
  const std::pair<std::string, const char*> cases[] = {
      {"", "too short"},
      {"\x10", "too short"},
      {Raw("\x00\x08\x00"), "too short"},
      {Raw("\x10\x09"), "no records"},
      {Raw("\x10\x09\x01"), "no records"},
      {Raw("\x10\x09\x00\x3C\x00\x00"), "Record 1 has 60 data bytes"},
      {Raw("\x10\x09\x00\x01\x00\x00\xAA\x00\x02\x00"), "cut in the middle of record 2"},
      {Raw("\x10\x09\x00\x01\x00\x00\xAA"), "The end record is missing"},
      {Raw("\x10\x09\x00\x01\x00\x00\xAA\x01\x00\x00"),
       "follow the end record, which nobody reads: 2"},
      {Raw("\x00\x08\x00\x00\x00\x00\x01\x00\x00\x00\x02\x00\x01"), "records are all empty"},
      {Raw("\x10\x09\x08\x00\x00\x00\x01"), "Record 1 has the type 8"},
      {Raw("\x10\x09\x00\x02\xFF\xFF\xAA\xBB\x01"), "Record 1 reaches beyond the last address"},
      {Raw("\x10\x09\x00\x02\x01\x01\xAA\xBB\x00\x02\x01\x00\xAA\xBB\x01"),
       "Records 2 and 1 both have the byte at 0x0101"},
      {Raw("\x00\x08\x30\x01\x00\x39\x00\x00") + std::string(57, 'x'),
       "Record 1 has 57 data bytes; of a record only 56 reach a node."},
  };
  for (const auto& [bytes, problem] : cases) {
    const Ran ran = Kvx({"check", Written("bad.kvx", bytes)});
    EXPECT_EQ(ran.status, 1) << problem;
    EXPECT_THAT(ran.err, HasSubstr(problem));
    EXPECT_THAT(ran.err, HasSubstr("bad.kvx: "));
    EXPECT_EQ(ran.out, "");
  }
  EXPECT_EQ(Kvx({"check", PathOf("missing.kvx")}).status, 1);
  EXPECT_THAT(Kvx({"check", PathOf("a\n\u202E.kvx")}).err, HasSubstr("a\uFFFD.kvx: "));
  EXPECT_THAT(Kvx({"check", testing::OwnFolders::Root().string()}).err, HasSubstr("is a folder."));
}

TEST(KvxMain, MakesNothingOfABadImage) {
  const std::pair<std::string, const char*> bad[] = {
      {Written("bad.hex", ":00000001FE\n"), "bad.hex: Line 1"},
      {Written("none.hex", ":00000001FF\n"), "holds no data"},
      {Written("big.bin", std::string(65537, 'x')), "65536"},
      {Written("huge.hex", std::string(5'000'000, ':')), "is larger than"},
      {Written("void.bin", ""), "It is empty."},
      {Written("image.elf", "x"), "ends neither"},
      {PathOf("missing.bin"), ": It cannot be opened: No"},
  };
  for (const auto& [image, problem] : bad)
    EXPECT_THAT(Make("0910", image, PathOf("never.kvx")).err, HasSubstr(problem));
  EXPECT_FALSE(std::filesystem::exists(PathOf("never.kvx")));
  EXPECT_EQ(Make("0910", Written("good.hex", kHex), PathOf("no/such/folder.kvx")).status, 1);
}

TEST(KvxMain, KeepsTheImageAndAFileThatItCannotReplaceWhole) {
  const std::string image = Written("image.hex", kHex);
  std::vector<const char*> names{"image.hex", "twin.kvx"};
  std::filesystem::create_hard_link(image, PathOf("twin.kvx"));
#ifndef _WIN32  // where a link is not for everybody to make
  std::filesystem::create_symlink(image, PathOf("link.kvx"));
  names.push_back("link.kvx");
#endif
  for (const char* name : names) {
    EXPECT_THAT(Make("0910", image, PathOf(name)).err, HasSubstr("It is the image itself")) << name;
    EXPECT_EQ(Contents(name), kHex);
  }
  // So long a name leaves no room for the temporary file's.
  EXPECT_THAT(Make("0910", image, Written(std::string(250, 'x'), "old")).err,
              HasSubstr("cannot be written: "));
  EXPECT_EQ(Contents(std::string(250, 'x')), "old");
}

TEST(KvxMain, ExplainsItsCommandLine) {
  EXPECT_EQ(Kvx({"--help"}).status, 0);
  EXPECT_THAT(Kvx({"--help"}).out, HasSubstr("Usage: kvx"));
  const std::pair<std::vector<std::string>, const char*> cases[] = {
      {{}, "Usage: kvx"},
      {{"burn"}, "not expected: burn"},
      {{"--"}, "A command is required"},
      {{"info"}, "FILE is required"},
      {{"check", "a", "b"}, "not expected: b"},
      {{"make"}, "--device is required"},
      {{"make", "--device"}, "--device: 1 required ID missing"},
      {{"make", "--fast", "--device", "0910", "--from", "a.bin", "-o", "b"},
       "not expected: --fast"},
      {{"make", "-o", "a", "-o", "b"}, "-o: At Most 1"},
      {{"make", "--device", "910", "--from", "a.bin", "-o", "b"}, "not \"910\""},
      {{"make", "--device", "09g0", "--from", "a.bin", "-o", "b"}, "not \"09g0\""},
      {{"make", "--device", "0800", "--from", "a.bin", "-o", "b"}, "needs --core"},
      {{"make", "--device", "0910", "--from", "a.bin", "-o", "b", "--core"}, "only"},
      {{"make", "--device", "0910", "--from", "a.bin", "-o", "b", "--node-version", "0130"},
       "only"},
      {{"make", "--device", "0800", "--from", "a", "-o", "b", "--core", "--node-version", "0130"},
       "--core excludes --node-version"},
      {{"make", "--device", "0800", "--from", "a", "-o", "b", "--node-version", "0000"},
       "not all 0"},
  };
  for (const auto& [arguments, problem] : cases) {
    const Ran ran = Kvx(arguments);
    EXPECT_EQ(ran.status, 2) << problem;
    EXPECT_THAT(ran.err, HasSubstr(problem));
    EXPECT_EQ(ran.out, "");
  }
}

}  // namespace
}  // namespace quillon
