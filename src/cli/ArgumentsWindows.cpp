// SPDX-License-Identifier: MIT
#include <windows.h>
// After it, because it needs its types.
#include <shellapi.h>

#include <memory>

#include "cli/Arguments.h"

namespace quillon {
namespace {

struct FreeLocal {
  void operator()(wchar_t** words) const { LocalFree(words); }
};

std::string Utf8(const wchar_t* wide) {
  const int size = WideCharToMultiByte(CP_UTF8, 0, wide, -1, nullptr, 0, nullptr, nullptr);
  std::string text(static_cast<std::size_t>(size > 0 ? size : 1), '\0');
  WideCharToMultiByte(CP_UTF8, 0, wide, -1, text.data(), size, nullptr, nullptr);
  text.pop_back();  // the final zero
  return text;
}

}  // namespace

// Not those of main(), which have lost what the system's code page lacks.
std::vector<std::string> Arguments(int /*argc*/, char** /*argv*/) {
  SetConsoleOutputCP(CP_UTF8);
  int count = 0;
  const std::unique_ptr<wchar_t*, FreeLocal> words(CommandLineToArgvW(GetCommandLineW(), &count));
  std::vector<std::string> arguments;
  for (int i = 1; words && i < count; ++i) arguments.push_back(Utf8(words.get()[i]));
  return arguments;
}

}  // namespace quillon
