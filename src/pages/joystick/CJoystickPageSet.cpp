// SPDX-License-Identifier: MIT
#include "pages/joystick/CJoystickPageSet.h"

#include "pages/joystick/CAnalogChannelsPage.h"
#include "pages/joystick/CAxisTweakPage.h"
#include "pages/joystick/CExpansionPortPage.h"

namespace quillon {
namespace {

const FamilyTraits& TraitsOf(JoystickFamily family) {
  switch (family) {
    case JoystickFamily::kSmall:
      return kSmallJoystickTraits;
    case JoystickFamily::kScanMatrix:
      return kScanMatrixTraits;
    case JoystickFamily::kFull:
      break;
  }
  return kJoystickTraits;
}

}  // namespace

CJoystickPageSet::CJoystickPageSet(PageContext context, JoystickFamily family, QWidget* parent)
    : CPageSet(context, TraitsOf(family), parent) {
  const bool scan_matrix = family == JoystickFamily::kScanMatrix;
  if (family == JoystickFamily::kFull) {
    AddPage("tab-analog", tr("Analog Channels"),
            [context] { return new CAnalogChannelsPage(context, AnalogInputs::kWithEncoders); });
  } else if (family == JoystickFamily::kSmall) {
    AddPage("tab-analog", tr("Analog Channels"));
  }
  if (!scan_matrix) {
    AddPage("tab-axis", tr("Axis Tweaking"), [context] { return new CAxisTweakPage(context); });
  }
  AddPage("tab-digital", tr("Digital Channels"));
  if (!scan_matrix) AddPage("tab-hat", tr("HAT Channels"));
  if (family != JoystickFamily::kSmall) {
    const auto modules =
        scan_matrix ? ExpansionModules::kOfScanMatrix : ExpansionModules::kOfFullController;
    AddPage("tab-expansion", tr("Expansion Port"),
            [=] { return new CExpansionPortPage(context, modules); });
  }
}

}  // namespace quillon
