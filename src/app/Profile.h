// SPDX-License-Identifier: MIT
#pragma once

#include <QSettings>
#include <QString>
#include <optional>

namespace quillon {

// The application profile: the two options of the section "Options", and nothing else. Kept where
// QSettings keeps a user's settings (XDG_CONFIG_HOME on Linux, the registry on Windows). A value
// that is not a number counts as missing, and so does a profile that cannot be read.
class Profile {
 public:
  Profile();

  // Empty when all is well. A sentence when something that cannot be a profile, such as a pipe or a
  // folder, stands in its place: then the options have their defaults and nothing is written.
  const QString& Problem() const { return problem_; }

  // Read at the start and kept; nothing depends on it.
  int AutoConnect() const { return Read(kAutoConnect); }

  // Nonzero: check for a newer program when the program starts.
  int AutoUpdate() const { return Read(kAutoUpdate); }
  void SetAutoUpdate(int value);

 private:
  static constexpr const char* kAutoConnect = "Options/Auto Connect";
  static constexpr const char* kAutoUpdate = "Options/Auto Update";

  int Read(const char* key) const;

  QString problem_;
  std::optional<QSettings> settings_;
};

}  // namespace quillon
