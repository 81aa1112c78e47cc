// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <vector>

#include "firmware/NodeFile.h"

namespace quillon {
namespace {

using Bytes = std::vector<std::uint8_t>;
using Reason = KvxProblem::Reason;

// Everything is wrong with the first file, and each one after it has one fault less.
TEST(NodeFile, ChecksDeviceIdKindReleaseAndRecordsInThisOrder) {
  const struct {
    Bytes file;
    NodeFile found;
  } cases[] = {
      {{0x00}, KvxProblem{Reason::kTooShort, 1}},
      {{0x00, 0x12, 0x00, 0x00, 0, 57}, WrongDevice{0x1200}},
      {{0x00, 0x12}, WrongDevice{0x1200}},
      {{0x00, 0x08, 0x00}, KvxProblem{Reason::kTooShort, 3}},
      {{0x00, 0x08, 0x00, 0x00, 0, 57}, KvxProblem{Reason::kCoreFile}},
      {{0x00, 0x08, 0x2F, 0x01, 0, 57}, WrongNodeRelease{0x012F}},
      {{0x00, 0x08, 0x40, 0x01, 0, 57}, WrongNodeRelease{0x0140}},
      {{0x00, 0x08, 0x3F, 0x01, 0, 57}, KvxProblem{Reason::kRecordTooLong, 57, 1, 56}},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(ReadNodeFile(c.file, 0x0800), c.found) << ::testing::PrintToString(c.file);
  }
  const NodeFile good = ReadNodeFile(Bytes{0x00, 0x08, 0x3F, 0x01, 0, 1, 0, 0, 0xAA, 1}, 0x0800);
  const auto* const image = std::get_if<KvxImage>(&good);
  ASSERT_NE(image, nullptr);
  EXPECT_EQ(image->node_version, 0x013F) << "the last digit does not matter";
  EXPECT_EQ(image->records, std::vector{(KvxRecord{1, 0, 0, 0, {0xAA}})});
}

}  // namespace
}  // namespace quillon
