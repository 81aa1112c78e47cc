// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

struct xcb_connection_t;

namespace quillon::bench {

// Hears from the X server when a window of a program is mapped. Works only on a server of its own
// without a window manager, where a program's windows are children of the root window.
class MapWatch {
 public:
  MapWatch();

  bool IsConnected() const;
  // Forgets the events of the programs before.
  void Drain();
  // Waits for the next MapNotify of a window that is no menu or tooltip; false after 20 s
  // without one.
  bool WaitForWindow();

 private:
  struct Disconnect {
    void operator()(xcb_connection_t* connection) const;
  };
  std::unique_ptr<xcb_connection_t, Disconnect> connection_;
};

}  // namespace quillon::bench
