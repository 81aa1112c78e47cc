// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace quillon {
namespace {

// The fuzz target ends the process where a promise is broken.
TEST(SUITE, EveryFileKeepsThePromisesOfTheReader) {
  int files = 0;
  for (const auto& entry : std::filesystem::directory_iterator(CORPUS)) {
    SCOPED_TRACE(entry.path().string());
    std::ifstream file(entry.path(), std::ios::binary);
    const std::vector<char> text(std::istreambuf_iterator<char>(file), {});
    const std::vector<std::uint8_t> bytes(text.begin(), text.end());
    EXPECT_EQ(LLVMFuzzerTestOneInput(bytes.data(), bytes.size()), 0);
    ++files;
  }
  EXPECT_GE(files, 10) << "files are missing in the corpus";
}

}  // namespace
}  // namespace quillon
