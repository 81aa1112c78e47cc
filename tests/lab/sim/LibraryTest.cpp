// SPDX-License-Identifier: MIT
#include <dlfcn.h>
#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "kvusb/kvusb.h"
#include "testing/OwnFolders.h"

namespace quillon::sim {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;

// The shared library as the program gets it.
class SimLibrary : public ::testing::Test {
 protected:
  SimLibrary() { setenv("QUILLON_SIM_LATENCY_US", "0", 1); }
  ~SimLibrary() override { Unload(); }

  void Load() {
    library_ = dlopen(KVUSB_SIM_FILE, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(library_, nullptr) << dlerror();
    Bind(detect_, "DetectHID");
    Bind(write_, "WriteData");
    Bind(read_, "ReadData");
    Bind(close_, "CloseDevices");
    Bind(set_handler_, "SetDeviceChangeHandler");
    Bind(describe_, "DescribeProblem");
  }

  void Unload() {
    if (library_ != nullptr) dlclose(library_);
    library_ = nullptr;
  }

  template <typename Function>
  void Bind(Function& function, const char* name) {
    function = reinterpret_cast<Function>(dlsym(library_, name));
    ASSERT_NE(function, nullptr) << name;
  }

  std::string Problem() {
    char text[512] = "untouched";
    const bool has = describe_(nullptr, text, sizeof text) != 0;
    EXPECT_EQ(has, text[0] != '\0');
    return text;
  }

  void* library_ = nullptr;
  DetectHIDFunction detect_ = nullptr;
  WriteDataFunction write_ = nullptr;
  ReadDataFunction read_ = nullptr;
  CloseDevicesFunction close_ = nullptr;
  SetDeviceChangeHandlerFunction set_handler_ = nullptr;
  DescribeProblemFunction describe_ = nullptr;
  std::vector<DeviceRecord> table_ = std::vector<DeviceRecord>(64);
};

TEST_F(SimLibrary, DetectsAnswersAndForgetsAllWhenUnloaded) {
  Load();
  EXPECT_EQ(Problem(), "");
  std::uint32_t count = 0;
  ASSERT_NE(detect_(&count, table_.data(), KVUSB_TYPE_FIRMWARE), 0);
  ASSERT_GE(count, 7U);
  EXPECT_EQ(table_[0].product_id, 0x0910);
  std::uint8_t packet[65] = {0, 0, 0, 0, 0x0D, 1, 0x77};
  EXPECT_NE(write_(&table_[0], packet), KVUSB_WRITE_FAILED);
  EXPECT_EQ(read_(&table_[0], packet), KVUSB_OK);
  EXPECT_EQ(packet[0], 0x0D);
  int calls = 0;
  DeviceChangeHandler handler = [](std::uint32_t, std::uint32_t, const char*, void* context) {
    ++*static_cast<int*>(context);
  };
  for (const std::size_t board : {1U, 2U}) {
    EXPECT_NE(set_handler_(handler, &calls), 0);
    std::uint8_t restart[65] = {0, 0, 0, 0, 9};
    write_(&table_[board], restart);
    EXPECT_EQ(read_(&table_[board], restart), KVUSB_OK);
    EXPECT_EQ(calls, 2) << "and none after it was taken back";
    handler = nullptr;
  }
  EXPECT_NE(close_(count, table_.data()), 0);

  Unload();
  EXPECT_EQ(dlopen(KVUSB_SIM_FILE, RTLD_NOW | RTLD_NOLOAD), nullptr) << "still in memory";
  Load();
  ASSERT_NE(detect_(&count, table_.data(), KVUSB_TYPE_FIRMWARE), 0);
  std::uint8_t query[65] = {0, 0, 0, 0, 0x11};
  write_(&table_[0], query);
  read_(&table_[0], query);
  EXPECT_EQ(query[1], 0x59) << "factory settings again";
}

TEST_F(SimLibrary, KeepsSettingsInTheStateFolder) {
  const auto folder = testing::OwnFolders::Root() / "kept";
  setenv("QUILLON_SIM_STATE", folder.c_str(), 1);
  std::uint32_t count = 0;
  Load();
  ASSERT_NE(detect_(&count, table_.data(), KVUSB_TYPE_FIRMWARE), 0);
  std::uint8_t packet[65] = {0, 0, 0, 0, 0x0D, 1, 0x77};
  write_(&table_[0], packet);
  Unload();
  Load();
  ASSERT_NE(detect_(&count, table_.data(), KVUSB_TYPE_FIRMWARE), 0);
  std::uint8_t query[65] = {0, 0, 0, 0, 0x11};
  write_(&table_[0], query);
  read_(&table_[0], query);
  EXPECT_EQ(query[1], 0x77);
  EXPECT_TRUE(std::filesystem::exists(folder / "joystick-1.json"));
  unsetenv("QUILLON_SIM_STATE");
}

TEST_F(SimLibrary, ARigThatCannotBeUsedMeansNoBoardsAndASentence) {
  const auto file = testing::OwnFolders::Root() / "r\u00FCg.json";
  for (const std::string reason :
       {"cannot be opened: No such file or directory.", "is a folder.", "lacks \"product\""}) {
    if (reason == "is a folder.") {
      std::filesystem::create_directory(file);
    } else if (std::filesystem::remove(file)) {
      std::ofstream(file) << R"({"boards": [{"id": "x"}]})";
    }
    setenv("QUILLON_SIM_RIG", file.c_str(), 1);
    Load();
    std::uint32_t count = 5;
    for (std::uint32_t type = 1; type <= 3; ++type)
      EXPECT_EQ(detect_(&count, table_.data(), type), 0);
    EXPECT_NE(close_(0, table_.data()), 0);
    EXPECT_THAT(Problem(), AllOf(HasSubstr(file.string()), HasSubstr(reason)));
    for (std::uint32_t size = 1; size < 100; ++size) {
      std::string cut(size, '?');
      EXPECT_NE(describe_(nullptr, cut.data(), size), 0);
      const std::string text = cut.c_str();
      EXPECT_LT(text.size(), size);
      EXPECT_FALSE(text.ends_with('\xC3')) << "half a character";
    }
    Unload();
  }
  unsetenv("QUILLON_SIM_RIG");
}

}  // namespace
}  // namespace quillon::sim
