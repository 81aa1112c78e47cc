// SPDX-License-Identifier: MIT
#include "stage/Surroundings.h"

#include <QFile>
#include <QSettings>
#include <stdexcept>

namespace quillon::stage {

void UseSimulatedBoards(const QDir& own) {
  qputenv("QUILLON_KVUSB", "sim");
  qunsetenv("QUILLON_SIM_STATE");
  qunsetenv("QUILLON_TRACE");
  qunsetenv("QUILLON_UPDATE_BASE");
  QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope,
                     own.absoluteFilePath(QStringLiteral("profile")));
}

void UseRig(const QString& file) {
  if (file.isEmpty()) {
    qunsetenv("QUILLON_SIM_RIG");
  } else {
    qputenv("QUILLON_SIM_RIG", QFile::encodeName(file));
  }
}

void UseFreshState(const QString& folder) {
  if (!QDir(folder).removeRecursively() || !QDir().mkpath(folder)) {
    throw std::runtime_error("The folder " + folder.toStdString() + " cannot be made anew.");
  }
  qputenv("QUILLON_SIM_STATE", QFile::encodeName(folder));
}

void UseTrace(const QString& file) { qputenv("QUILLON_TRACE", QFile::encodeName(file)); }

int ExchangesIn(const QString& trace) {
  QFile file(trace);
  if (!file.open(QIODevice::ReadOnly)) {
    throw std::runtime_error("The trace " + trace.toStdString() + " cannot be read.");
  }
  return static_cast<int>(file.readAll().count(" write "));
}

void UseLargeOffscreen(const QDir& own) {
  if (qgetenv("QT_QPA_PLATFORM") != "offscreen") return;
  const QString file = own.absoluteFilePath(QStringLiteral("screen.json"));
  WriteFile(file, R"({"screens": [{"name": "desktop", "x": 0, "y": 0, "width": 4000,
 "height": 2600, "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]})");
  qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + QFile::encodeName(file));
}

void WriteFile(const QString& file, const QByteArray& content) {
  QFile out(file);
  if (!out.open(QIODevice::WriteOnly) || out.write(content) != content.size() || !out.flush()) {
    throw std::runtime_error("The file " + file.toStdString() +
                             " cannot be written: " + out.errorString().toStdString() + ".");
  }
}

}  // namespace quillon::stage
