// SPDX-License-Identifier: MIT
#include <fstream>

#include "devlink/TraceFile.h"

namespace quillon {
namespace {

// A file in the user's profile is the user's alone there, and a write raises no signal.
class WindowsTraceFile : public TraceFile {
 public:
  explicit WindowsTraceFile(const std::filesystem::path& path)
      : stream_(path, std::ios::binary | std::ios::trunc) {}

  bool IsOpen() const { return stream_.is_open(); }

  std::optional<FileProblem> Write(std::string_view text) override {
    stream_ << text << std::flush;
    if (stream_) return std::nullopt;
    return FileProblem{"cannot be written", {}};
  }

 private:
  std::ofstream stream_;
};

}  // namespace

std::variant<std::unique_ptr<TraceFile>, FileProblem> OpenTraceFile(
    const std::filesystem::path& path) {
  std::error_code ignored;
  if (std::filesystem::is_directory(path, ignored)) return FileProblem{"is a folder", {}};
  auto file = std::make_unique<WindowsTraceFile>(path);
  if (!file->IsOpen()) return FileProblem{"cannot be written", {}};
  return file;
}

void LetWritesFail() {}

}  // namespace quillon
