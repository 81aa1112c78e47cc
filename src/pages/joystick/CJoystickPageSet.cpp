// SPDX-License-Identifier: MIT
#include "pages/joystick/CJoystickPageSet.h"

#include "pages/joystick/CAnalogChannelsPage.h"
#include "pages/joystick/CAxisTweakPage.h"
#include "pages/joystick/CDigitalChannelsPage.h"
#include "pages/joystick/CExpansionPortPage.h"
#include "pages/joystick/CHatChannelsPage.h"
#include "pages/joystick/CScanMatrixChannelsPage.h"

namespace quillon {

CJoystickPageSet::CJoystickPageSet(PageContext context, BoardFamily family, QWidget* parent)
    : CPageSet(context, family, parent) {
  const bool full = family == BoardFamily::kJoystick;
  if (family == BoardFamily::kScanMatrix) {
    AddPage("tab-digital", tr("Digital Channels"),
            [context] { return new CScanMatrixChannelsPage(context); });
  } else {
    AddPage("tab-analog", tr("Analog Channels"), [=] {
      return new CAnalogChannelsPage(
          context, full ? AnalogInputs::kWithEncoders : AnalogInputs::kAnalogOnly);
    });
    AddPage("tab-axis", tr("Axis Tweaking"), [context] { return new CAxisTweakPage(context); });
    AddPage("tab-digital", tr("Digital Channels"), [=] {
      return new CDigitalChannelsPage(context, full ? ScanMatrix::kNone : ScanMatrix::kSwitchable);
    });
    AddPage("tab-hat", tr("HAT Channels"), [=] {
      return new CHatChannelsPage(context, full ? HatUse::kWithOutputs : HatUse::kInputsOnly);
    });
  }
  if (family != BoardFamily::kSmallJoystick) {
    const auto modules =
        full ? ExpansionModules::kOfFullController : ExpansionModules::kOfScanMatrix;
    AddPage("tab-expansion", tr("Expansion Port"),
            [=] { return new CExpansionPortPage(context, modules); });
  }
}

}  // namespace quillon
