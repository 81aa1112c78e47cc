// SPDX-License-Identifier: MIT
#include "pages/common/FlashTips.h"

#include <QTextDocument>
#include <QWidget>

namespace quillon {
namespace {

// In these texts %1 is the selected board and %2 the one that the last run was about.

const char* Purpose(FlashControl control, bool running, bool same) {
  switch (control) {
    case FlashControl::kRefresh:
      return "Closes all boards and looks for them again.";
    case FlashControl::kFlash:
      return "Restarts the board in its firmware loader.";
    case FlashControl::kDevice:
      return "Restarts the board in its firmware.";
    case FlashControl::kSerial:
      return "Three digits that tell boards of one kind apart, 000 to 999.";
    case FlashControl::kSet:
      return "Gives the board this serial number, which it takes at its next start.";
    case FlashControl::kReboot:
      return "Restarts the board in the mode it is in.";
    case FlashControl::kProgram:
      return running ? "Stops before the next record. %1 stays in Flash Mode and can be "
                       "programmed again."
                     : "Erases the firmware of %1 and writes the loaded file.";
    case FlashControl::kExecute:
      return same ? "Restarts %1 with its new firmware."
                  : "Restarts %1. %2 is the board with the new firmware.";
    case FlashControl::kLoad:
      return "Chooses the KVX firmware file to write. A file can be dropped on this page, too.";
  }
  return "";
}

const char* NotToTheEnd(bool same) {
  return same ? "%1 was not programmed to the end: program it again."
              : "%2 was not programmed to the end. Program it, or %1, first.";
}

const char* WhyDisabled(FlashControl control, const FlashPageState& state, bool same) {
  if (!state.device_present) return "Needs a board.";
  if (state.moment == FlashMoment::kRunning) return "Not while the board is programmed.";
  const bool of_update = control == FlashControl::kProgram || control == FlashControl::kExecute ||
                         control == FlashControl::kLoad;
  if (of_update && !state.flash_mode_active) return "Only in Flash Mode.";
  switch (control) {
    case FlashControl::kFlash:
      return "The board is in Flash Mode already.";
    case FlashControl::kDevice:
      if (!state.flash_mode_active) return "The board is in Device Mode already.";
      return state.last_run_failed || state.moment == FlashMoment::kStopped
                 ? NotToTheEnd(same)
                 : "The board holds no valid firmware: program it first.";
    case FlashControl::kProgram:
      if (!state.file_loaded) return "Load a file first.";
      return same ? "%1 holds the loaded file already."
                  : "%2 holds the loaded file already. To write it into %1, load it again.";
    case FlashControl::kExecute:
      if (state.newer_node_system) return "Not with firmware that is newer than Quillon knows.";
      if (state.last_run_failed || state.moment == FlashMoment::kStopped) return NotToTheEnd(same);
      return state.file_loaded ? "Program %1 first." : "Load a file and program %1 first.";
    default:
      return "";
  }
}

}  // namespace

QString FlashTip(FlashControl control, bool enabled, const FlashPageState& state,
                 const FlashBoards& boards) {
  const bool running = state.moment == FlashMoment::kRunning;
  QString tip = QString::fromUtf8(enabled ? Purpose(control, running, boards.same)
                                          : WhyDisabled(control, state, boards.same));
  // Both at once: a name may hold a %2.
  if (tip.contains(QLatin1String("%2"))) {
    tip = tip.arg(boards.selected, boards.of_run);
  } else if (tip.contains(QLatin1String("%1"))) {
    tip = tip.arg(boards.selected);
  }
  return Qt::mightBeRichText(tip) ? Qt::convertFromPlainText(tip) : tip;
}

void ShowControl(QWidget& widget, FlashControl control, const FlashPageState& state,
                 const FlashBoards& boards) {
  const bool enabled = FlashControlsFor(state).Has(control);
  widget.setEnabled(enabled);
  widget.setToolTip(FlashTip(control, enabled, state, boards));
}

}  // namespace quillon
