// SPDX-License-Identifier: MIT
#include "pages/joystick/CAnalogChannelsPage.h"

namespace quillon {
namespace {

GridLayout Channels() {
  using enum CellKind;
  return {.columns = {{"on", kImageToggle},
                      {"axis_x", kRadio},
                      {"axis_y", kRadio},
                      {"axis_z", kRadio},
                      {"axis_rx", kRadio},
                      {"axis_ry", kRadio},
                      {"axis_rz", kRadio},
                      {"axis_s1", kRadio},
                      {"axis_s2", kRadio},
                      {"invert", kCheckBox},
                      {"spike", kCheckBox},
                      {"filter", kCombo},
                      {"resolution", kCombo},
                      {"incremental", kCheckBox},
                      {"centering_button", kCombo}},
          .tables = {{"analog", 1}, {"encoder", 9}, {"incremental", 15}}};
}

}  // namespace

CAnalogChannelsPage::CAnalogChannelsPage(PageContext context, const Page& page, QWidget* parent)
    : CSettingsPage(context, page, tr("Analog Inputs Configuration"), parent) {
  AddGrid(Body(), tr("Analog channels"), Channels());
}

}  // namespace quillon
