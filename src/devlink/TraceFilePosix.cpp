// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

#include "devlink/TraceFile.h"

namespace quillon {
namespace {

FileProblem Failed() { return FileProblem::OfErrno("cannot be written"); }

class PosixTraceFile : public TraceFile {
 public:
  explicit PosixTraceFile(int file) : file_(file) {}
  PosixTraceFile(const PosixTraceFile&) = delete;
  PosixTraceFile& operator=(const PosixTraceFile&) = delete;
  ~PosixTraceFile() override { close(file_); }

  // What a regular file needs before the first byte; a device or a pipe stays as it is.
  std::optional<FileProblem> Prepare() {
    struct stat state {};
    if (fstat(file_, &state) != 0) return Failed();
    if (!S_ISREG(state.st_mode)) return std::nullopt;
    // A file system without modes refuses even the owner, and has nothing to protect.
    if (fchmod(file_, S_IRUSR | S_IWUSR) != 0 && state.st_uid != geteuid())
      return FileProblem{"belongs to another user", {}};
    if (ftruncate(file_, 0) != 0) return Failed();
    length_ = 0;
    return std::nullopt;
  }

  std::optional<FileProblem> Write(std::string_view text) override {
    std::string_view rest = text;
    while (!rest.empty()) {
      const ssize_t written = write(file_, rest.data(), rest.size());
      if (written < 0 && errno == EINTR) continue;
      if (written < 0) return TakeBack();
      rest.remove_prefix(static_cast<std::size_t>(written));
    }
    if (length_) *length_ += static_cast<off_t>(text.size());
    return std::nullopt;
  }

 private:
  FileProblem TakeBack() const {
    FileProblem problem = Failed();
    if (problem.code == std::errc::resource_unavailable_try_again)
      problem.predicate = "cannot be written: its reader is too slow";
    // Half a line could not be played.
    if (length_ && ftruncate(file_, *length_) != 0)
      problem.predicate += ", and ends in half a line";
    return problem;
  }

  int file_;
  std::optional<off_t> length_;  // of a regular file
};

}  // namespace

std::variant<std::unique_ptr<TraceFile>, FileProblem> OpenTraceFile(
    const std::filesystem::path& path) {
  const int opened =
      open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, S_IRUSR | S_IWUSR);
  if (opened < 0 && errno == EISDIR) return FileProblem{"is a folder", {}};
  if (opened < 0) {
    FileProblem problem = Failed();
    std::error_code ignored;
    if (problem.code == std::errc::no_such_device_or_address &&
        std::filesystem::is_fifo(path, ignored))
      problem.predicate = "cannot be written: nobody reads this pipe";
    return problem;
  }
  auto file = std::make_unique<PosixTraceFile>(opened);
  if (auto problem = file->Prepare()) return std::move(*problem);
  return file;
}

void LetWritesFail() {
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
}

}  // namespace quillon
