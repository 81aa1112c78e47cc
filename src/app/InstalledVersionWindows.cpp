// SPDX-License-Identifier: MIT
#include <windows.h>
// After it, because it needs its types.
#include <winver.h>

#include <string>
#include <vector>

#include "app/InstalledVersion.h"

namespace quillon {
namespace {

// The file of this program; empty if it cannot be named in the system's code page.
std::string OwnFile() {
  std::string file(MAX_PATH, '\0');
  DWORD length = GetModuleFileNameA(nullptr, file.data(), static_cast<DWORD>(file.size()));
  // A longer name is cut, and its length is not told.
  while (length == file.size()) {
    file.resize(file.size() * 2);
    length = GetModuleFileNameA(nullptr, file.data(), static_cast<DWORD>(file.size()));
  }
  file.resize(length);
  return file;
}

// Nothing if the file has no such resource.
std::vector<char> VersionResource(const std::string& file) {
  DWORD ignored = 0;
  std::vector<char> resource(GetFileVersionInfoSizeA(file.c_str(), &ignored));
  if (resource.empty() || GetFileVersionInfoA(file.c_str(), 0, static_cast<DWORD>(resource.size()),
                                              resource.data()) == 0) {
    return {};
  }
  return resource;
}

// A part of the resource with its length; {nullptr, 0} if there is none.
std::pair<const void*, UINT> Part(const std::vector<char>& resource, const std::string& name) {
  void* part = nullptr;
  UINT length = 0;
  if (VerQueryValueA(resource.data(), name.c_str(), &part, &length) == 0) return {nullptr, 0};
  return {part, length};
}

}  // namespace

InstalledVersion ReadInstalledVersion() {
  InstalledVersion version;
  const std::vector<char> resource = VersionResource(OwnFile());
  if (resource.empty()) return version;
  // The texts are English, in Unicode; there are no others.
  if (const auto [text, length] = Part(resource, R"(\StringFileInfo\040904B0\FileVersion)");
      length > 0) {
    version.text = QString::fromLatin1(static_cast<const char*>(text));
  }
  if (const auto [fixed, length] = Part(resource, R"(\)"); length >= sizeof(VS_FIXEDFILEINFO)) {
    const auto& info = *static_cast<const VS_FIXEDFILEINFO*>(fixed);
    version.numbers = ProgramVersion{info.dwFileVersionMS, info.dwFileVersionLS};
  }
  return version;
}

}  // namespace quillon
