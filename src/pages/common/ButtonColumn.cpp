// SPDX-License-Identifier: MIT
#include "pages/common/ButtonColumn.h"

#include <QApplication>
#include <QBoxLayout>
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

}  // namespace quillon
