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
  AddPage<CAnalogChannelsPage>("analog", "tab-analog");
  AddPage<CAxisTweakPage>("axis_tweak", "tab-axis");
  if (family == BoardFamily::kScanMatrix) {
    AddPage<CScanMatrixChannelsPage>("digital", "tab-digital");
  } else {
    AddPage<CDigitalChannelsPage>("digital", "tab-digital");
  }
  AddPage<CHatChannelsPage>("hat", "tab-hat");
  AddPage<CExpansionPortPage>("expansion", "tab-expansion");
}

}  // namespace quillon
