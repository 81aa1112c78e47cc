// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <variant>

#include "devlink/GuardedCall.h"
#include "kvusb/HidLibrary.h"

namespace quillon {

// Which file to load. `choice` is the value of QUILLON_KVUSB: a path, `hid`, `sim` or `replay`.
// Empty means kvusb.dll on Windows if it lies beside the program, else our library over hidapi. Our
// libraries stand beside the program, or in ../lib/quillon as installed.
std::filesystem::path ChooseLibrary(const std::string& choice,
                                    const std::filesystem::path& program_folder);

// Loads a library file and binds its functions. Returns the library, or a sentence that names the
// file and says why it cannot be used. The file stays loaded as long as the object lives.
//
// A function that throws has failed. `thrown` is called then, if there is one, and
// DescribeProblem(nullptr) tells of the exception from then on.
std::variant<std::unique_ptr<HidLibrary>, std::string> LoadLibraryFile(
    const std::filesystem::path& file, const ThrowHandler& thrown = {});

}  // namespace quillon
