// SPDX-License-Identifier: MIT
#ifdef _WIN32
#include <windows.h>
#else
#include <dlfcn.h>
#endif
#include <gmock/gmock.h>

#include <fstream>

#include "devlink/LoadedLibrary.h"
#include "devlink/SharedObject.h"
#include "kvusb/HidPacket.h"
#include "testing/Environment.h"
#include "testing/OwnFolders.h"

namespace quillon::sim {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;

bool IsInMemory(const std::filesystem::path& library) {
#ifdef _WIN32
  return GetModuleHandleW(library.filename().c_str()) != nullptr;
#else
  return dlopen(library.c_str(), RTLD_NOW | RTLD_NOLOAD) != nullptr;
#endif
}

// The shared library as the program gets it.
class SimLibrary : public ::testing::Test {
 protected:
  SimLibrary() { testing::SetVariable("QUILLON_SIM_LATENCY_US", "0"); }

  void Load() { library_ = std::get<std::unique_ptr<HidLibrary>>(LoadLibraryFile(KVUSB_SIM_FILE)); }

  // The answer of the first board to the packet.
  HidPacket Ask(HidPacket packet) {
    std::uint32_t count = 0;
    EXPECT_NE(library_->DetectHID(count, table_, KVUSB_TYPE_FIRMWARE), 0);
    EXPECT_EQ(library_->WriteData(table_[0], packet), KVUSB_OK);
    EXPECT_EQ(library_->ReadData(table_[0], packet), KVUSB_OK);
    return packet;
  }

  std::unique_ptr<HidLibrary> library_;
  std::vector<DeviceRecord> table_ = std::vector<DeviceRecord>(64);
};

TEST_F(SimLibrary, ForgetsAllWhenUnloadedUnlessThereIsAStateFolder) {
  const auto folder = testing::OwnFolders::Root() / "kept";
  for (const bool keeps : {false, true}) {
    if (keeps) testing::SetVariable("QUILLON_SIM_STATE", folder.string());
    Load();
    EXPECT_EQ(library_->DescribeProblem(nullptr), Problem());
    EXPECT_EQ(Ask({0, 0, 0, 0, 0x0D, 1, 0x77})[0], 0x0D);
    library_.reset();
    EXPECT_FALSE(IsInMemory(KVUSB_SIM_FILE));
    Load();
    EXPECT_EQ(Ask({0, 0, 0, 0, 0x11})[1], keeps ? 0x77 : 0x59);
    library_.reset();
  }
  EXPECT_TRUE(std::filesystem::exists(folder / "joystick-1.json"));
  testing::UnsetVariable("QUILLON_SIM_STATE");
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
    testing::SetVariable("QUILLON_SIM_RIG", file.string());
    Load();
    std::uint32_t count = 5;
    for (std::uint32_t type = 1; type <= 3; ++type)
      EXPECT_EQ(library_->DetectHID(count, table_, type), 0);
    EXPECT_NE(library_->CloseDevices({}), 0);
    EXPECT_THAT(library_->DescribeProblem(nullptr).sentence,
                AllOf(HasSubstr(file.string()), HasSubstr(reason)));
    const SharedObject same(KVUSB_SIM_FILE);
    for (std::uint32_t size = 1; size < 100; ++size) {
      std::string cut(size, '?');
      EXPECT_NE(same.Find<DescribeProblemFunction>("DescribeProblem")(nullptr, cut.data(), size),
                0);
      const std::string text = cut.c_str();
      EXPECT_LT(text.size(), size);
      EXPECT_FALSE(text.ends_with('\xC3')) << "half a character";
    }
    library_.reset();
  }
  testing::UnsetVariable("QUILLON_SIM_RIG");
}

}  // namespace
}  // namespace quillon::sim
