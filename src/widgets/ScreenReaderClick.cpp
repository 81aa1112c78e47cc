// SPDX-License-Identifier: MIT
#include "widgets/ScreenReaderClick.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QAccessibleWidget>
#include <QRadioButton>
#include <QVariant>

namespace quillon {
namespace {

constexpr const char* kMark = "screenReaderClick";

class ClickInterface final : public QAccessibleWidget {
 public:
  explicit ClickInterface(QAbstractButton* button)
      : QAccessibleWidget(button, qobject_cast<QRadioButton*>(button) != nullptr
                                      ? QAccessible::RadioButton
                                      : QAccessible::CheckBox),
        button_(*button) {}

  QString text(QAccessible::Text kind) const override {
    const QString text = QAccessibleWidget::text(kind);
    return kind == QAccessible::Name && text.isEmpty() ? button_.text() : text;
  }

  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.checkable = true;
    state.checked = button_.isChecked();
    return state;
  }

  QStringList actionNames() const override {
    return QStringList{toggleAction()} + QAccessibleWidget::actionNames();
  }

  void doAction(const QString& action) override {
    if (action != toggleAction()) return QAccessibleWidget::doAction(action);
    // Not here: a click may open a dialog, and the screen reader waits for an answer.
    QMetaObject::invokeMethod(&button_, &QAbstractButton::click, Qt::QueuedConnection);
  }

 private:
  QAbstractButton& button_;
};

QAccessibleInterface* MakeInterface(const QString& /*class_name*/, QObject* object) {
  auto* const button = qobject_cast<QAbstractButton*>(object);
  if (button == nullptr || !button->property(kMark).toBool()) return nullptr;
  return new ClickInterface(button);
}

}  // namespace

void LetScreenReadersClick(QAbstractButton* button) {
  QAccessible::installFactory(MakeInterface);  // once, however often it is called
  button->setProperty(kMark, true);
  // One that was asked for before now does not know.
  QAccessible::deleteAccessibleInterface(
      QAccessible::uniqueId(QAccessible::queryAccessibleInterface(button)));
}

}  // namespace quillon
