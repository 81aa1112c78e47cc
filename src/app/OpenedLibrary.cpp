// SPDX-License-Identifier: MIT
#include "app/OpenedLibrary.h"

#include <QFile>
#include <chrono>

#include "devlink/LoadedLibrary.h"
#include "devlink/NoLibrary.h"
#include "devlink/TraceFile.h"
#include "devlink/TracedLibrary.h"
#include "kvusb/host/OpenLibrary.h"

namespace quillon {
namespace {

std::filesystem::path PathOf(const QString& name) { return name.toStdU16String(); }

}  // namespace

OpenedLibrary::OpenedLibrary(const QString& program_folder) {
  LetWritesFail();
  const QString choice = qEnvironmentVariable("QUILLON_KVUSB");
  const auto folder = PathOf(program_folder);
  auto result =
      OpenLibraryFile(ChooseLibrary(choice.toStdString(), folder),
                      {.program_folder = folder, .host_ended = [this] { TellTrouble(); }});
  if (auto* const library = std::get_if<std::unique_ptr<HidLibrary>>(&result)) {
    loaded_ = std::move(*library);
  } else {
    const auto& reason = std::get<std::string>(result);
    problem_ = QString::fromStdString(reason);
    loaded_ = std::make_unique<NoLibrary>(reason);
  }
  const QString trace = qEnvironmentVariable("QUILLON_TRACE");
  if (!trace.isEmpty()) OpenTrace(trace);
}

void OpenedLibrary::OpenTrace(const QString& path) {
  const auto tell = [name = path.toStdString()](const FileProblem& problem) {
    return problem.Sentence("The trace file " + name);
  };
  auto opened = OpenTraceFile(PathOf(path));
  if (const auto* problem = std::get_if<FileProblem>(&opened)) {
    if (!problem_.isEmpty()) problem_ += QLatin1Char('\n');
    problem_ += QString::fromStdString(tell(*problem));
    return;
  }
  trace_ = std::get<std::unique_ptr<TraceFile>>(std::move(opened));
  const auto write = [this, tell](std::string_view text) -> std::optional<std::string> {
    const auto problem = trace_->Write(text);
    if (!problem) return std::nullopt;
    return tell(*problem);
  };
  traced_ = std::make_unique<TracedLibrary>(*loaded_, write, [] {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration<double>(now).count();
  });
  traced_->SetWhenStopped([this] { TellTrouble(); });
}

void OpenedLibrary::TellTrouble() const {
  if (when_in_trouble_) when_in_trouble_();
}

}  // namespace quillon
