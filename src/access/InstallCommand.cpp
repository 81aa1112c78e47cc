// SPDX-License-Identifier: MIT
#include "access/InstallCommand.h"

#include <string_view>

#include "access/UdevRule.h"

namespace quillon {
namespace {

// The text quoted as one word of a shell.
std::string Quoted(std::string_view text) {
  std::string word = "'";
  for (const char c : text) {
    if (c == '\'') {
      word += "'\\''";
    } else {
      word += c;
    }
  }
  return word + "'";
}

// The arguments from which `printf '%s\n'` makes the rule, as a command of one line cannot hold a
// line break.
std::string QuotedLines(std::string_view text) {
  std::string words;
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    words += ' ' + Quoted(text.substr(0, end));
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  }
  return words;
}

// The rule is moved into place whole, and replaces a link instead of following it. A file that
// stands there may be an administrator's own work, so it is kept under a name that udev ignores.
// The uaccess tag is acted on for "change", too. Waiting for udev may fail without harm.
std::string Script() {
  const std::string folder(kRuleFolder);
  const std::string file = folder + '/' + std::string(kRuleFile);
  return "umask 022 && mkdir -p " + folder + " && printf '%s\\n'" + QuotedLines(RuleText()) +
         " > " + file + ".new && { [ ! -f " + file + " ] || ln -f " + file + ' ' + file +
         ".old; } && mv -f " + file + ".new " + file +
         " && udevadm control --reload"
         " && udevadm trigger --subsystem-match=hidraw --action=change || exit 1;"
         " udevadm settle --timeout=10 || :";
}

}  // namespace

std::string CopyableCommand() { return "sudo /bin/sh -c " + Quoted(Script()); }

std::vector<std::string> ElevatedArguments() {
  return {"--disable-internal-agent", "/bin/sh", "-c", Script()};
}

}  // namespace quillon
