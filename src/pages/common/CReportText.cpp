// SPDX-License-Identifier: MIT
#include "pages/common/CReportText.h"

#include <QEvent>
#include <QScrollBar>

#include "widgets/Tone.h"

namespace quillon {
namespace {

constexpr QRgb kGround = qRgb(0xD2, 0xD2, 0xD2);

}  // namespace

CReportText::CReportText(const QString& name, QWidget* parent) : QPlainTextEdit(parent) {
  setReadOnly(true);
  setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  setUndoRedoEnabled(false);
  setAcceptDrops(false);
  setTabChangesFocus(true);
  setAccessibleName(name);
  Tint();
}

void CReportText::Append(const QString& text) {
  QTextCursor end(document());
  end.movePosition(QTextCursor::End);
  end.insertText(text);
  verticalScrollBar()->setValue(verticalScrollBar()->maximum());
}

void CReportText::changeEvent(QEvent* event) {
  if (event->type() == QEvent::ApplicationPaletteChange) Tint();
  QPlainTextEdit::changeEvent(event);
}

void CReportText::Tint() {
  QPalette tinted;
  tinted.setColor(QPalette::Base, ToneFor(kGround, tinted));
  setPalette(tinted);
}

}  // namespace quillon
