// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <exception>
#include <functional>

class QWidget;

namespace quillon::stage {

// Answers what opens over the window and waits for the user: message boxes, modal dialogs and
// menus. Hands each one to a function once it is on the screen.
class Attendant : public QObject {
 public:
  // Has to close what it is given. If it throws, that is closed for it.
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
