// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <cstring>
#include <sstream>
#include <utility>

#include "devlink/Detection.h"
#include "devlink/NoLibrary.h"
#include "testing/link/TranscriptLibrary.h"

namespace quillon {
namespace {

using quillon::testing::TranscriptLibrary;

TEST(Detection, ListsBoardsInOrderAndAsksTypes1And3) {
  TranscriptLibrary library(R"(
      detect 2 -> 1 boards 2
      board pid 0910 version 0282 product "Joystick Controller" maker "" serial "001"
      board pid 0520 version 0283 product "Digital Ports" maker "" serial "002"
      detect 1 -> 7 boards 1
      board pid 0710 version 0110 product "Scan Matrix" maker "" serial "003"
      write 2 -> 0 : 00 00 00 00 06 *
      read 2 -> 0 : 06 01 82 00 ff ff *
      detect 3 -> 1 boards 2
      board pid 0800 version 0111 product "Nodes" maker "" serial "004"
      board pid 1500 version 0112 product "SPI" maker "" serial "005"
      write 3 -> 0 : 00 00 00 00 06 *
      read 3 -> 0 : 06 ff fe 02 *
      write 4 -> 0 : 00 00 00 00 06 *
      read 4 -> 0 : 06 00 00 01 *
      close 5 -> 1
      close 5 -> 0)");
  DeviceTable table;
  std::vector<std::uint32_t> listed;
  for (const std::uint32_t type : {2U, 1U, 3U}) {
    listed.push_back(DetectBoards(library, table, type).listed);
  }
  EXPECT_THAT(listed, ::testing::ElementsAre(2, 1, 2));

  std::ostringstream found;
  for (std::uint32_t i = 0; i < table.Count(); ++i) {
    const DeviceRecord& record = table.Record(i);
    found << std::hex << table.Type(i) << ' ' << record.product_id << ' ' << record.version << ' '
          << record.queried_version << ' ' << int{record.firmware_present} << ' '
          << record.serial_number << '\n';
  }
  EXPECT_EQ(found.str(),
            "2 910 282 0 1 001\n"
            "2 520 283 0 1 002\n"
            "1 710 110 182 0 003\n"
            "3 800 111 fffe 2 004\n"
            "3 1500 112 0 1 005\n");
  EXPECT_TRUE(CloseBoards(library, table));
  EXPECT_FALSE(CloseBoards(library, table));
}

// Fills as many records as there is room for with garbage, reports any number, never answers.
class GarbageLibrary : public NoLibrary {
 public:
  explicit GarbageLibrary(std::uint32_t reported, std::int32_t result = 1)
      : reported_(reported), result_(result) {}

  std::int32_t DetectHID(std::uint32_t& count, std::span<DeviceRecord> free,
                         std::uint32_t /*type*/) override {
    std::memset(free.data(), 0xEE, free.size_bytes());
    first_ = free.data();
    count = reported_;
    return result_;
  }
  Problem DescribeProblem(const DeviceRecord* record) override {
    return {KVUSB_PROBLEM_PERMISSION, std::to_string(record - first_)};
  }
  std::int32_t WriteData(DeviceRecord& record, PacketSpan /*packet*/) override {
    last_asked = &record;
    ++asked;
    return KVUSB_WRITE_FAILED;
  }

  int asked = 0;
  const DeviceRecord* last_asked = nullptr;

