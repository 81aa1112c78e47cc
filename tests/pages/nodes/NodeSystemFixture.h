// SPDX-License-Identifier: MIT
#pragma once

#include <QCheckBox>
#include <QPlainTextEdit>
#include <QTabBar>

#include "firmware/NodeStatus.h"
#include "pages/common/DeviceConfigFixture.h"
#include "pages/nodes/CNodeSystemPageSet.h"
#include "widgets/CCheckList.h"

namespace quillon::testing {

// The pages of a simulated node board "b" in Flash Mode.
class NodeSystemFixture {
 public:
  // `fields` of the rig say which nodes and cards the board has.
  explicit NodeSystemFixture(const std::string& fields, const std::string& product = "0x0800")
      : bus(std::get<sim::Rig>(sim::ParseRig(R"({"boards": [{"id": "b", "product": ")" + product +
                                             R"(", "mode": "flash", "firmware": "1.10", )" +
                                             fields + "}]}")),
            {.latency = {}}),
        library(bus),
        fixture(library),
        run(fixture.link.gate, nullptr, [this] { return now; }),
        pages({fixture.link, fixture.prompts, run}) {
    fixture.Detect();
    pages.ShowBoard();
    pages.EnablePages(true, false);
    QObject::connect(&run, &StackRun::Begun, [this] { ++begun; });
    QObject::connect(&run, &StackRun::Ended, [this] { ++ended; });
  }

  QWidget& Page(int tab) { return *pages.Tab(tab); }
  // Whether the report on the board says that a node needs an update.
  bool Warns() {
    return Page(0).findChild<QPlainTextEdit*>()->toPlainText().contains("WARNING: NODE");
  }
  CCheckList& List(int tab) { return *Page(tab).findChild<CCheckList*>(); }
  QPushButton& Press(int tab, const QString& text) {
    for (auto* const button : Page(tab).findChildren<QPushButton*>()) {
      if (button->text() == text) return *button;
    }
    throw std::runtime_error("The page has no button " + text.toStdString());
  }
  void Click(int tab, const QString& text) { Press(tab, text).click(); }

  // Rows of the list as copied, with the colour of the first cell and, where it differs, of the
  // last.
  std::string Rows(int tab, const std::vector<int>& rows) {
    const CCheckList& list = List(tab);
    const QStringList lines = list.AsText().split('\n');
    std::string text;
    for (const int row : rows) {
      QString line = lines.at(row + 1);
      const QRgb first = list.Colour(row, 0), last = list.Colour(row, list.Columns() - 2);
      text += line.replace('\t', '|').toStdString() + " " + Hex(first);
      if (last != first) text += " " + Hex(last);
      text += "\n";
    }
    return text;
  }

  VersionWord FlashOf(std::size_t node) { return bus.Find("b")->State().nodes[node].flash_version; }

  sim::Bus bus;
  FaultyLibrary library;
  PageFixture fixture;
  std::chrono::milliseconds now{};
  StackRun run;
  CNodeSystemPageSet pages;
  int begun = 0, ended = 0;

 private:
  static std::string Hex(QRgb colour) {
    return QString::number(colour & 0xFFFFFF, 16).toStdString();
  }
};

}  // namespace quillon::testing
