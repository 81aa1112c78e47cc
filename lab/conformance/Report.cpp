// SPDX-License-Identifier: MIT
#include "conformance/Report.h"

#include <algorithm>

namespace quillon::conformance {
namespace {

constexpr std::size_t kNameColumns = 44;
// A library that breaks a promise breaks it for every board; a page has no room for all of them.
constexpr std::size_t kShownSentences = 4;

void Indented(std::ostream& out, const std::vector<std::string>& sentences) {
  const std::size_t shown = std::min(sentences.size(), kShownSentences);
  for (std::size_t i = 0; i < shown; ++i) out << "    " << sentences[i] << '\n';
  if (shown < sentences.size()) out << "    and " << sentences.size() - shown << " more\n";
}

}  // namespace

bool Findings::Expect(bool kept, const std::string& otherwise) {
  tried_ = true;
  if (!kept) failures_.push_back(otherwise);
  return kept;
}

void Report::Begin(std::string_view name) {
  std::string padded(name);
  padded.resize(std::max(kNameColumns, padded.size() + 1), ' ');
  out_ << padded << std::flush;
}

void Report::End(const Findings& findings) {
  if (findings.HasFailed()) {
    ++failed_;
    out_ << "FAILED\n";
  } else if (findings.WasTried()) {
    ++kept_;
    out_ << "ok\n";
  } else {
    ++not_tried_;
    out_ << "not tried (" << findings.Reason() << ")\n";
  }
  Indented(out_, findings.Failures());
  Indented(out_, findings.Notes());
  out_ << std::flush;
}

void Report::Finish() {
  out_ << (failed_ == 0 ? "Nothing failed: " : "This library breaks promises: ") << kept_ << " ok, "
       << failed_ << " failed, " << not_tried_ << " not tried.\n"
       << std::flush;
}

}  // namespace quillon::conformance
