// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <string>

#include "access/InstallCommand.h"
#include "access/UdevRule.h"
#include "testing/OwnFolders.h"

namespace quillon::testing {
namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;

std::string ContentOf(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

// A machine of the test's own: `sudo` and `udevadm` are scripts that note how they are called, and
// the rule goes to a folder below the test's.
class InstallCommand : public ::testing::Test {
 protected:
  InstallCommand() {
    fs::create_directory(tools_);
    Tool("sudo", "echo \"sudo $1\" >> '" + log_.string() + "'; exec \"$@\"");
    Tool("udevadm", "echo \"udevadm $*\" >> '" + log_.string() + "'");
    const char* const path = std::getenv("PATH");
    setenv("PATH", (tools_.string() + ":" + (path != nullptr ? path : "")).c_str(), 1);
  }

  void Tool(const std::string& name, const std::string& does) const {
    std::ofstream(tools_ / name) << "#!/bin/sh\n" << does << '\n';
    fs::permissions(tools_ / name, fs::perms::owner_all);
  }

  std::string Here(std::string script) const {
    for (std::size_t at = 0; (at = script.find(kRuleFolder, at)) != script.npos;) {
      script.replace(at, kRuleFolder.size(), folder_.string());
      at += folder_.string().size();
    }
    return script;
  }

  static int Run(const std::vector<std::string>& words) {
    std::vector<char*> arguments;
    for (const std::string& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    const pid_t child = fork();
    if (child == 0) {
      execvp(arguments[0], arguments.data());
      _exit(127);
    }
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

  int RunCopied() const { return Run({"/bin/sh", "-c", Here(CopyableCommand())}); }

  const fs::path tools_ = OwnFolders::Root() / "tools";
  const fs::path folder_ = OwnFolders::Root() / "etc/rules.d";
  const fs::path rule_ = folder_ / "70-quillon.rules";
  const fs::path log_ = OwnFolders::Root() / "log";
};

constexpr const char* kUdevCalls =
    "udevadm control --reload\n"
    "udevadm trigger --subsystem-match=hidraw --action=change\n"
    "udevadm settle --timeout=10\n";

}  // namespace

TEST_F(InstallCommand, WritesTheRuleByteByByteFromATerminal) {
  EXPECT_THAT(CopyableCommand(), ::testing::Not(HasSubstr("\n"))) << "one line to paste";
  EXPECT_EQ(RunCopied(), 0);
  ASSERT_NE(ContentOf(RULE_SOURCE), "");
  EXPECT_EQ(ContentOf(rule_), ContentOf(RULE_SOURCE));
  EXPECT_EQ(ContentOf(log_), std::string("sudo /bin/sh\n") + kUdevCalls);
  EXPECT_EQ(std::distance(fs::directory_iterator(folder_), {}), 1) << "nothing else is left there";
}

TEST_F(InstallCommand, WritesTheSameThroughPkexecWhateverTheUmask) {
  Tool("pkexec", R"(umask 077; [ "$1" = --disable-internal-agent ] && shift && exec "$@")");
  std::vector<std::string> words{"pkexec"};
  for (const std::string& argument : ElevatedArguments()) words.push_back(Here(argument));
  EXPECT_EQ(Run(words), 0);
  EXPECT_EQ(ContentOf(rule_), ContentOf(RULE_SOURCE));
  EXPECT_EQ(ContentOf(log_), kUdevCalls);
  EXPECT_EQ(fs::status(rule_).permissions(), static_cast<fs::perms>(0644)) << "udev's to read";
}

TEST_F(InstallCommand, ReplacesWhatIsThereEvenALinkAndKeepsIt) {
  fs::create_directories(folder_);
  const fs::path other = OwnFolders::Root() / "other", old = folder_ / "70-quillon.rules.old";
  std::ofstream(rule_) << "an administrator's";
  EXPECT_EQ(RunCopied(), 0);
  EXPECT_EQ(ContentOf(rule_), ContentOf(RULE_SOURCE));
  EXPECT_EQ(ContentOf(old), "an administrator's");

  std::ofstream(other) << "kept";
  fs::remove(rule_);
  fs::create_symlink(other, rule_);
  EXPECT_EQ(RunCopied(), 0);
  EXPECT_EQ(ContentOf(rule_), ContentOf(RULE_SOURCE));
  EXPECT_EQ(ContentOf(other), "kept");
  EXPECT_EQ(fs::read_symlink(old), other);
}

// 126 and 127 are pkexec's own, and mean something else.
TEST_F(InstallCommand, EndsWith1WhenAnythingFails) {
  Tool("udevadm", "[ \"$1\" != trigger ] || exit 127");
  EXPECT_EQ(RunCopied(), 1);
  Tool("udevadm", "[ \"$1\" != settle ]");
  EXPECT_EQ(RunCopied(), 0) << "a wait in vain is no failure";
  fs::remove_all(folder_);
  std::ofstream(folder_) << "a file in place of the folder";
  EXPECT_EQ(RunCopied(), 1);
}

}  // namespace quillon::testing
