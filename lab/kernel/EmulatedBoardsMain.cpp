// SPDX-License-Identifier: MIT
//
// quillon-emulated-boards [--others N] [--one-by-one] RIG COMMAND [ARGUMENT...]: runs a program on
// an emulated kernel that has the boards of a rig file, and N HID interfaces of other makers. Has
// to run under umockdev-wrapper itself. For each line "unplug 0" or "plug 0" that the program
// writes into the file that EMULATED_BOARDS_CONTROL names, it gets an empty one from
// EMULATED_BOARDS_DONE. Exits as the program does.
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "boards/RigFile.h"
#include "cli/CommandLine.h"
#include "kernel/EmulatedKernel.h"

namespace quillon::testing {
namespace {

// How soon a board that was told to restart does so.
constexpr int kLookMs = 2;

// Two named pipes in a folder of their own.
class Control {
 public:
  Control() {
    std::string pattern =
        (std::filesystem::temp_directory_path() / "emulated-boards-XXXXXX").string();
    folder_ = mkdtemp(pattern.data());
    commands_ = Open("EMULATED_BOARDS_CONTROL", "control");
    done_ = Open("EMULATED_BOARDS_DONE", "done");
  }
  ~Control() {
    close(commands_);
    close(done_);
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  void Serve(EmulatedKernel& kernel) {
    pollfd waiting{commands_, POLLIN, 0};
    if (poll(&waiting, 1, kLookMs) <= 0) return;
    std::array<char, 256> text{};
    const ssize_t bytes = read(commands_, text.data(), text.size());
    std::istringstream lines(
        std::string(text.data(), static_cast<std::size_t>(std::max<ssize_t>(bytes, 0))));
    std::string word;
    for (std::size_t board = 0; lines >> word >> board;) {
      word == "plug" ? kernel.Plug(board) : kernel.Unplug(board);
      if (write(done_, "\n", 1) != 1) return;
    }
  }

 private:
  // Open for both ways, so that it has an other end at all times.
  int Open(const char* variable, const char* name) const {
    const std::string path = (folder_ / name).string();
    mkfifo(path.c_str(), 0600);
    setenv(variable, path.c_str(), 1);
    return open(path.c_str(), O_RDWR | O_CLOEXEC);
  }

  std::filesystem::path folder_;
  int commands_ = -1, done_ = -1;
};

int Run(int others, bool one_by_one, const sim::Rig& rig, char** command) {
  EmulatedKernel kernel;
  if (one_by_one) kernel.SendOneByOne();
  kernel.Add(rig);
  kernel.AddOthers(others);
  Control control;
  pid_t child = 0;
  if (posix_spawnp(&child, command[0], nullptr, nullptr, command, environ) != 0) {
    std::cerr << command[0] << " cannot be started\n";
    return 2;
  }
  int status = 0;
  while (waitpid(child, &status, WNOHANG) == 0) {
    control.Serve(kernel);
    if (kernel.IsRestartDue()) kernel.FinishRestarts();
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

}  // namespace
}  // namespace quillon::testing

int main(int argc, char** argv) {
  constexpr int kWrong = 2;
  CLI::App app("Runs a program on an emulated kernel that has the boards of a rig file.",
               "quillon-emulated-boards");
  app.prefix_command();  // what follows the rig is the program's
  app.footer("COMMAND [ARGUMENT...] behind RIG is the program.");
  int others = 0;
  app.add_option("--others", others, "HID interfaces of other makers")
      ->type_name("N")
      ->check(CLI::Range(0, 10000));
  bool one_by_one = false;
  app.add_flag(
      "--one-by-one", one_by_one,
      "a report waits for the one before it, for programs that read more than one at a time");
  std::string rig_file;
  app.add_option("RIG", rig_file, "file that lists the boards")->required()->type_name("");
  app.callback([&] {
    if (app.remaining_size() == 0) throw CLI::RequiredError("COMMAND");
  });
  const std::vector<std::string> arguments(argv + (argc > 0 ? 1 : 0), argv + argc);
  if (const auto status = quillon::ReadCommandLine(app, arguments, std::cout, std::cerr, kWrong))
    return *status;
  const auto rig = quillon::sim::ReadRigFile(rig_file);
  if (const auto* const wrong = std::get_if<std::string>(&rig)) {
    std::cerr << *wrong << '\n';
    return kWrong;
  }
  return quillon::testing::Run(others, one_by_one, std::get<quillon::sim::Rig>(rig),
                               argv + argc - app.remaining_size());
}
