// SPDX-License-Identifier: MIT
#pragma once

class QBoxLayout;
class QLabel;
class QPushButton;
class QString;
class QWidget;

namespace quillon {

// A column for buttons; all such columns of a page have one width.
QBoxLayout* AddButtonColumn(QBoxLayout* layout);

QPushButton* AddButton(QBoxLayout* layout, const QString& text);

// A page with a list, a line of text below it, and buttons beside both.
struct ListPageColumns {
  QBoxLayout* list;  // for what stands below the line
  QBoxLayout* buttons;
};
ListPageColumns LayOutListPage(QWidget* page, const QString& title, QWidget* list, QLabel* line);

}  // namespace quillon
