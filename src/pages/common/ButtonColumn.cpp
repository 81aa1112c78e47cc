// SPDX-License-Identifier: MIT
#include "pages/common/ButtonColumn.h"

#include <QApplication>
#include <QBoxLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>

namespace quillon {

QBoxLayout* AddButtonColumn(QBoxLayout* layout) {
  auto* const column = new QVBoxLayout;
  column->addStrut(QFontMetrics(QApplication::font()).averageCharWidth() * 24);
  layout->addLayout(column);
  return column;
}

QPushButton* AddButton(QBoxLayout* layout, const QString& text) {
  auto* const button = new QPushButton(text);
  layout->addWidget(button);
  return button;
}

ListPageColumns LayOutListPage(QWidget* page, const QString& title, QWidget* list, QLabel* line) {
  auto* const group = new QGroupBox(title);
  (new QVBoxLayout(page))->addWidget(group);
  auto* const layout = new QHBoxLayout(group);
  auto* const column = new QVBoxLayout;
  layout->addLayout(column, 1);
  column->addWidget(list, 1);
  column->addWidget(line);
  line->setTextFormat(Qt::PlainText);
  line->setWordWrap(true);
  return {column, AddButtonColumn(layout)};
}

}  // namespace quillon
