// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "hidraw/BoardEvents.h"

namespace quillon {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// A board on port 1-2 with a joystick's interface before its own, as the kernel tells of it.
const std::string kUsb = "/sys/devices/usb1/1-2";

HidrawNode Node(const std::string& number, const std::string& board, bool configuration) {
  HidrawNode node;
  node.folder = board + "/hidraw" + number;
  node.hid = "0003:4C7E:0910.000" + number;
  node.board = board;
  node.product_id = 0x0910;
  node.serial = "00" + number;
  if (configuration) node.type = 2;
  return node;
}

// Feeds events to BoardEvents, which looks at the nodes that are there.
class Machine {
 public:
  explicit Machine(std::vector<HidrawNode> there)
      : nodes(std::move(there)), events(nodes, [this](const std::string& folder) {
          const auto found = std::ranges::find(nodes, folder, &HidrawNode::folder);
          return found == nodes.end() ? std::nullopt : std::optional(*found);
        }) {}

  void Tell(const std::string& action, const std::string& subsystem, const std::string& folder) {
    if (const auto event = events.Take({action, subsystem, folder}))
      told.push_back((event->arrived ? "+" : "-") + event->path.substr(4, 21) + " " +
                     event->path.substr(26, 3));
  }

  void Plug(const std::string& board, const std::string& joystick, const std::string& own) {
    Tell("add", "usb", board);
    nodes.push_back(Node(joystick, board, false));
    Tell("add", "hidraw", nodes.back().folder);
    nodes.push_back(Node(own, board, true));
    Tell("add", "hidraw", nodes.back().folder);
    Tell("bind", "usb", board);
    Tell("change", "hidraw", nodes.back().folder);
  }

  void Unplug(const std::string& board) {
    std::vector<std::string> folders;
    for (const HidrawNode& node : nodes)
      if (node.board == board) folders.push_back(node.folder);
    std::erase_if(nodes, [&](const HidrawNode& node) { return node.board == board; });
    for (const std::string& folder : folders) Tell("remove", "hidraw", folder);
    Tell("unbind", "usb", board);
    Tell("remove", "usb", board);
  }

  std::vector<HidrawNode> nodes;
  BoardEvents events;
  std::vector<std::string> told;
};

TEST(BoardEvents, OneForEachBoardThatComesOrGoes) {
  Machine machine({Node("1", "/sys/devices/usb1/1-1", true)});
  machine.Plug(kUsb, "2", "3");
  EXPECT_THAT(machine.told, ElementsAre("+USB#VID_4C7E&PID_0910 003"));
  machine.Unplug(kUsb);
  machine.Plug(kUsb, "4", "5");
  EXPECT_THAT(machine.told, ElementsAre("+USB#VID_4C7E&PID_0910 003", "-USB#VID_4C7E&PID_0910 003",
                                        "+USB#VID_4C7E&PID_0910 005"));
  machine.told.clear();
  machine.Unplug("/sys/devices/usb1/1-1");
  EXPECT_THAT(machine.told, ElementsAre("-USB#VID_4C7E&PID_0910 001")) << "was there before";
}

TEST(BoardEvents, OthersAreNoneOfOurs) {
  Machine machine({});
  machine.Tell("add", "hidraw", "/sys/devices/usb1/1-9/hidraw9");
  machine.Tell("remove", "hidraw", "/sys/devices/usb1/1-9/hidraw9");
  machine.Tell("remove", "usb", "/sys/devices/usb1/1-9");
  machine.nodes.push_back(Node("1", kUsb, false));
  machine.Tell("add", "hidraw", machine.nodes[0].folder);
  machine.Unplug(kUsb);
  EXPECT_THAT(machine.told, IsEmpty()) << "a board without a configuration interface";
}

TEST(BoardEvents, ToldTwiceOrTooLateOrNotAtAll) {
  Machine machine({Node("1", kUsb, true)});
  machine.Tell("add", "hidraw", kUsb + "/hidraw1");
  EXPECT_THAT(machine.told, IsEmpty()) << "it was known when its event came";
  // Its removal was lost, and something else stands on its port now.
  machine.nodes = {Node("2", kUsb, true)};
  machine.Tell("add", "hidraw", kUsb + "/hidraw2");
  EXPECT_EQ(machine.told.size(), 1U);
  // Gone again before anybody could look.
  machine.nodes.clear();
  machine.Tell("add", "hidraw", kUsb + "/hidraw3");
  EXPECT_EQ(machine.told.size(), 1U);
  machine.Tell("remove", "usb", kUsb);
  EXPECT_EQ(machine.told.size(), 2U) << "without an event for the node";
  machine.Tell("remove", "hidraw", kUsb + "/hidraw2");
  EXPECT_EQ(machine.told.size(), 2U);
}

TEST(BoardEvents, LostEventsAreMadeUpFor) {
  const std::string stays = "/sys/devices/usb1/1-1", left = "/sys/devices/usb1/1-2",
                    came = "/sys/devices/usb1/1-3", changed = "/sys/devices/usb1/1-4";
  BoardEvents events({Node("1", stays, true), Node("2", left, true), Node("4", changed, true)});
  const std::vector<HidrawNode> now{Node("1", stays, true), Node("3", came, true),
                                    Node("5", changed, true)};
  std::vector<std::string> told;
  for (const BoardEvent& event : events.Compare(now))
    told.push_back((event.arrived ? "+" : "-") + event.path.substr(26, 3));
  EXPECT_THAT(told, ElementsAre("-002", "-004", "+003", "+005"));
  EXPECT_THAT(events.Compare(now), IsEmpty());
}

TEST(BoardEvents, ARemovalFromBeforeItsBoardCameBackIsNone) {
  Machine machine({Node("1", kUsb, true)});
  machine.nodes = {Node("2", kUsb, true)};
  EXPECT_EQ(machine.events.Compare(machine.nodes).size(), 2U);
  machine.Tell("remove", "hidraw", kUsb + "/hidraw1");
  machine.Tell("remove", "usb", kUsb);
  EXPECT_THAT(machine.told, IsEmpty());
  machine.Unplug(kUsb);
  EXPECT_EQ(machine.told.size(), 1U);
}

}  // namespace
}  // namespace quillon
