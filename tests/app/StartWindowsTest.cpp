// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <QSettings>

#include "app/Profile.h"
#include "app/SingleInstance.h"

namespace quillon::testing {
namespace {

// The program's key in the user's registry, as it was before once the test is over.
class OwnKey {
 public:
  OwnKey() : kept_(key_.value(kAutoUpdate)) {}
  OwnKey(const OwnKey&) = delete;
  OwnKey& operator=(const OwnKey&) = delete;
  ~OwnKey() {
    kept_.isValid() ? key_.setValue(kAutoUpdate, kept_) : key_.remove(kAutoUpdate);
    key_.remove(kAutoConnect);
  }

  QSettings& Key() { return key_; }

  static constexpr const char* kAutoUpdate = "Options/Auto Update";
  static constexpr const char* kAutoConnect = "Options/Auto Connect";

 private:
  QSettings key_{R"(HKEY_CURRENT_USER\Software\Quillon\Quillon)", QSettings::NativeFormat};
  QVariant kept_;
};

}  // namespace

TEST(SingleInstance, IsTakenWhileAnotherOneLives) {
  {
    const SingleInstance first;
    EXPECT_FALSE(first.IsTaken());
    EXPECT_EQ(first.Problem(), "");
    EXPECT_TRUE(SingleInstance().IsTaken());
  }
  EXPECT_FALSE(SingleInstance().IsTaken());
}

TEST(Profile, IsInTheRegistryAndFallsBackToDefaults) {
  OwnKey own;
  own.Key().setValue(OwnKey::kAutoUpdate, "yes");
  own.Key().setValue(OwnKey::kAutoConnect, 0);
  own.Key().sync();
  Profile profile;
  EXPECT_EQ(profile.Problem(), "");
  EXPECT_EQ(profile.AutoUpdate(), 1);
  EXPECT_EQ(profile.AutoConnect(), 0);
  profile.SetAutoUpdate(5);
  own.Key().sync();
  EXPECT_EQ(own.Key().value(OwnKey::kAutoUpdate).toInt(), 5);
}

}  // namespace quillon::testing
