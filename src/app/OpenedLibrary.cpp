// SPDX-License-Identifier: MIT
#include "app/OpenedLibrary.h"

#include <QFile>
#include <chrono>

#include "devlink/LoadedLibrary.h"
#include "devlink/TracedLibrary.h"

namespace quillon {
namespace {

std::filesystem::path PathOf(const QString& name) { return name.toStdU16String(); }

}  // namespace

OpenedLibrary::OpenedLibrary(const QString& program_folder) {
  const QString choice = qEnvironmentVariable("QUILLON_KVUSB");
  auto result = LoadLibraryFile(ChooseLibrary(choice.toStdString(), PathOf(program_folder)));
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
  trace_.open(PathOf(path), std::ios::trunc);
  if (!trace_) {
    if (!problem_.isEmpty()) problem_ += QLatin1Char('\n');
    problem_ += QStringLiteral("The trace file %1 cannot be written.").arg(path);
    return;
  }
  traced_ = std::make_unique<TracedLibrary>(*loaded_, trace_, [] {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration<double>(now).count();
  });
}

}  // namespace quillon
