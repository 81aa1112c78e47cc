// SPDX-License-Identifier: MIT
#include "usbip/BoardHost.h"

#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <span>

namespace quillon::usbip {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

const std::string& IdOf(const VirtualBoard& board) { return board.Wired().Spec().id; }

bool IsTemporary(int error) { return error == EAGAIN || error == EINTR; }

}  // namespace

BoardHost::BoardHost(const Vhci& vhci, const sim::Rig& rig,
                     const std::optional<std::filesystem::path>& state_folder, std::ostream& out,
                     std::ostream& err)
    : vhci_(vhci), out_(out), err_(err) {
  for (const sim::BoardSpec& spec : rig.boards) {
    if (!spec.plugged) continue;
    boards_.push_back({VirtualBoard(spec, state_folder)});
    const std::string& problem = boards_.back().board.Wired().Problem();
    if (!problem.empty()) err_ << IdOf(boards_.back().board) << ": " << problem << '\n';
  }
}

bool BoardHost::Run(int stop) {
  for (Plugged& plugged : boards_)
    if (!Follow(plugged)) return false;
  bool stopped = false;
  while (!stopped) {
    if (!Wait(stop, stopped)) return false;
    for (Plugged& plugged : boards_) {
      plugged.board.Advance(steady_clock::now());
      Follow(plugged);
    }
  }
  for (Plugged& plugged : boards_) {
    plugged.board.Unplug();
    Follow(plugged);
  }
  return true;
}

// Milliseconds until a board has something to do, rounded up, as poll() takes them.
int BoardHost::Patience() const {
  std::optional<VirtualBoard::Time> next;
  for (const Plugged& plugged : boards_)
    if (const auto step = plugged.board.NextStep()) next = std::min(next.value_or(*step), *step);
  if (!next) return -1;
  const auto left = std::chrono::ceil<milliseconds>(*next - steady_clock::now());
  return static_cast<int>(std::clamp(left, milliseconds(0), milliseconds(60'000)).count());
}

bool BoardHost::Wait(int stop, bool& stopped) {
  std::vector<pollfd> files = {{stop, POLLIN, 0}};
  for (const Plugged& plugged : boards_) {
    const bool sending = !plugged.unsent.empty();
    files.push_back(
        {plugged.socket.Number(), static_cast<short>(sending ? POLLIN | POLLOUT : POLLIN), 0});
  }
  if (poll(files.data(), files.size(), Patience()) < 0 && !IsTemporary(errno)) {
    err_ << "Waiting for the kernel failed.\n";
    return false;
  }
  stopped = files[0].revents != 0;
  for (std::size_t i = 0; i < boards_.size(); ++i)
    if (files[i + 1].revents != 0) Receive(boards_[i]);
  return true;
}

void BoardHost::Receive(Plugged& plugged) {
  std::array<std::uint8_t, 0x4000> bytes{};
  const ssize_t got = recv(plugged.socket.Number(), bytes.data(), bytes.size(), MSG_DONTWAIT);
  if (got > 0)
    plugged.board.Receive(std::span(bytes).first(static_cast<std::size_t>(got)),
                          steady_clock::now());
  else if (got == 0 || !IsTemporary(errno))
    plugged.board.Unplug();  // the kernel closed its end
}

void BoardHost::Send(Plugged& plugged) {
  const Bytes output = plugged.board.TakeOutput();
  plugged.unsent.insert(plugged.unsent.end(), output.begin(), output.end());
  if (plugged.unsent.empty()) return;
  const ssize_t sent = send(plugged.socket.Number(), plugged.unsent.data(), plugged.unsent.size(),
                            MSG_DONTWAIT | MSG_NOSIGNAL);
  if (sent > 0) plugged.unsent.erase(plugged.unsent.begin(), plugged.unsent.begin() + sent);
}

void BoardHost::Leave(Plugged& plugged) {
  plugged.socket.Close();
  plugged.unsent.clear();
  out_ << IdOf(plugged.board) << ": off the bus" << std::endl;
}

// Makes the bus as the board wants it. Returns false for a board that cannot be put there; it is
// unplugged then.
bool BoardHost::Follow(Plugged& plugged) {
  if (plugged.socket.IsOpen()) Send(plugged);
  if (plugged.board.OnBus() == plugged.socket.IsOpen()) return true;
  if (plugged.socket.IsOpen()) {
    Leave(plugged);
    return true;
  }
  auto attached = vhci_.Attach();
  if (const auto* problem = std::get_if<std::string>(&attached)) {
    err_ << IdOf(plugged.board) << ": " << *problem << '\n';
    plugged.board.Unplug();
    return false;
  }
  auto& [socket, port] = std::get<Vhci::Attached>(attached);
  plugged.socket = std::move(socket);
  out_ << IdOf(plugged.board) << ": on port " << port << std::endl;
  return true;
}

}  // namespace quillon::usbip
