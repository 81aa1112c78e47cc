// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <algorithm>
#include <iterator>
#include <tuple>

#include "firmware/KvxImage.h"

namespace quillon {
namespace {

using Bytes = std::vector<std::uint8_t>;
using Reason = KvxProblem::Reason;

Bytes Joined(Bytes head, const Bytes& tail) {
  head.insert(head.end(), tail.begin(), tail.end());
  return head;
}

Bytes Times(int count, const Bytes& bytes) {
  Bytes all;
  for (int i = 0; i < count; ++i) all.insert(all.end(), bytes.begin(), bytes.end());
  return all;
}

KvxImage ImageOf(const Bytes& file, KvxFileKind kind = KvxFileKind::kPlain) {
  const auto read = ReadKvxImage(file, kind);
  if (const auto* problem = std::get_if<KvxProblem>(&read)) {
    ADD_FAILURE() << DescribeKvxProblem(*problem);
    return {};
  }
  return std::get<KvxImage>(read);
}

KvxProblem ProblemOf(const Bytes& file, KvxFileKind kind = KvxFileKind::kPlain) {
  const auto read = ReadKvxImage(file, kind);
  if (std::holds_alternative<KvxImage>(read)) {
    ADD_FAILURE() << "accepted";
    return {};
  }
  return std::get<KvxProblem>(read);
}

// Three records, the last one as long as it may be; they end at 7, 11 and 15 + `most` behind the
// header, and the end record one byte later.
Bytes Three(std::uint8_t most) {
  return Joined({0, 3, 0x12, 0x34, 0xAA, 0xBB, 0xCC,  // three bytes at 0x1234
                 0x42, 0, 0xFF, 0xFE,                 // nothing at 0xFFFE, type 0x42
                 0, most, 0x00, 0x80},                // 59 or 56 bytes at 0x0080
                Joined(Bytes(most, 0x77), {1}));
}

const Bytes kThree = Three(59), kThreeForNodes = Three(56);

TEST(KvxImage, ReadsItsRecordsAndWritesThemAgain) {
  const Bytes file = Joined({0x10, 0x09}, kThree);
  const KvxImage image = ImageOf(file);
  EXPECT_EQ(image.device_id, 0x0910);
  EXPECT_FALSE(image.node_version);
  EXPECT_FALSE(image.cut_at_end);
  ASSERT_EQ(image.records.size(), 3U);

  EXPECT_EQ(image.records[0], (KvxRecord{3, 0x34, 0x12, 0, {0xAA, 0xBB, 0xCC}}))
      << "with zeros behind the data";
  EXPECT_EQ(image.records[0].Address(), 0x1234);
  EXPECT_EQ(image.records[1], (KvxRecord{0, 0xFE, 0xFF, 0x42, {}}));
  EXPECT_EQ(image.records[2].length, 59);
  EXPECT_EQ(image.records[2].data[58], 0x77);

  EXPECT_EQ(WriteKvx(image), file);
}

TEST(KvxImage, TheNodeSystemsFilesHaveOneWordMore) {
  const Bytes core = Joined({0x00, 0x08, 0x00, 0x00}, kThree);
  const Bytes nodes = Joined({0x00, 0x08, 0x31, 0x01}, kThreeForNodes);
  const std::tuple<Bytes, KvxFileKind, int> files[] = {{core, KvxFileKind::kCore, 0},
                                                       {nodes, KvxFileKind::kNode, 0x0131}};
  for (const auto& [file, kind, version] : files) {
    EXPECT_EQ(ImageOf(file, kind).node_version, version);
    EXPECT_EQ(ImageOf(file, kind).records.size(), 3U);
    EXPECT_EQ(WriteKvx(ImageOf(file, kind)), file);
    EXPECT_EQ(KvxKindOf(file), kind);
  }
  EXPECT_EQ(ProblemOf(nodes, KvxFileKind::kCore), (KvxProblem{Reason::kNodeFile, 0x0131}));
  EXPECT_EQ(ProblemOf(core, KvxFileKind::kNode), (KvxProblem{Reason::kCoreFile}));

  EXPECT_EQ(KvxKindOf(Bytes{0x00, 0x12, 0x00, 0x01}), KvxFileKind::kNode) << "the second product";
  EXPECT_EQ(KvxKindOf(Bytes{0x00, 0x08, 0x31}), KvxFileKind::kCore);
  EXPECT_EQ(KvxKindOf(Joined({0x10, 0x09}, kThree)), KvxFileKind::kPlain);
  EXPECT_EQ(KvxKindOf(Bytes{0x10}), KvxFileKind::kPlain);
}

void ExpectWholeRecordsOfAnyCut(const Bytes& header, KvxFileKind kind) {
  const std::uint8_t most = kind == KvxFileKind::kNode ? 56 : 59;
  const Bytes file = Joined(header, Three(most));
  for (std::size_t size = 0; size <= file.size(); ++size) {
    SCOPED_TRACE(std::to_string(size) + " bytes");
    const Bytes cut(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(size));
    EXPECT_EQ(ReadKvxDeviceId(cut).has_value(), size >= 2);
    if (size < header.size()) {
      EXPECT_EQ(ProblemOf(cut, kind), (KvxProblem{Reason::kTooShort, size}));
      continue;
    }
    const std::size_t behind = size - header.size(), last = 15U + most;
    const std::size_t whole = behind >= last ? 3 : behind >= 11 ? 2 : behind >= 7 ? 1 : 0;
    const bool between = behind == 0 || behind == 7 || behind == 11 || behind >= last;
    const KvxImage image = ImageOf(cut, kind);
    EXPECT_EQ(image.records.size(), whole);
    EXPECT_EQ(image.cut_at_end, !between);
    EXPECT_EQ(image.device_id, header[0] | header[1] << 8);
  }
}

TEST(KvxImage, CutAnywhereKeepsTheRecordsBeforeTheCut) {
  ExpectWholeRecordsOfAnyCut({0x10, 0x09}, KvxFileKind::kPlain);
  ExpectWholeRecordsOfAnyCut({0x00, 0x08, 0x00, 0x00}, KvxFileKind::kCore);
  ExpectWholeRecordsOfAnyCut({0x00, 0x08, 0x31, 0x01}, KvxFileKind::kNode);
}

TEST(KvxImage, RefusesARecordThatNoPacketCouldCarry) {
  const Bytes one = {0x10, 0x09, 0, 1, 0, 0, 0xAA};
  EXPECT_EQ(ProblemOf(Joined(one, Joined({0, 60, 0, 0}, Bytes(60)))),
            (KvxProblem{Reason::kRecordTooLong, 60, 2}));
  EXPECT_EQ(ProblemOf(Joined(one, {0, 255})), (KvxProblem{Reason::kRecordTooLong, 255, 2}))
      << "cut, but wrong already";
  EXPECT_EQ(ReadKvxDeviceId(Joined(one, {0, 255})), 0x0910);

  const Bytes nodes = {0x00, 0x08, 0x30, 0x01, 0, 57, 0, 0};
  const KvxProblem problem = ProblemOf(Joined(nodes, Bytes(57)), KvxFileKind::kNode);
  EXPECT_EQ(problem, (KvxProblem{Reason::kRecordTooLong, 57, 1, 56}));
  EXPECT_EQ(DescribeKvxProblem(problem),
            "Record 1 has 57 data bytes; of a record only 56 reach a node.");
}

TEST(KvxImage, RefusesMoreRecordsThanThereIsRoomFor) {
  const Bytes empty = {0, 0, 0, 0};
  const Bytes most = Joined({0x10, 0x09}, Times(2046, empty));
  EXPECT_EQ(ImageOf(Joined(most, {1})).records.size(), 2046U);
  EXPECT_EQ(ProblemOf(Joined(most, empty)), (KvxProblem{Reason::kTooManyRecords, 2047}));
  EXPECT_EQ(ProblemOf(Joined(most, Times(1000, empty))),
            (KvxProblem{Reason::kTooManyRecords, 3046}));
  EXPECT_EQ(ProblemOf(Joined(most, Joined(Times(2, empty), {0, 200}))),
            (KvxProblem{Reason::kTooManyRecords, 2048}));
  EXPECT_EQ(ProblemOf(Joined(most, {0, 200})), (KvxProblem{Reason::kRecordTooLong, 200, 2047}));

  const KvxImage cut = ImageOf(Joined(most, {0, 9, 0, 0, 7}));
  EXPECT_EQ(cut.records.size(), 2046U);
  EXPECT_TRUE(cut.cut_at_end);
}

TEST(KvxImage, TheBytesThatAreReadAtMostTellWhetherAFileIsAccepted) {
  EXPECT_LE(kKvxMostBytes, 130'000U);
  EXPECT_TRUE(ImageOf(Joined({0x10, 0x09, 0x01}, Bytes(3'000'000, 0x7F))).records.empty())
      << "what lies behind the end does not matter";

  // The largest file, and one record more: accepting and refusing needs no further byte.
  const Bytes record = Joined({0, 59, 0, 0}, Bytes(59, 0x5A));
  for (const int count : {2046, 2047, 5000}) {
    Bytes file = Joined({0x00, 0x08, 0x00, 0x00}, Times(count, record));
    file.resize(std::min(file.size(), kKvxMostBytes));
    EXPECT_EQ(std::holds_alternative<KvxImage>(ReadKvxImage(file, KvxFileKind::kCore)),
              count == 2046)
        << count;
  }
}

}  // namespace
}  // namespace quillon
