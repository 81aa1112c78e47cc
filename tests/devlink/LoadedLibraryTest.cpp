// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <algorithm>
#include <fstream>

#include "devlink/LoadedLibrary.h"
#include "devlink/NoLibrary.h"
#include "kvusb/HidPacket.h"
#include "testing/OwnFolders.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::StartsWith;

std::unique_ptr<HidLibrary> Load(const fs::path& file) {
  auto loaded = LoadLibraryFile(file);
  if (const auto* error = std::get_if<std::string>(&loaded)) {
    ADD_FAILURE() << *error;
    return std::make_unique<NoLibrary>();
  }
  return std::get<std::unique_ptr<HidLibrary>>(std::move(loaded));
}

std::string LoadError(const fs::path& file) {
  const auto loaded = LoadLibraryFile(file);
  const auto* error = std::get_if<std::string>(&loaded);
  return error != nullptr ? *error : "it was loaded";
}

fs::path Touch(const fs::path& file, const std::string& content = "") {
  fs::create_directories(file.parent_path());
  std::ofstream(file) << content;
  return file;
}

#ifdef _WIN32
constexpr bool kOnWindows = true;
std::string Ours(const std::string& name) { return "kvusb-" + name + ".dll"; }
#else
constexpr bool kOnWindows = false;
std::string Ours(const std::string& name) { return "libkvusb-" + name + ".so"; }
#endif

TEST(LoadedLibrary, FourFunctionsAreEnough) {
  const auto library = Load(FIXTURE_FOUR);
  std::vector<DeviceRecord> table(2);
  std::uint32_t count = 0;
  EXPECT_EQ(library->DetectHID(count, table, 3), 0);
  EXPECT_EQ(library->DetectHID(count, table, 2), 5);
  EXPECT_EQ(count, 1U);
  EXPECT_EQ(table[0].product_id, 0x0910);

  HidPacket packet{0, 1, 2, 3, 4, 9};
  packet[64] = 0xAB;
  EXPECT_EQ(library->WriteData(table[0], packet), 9);
  EXPECT_EQ(library->WriteData(table[1], packet), KVUSB_WRITE_FAILED) << "the other record";
  EXPECT_EQ(library->ReadData(table[1], packet), KVUSB_READ_TIMEOUT);
  EXPECT_EQ(library->ReadData(table[0], packet), KVUSB_OK);
  HidPacket answer{0, 1, 2, 3, 4, 9};
  answer[64] = 0xAB;
  std::ranges::reverse(answer);
  answer[64] = 0xAB;
  EXPECT_EQ(packet, answer);

  EXPECT_EQ(library->CloseDevices(std::span(table).first(1)), 1);
  EXPECT_EQ(library->CloseDevices(table), 0);
  EXPECT_FALSE(library->SetDeviceChangeHandler(nullptr, nullptr));
  EXPECT_EQ(library->DescribeProblem(nullptr), Problem());
}

TEST(LoadedLibrary, UsesTheOptionalFunctionsAndTakesItsHandlerBack) {
  std::vector<std::string> events;
  const DeviceChangeHandler note = [](std::uint32_t event, std::uint32_t type, const char* path,
                                      void* context) {
    static_cast<std::vector<std::string>*>(context)->push_back(std::to_string(event) + " " +
                                                               std::to_string(type) + " " + path);
  };
  DeviceRecord record{};
  {
    const auto library = Load(FIXTURE_SIX);
    EXPECT_TRUE(library->SetDeviceChangeHandler(note, &events));
    EXPECT_THAT(events, ::testing::ElementsAre("32768 5 hello"));
    EXPECT_EQ(library->DescribeProblem(nullptr),
              (Problem{KVUSB_PROBLEM_PERMISSION, std::string(1023, 'x')}));
    EXPECT_EQ(library->DescribeProblem(&record), Problem());
  }
  EXPECT_THAT(events, ::testing::ElementsAre("32768 5 hello", "32772 5 bye"));
}

TEST(LoadedLibrary, TakesAnExceptionForAFailureAndTellsOfIt) {
  const auto library = Load(FIXTURE_THROWING);
  DeviceRecord record{};
  std::uint32_t count = 0;
  EXPECT_EQ(library->DetectHID(count, {&record, 1}, KVUSB_TYPE_LOADER), 1);
  HidPacket packet{};
  EXPECT_EQ(library->ReadData(record, packet), KVUSB_READ_FAILED) << "nothing was asked";
  EXPECT_THAT(library->DescribeProblem(nullptr).sentence,
              ::testing::EndsWith("threw an exception in ReadData: no request."));
}

TEST(LoadedLibrary, SaysWhichFileIsOfNoUseAndWhy) {
  const fs::path folder = quillon::testing::OwnFolders::Root();
  const std::string missing = (folder / "nowhere" / "kvusb.so").string();
  EXPECT_EQ(LoadError(missing), "The HID library " + missing + " does not exist.");
  const std::string lacking = FIXTURE_LACKING;
  EXPECT_EQ(LoadError(lacking), "The HID library " + lacking + " lacks the function CloseDevices.");
  for (const fs::path& file :
       {Touch(folder / "text.so", "not a library\n"), Touch(folder / "empty.so"), folder}) {
    const std::string start = "The HID library " + file.string() + " cannot be loaded: ";
    EXPECT_THAT(LoadError(file),
                AllOf(StartsWith(start), ::testing::SizeIs(::testing::Gt(start.size()))));
  }
}

TEST(LoadedLibrary, TheChoiceNamesTheFile) {
  const fs::path root = quillon::testing::OwnFolders::Root() / "choice";
  const fs::path built = root / "built";
  const fs::path bin = root / "bin";
  Touch(built / Ours("hid"));
  Touch(built / Ours("sim"));
  Touch(built / "kvusb.dll");
  Touch(root / "lib" / "quillon" / Ours("hid"));
  Touch(root / "lib" / "quillon" / Ours("sim"));
  fs::create_directories(bin);

  EXPECT_EQ(ChooseLibrary("sim", built), built / Ours("sim"));
  EXPECT_EQ(ChooseLibrary("replay", built), built / Ours("replay"));
  EXPECT_EQ(ChooseLibrary("hid", built), built / Ours("hid")) << "beside the program first";
  EXPECT_EQ(ChooseLibrary("sim", bin).lexically_normal(), (root / "lib/quillon" / Ours("sim")));
  // Simulated boards only ever on request, and the vendor's file only on Windows.
  EXPECT_EQ(ChooseLibrary("", built), built / (kOnWindows ? "kvusb.dll" : Ours("hid")));
  EXPECT_EQ(ChooseLibrary("", bin).lexically_normal(), (root / "lib/quillon" / Ours("hid")));
  EXPECT_EQ(ChooseLibrary("", root / "no" / "such"), root / "no" / "such" / Ours("hid"))
      << "where none is, the message names the place beside the program";
  EXPECT_EQ(ChooseLibrary((root / "kvusb.so").string(), built), root / "kvusb.so");
  EXPECT_EQ(ChooseLibrary("own.so", built), fs::current_path() / "own.so")
      << "a bare name is a file, not a search";
}

}  // namespace
}  // namespace quillon
