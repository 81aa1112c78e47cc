// SPDX-License-Identifier: MIT
#include "bench/MapWatch.h"

#include <poll.h>
#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>

namespace quillon::bench {
namespace {

constexpr int kPatienceMilliseconds = 20000;
constexpr std::uint8_t kSentEventBit = 0x80;

struct Free {
  void operator()(xcb_generic_event_t* event) const { std::free(event); }
};
using Event = std::unique_ptr<xcb_generic_event_t, Free>;

bool IsWindowMapped(const xcb_generic_event_t& event) {
  if ((event.response_type & ~kSentEventBit) != XCB_MAP_NOTIFY) return false;
  return reinterpret_cast<const xcb_map_notify_event_t&>(event).override_redirect == 0;
}

}  // namespace

void MapWatch::Disconnect::operator()(xcb_connection_t* connection) const {
  xcb_disconnect(connection);
}

MapWatch::MapWatch() : connection_(xcb_connect(nullptr, nullptr)) {
  if (!IsConnected()) return;
  const xcb_screen_t* const screen =
      xcb_setup_roots_iterator(xcb_get_setup(connection_.get())).data;
  const std::uint32_t mask = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
  xcb_change_window_attributes(connection_.get(), screen->root, XCB_CW_EVENT_MASK, &mask);
  xcb_flush(connection_.get());
}

bool MapWatch::IsConnected() const { return xcb_connection_has_error(connection_.get()) == 0; }

void MapWatch::Drain() {
  // The answer to any request comes after all events so far.
  std::free(xcb_get_input_focus_reply(connection_.get(), xcb_get_input_focus(connection_.get()),
                                      nullptr));
  while (Event(xcb_poll_for_event(connection_.get())) != nullptr) {
  }
}

bool MapWatch::WaitForWindow() {
  pollfd socket{xcb_get_file_descriptor(connection_.get()), POLLIN, 0};
  for (;;) {
    while (const Event event{xcb_poll_for_event(connection_.get())}) {
      if (IsWindowMapped(*event)) return true;
    }
    if (!IsConnected() || poll(&socket, 1, kPatienceMilliseconds) <= 0) return false;
  }
}

}  // namespace quillon::bench
