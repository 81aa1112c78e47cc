// SPDX-License-Identifier: MIT
#include "app/Profile.h"

#include <QDir>
#include <QStandardPaths>

#include "storage/ReadFile.h"

namespace quillon {
namespace {

constexpr std::size_t kLargest = 1U << 20U;

// QSettings also reads the files of the system and of the organisation, for keys that the user's
// own file lacks. It takes a relative XDG_CONFIG_HOME as one in the user's home.
QStringList FilesReadBySettings() {
  QStringList folders = QStandardPaths::standardLocations(QStandardPaths::GenericConfigLocation);
  const QString own = qEnvironmentVariable("XDG_CONFIG_HOME");
  if (!own.isEmpty()) folders << QDir::home().filePath(own);
  QStringList files;
  for (const QString& folder : folders) {
    files << folder + QStringLiteral("/Quillon/Quillon.conf")
          << folder + QStringLiteral("/Quillon.conf");
  }
  return files;
}

// QSettings opens whatever stands there, and would wait for ever for somebody to write to a pipe.
QString ProblemOf(const QString& file) {
  const auto read = ReadFile(std::filesystem::path(file.toStdU16String()), kLargest);
  const auto* const problem = std::get_if<FileProblem>(&read);
  if (problem == nullptr || problem->code) return {};
  return QStringLiteral(
             "The settings file %1 %2. The options have their defaults, and changes of "
             "them are not kept.")
      .arg(QDir::toNativeSeparators(file), QString::fromStdString(problem->predicate));
}

}  // namespace

Profile::Profile() {
  for (const QString& file : FilesReadBySettings()) {
    problem_ = ProblemOf(file);
    if (!problem_.isEmpty()) return;
  }
  settings_.emplace(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("Quillon"),
                    QStringLiteral("Quillon"));
}

void Profile::SetAutoUpdate(int value) {
  if (!settings_) return;
  settings_->setValue(kAutoUpdate, value);
  settings_->sync();
}

int Profile::Read(const char* key) const {
  constexpr int kDefault = 1;
  if (!settings_) return kDefault;
  bool is_number = false;
  const int value = settings_->value(key, kDefault).toInt(&is_number);
  return is_number ? value : kDefault;
}

}  // namespace quillon
