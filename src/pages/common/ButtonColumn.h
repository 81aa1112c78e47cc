// SPDX-License-Identifier: MIT
#pragma once

class QBoxLayout;
class QPushButton;
class QString;

namespace quillon {

// A column for buttons; all such columns of a page have one width.
QBoxLayout* AddButtonColumn(QBoxLayout* layout);

QPushButton* AddButton(QBoxLayout* layout, const QString& text);

}  // namespace quillon
