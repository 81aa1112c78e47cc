// SPDX-License-Identifier: MIT
#pragma once

#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace quillon::conformance {

// What a check found, as sentences. A check that tried nothing says why.
class Findings {
 public:
  void Tried() { tried_ = true; }
  // Counts as tried. Returns whether the promise was kept.
  bool Expect(bool kept, const std::string& otherwise);
  void Note(std::string sentence) { notes_.push_back(std::move(sentence)); }
  void NotTried(std::string reason) { reason_ = std::move(reason); }

  bool HasFailed() const { return !failures_.empty(); }
  bool WasTried() const { return tried_; }
  const std::vector<std::string>& Failures() const { return failures_; }
  const std::vector<std::string>& Notes() const { return notes_; }
  const std::string& Reason() const { return reason_; }

 private:
  bool tried_ = false;
  std::vector<std::string> failures_, notes_;
  std::string reason_ = "there is no board for it";
};

// The report that a person reads. It names a check before the check runs, so that it shows where a
// library crashes or hangs.
class Report {
 public:
  explicit Report(std::ostream& out) : out_(out) {}

  std::ostream& Out() { return out_; }
  void Begin(std::string_view name);
  void End(const Findings& findings);
  // The last line, after which HasFailed() is the result.
  void Finish();
  bool HasFailed() const { return failed_ > 0; }

 private:
  std::ostream& out_;
  unsigned kept_ = 0, failed_ = 0, not_tried_ = 0;
};

}  // namespace quillon::conformance
