// SPDX-License-Identifier: MIT
#pragma once

#include <QSettings>
#include <QString>
#include <optional>

namespace quillon {

// The application profile: the two options of the section "Options", and nothing else. Kept where
// QSettings keeps a user's settings (XDG_CONFIG_HOME on Linux, the registry on Windows). A value
// that is no number counts as missing, as does a profile that cannot be read.
class Profile {
 public:
  Profile();

  // A sentence on the file that stands in the profile's place and can be none, as a pipe or a
  // folder; then the options have their defaults and nothing is written. Empty when all is well.
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
