// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <map>
#include <utility>
#include <vector>

#include "update/UpdateChecks.h"

namespace quillon::testing {

// A web that answers as the test says, and a desktop that notes what it is to open.
class OwnWeb : public Fetch {
 public:
  Fetched Get(const QString& address, std::size_t limit) override {
    asked.push_back(address.toStdString() + " " + std::to_string(limit));
    stopped = false;
    if (while_waiting) std::exchange(while_waiting, nullptr)();
    const auto answer = answers.find(address.toStdString());
    return stopped || answer == answers.end() ? Fetched() : answer->second;
  }
  void Stop() override { stopped = true; }
  bool LeavesWorkBehind() const override { return false; }

  UpdateServices Services() {
    return {*this, [this](const QString& address) { opened.push_back(address.toStdString()); },
            ReadProgramVersion("1.2.9")};
  }
  std::function<bool(const QString&)> Documents() {
    return [this](const QString& path) {
      opened.push_back(path.toStdString());
      return opens_documents;
    };
  }

  std::map<std::string, Fetched> answers;  // by address
  std::function<void()> while_waiting;     // for the next answer
  std::vector<std::string> asked, opened;
  bool stopped = false, opens_documents = false;
};

}  // namespace quillon::testing
