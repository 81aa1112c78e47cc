// SPDX-License-Identifier: MIT
//
// The least that a Qt program with a tree and tables can do: what Quillon's start is measured
// against.
#include <QApplication>
#include <QMainWindow>
#include <QSplitter>
#include <QTabWidget>
#include <QTableWidget>
#include <QTreeWidget>

namespace {

constexpr int kTreeRows = 12;
constexpr int kTables = 6;
constexpr int kRows = 64;
constexpr int kColumns = 6;

QTreeWidget* MakeTree() {
  auto* const tree = new QTreeWidget;
  tree->setHeaderHidden(true);
  for (int row = 0; row < kTreeRows; ++row) {
    new QTreeWidgetItem(tree, {QStringLiteral("Row %1").arg(row)});
  }
  return tree;
}

QTableWidget* MakeTable() {
  auto* const table = new QTableWidget(kRows, kColumns);
  for (int row = 0; row < kRows; ++row) {
    for (int column = 0; column < kColumns; ++column) {
      table->setItem(row, column, new QTableWidgetItem(QStringLiteral("%1").arg(row * column)));
    }
  }
  return table;
}

}  // namespace

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  QMainWindow window;
  auto* const splitter = new QSplitter;
  splitter->addWidget(MakeTree());
  auto* const tabs = new QTabWidget;
  for (int i = 0; i < kTables; ++i) tabs->addTab(MakeTable(), QStringLiteral("Table %1").arg(i));
  splitter->addWidget(tabs);
  window.setCentralWidget(splitter);
  // Quillon's own size, or the painting would not compare.
  const QFontMetrics metrics = window.fontMetrics();
  window.resize(metrics.averageCharWidth() * 218, metrics.lineSpacing() * 44);
  window.show();
  return QApplication::exec();
}
