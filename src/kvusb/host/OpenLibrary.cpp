// SPDX-License-Identifier: MIT
#include "kvusb/host/OpenLibrary.h"

#include <cstdlib>
#include <string_view>

#include "devlink/LoadedLibrary.h"
#include "kvusb/host/HostedLibrary.h"
#include "kvusb/host/PeFile.h"
#include "storage/ReadFile.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;

// A 32-bit library needs a host of 32 bits; this program is never that.
bool IsForeign(const fs::path& file) {
#ifdef _WIN64
  const auto front = ReadFileFront(file, host::kPeFront);
  const auto* const bytes = std::get_if<std::string>(&front);
  return bytes != nullptr && host::PeMachineOf(*bytes) == host::PeMachine::kX86;
#else
  static_cast<void>(file);
  return false;
#endif
}

fs::path HostProgram(const fs::path& folder, bool foreign) {
#ifdef _WIN32
  const char* const name = foreign ? "kvusb-host32.exe" : "kvusb-host64.exe";
#else
  const char* const name = foreign ? "kvusb-host32" : "kvusb-host";
#endif
  std::error_code ignored;
  fs::path installed = folder / ".." / "lib" / "quillon" / name;
  if (!fs::exists(folder / name, ignored) && fs::exists(installed, ignored)) return installed;
  return folder / name;
}

std::string MissingHost(const fs::path& file, const fs::path& program, bool foreign) {
  return "The HID library " + file.string() +
         (foreign ? " is made for 32-bit programs." : " is to run in a process of its own.") +
         " For that the program " + program.string() + " is needed, which does not exist.";
}

}  // namespace

bool IsHostWanted() {
  const char* const value = std::getenv("QUILLON_KVUSB_HOST");
  return value != nullptr && std::string_view(value) == "1";
}

bool NeedsHost(const fs::path& file) { return IsHostWanted() || IsForeign(file); }

std::variant<std::unique_ptr<HidLibrary>, std::string> OpenLibraryFile(const fs::path& file,
                                                                       const OpenOptions& options) {
  if (!NeedsHost(file)) return LoadLibraryFile(file, options.thrown);
  const bool foreign = IsForeign(file);
  const fs::path program = HostProgram(options.program_folder, foreign);
  std::error_code ignored;
  if (!fs::exists(program, ignored)) return MissingHost(file, program, foreign);
  return host::HostedLibrary::Start(
      {.program = program, .library = file, .when_ended = options.host_ended});
}

}  // namespace quillon
