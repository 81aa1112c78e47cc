// SPDX-License-Identifier: MIT
#include "devlink/LoadedLibrary.h"

#include <array>

#include "devlink/SharedObject.h"
#include "storage/FilePath.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;

#ifdef _WIN32
constexpr const char* kPrefix = "";
constexpr const char* kSuffix = ".dll";
#else
constexpr const char* kPrefix = "lib";
constexpr const char* kSuffix = ".so";
#endif

struct Functions {
  DetectHIDFunction detect = nullptr;
  WriteDataFunction write = nullptr;
  ReadDataFunction read = nullptr;
  CloseDevicesFunction close = nullptr;
  SetDeviceChangeHandlerFunction set_handler = nullptr;
  DescribeProblemFunction describe = nullptr;
};

class LoadedLibrary : public HidLibrary {
 public:
  LoadedLibrary(std::unique_ptr<SharedObject> object, const Functions& functions, std::string name,
                const ThrowHandler& thrown)
      : object_(std::move(object)),
        functions_(functions),
        thrown_([this, name = std::move(name), thrown](const char* function,
                                                       const std::string& text) {
          exception_ =
              "The HID library " + name + " threw an exception in " + function + ": " + text + ".";
          if (thrown) thrown(function, text);
        }) {}

  ~LoadedLibrary() override { LoadedLibrary::SetDeviceChangeHandler(nullptr, nullptr); }

  std::int32_t DetectHID(std::uint32_t& count, std::span<DeviceRecord> free,
                         std::uint32_t type) override {
    return GuardedCall("DetectHID", 0, thrown_,
                       [&] { return functions_.detect(&count, free.data(), type); });
  }
  std::int32_t WriteData(DeviceRecord& record, PacketSpan packet) override {
    return GuardedCall("WriteData", KVUSB_WRITE_FAILED, thrown_,
                       [&] { return functions_.write(&record, packet.data()); });
  }
  std::int32_t ReadData(DeviceRecord& record, PacketSpan packet) override {
    return GuardedCall("ReadData", KVUSB_READ_FAILED, thrown_,
                       [&] { return functions_.read(&record, packet.data()); });
  }
  std::int32_t CloseDevices(std::span<DeviceRecord> records) override {
    return GuardedCall("CloseDevices", 0, thrown_, [&] {
      return functions_.close(static_cast<std::uint32_t>(records.size()), records.data());
    });
  }
  bool SetDeviceChangeHandler(DeviceChangeHandler handler, void* context) override {
    if (functions_.set_handler == nullptr) return false;
    return GuardedCall("SetDeviceChangeHandler", 0, thrown_,
                       [&] { return functions_.set_handler(handler, context); }) != 0;
  }
  Problem DescribeProblem(const DeviceRecord* record) override {
    Problem problem = Described(record);
    // A problem that the library cannot know: it threw.
    if (record == nullptr && !exception_.empty()) return {KVUSB_PROBLEM_OTHER, exception_};
    return problem;
  }

 private:
  Problem Described(const DeviceRecord* record) const {
    if (functions_.describe == nullptr) return {};
    std::array<char, 1024> text{};
    const std::int32_t kind = GuardedCall("DescribeProblem", KVUSB_PROBLEM_NONE, thrown_, [&] {
      return functions_.describe(record, text.data(), static_cast<std::uint32_t>(text.size()));
    });
    if (kind == KVUSB_PROBLEM_NONE) return {};
    text.back() = '\0';
    return {kind, text.data()};
  }

  std::unique_ptr<SharedObject> object_;
  Functions functions_;
  ThrowHandler thrown_;
  std::string exception_;
};

fs::path OurLibrary(const std::string& name, const fs::path& folder) {
  const std::string file = kPrefix + name + kSuffix;
  std::error_code ignored;
  fs::path installed = folder / ".." / "lib" / "quillon" / file;
  if (!fs::exists(folder / file, ignored) && fs::exists(installed, ignored)) return installed;
  return folder / file;
}

}  // namespace

fs::path ChooseLibrary(const std::string& choice, const fs::path& program_folder) {
  if (choice == "hid" || choice == "sim" || choice == "replay")
    return OurLibrary("kvusb-" + choice, program_folder);
  // Made absolute because a bare name would be looked for on the system's library path.
  std::error_code ignored;
  if (!choice.empty()) return fs::absolute(FilePath(choice), ignored);
#ifdef _WIN32
  if (fs::exists(program_folder / "kvusb.dll", ignored)) return program_folder / "kvusb.dll";
#endif
  return OurLibrary("kvusb-hid", program_folder);
}

std::variant<std::unique_ptr<HidLibrary>, std::string> LoadLibraryFile(const fs::path& file,
                                                                       const ThrowHandler& thrown) {
  auto object = std::make_unique<SharedObject>(file);
  const std::string name = file.string();
  std::error_code ignored;
  if (!object->Error().empty()) {
    if (!fs::exists(file, ignored)) return "The HID library " + name + " does not exist.";
    return "The HID library " + name + " cannot be loaded: " + object->Error();
  }
  Functions functions;
  const char* missing = nullptr;
  const auto bind = [&](auto& function, const char* function_name) {
    function = object->Find<std::remove_reference_t<decltype(function)>>(function_name);
    if (function == nullptr && missing == nullptr) missing = function_name;
  };
  bind(functions.detect, "DetectHID");
  bind(functions.write, "WriteData");
  bind(functions.read, "ReadData");
  bind(functions.close, "CloseDevices");
  if (missing != nullptr) {
    return "The HID library " + name + " lacks the function " + missing + ".";
  }
  bind(functions.set_handler, "SetDeviceChangeHandler");
  bind(functions.describe, "DescribeProblem");
  return std::make_unique<LoadedLibrary>(std::move(object), functions, name, thrown);
}

}  // namespace quillon
