// SPDX-License-Identifier: MIT
#include "testing/pages/PageFixture.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QSpinBox>
#include <cstring>
#include <stdexcept>

#include "devlink/Detection.h"
#include "widgets/CGridCtrl.h"
#include "widgets/CStatusLed.h"

namespace quillon::testing {

PageFixture::PageFixture(HidLibrary& library, std::uint16_t product_id, std::uint16_t version)
    : link(library) {
  DeviceRecord& record = link.table.Free().front();
  record.product_id = product_id;
  record.version = version;
  std::strcpy(record.product_text, "Board");
  std::strcpy(record.serial_number, "001");
  link.table.Append(1, KVUSB_TYPE_FIRMWARE);
}

void PageFixture::Detect() {
  link.table.Clear();
  for (const std::uint32_t type :
       {KVUSB_TYPE_FIRMWARE, KVUSB_TYPE_LOADER, KVUSB_TYPE_FIRMWARE_ID}) {
    DetectBoards(link.library, link.table, type);
  }
}

QPushButton& Button(const QWidget& page, const QString& name) {
  return Named<QPushButton>(page, name);
}

CStatusLed& Lamp(const QWidget& page, const QString& name) { return Named<CStatusLed>(page, name); }

CGridCtrl& Grid(const QWidget& page) {
  auto* const grid = page.findChild<CGridCtrl*>();
  if (grid == nullptr) throw std::runtime_error("The page has no grid");
  return *grid;
}

std::string RowText(const CGridCtrl& grid, int row) {
  std::string text = grid.Text(row, 0).toStdString() + ":";
  for (int column = 1; column < grid.Columns(); ++column) {
    if (!grid.IsEnabledCell(row, column)) continue;
    const bool toggle = IsToggle(grid.Kind(row, column));
    if (toggle && grid.Value(row, column) == 0) continue;
    const QString word = toggle ? grid.Text(0, column) : grid.Text(row, column);
    text += " " + word.trimmed().toStdString();
    if (!toggle) text += "=" + std::to_string(grid.Value(row, column));
  }
  return text;
}

std::vector<std::string> ShownBy(const QWidget& page) {
  std::vector<std::string> shown;
  for (const auto* grid : page.findChildren<CGridCtrl*>()) {
    for (int row = 1; row < grid->Rows(); ++row) shown.push_back(RowText(*grid, row));
  }
  for (const auto* box : page.findChildren<QCheckBox*>())
    shown.push_back(box->text().toStdString() + (box->isChecked() ? " on" : " off"));
  for (const auto* box : page.findChildren<QComboBox*>())
    shown.push_back(box->currentText().toStdString());
  for (const auto* box : page.findChildren<QSpinBox*>()) shown.push_back(box->text().toStdString());
  return shown;
}

QString OriginOf(const QWidget& page) {
  return Named<QLabel>(page, QStringLiteral("Where the values come from")).text();
}

}  // namespace quillon::testing
