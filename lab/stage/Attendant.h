// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <exception>
#include <functional>

class QWidget;

namespace quillon::stage {

// Attends to what opens over the window and lets nobody go on before it is answered: message boxes,
// dialogs and menus. Hands each one over once it stands on the screen.
class Attendant : public QObject {
 public:
  // Has to close what it is given, at the latest when it throws: then it is closed for it.
  using Act = std::function<void(QWidget& opened)>;

  explicit Attendant(Act act);
  ~Attendant() override;

  // Throws what `act` threw since the last call; an exception cannot pass through the event loop
  // that `act` is called from.
  void Rethrow();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Attend(QWidget& opened);

  Act act_;
  std::exception_ptr thrown_;
};

}  // namespace quillon::stage