 private:
  std::uint32_t reported_;
  std::int32_t result_;
  const DeviceRecord* first_ = nullptr;
};

TEST(Detection, KeepsWhatIsWrongWithABoardUntilTheNextOne) {
  GarbageLibrary library(2);
  DeviceTable table;
  DetectBoards(library, table, 2);
  EXPECT_EQ(table.ProblemOf(0), (Problem{KVUSB_PROBLEM_PERMISSION, "0"}));
  EXPECT_EQ(table.ProblemOf(1), (Problem{KVUSB_PROBLEM_PERMISSION, "1"}));
  table.Clear();
  EXPECT_EQ(table.ProblemOf(1), Problem());
}

TEST(Detection, EachBoardKeepsItsNodesUntilTheNextOne) {
  GarbageLibrary library(2);
  DeviceTable table;
  DetectBoards(library, table, 2);
  const NodeRecord first{.status = 1, .flash_version = 0x0130};
  const NodeRecord second{.status = 1, .loader_version = 0x0102, .flash_version = 0x0131};
  table.CurrentNodes()[0] = first;
  table.SetCurrent(1);
  EXPECT_EQ(table.CurrentNodes(), NodeRecords()) << "the other board's";
  table.CurrentNodes()[11] = second;
  DetectBoards(library, table, 2);
  table.SetCurrent(0);
  EXPECT_EQ(table.CurrentNodes(), NodeRecords{first}) << "further boards change nothing";
  EXPECT_EQ(table.Nodes(1)[11], second);

  table.Clear();
  EXPECT_EQ(std::as_const(table).Nodes(0), NodeRecords());
  table.Nodes(1)[0] = second;  // of a place that no board has
  DetectBoards(library, table, 2);
  EXPECT_EQ(table.Nodes(1), NodeRecords());
}

TEST(Detection, ABoardThatDoesNotAnswerIsKeptWithTheDefaults) {
  const std::string board = R"(detect 3 -> 1 boards 1
      board pid 0800 version 0111 product "" maker "" serial "")";
  for (const char* exchange :
       {"write 0 -> 1 : 00 00 00 00 06 *", "write 0 -> 0 : 00 00 00 00 06 *\nread 0 -> 1",
        "write 0 -> 0 : 00 00 00 00 06 *\nread 0 -> 4",
        "write 0 -> 0 : 00 00 00 00 06 *\nread 0 -> 0 : 07 01 82 00 *"}) {
    SCOPED_TRACE(exchange);
    TranscriptLibrary library(board + "\n" + exchange);
    DeviceTable table;
    EXPECT_EQ(DetectBoards(library, table, 3).listed, 1U);
    ASSERT_EQ(table.Count(), 1U);
    EXPECT_EQ(table.Record(0).queried_version, 0);
    EXPECT_EQ(table.Record(0).firmware_present, 1);
  }
}

TEST(Detection, OverwritesWhatALibraryLeftInTheProgramsBytes) {
  for (const std::uint32_t type : {1U, 2U, 3U}) {
    GarbageLibrary library(1);
    DeviceTable table;
    DetectBoards(library, table, type);
    EXPECT_EQ(table.Record(0).queried_version, 0);
    EXPECT_EQ(table.Record(0).firmware_present, 1);
    EXPECT_EQ(library.asked, type == 2 ? 0 : 1);

    GarbageLibrary none(3, 0);
    EXPECT_EQ(DetectBoards(none, table, type).reported, 0U) << "a result of 0";
    EXPECT_EQ(table.Count(), 1U);
    EXPECT_EQ(none.asked, 0);
  }
}

TEST(Detection, TakesNoMoreBoardsThanFit) {
  for (const std::uint32_t reported : {1025U, 1280U, 5000U, 0xFFFFFFFFU}) {
    SCOPED_TRACE(reported);
    DeviceTable table;
    GarbageLibrary some(1000);
    EXPECT_EQ(DetectBoards(some, table, 2).listed, 1000U);
    EXPECT_EQ(table.Free().size(), 280U) << "24 more boards and the margin of 256";
    GarbageLibrary many(reported);
    const Detected detected = DetectBoards(many, table, 3);
    EXPECT_EQ(detected.reported, reported);
    EXPECT_EQ(detected.listed, 24U);
    EXPECT_EQ(table.Count(), 1024U);
    EXPECT_EQ(table.Type(999), 2U);
    EXPECT_EQ(table.Type(1023), 3U);
    EXPECT_EQ(many.asked, 24);
    EXPECT_EQ(many.last_asked, &table.Record(1023));
    EXPECT_EQ(table.Free()[0].firmware_present, 0xEE) << "the margin stays the library's";

    GarbageLibrary late(1);
    EXPECT_EQ(DetectBoards(late, table, 1).listed, 0U);
    EXPECT_EQ(table.Boards().size(), 1024U);
    EXPECT_EQ(late.asked, 0);
  }
}

TEST(DeviceTable, ForgetsAllBoardsAndTheSelection) {
  GarbageLibrary library(3);
  DeviceTable table;
  DetectBoards(library, table, 2);
  table.SetCurrent(2);
  table.SetCurrent(3);
  EXPECT_EQ(table.Current(), 2U) << "there is no board 3";
  table.Clear();
  EXPECT_TRUE(table.IsEmpty());
  EXPECT_TRUE(table.Boards().empty());
  EXPECT_EQ(table.Current(), 0U);
  EXPECT_EQ(table.CurrentType(), 0U);
  EXPECT_EQ(table.CurrentRecord().product_id, 0);
  table.SetCurrent(0);
  EXPECT_EQ(table.Current(), 0U);
}

}  // namespace
}  // namespace quillon
