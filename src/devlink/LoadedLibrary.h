// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <variant>

#include "devlink/GuardedCall.h"
#include "kvusb/HidLibrary.h"

namespace quillon {

// Which file to load: `choice` is the value of QUILLON_KVUSB, a path, `hid`, `sim` or `replay`;
// empty means kvusb.dll on Windows where it stands beside the program, else our library over
// hidapi. Our libraries stand beside the program, or in ../lib/quillon as installed.
std::filesystem::path ChooseLibrary(const std::string& choice,
                                    const std::filesystem::path& program_folder);

// Loads a library file and binds its functions. Returns the library, or a sentence that names the
// file and why it is of no use. The file stays loaded as long as the object lives.
//
// An exception out of a function is that function's failure. It is told to `thrown`, if there is
// one, and from then on by DescribeProblem(nullptr).
std::variant<std::unique_ptr<HidLibrary>, std::string> LoadLibraryFile(
    const std::filesystem::path& file, const ThrowHandler& thrown = {});

}  // namespace quillon
