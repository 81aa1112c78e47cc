// SPDX-License-Identifier: MIT
//
// The program as its user starts it, in a window that is really shown: needs a display. The program
// is the one that QUILLON_PROGRAM names, else the one beside this test. Leaves a picture of the
// screen, smoke.png, in the current folder.
#include <gmock/gmock.h>
#include <windows.h>

#include <QGuiApplication>
#include <QPixmap>
#include <QScreen>
#include <chrono>
#include <functional>
#include <string>
#include <thread>
#include <vector>

namespace quillon::testing {
namespace {

using namespace std::chrono_literals;

constexpr auto kPatience = 60s;
constexpr WPARAM kAboutCommand = 16;
constexpr int kBoxHeight = 300;  // of a message box at most; the main window is higher

bool Comes(const std::function<bool()>& event, std::chrono::seconds patience = kPatience) {
  const auto end = std::chrono::steady_clock::now() + patience;
  while (std::chrono::steady_clock::now() < end) {
    if (event()) return true;
    std::this_thread::sleep_for(20ms);
  }
  return false;
}

// A started program, ended for good with the object.
class Started {
 public:
  explicit Started(std::wstring program) {
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    program = L'"' + program + L'"';
    CreateProcessW(nullptr, program.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                   &process_);
  }
  Started(const Started&) = delete;
  Started& operator=(const Started&) = delete;
  ~Started() {
    TerminateProcess(process_.hProcess, 99);
    CloseHandle(process_.hThread);
    CloseHandle(process_.hProcess);
  }

  // The visible window with this title, or nullptr.
  HWND Window(const std::wstring& title) const {
    Search search{process_.dwProcessId, title, nullptr};
    EnumWindows(
        [](HWND window, LPARAM data) -> BOOL {
          auto& wanted = *reinterpret_cast<Search*>(data);
          DWORD process = 0;
          GetWindowThreadProcessId(window, &process);
          std::wstring text(256, L'\0');
          text.resize(static_cast<std::size_t>(GetWindowTextW(window, text.data(), 256)));
          if (process == wanted.process && IsWindowVisible(window) != 0 && text == wanted.title)
            wanted.found = window;
          return TRUE;
        },
        reinterpret_cast<LPARAM>(&search));
    return search.found;
  }

  bool Runs() const { return WaitForSingleObject(process_.hProcess, 0) == WAIT_TIMEOUT; }
  DWORD ExitCode() const {
    DWORD code = STILL_ACTIVE;
    GetExitCodeProcess(process_.hProcess, &code);
    return code;
  }

 private:
  struct Search {
    DWORD process;
    std::wstring title;
    HWND found;
  };

  PROCESS_INFORMATION process_{};
};

std::wstring Program() {
  const QString named = qEnvironmentVariable("QUILLON_PROGRAM");
  return (named.isEmpty() ? QCoreApplication::applicationDirPath() + "/quillon.exe" : named)
      .toStdWString();
}

int Height(HWND window) {
  RECT area{};
  GetWindowRect(window, &area);
  return area.bottom - area.top;
}

TEST(Smoke, OneWindowComesShowsItsAboutBoxAndRefusesASecond) {
  const Started first(Program());
  HWND window = nullptr;
  ASSERT_TRUE(Comes([&] {
    window = first.Window(L"Quillon");
    return (window != nullptr && Height(window) > kBoxHeight) || !first.Runs();
  }));
  ASSERT_TRUE(first.Runs()) << "ended with " << first.ExitCode();

  // The test's server refuses, and the system's own functions have asked it.
  ASSERT_TRUE(Comes([&] { return first.Window(L"Version Check") != nullptr; }));
  PostMessageW(first.Window(L"Version Check"), WM_CLOSE, 0, 0);
  ASSERT_TRUE(Comes([&] { return first.Window(L"Version Check") == nullptr; }));

  window = first.Window(L"Quillon");  // for a moment a page may have been a window of its own

  // Nothing comes of it as long as something else is under way.
  ASSERT_TRUE(Comes([&] {
    if (first.Window(L"About Quillon") != nullptr) return true;
    PostMessageW(window, WM_SYSCOMMAND, kAboutCommand, 0);
    return false;
  }));
  std::this_thread::sleep_for(500ms);  // it is painted
  QGuiApplication::primaryScreen()->grabWindow(0).save("smoke.png");
  PostMessageW(first.Window(L"About Quillon"), WM_CLOSE, 0, 0);
  EXPECT_TRUE(Comes([&] { return first.Window(L"About Quillon") == nullptr; }));

  const Started second(Program());
  ASSERT_TRUE(Comes([&] { return second.Window(L"Quillon") != nullptr || !second.Runs(); }));
  ASSERT_TRUE(second.Runs()) << "without a word";
  EXPECT_FALSE(Comes([&] { return Height(second.Window(L"Quillon")) > kBoxHeight; }, 2s))
      << "a second window";
  PostMessageW(second.Window(L"Quillon"), WM_CLOSE, 0, 0);
  EXPECT_TRUE(Comes([&] { return !second.Runs(); }));
  EXPECT_EQ(second.ExitCode(), 0U);

  EXPECT_TRUE(first.Runs());
  PostMessageW(window, WM_CLOSE, 0, 0);
  EXPECT_TRUE(Comes([&] { return !first.Runs(); }));
  EXPECT_EQ(first.ExitCode(), 0U);
}

}  // namespace
}  // namespace quillon::testing

int main(int argc, char** argv) {
  testing::InitGoogleMock(&argc, argv);
  const QGuiApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
